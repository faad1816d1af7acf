#pragma once

#include <QStringView>

#include <optional>

namespace files {

/// The value of a text that reads as a number: blanks on either side, a sign, decimal digits with at most
/// one point, an exponent. The decimal sign is a point in every locale. Nothing else is a number: not "nan",
/// "0x10" or "1,000", nor digits of other scripts. A value too large for a double is infinite.
std::optional<double> parseNumber(QStringView text);

/// `value` rounded to a whole number; a half goes to the even neighbour. `value` must fit an int.
int roundHalfEven(double value);

} // namespace files
