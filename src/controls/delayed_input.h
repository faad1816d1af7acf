#pragma once

#include <QObject>

#include <memory>

namespace controls {

/// While the answer exists the cursor is a wait cursor, and what the user types and clicks is held back. The
/// windows get it when the answer is destroyed. Meanwhile windows can be closed and message boxes answered.
/// (QEventLoop::ExcludeUserInputEvents would keep the closing of a window, too.)
[[nodiscard]] std::unique_ptr<QObject> delayInput();

} // namespace controls
