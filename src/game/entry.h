#pragma once

#include <QString>

#include <optional>

namespace game {

/// The number that a typed entry calls. Where the entry begins with a column letter, capital or small, the
/// next two characters are read, else all of it. Digits may be those of any script. The value is rounded, a
/// half to the even neighbour. Nothing when that is not 1 to 75.
std::optional<int> calledBy(const QString &entry);

} // namespace game
