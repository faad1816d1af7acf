#include "entry.h"

#include "numbers.h"
#include "numeric.h"

namespace board {

std::optional<int> calledByValue(double value)
{
    if (!(value > 0.0 && value < game::numberCount + 1))
        return std::nullopt;
    const int n = files::roundHalfEven(value);
    return game::isNumber(n) ? std::optional(n) : std::nullopt;
}

std::optional<QString> behindLetter(const QString &entry)
{
    if (entry.isEmpty() || files::parseNumber(entry))
        return std::nullopt;
    const QChar letter = entry.front().toUpper();
    if (!QStringView(u"BINGO").contains(letter))
        return std::nullopt;
    return entry.mid(1, 2);
}

std::optional<int> calledByEntry(const QString &entry)
{
    const std::optional<double> value = files::parseNumber(behindLetter(entry).value_or(entry));
    return value ? calledByValue(*value) : std::nullopt;
}

} // namespace board
