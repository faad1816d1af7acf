#include "code_page.h"

namespace files {

namespace {

/// What Windows-1252 has at 0x80 to 0x9F; elsewhere it is Latin-1.
constexpr char16_t upperControls[] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

} // namespace

QString textOfCodePage(QByteArrayView bytes)
{
#ifdef Q_OS_WIN
    return QString::fromLocal8Bit(bytes);
#else
    QString text = QString::fromLatin1(bytes);
    for (QChar &character : text) {
        const char16_t code = character.unicode();
        if (code >= 0x80 && code <= 0x9F)
            character = upperControls[code - 0x80];
    }
    return text;
#endif
}

} // namespace files
