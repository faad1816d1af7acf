#include "draw.h"

#include <cmath>

namespace board {

int pickPosition(int count, double fraction)
{
    return static_cast<int>(std::floor(count * fraction + 1.0));
}

std::optional<int> drawFrom(std::span<const int> pool)
{
    if (pool.empty())
        return std::nullopt;
    const int position = pickPosition(static_cast<int>(pool.size()), freshFraction());
    return pool[static_cast<std::size_t>(position) - 1];
}

} // namespace board
