#pragma once

#include <QObject>

#include <memory>

namespace controls {

/// While the returned object lives the cursor is a wait cursor, and what the user types and clicks is kept.
/// The windows get it when that object is destroyed. Meanwhile they can be closed, and boxes answered.
[[nodiscard]] std::unique_ptr<QObject> delayInput();

} // namespace controls
