#pragma once

#include <QString>

#include <optional>

namespace board {

/// The number that `value` calls: rounded, a half to the even neighbour. Nothing when the value is 0 or less,
/// 76 or more, or rounds to 0 or 76.
std::optional<int> calledByValue(double value);

/// The text that stands behind the column letter with which an entry begins: the next two characters, or
/// fewer. Nothing when the entry reads as a number or begins with no column letter. The letter may be small.
std::optional<QString> behindLetter(const QString &entry);

/// The number that an entry calls, with or without its column letter ("N33", "33", "b 7"); nothing when it
/// calls none. The letter is not checked against the number.
std::optional<int> calledByEntry(const QString &entry);

} // namespace board
