#include "board/entry.h"

#include "board/numbers.h"
#include "platform/numeric.h"

namespace board {

std::optional<int> calledByValue(double value)
{
    if (!(value > 0.0 && value < numberCount + 1))
        return std::nullopt;
    const int n = platform::roundHalfEven(value);
    return isNumber(n) ? std::optional(n) : std::nullopt;
}

std::optional<QString> behindLetter(const QString &entry)
{
    if (entry.isEmpty() || platform::parseNumber(entry))
        return std::nullopt;
    const QChar letter = entry.front().toUpper();
    if (!QStringView(u"BINGO").contains(letter))
        return std::nullopt;
    return entry.mid(1, 2);
}

std::optional<int> calledByEntry(const QString &entry)
{
    const std::optional<double> value = platform::parseNumber(behindLetter(entry).value_or(entry));
    return value ? calledByValue(*value) : std::nullopt;
}

} // namespace board
