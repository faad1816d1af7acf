#include "quit_requests.h"

namespace os {

void onQuitRequest(std::function<void()>) {} // Windows closes the windows

} // namespace os
