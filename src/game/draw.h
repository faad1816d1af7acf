#pragma once

#include <functional>
#include <optional>
#include <span>

namespace game {

/// The number of the pool that a random fraction picks, each with the same chance; nothing when the pool is
/// empty. `fraction` is at least 0 and less than 1.
inline std::optional<int> pick(std::span<const int> pool, double fraction)
{
    if (pool.empty())
        return std::nullopt;
    return pool[static_cast<std::size_t>(static_cast<double>(pool.size()) * fraction)];
}

/// Gives a random fraction, at least 0 and less than 1. Its generator is seeded at every call from the system
/// clock and the system's entropy, so that two programs started at the same instant differ. A test may put
/// another function here, to draw known numbers.
extern std::function<double()> randomFraction;

} // namespace game
