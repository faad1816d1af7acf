#include "voice_language.h"

#include <QRegularExpression>

namespace speech {

std::optional<qsizetype> bestLanguage(const QStringList &tags, const QLocale &user)
{
    const QString language = user.name().section(u'_', 0, 0);
    for (QString wish : {user.name(), language, QLocale(language).name(), language + QStringLiteral("_.*")}) {
        const QRegularExpression tag(wish.replace(u'_', QStringLiteral("[-_]")),
                                     QRegularExpression::CaseInsensitiveOption);
        if (const qsizetype position = tags.indexOf(tag); position >= 0)
            return position;
    }
    return std::nullopt;
}

} // namespace speech
