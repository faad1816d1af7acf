#pragma once

class QWidget;

namespace os {

/// Keeps a tool window out of the taskbar. Call before showing.
void keepOffTaskbar(const QWidget *window);

} // namespace os
