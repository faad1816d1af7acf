#include "entry.h"

#include "numbers.h"
#include "numeric.h"

#include <cmath>

namespace game {

/// Turkish keyboards have two letters I, and neither is that of the alphabet as Unicode folds it.
static bool isColumnLetter(QChar c)
{
    return columnLetters.contains(c, Qt::CaseInsensitive) || c == u'\u0131' || c == u'\u0130';
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
    const double n = std::nearbyint(base::parseNumber(withLatinDigits(withoutLetter(entry))).value_or(0.0));
    return n >= 1 && n <= numberCount ? std::optional(static_cast<int>(n)) : std::nullopt;
}

} // namespace game
