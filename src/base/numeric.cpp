#include "numeric.h"

#include <algorithm>
#include <cmath>

namespace base {

std::optional<double> parseNumber(const QString &text)
{
    // Qt reads "nan" and "inf", and blanks of every kind.
    constexpr QStringView signs = u"0123456789.+-eE \t";
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    const bool hasOthers = std::ranges::any_of(text, [=](QChar sign) { return !signs.contains(sign); });
    return !hasOthers && (isNumber || std::isinf(value)) ? std::optional(value) : std::nullopt;
}

} // namespace base
