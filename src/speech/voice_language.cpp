#include "voice_language.h"

namespace speech {

namespace {

QString normalized(QString tag)
{
    return tag.replace(u'_', u'-').toLower();
}

QString languageOf(const QString &tag)
{
    return normalized(tag).section(u'-', 0, 0);
}

} // namespace

bool isLanguageOf(const QString &tag, const QLocale &user)
{
    return languageOf(tag) == languageOf(user.name());
}

std::optional<qsizetype> bestLanguage(const QStringList &tags, const QLocale &user)
{
    const QString language = languageOf(user.name());
    const QStringList wishes{normalized(user.name()), language, normalized(QLocale(language).name())};
    std::optional<qsizetype> best;
    qsizetype bestRank = wishes.size() + 1;
    for (qsizetype i = 0; i < tags.size(); ++i) {
        const qsizetype wish = wishes.indexOf(normalized(tags[i]));
        const qsizetype rank = wish >= 0 ? wish : wishes.size();
        if (rank < bestRank && isLanguageOf(tags[i], user)) {
            best = i;
            bestRank = rank;
        }
    }
    return best;
}

} // namespace speech
