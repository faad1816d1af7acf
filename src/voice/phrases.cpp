#include "phrases.h"

#include "numbers.h"

#include <QStringBuilder>

namespace voice {

constexpr QStringView letterWords[] = {u"Bee, ", u"Eye, ", u"En, ", u"Gee, ", u"Oh, "};

QString firstPhrase(int n)
{
    return letterWords[game::columnOf(n)] % QString::number(n);
}

QString followUp(const QString &phrase)
{
    for (const QStringView word : letterWords) {
        if (!phrase.startsWith(word.left(2)))
            continue;
        const QStringView digits = QStringView(phrase).mid(word.size());
        const bool isAfterB = word == letterWords[0]; // where numbers have one digit
        if (isAfterB && digits == u'4')
            return QStringLiteral("And After");
        if (isAfterB && digits.size() == 1)
            return word % digits;
        return word % digits.left(1) % u" ," % digits.mid(1, 1);
    }
    return phrase;
}

} // namespace voice
