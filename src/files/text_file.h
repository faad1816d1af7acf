#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Texts from files that somebody wrote with some program in some encoding.
namespace files {

/// No more of a file than this is read, in bytes.
inline constexpr qsizetype longestText = 262'144;

/// The text that `bytes` hold: UTF-16 or UTF-8 where a byte order mark says so, the text of a rich-text file,
/// UTF-8 where every byte fits, else the system's 8-bit code page, which away from Windows is Windows-1252.
QString decodedText(const QByteArray &bytes);

/// The text of a file. Of a file longer than `longestText` it is the beginning and a line that says so.
/// Nothing when `path` names no ordinary file or one that cannot be read. It never waits: pipes and devices
/// are no ordinary files.
std::optional<QString> readTextFile(const QString &path);

} // namespace files
