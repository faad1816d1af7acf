#pragma once

#include <QString>

#include <optional>

namespace base {

/// The value of a text that reads as a number: blanks on either side, a sign, decimal digits with at most
/// one point, an exponent. The decimal sign is a point in every locale. Nothing else is a number: not "nan",
/// "0x10" or "1,000", nor digits of other scripts. A value too large for a double is infinite; one that is
/// too small is no number.
std::optional<double> parseNumber(const QString &text);

} // namespace base
