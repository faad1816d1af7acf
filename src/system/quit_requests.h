#pragma once

#include <functional>

namespace os {

/// Calls `quit` from the event loop when SIGTERM, SIGINT or SIGHUP arrives. A signal that is ignored already,
/// as SIGHUP is under nohup, stays ignored. Call once. Windows has no such signals.
void onQuitRequest(std::function<void()> quit);

} // namespace os
