#pragma once

#include <functional>

namespace os {

/// From now on `quit` is called from the event loop when SIGTERM, SIGINT or SIGHUP asks the program to end. A
/// signal that is ignored already, as SIGHUP is under nohup, stays ignored. Call once. Windows has no such
/// signals.
void onQuitRequest(std::function<void()> quit);

} // namespace os
