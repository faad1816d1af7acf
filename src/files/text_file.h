#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Texts from files that somebody wrote with some program in some encoding.
namespace files {

/// No more of a file than this is read, in bytes.
inline constexpr qsizetype longestText = 4'194'304;

/// The text that `bytes` hold: in the Unicode encoding that a byte order mark names, else UTF-8 where every
/// byte fits, else the system's 8-bit code page.
QString decodedText(const QByteArray &bytes);

/// The text of a file. Of a file longer than `longestText` it is the beginning and a line that says so.
/// Nothing when `path` names no ordinary file (reading a pipe would wait) or one that cannot be read.
std::optional<QString> readTextFile(const QString &path);

} // namespace files
