// What is typed calls nothing or a number from 1 to 75, and reads as a number exactly where the C library's
// reader of decimal numbers takes all of it.

#include "entry.h"
#include "numbers.h"
#include "numeric.h"

#include <QString>

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

std::optional<double> numberByLibrary(QString text)
{
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\t'; };
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    while (!text.isEmpty() && isBlank(text.front()))
        text.remove(0, 1);
    for (const QChar c : text) {
        if (!QStringView(u"0123456789+-.eE").contains(c))
            return std::nullopt;
    }
    const QByteArray bytes = text.toLatin1();
    char *end = nullptr;
    const double value = std::strtod(bytes.constData(), &end);
    return bytes.isEmpty() || *end ? std::nullopt : std::optional(value);
}

std::optional<int> calledBy(const std::optional<double> &value)
{
    if (!value || *value <= 0 || *value >= game::numberCount + 1)
        return std::nullopt;
    const int number = static_cast<int>(std::nearbyint(*value));
    return number >= 1 && number <= game::numberCount ? std::optional(number) : std::nullopt;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const std::optional<double> value = numberByLibrary(text);
    Q_ASSERT(base::parseNumber(text) == value);
    Q_ASSERT(game::calledBy(text) == calledBy(value));
    Q_ASSERT(game::calledBy(u'n' + text) == calledBy(numberByLibrary(text.left(2))));
    return 0;
}
