#pragma once

#include <optional>
#include <span>

namespace board {

/// The position, 1 to `count`, that a random fraction picks from a pool of `count` numbers.
/// `fraction` is at least 0 and less than 1; `count` at least 1.
int pickPosition(int count, double fraction);

/// A random fraction, at least 0 and less than 1, from a generator that is seeded afresh at every call from
/// the system clock and the system's entropy, so that two programs started at the same instant differ.
double freshFraction();

/// One of the numbers of the pool, each with the same chance; nothing when the pool is empty.
std::optional<int> drawFrom(std::span<const int> pool);

} // namespace board
