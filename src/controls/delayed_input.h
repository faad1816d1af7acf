#pragma once

#include <QObject>

#include <memory>

namespace controls {

/// As long as the returned object lives the cursor is a wait cursor, and what the user types and clicks is
/// held back. The windows get it when that object is destroyed. Meanwhile windows can be closed and boxes
/// answered. (QEventLoop::ExcludeUserInputEvents would keep the closing of a window, too.)
[[nodiscard]] std::unique_ptr<QObject> delayInput();

} // namespace controls
