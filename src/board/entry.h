#pragma once

#include <QString>

#include <optional>

namespace board {

/// What is left of an entry without the column letter that it begins with, capital or small: the next two
/// characters, or fewer. An entry that begins with no column letter is left as it is.
QString withoutLetter(const QString &entry);

/// The number that a text without a column letter calls. Its value is rounded, a half to the even neighbour.
/// Nothing when it is no number, 0 or less, 76 or more, or rounds to 0 or 76.
std::optional<int> calledBy(const QString &text);

} // namespace board
