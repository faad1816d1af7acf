#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Files that somebody wrote with some program in some encoding.
namespace base {

/// The text that `bytes` hold: in the Unicode encoding that a byte order mark names, else UTF-8 where every
/// byte fits, else the system's 8-bit code page.
QString decodedText(const QByteArray &bytes);

/// The first `most` bytes of a file. Nothing when `path` names no ordinary file (reading a pipe would wait)
/// or one that cannot be read.
std::optional<QByteArray> readBytes(const QString &path, qint64 most);

/// The text of a file that readBytes reads; of one longer than 4 MiB its beginning, and a line that says so.
std::optional<QString> readTextFile(const QString &path);

} // namespace base
