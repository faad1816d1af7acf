#include "profile_file.h"

namespace base {

namespace {

/// Where a value lies in a profile's bytes, or, when the key is missing, where its line is to be added.
struct Place
{
    qsizetype at = 0;
    std::optional<qsizetype> length{}; ///< of the value with its quotes, without the blanks around it
    bool hasSection = false;
};

} // namespace

/// Some editors begin a UTF-8 file with a byte order mark.
static qsizetype bomSize(QByteArrayView content)
{
    return content.startsWith("\xEF\xBB\xBF") ? 3 : 0;
}

static bool sameName(QByteArrayView one, QByteArrayView other)
{
    return one.trimmed().compare(other.trimmed(), Qt::CaseInsensitive) == 0;
}

static Place locate(QByteArrayView content, QByteArrayView section, QByteArrayView key)
{
    Place place{.at = content.size()};
    for (qsizetype start = bomSize(content), next = 0; start < content.size(); start = next) {
        const qsizetype lineFeed = content.indexOf('\n', start);
        next = lineFeed < 0 ? content.size() : lineFeed + 1;
        const QByteArrayView line = content.sliced(start, next - start).trimmed();
        const qsizetype bracket = line.indexOf(']');
        const qsizetype equals = line.indexOf('=');
        if (line.startsWith('[') && bracket > 0) {
            if (place.hasSection)
                break;
            place.hasSection = sameName(line.sliced(1, bracket - 1), section);
        } else if (place.hasSection && equals >= 0 && sameName(line.first(equals), key)) {
            const QByteArrayView value = line.sliced(equals + 1).trimmed();
            return {value.data() - content.data(), value.size(), true};
        }
        if (place.hasSection && !line.isEmpty())
            place.at = next;
    }
    return place;
}

static QByteArrayView unquoted(QByteArrayView value)
{
    const bool quoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return quoted ? value.sliced(1, value.size() - 2) : value;
}

/// A value as it stands in its line, so that it is read back unchanged and cannot become a second line.
static QByteArray inLine(QByteArrayView value)
{
    const QByteArray text = value.toByteArray().replace('\r', ' ').replace('\n', ' ');
    return unquoted(QByteArrayView(text).trimmed()) == text ? text : '"' + text + '"';
}

static QByteArray lineEndOf(QByteArrayView content)
{
    const qsizetype lineFeed = content.indexOf('\n');
    const bool bare = lineFeed >= 0 && !content.first(lineFeed).endsWith('\r');
    return bare ? "\n" : "\r\n";
}

std::optional<QByteArray> findValue(QByteArrayView content, QByteArrayView section, QByteArrayView key)
{
    const Place place = locate(content, section, key);
    if (!place.length)
        return std::nullopt;
    return unquoted(content.sliced(place.at, *place.length)).toByteArray();
}

QByteArray withValue(QByteArray content, QByteArrayView section, QByteArrayView key, QByteArrayView value)
{
    const Place place = locate(content, section, key);
    if (place.length)
        return content.replace(place.at, *place.length, inLine(value));

    const QByteArray lineEnd = lineEndOf(content);
    QByteArray added = key.toByteArray() + '=' + inLine(value);
    if (!place.hasSection)
        added.prepend('[' + section.toByteArray() + ']' + lineEnd);
    const bool isAfterOpenLine = place.at > bomSize(content) && content.at(place.at - 1) != '\n';
    return content.insert(place.at, isAfterOpenLine ? lineEnd + added : added + lineEnd);
}

} // namespace base
