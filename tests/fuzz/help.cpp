// The help file is read whatever its bytes are, and is never longer as a text than as a file. A text that is
// put into rich text comes out of it unchanged.

#include "code_page.h"
#include "text_file.h"

#include <algorithm>
#include <cstdint>

namespace {

QByteArray richTextOf(const QString &text)
{
    QByteArray rich = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 ";
    for (const QChar c : text) {
        if (c == u'\n')
            rich += "\\par\r\n";
        else if (c == u'\\' || c == u'{' || c == u'}')
            rich += QByteArray("\\") + c.toLatin1();
        else if (c >= u' ' && c < u'\x7F')
            rich += c.toLatin1();
        else
            rich += "\\u" + QByteArray::number(static_cast<qint16>(c.unicode())) + '?';
    }
    return rich + '}';
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QString text = files::decodedText(bytes);
    Q_ASSERT(text.size() <= bytes.size());
    const QString piece = text.left(32); // all of it would slow the runs down
    Q_ASSERT(files::decodedText(richTextOf(piece)) == piece);

    const QString characters = files::textOfCodePage(bytes);
    Q_ASSERT(std::equal(characters.begin(), characters.end(), bytes.begin(), bytes.end(),
                        [](QChar c, char byte) { return (c.unicode() < 0x80) == (byte >= 0); }));
    return 0;
}
