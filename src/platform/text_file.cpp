#include "platform/text_file.h"

#include "platform/code_page.h"
#include "platform/rtf_text.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

namespace platform {

namespace {

std::optional<QString> decodedAs(QStringDecoder::Encoding encoding, const QByteArray &bytes)
{
    QStringDecoder decoder(encoding);
    const QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

/// A text that was cut off may end within a character of several bytes of UTF-8, of which the first is 0xC0
/// or more and the others are 0x80 to 0xBF. Takes such a character away, whole or not.
void dropLastWideCharacter(QByteArray &bytes)
{
    const auto byteFromEnd = [&](qsizetype i) { return static_cast<uchar>(bytes[bytes.size() - 1 - i]); };
    qsizetype tail = 0;
    while (tail < 3 && tail < bytes.size() && (byteFromEnd(tail) & 0xC0) == 0x80)
        ++tail;
    if (tail < bytes.size() && byteFromEnd(tail) >= 0xC0)
        bytes.chop(tail + 1);
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
    dropLastWideCharacter(bytes);
    return decodedText(bytes) + QStringLiteral("\n\n(The file goes on. Only its beginning is shown.)\n");
}

} // namespace platform
