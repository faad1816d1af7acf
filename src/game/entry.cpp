#include "entry.h"

#include "numbers.h"
#include "numeric.h"

#include <cmath>

namespace game {

/// Turkish keyboards have two letters I, and neither is that of the alphabet as Unicode folds it.
static bool isColumnLetter(QChar c)
{
    return QStringView(columnLetters).contains(c, Qt::CaseInsensitive) || c == u'\u0131' || c == u'\u0130';
}

static QString withoutLetter(const QString &entry)
{
    return !entry.isEmpty() && isColumnLetter(entry.front()) ? entry.mid(1, 2) : entry;
}

static QString withLatinDigits(QString text)
{
    for (QChar &c : text) {
        if (c.isDigit())
            c = QChar(u'0' + c.digitValue());
    }
    return text;
}

std::optional<int> calledBy(const QString &entry)
{
    const double value = base::parseNumber(withLatinDigits(withoutLetter(entry))).value_or(0.0);
    if (!(value > 0.0 && value < numberCount + 1))
        return std::nullopt;
    const int n = static_cast<int>(std::lrint(value));
    return isNumber(n) ? std::optional(n) : std::nullopt;
}

} // namespace game
