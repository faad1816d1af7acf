#pragma once

#include <QString>

#include <optional>

namespace game {

/// The number that a typed entry calls. Where the entry begins with a column letter, capital or small, the
/// next two characters are read, else all of it. Digits may be those of any script. The value is rounded, a
/// half to the even neighbour. Nothing when that is no number, 0 or less, 76 or more, or rounds to 0 or 76.
std::optional<int> calledBy(const QString &entry);

} // namespace game
