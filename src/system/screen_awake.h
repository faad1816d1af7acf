#pragma once

namespace os {

/// Keeps the screen from going blank and from being locked while nobody touches the computer; false lets it
/// again. The system is asked, and nothing waits for its answer. Ends with the program, however that ends.
void keepScreenOn(bool on);

} // namespace os
