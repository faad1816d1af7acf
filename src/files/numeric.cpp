#include "numeric.h"

#include <QString>

#include <cmath>
#include <limits>

namespace files {

namespace {

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

QStringView withoutBlanks(QStringView text)
{
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

/// Takes the sign that `text` begins with, if any.
void takeSign(QStringView &text)
{
    if (!text.isEmpty() && (text.front() == u'+' || text.front() == u'-'))
        text = text.sliced(1);
}

/// Takes the ASCII digits that `text` begins with and answers how many there were.
qsizetype takeDigits(QStringView &text)
{
    qsizetype count = 0;
    while (count < text.size() && text[count] >= u'0' && text[count] <= u'9')
        ++count;
    text = text.sliced(count);
    return count;
}

bool readsAsNumber(QStringView text)
{
    takeSign(text);
    qsizetype digits = takeDigits(text);
    if (!text.isEmpty() && text.front() == u'.') {
        text = text.sliced(1);
        digits += takeDigits(text);
    }
    if (digits == 0)
        return false;
    if (!text.isEmpty() && (text.front() == u'e' || text.front() == u'E')) {
        text = text.sliced(1);
        takeSign(text);
        if (takeDigits(text) == 0)
            return false;
    }
    return text.isEmpty();
}

} // namespace

std::optional<double> parseNumber(QStringView text)
{
    const QStringView number = withoutBlanks(text);
    if (!readsAsNumber(number))
        return std::nullopt;
    bool fits = false;
    const double value = number.toDouble(&fits);
    if (!fits && value != 0.0)
        return std::copysign(std::numeric_limits<double>::infinity(), value);
    return value;
}

int roundHalfEven(double value)
{
    const double below = std::floor(value);
    const double rest = value - below;
    const int whole = static_cast<int>(below);
    const bool up = rest > 0.5 || (rest == 0.5 && whole % 2 != 0);
    return up ? whole + 1 : whole;
}

} // namespace files
