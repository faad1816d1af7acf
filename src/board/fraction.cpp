#include "draw.h"

#include <chrono>
#include <cstdint>
#include <random>

// Apart from the rest of the draw, so that a test can be linked with fractions of its own.
namespace board {

double freshFraction()
{
    static std::random_device entropy;
    const auto now = static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
    std::seed_seq seed{static_cast<std::uint32_t>(now), static_cast<std::uint32_t>(now >> 32), entropy(),
                       entropy()};
    std::mt19937 generator(seed);
    // The upper 24 bits are what a single-precision fraction can hold.
    constexpr double step = 1.0 / (1 << 24);
    return static_cast<double>(generator() >> 8) * step;
}

} // namespace board
