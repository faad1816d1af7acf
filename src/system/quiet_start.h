#pragma once

namespace os {

/// While one of these lives, what Qt says of a start that fails (no display, no platform plugin) becomes one
/// line on standard error and exit code 1, in place of several lines and an abort. Other messages come out
/// when it ends.
class QuietStart
{
public:
    QuietStart();
    ~QuietStart();
    QuietStart(const QuietStart &) = delete;
    QuietStart &operator=(const QuietStart &) = delete;
};

} // namespace os
