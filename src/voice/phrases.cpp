#include "phrases.h"

#include "numbers.h"

#include <QStringBuilder>

#include <array>

namespace voice {

namespace {

constexpr std::array<QStringView, game::columnCount> letterWords{u"Bee, ", u"Eye, ", u"En, ", u"Gee, ",
                                                                 u"Oh, "};

QString digitByDigit(QStringView word, QStringView digits)
{
    return word % digits.left(1) % u" ," % digits.mid(1, 1);
}

/// The follow-up of a phrase that begins like the first letter word: B has numbers of one digit.
QString followUpOfB(QStringView word, const QString &phrase)
{
    const QStringView digits = QStringView(phrase).mid(word.size());
    if (phrase.size() != word.size() + 1)
        return digitByDigit(word, digits);
    if (digits == u'4')
        return QStringLiteral("And After");
    return word % digits;
}

} // namespace

QString firstPhrase(int n)
{
    return letterWords.at(static_cast<std::size_t>(game::columnOf(n))) % QString::number(n);
}

QString followUp(const QString &phrase)
{
    if (phrase.startsWith(letterWords.front().left(2)))
        return followUpOfB(letterWords.front(), phrase);
    for (const QStringView word : letterWords) {
        if (phrase.startsWith(word.left(2)))
            return digitByDigit(word, QStringView(phrase).mid(word.size()));
    }
    return phrase;
}

} // namespace voice
