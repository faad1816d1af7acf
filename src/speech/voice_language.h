#pragma once

#include <QLocale>
#include <QStringList>

#include <optional>

namespace speech {

/// True when `tag`, "en-US" or "en_us" or "en", names the language of `user`.
bool isLanguageOf(const QString &tag, const QLocale &user);

/// The position of the tag that suits `user` best: with the user's territory, else without one, else with the
/// language's main territory, else any of the language. Nothing when none names it.
std::optional<qsizetype> bestLanguage(const QStringList &tags, const QLocale &user);

} // namespace speech
