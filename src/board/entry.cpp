#include "entry.h"

#include "numbers.h"
#include "numeric.h"

#include <cmath>

namespace board {

QString withoutLetter(const QString &entry)
{
    const bool hasLetter =
        !entry.isEmpty() && QStringView(game::columnLetters).contains(entry.front(), Qt::CaseInsensitive);
    return hasLetter ? entry.mid(1, 2) : entry;
}

std::optional<int> calledBy(const QString &text)
{
    const double value = files::parseNumber(text).value_or(0.0);
    if (!(value > 0.0 && value < game::numberCount + 1))
        return std::nullopt;
    const int n = static_cast<int>(std::lrint(value));
    return game::isNumber(n) ? std::optional(n) : std::nullopt;
}

} // namespace board
