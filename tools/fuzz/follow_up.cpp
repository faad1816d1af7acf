// Any phrase has a follow-up: the phrase itself, "And After", or the letter word and the two characters
// behind it. Followed up over and over, a phrase comes to rest.

#include "phrases.h"

#include <QStringBuilder>

#include <array>
#include <cstdint>

namespace {

constexpr std::array<QStringView, 5> letterWords{u"Bee, ", u"Eye, ", u"En, ", u"Gee, ", u"Oh, "};

QStringView letterWordOf(QStringView phrase)
{
    for (const QStringView word : letterWords) {
        if (phrase.startsWith(word.left(2)))
            return word;
    }
    return {};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString phrase =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QString next = voice::followUp(phrase);
    const QStringView word = letterWordOf(phrase);
    if (word.isEmpty()) {
        Q_ASSERT(next == phrase);
    } else {
        const bool oneDigit = word == letterWords.front() && phrase.size() == word.size() + 1;
        const QStringView digits = QStringView(phrase).mid(word.size(), 2);
        const QStringView between = oneDigit ? u"" : u" ,";
        const bool isFour = oneDigit && digits == u'4';
        Q_ASSERT(next ==
                 (isFour ? QStringLiteral("And After") : word % digits.left(1) % between % digits.mid(1)));
    }
    const QString third = voice::followUp(voice::followUp(next));
    Q_ASSERT(voice::followUp(third) == third);
    return 0;
}
