#include "text_file.h"

#include <QFile>
#include <QFileInfo>
#include <QOperatingSystemVersion>
#include <QStringDecoder>

namespace base {

/// On Unix, 8-bit text that is not UTF-8 is mostly Windows-1252 or Latin-1, whose letters are the same.
static QStringDecoder codePageDecoder()
{
    if (QOperatingSystemVersion::currentType() == QOperatingSystemVersion::Windows)
        return QStringDecoder(QStringDecoder::System);
    QStringDecoder western("windows-1252");
    return western.isValid() ? std::move(western) : QStringDecoder(QStringDecoder::Latin1);
}

QString decodedText(const QByteArray &bytes)
{
    const auto marked = QStringConverter::encodingForData(bytes);
    QStringDecoder unicode(marked.value_or(QStringConverter::Utf8));
    const QString text = unicode(bytes);
    return unicode.hasError() && !marked ? codePageDecoder()(bytes) : text;
}

std::optional<QByteArray> readBytes(const QString &path, qint64 most)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.read(most);
    return file.error() == QFile::NoError ? std::optional(bytes) : std::nullopt;
}

std::optional<QString> readTextFile(const QString &path)
{
    constexpr qsizetype longest = 4'194'304;
    const std::optional<QByteArray> bytes = readBytes(path, longest + 1);
    if (!bytes)
        return std::nullopt;
    if (bytes->size() <= longest)
        return decodedText(*bytes);
    return decodedText(bytes->first(longest)) +
           QStringLiteral("\n\n(The file goes on. Only its beginning is shown.)\n");
}

} // namespace base
