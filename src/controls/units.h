#pragma once

#include <cmath>

namespace controls {

inline constexpr int twipsPerInch = 1440;

/// The whole number of pixels nearest to `twips` on a screen with `dotsPerInch` logical dots an inch.
inline int pixels(double twips, double dotsPerInch)
{
    return static_cast<int>(std::lround(twips * dotsPerInch / twipsPerInch));
}

/// The least whole number of pixels that holds `twips`.
inline int pixelsUp(double twips, double dotsPerInch)
{
    return static_cast<int>(std::ceil(twips * dotsPerInch / twipsPerInch));
}

} // namespace controls
