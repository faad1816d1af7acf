// The help file is read whatever its bytes are, and is never longer as a text than as a file. A text in UTF-8
// comes out of it unchanged.

#include "text_file.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QString text = base::decodedText(bytes);
    Q_ASSERT(text.size() <= bytes.size());
    Q_ASSERT(!text.isValidUtf16() || text.startsWith(QChar::ByteOrderMark) ||
             base::decodedText(text.toUtf8()) == text);
    return 0;
}
