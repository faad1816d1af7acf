#include "text_file.h"

#include "code_page.h"
#include "rtf_text.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

namespace files {

namespace {

/// A character that is cut off at the end is no error.
std::optional<QString> decodedAs(QStringDecoder::Encoding encoding, const QByteArray &bytes)
{
    QStringDecoder decoder(encoding);
    const QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

} // namespace

QString decodedText(const QByteArray &bytes)
{
    if (const auto marked = QStringConverter::encodingForData(bytes))
        return QStringDecoder(*marked)(bytes);
    if (isRtf(bytes))
        return textOfRtf(bytes);
    if (const std::optional<QString> text = decodedAs(QStringDecoder::Utf8, bytes))
        return *text;
    return textOfCodePage(bytes);
}

std::optional<QString> readTextFile(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray bytes = file.read(longestText + 1);
    if (file.error() != QFile::NoError)
        return std::nullopt;
    if (bytes.size() <= longestText)
        return decodedText(bytes);
    bytes.truncate(longestText);
    return decodedText(bytes) + QStringLiteral("\n\n(The file goes on. Only its beginning is shown.)\n");
}

} // namespace files
