#include "board/draw.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <random>

namespace board {

int pickPosition(int count, double fraction)
{
    return static_cast<int>(std::floor(count * fraction + 1.0));
}

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

std::optional<int> drawFrom(std::span<const int> pool)
{
    if (pool.empty())
        return std::nullopt;
    const int position = pickPosition(static_cast<int>(pool.size()), freshFraction());
    return pool[static_cast<std::size_t>(position) - 1];
}

} // namespace board
