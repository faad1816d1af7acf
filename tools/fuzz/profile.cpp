// A write into a profile changes one value and no other byte, and the value comes back. An input is
// "section|key|value|content of the file".

#include "profile_file.h"

#include <QByteArrayList>

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

constexpr std::array<QByteArrayView, 3> names{"A", "Options", "FontSz"};

/// Whether a name can stand in a profile, before the character that ends it there.
bool isLegal(const QByteArray &name, char end)
{
    const QByteArray bare = name.trimmed();
    return !name.contains('\r') && !name.contains('\n') && !name.contains(end) && !bare.startsWith(';') &&
           !bare.startsWith('[');
}

bool sameName(QByteArrayView one, QByteArrayView other)
{
    return one.trimmed().compare(other.trimmed(), Qt::CaseInsensitive) == 0;
}

/// What `before` has and `after` has instead of it, after `start` common bytes and without those that are
/// common at the end.
std::pair<QByteArrayView, QByteArrayView> difference(QByteArrayView before, QByteArrayView after,
                                                     qsizetype start)
{
    before = before.sliced(start);
    after = after.sliced(start);
    const auto end = std::mismatch(before.rbegin(), before.rend(), after.rbegin(), after.rend());
    return {before.chopped(end.first - before.rbegin()), after.chopped(end.second - after.rbegin())};
}

bool isPartOf(QByteArrayView part, const QByteArray &value)
{
    const QByteArray bytes = part.toByteArray();
    return ('"' + value + '"').contains(bytes) || ('\'' + value + '\'').contains(bytes);
}

void setAndCompare(const QByteArray &content, const QByteArray &section, const QByteArray &key,
                   const QByteArray &value)
{
    const QByteArray after = base::withValue(content, section, key, value);
    const QByteArray stored = QByteArray(value).replace('\r', ' ').replace('\n', ' ');
    Q_ASSERT(base::findValue(after, section, key) == stored);
    Q_ASSERT(base::withValue(after, section, key, value) == after);

    const auto differs = std::mismatch(content.begin(), content.end(), after.begin(), after.end()).first;
    qsizetype start = differs - content.begin();
    if (const auto old = base::findValue(content, section, key)) {
        // Bytes that are alike leave more than one place where the change can have begun.
        const auto isInside = [&, value = *old](qsizetype from) {
            const auto [removed, inserted] = difference(content, after, from);
            return isPartOf(removed, value) && isPartOf(inserted, stored);
        };
        while (start > 0 && !isInside(start))
            --start;
        Q_ASSERT(isInside(start));
    } else {
        constexpr qsizetype mostBetween =
            10; // brackets, equals sign, quotes and three line ends of two bytes
        const auto [removed, inserted] = difference(content, after, start);
        Q_ASSERT(removed.isEmpty());
        Q_ASSERT(inserted.size() <= section.size() + key.size() + stored.size() + mostBetween);
    }
    for (const QByteArrayView otherSection : names) {
        for (const QByteArrayView otherKey : names) {
            if (!sameName(otherSection, section) || !sameName(otherKey, key))
                Q_ASSERT(base::findValue(after, otherSection, otherKey) ==
                         base::findValue(content, otherSection, otherKey));
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QByteArrayList fields = input.split('|');
    if (fields.size() < 4 || !isLegal(fields[0], ']') || !isLegal(fields[1], '='))
        return 0;
    setAndCompare(fields.mid(3).join('|'), fields[0], fields[1], fields[2]);
    return 0;
}
