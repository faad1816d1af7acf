#include "entry.h"

#include "numbers.h"
#include "numeric.h"

#include <cmath>

namespace game {

namespace {

QString withoutLetter(const QString &entry)
{
    const bool hasLetter =
        !entry.isEmpty() && QStringView(columnLetters).contains(entry.front(), Qt::CaseInsensitive);
    return hasLetter ? entry.mid(1, 2) : entry;
}

} // namespace

std::optional<int> calledBy(const QString &entry)
{
    const double value = base::parseNumber(withoutLetter(entry)).value_or(0.0);
    if (!(value > 0.0 && value < numberCount + 1))
        return std::nullopt;
    const int n = static_cast<int>(std::lrint(value));
    return isNumber(n) ? std::optional(n) : std::nullopt;
}

} // namespace game
