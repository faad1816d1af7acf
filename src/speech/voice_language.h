#pragma once

#include <QLocale>
#include <QStringList>

#include <optional>

namespace speech {

/// The position of the tag, "en-US" or "en_us" or "en", that suits `user` best: with the user's territory,
/// else without one, else with the language's main territory, else any of the language. Nothing when no tag
/// names the language.
std::optional<qsizetype> bestLanguage(const QStringList &tags, const QLocale &user);

} // namespace speech
