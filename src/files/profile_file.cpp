#include "profile_file.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace files {

namespace {

constexpr qint64 largestFile = 1'048'576;

/// Where a value lies in a profile's bytes, or, when the key is missing, where its line is to be added.
struct Place
{
    qsizetype at = 0;
    qsizetype length = 0; ///< of the value with its quotes, without the blanks around it
    bool hasSection = false;
    bool hasKey = false;
};

/// The size of the byte order mark with which some editors begin a file in UTF-8.
qsizetype markSize(QByteArrayView content)
{
    return content.startsWith("\xEF\xBB\xBF") ? 3 : 0;
}

bool sameName(QByteArrayView one, QByteArrayView other)
{
    return one.trimmed().compare(other.trimmed(), Qt::CaseInsensitive) == 0;
}

std::optional<QByteArrayView> sectionName(QByteArrayView line)
{
    const qsizetype end = line.indexOf(']');
    if (!line.startsWith('[') || end < 0)
        return std::nullopt;
    return line.sliced(1, end - 1);
}

std::optional<QByteArrayView> valueOf(QByteArrayView key, QByteArrayView line)
{
    const qsizetype equals = line.indexOf('=');
    if (equals < 0 || !sameName(line.first(equals), key))
        return std::nullopt;
    return line.sliced(equals + 1).trimmed();
}

Place locate(QByteArrayView content, QByteArrayView section, QByteArrayView key)
{
    Place place{.at = content.size()};
    for (qsizetype start = markSize(content), next = 0; start < content.size(); start = next) {
        const qsizetype lineFeed = content.indexOf('\n', start);
        next = lineFeed < 0 ? content.size() : lineFeed + 1;
        const QByteArrayView line = content.sliced(start, next - start).trimmed();
        if (const auto name = sectionName(line)) {
            if (place.hasSection)
                break;
            place.hasSection = sameName(*name, section);
        } else if (const auto value = valueOf(key, line); value && place.hasSection) {
            return {value->data() - content.data(), value->size(), true, true};
        }
        if (place.hasSection && !line.isEmpty())
            place.at = next;
    }
    return place;
}

QByteArrayView unquoted(QByteArrayView value)
{
    const bool quoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return quoted ? value.sliced(1, value.size() - 2) : value;
}

/// A value as it stands in its line, so that it is read back unchanged and cannot become a second line.
QByteArray inLine(QByteArrayView value)
{
    const QByteArray text = value.toByteArray().replace('\r', ' ').replace('\n', ' ');
    return unquoted(QByteArrayView(text).trimmed()) == text ? text : '"' + text + '"';
}

QByteArray lineEndOf(QByteArrayView content)
{
    const qsizetype lineFeed = content.indexOf('\n');
    const bool bare = lineFeed >= 0 && !content.first(lineFeed).endsWith('\r');
    return bare ? "\n" : "\r\n";
}

/// The bytes of a file, none when there is no file; nothing when they cannot be read or are too many.
std::optional<QByteArray> readWhole(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return QByteArray();
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) // a pipe would keep the reader waiting
        return std::nullopt;
    QByteArray content = file.read(largestFile + 1);
    if (file.error() != QFileDevice::NoError || content.size() > largestFile)
        return std::nullopt;
    return content;
}

/// Writes beside the file, syncs and renames. The flush is there because `commit` alone does not see it fail.
bool replaceWhole(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    return content.size() <= largestFile && file.open(QIODevice::WriteOnly) &&
           file.write(content) == content.size() && file.flush() && file.commit();
}

} // namespace

std::optional<QByteArray> findValue(QByteArrayView content, QByteArrayView section, QByteArrayView key)
{
    const Place place = locate(content, section, key);
    if (!place.hasKey)
        return std::nullopt;
    return unquoted(content.sliced(place.at, place.length)).toByteArray();
}

QByteArray withValue(QByteArray content, QByteArrayView section, QByteArrayView key, QByteArrayView value)
{
    const Place place = locate(content, section, key);
    if (place.hasKey)
        return content.replace(place.at, place.length, inLine(value));

    const QByteArray lineEnd = lineEndOf(content);
    QByteArray added = key.toByteArray() + '=' + inLine(value);
    if (!place.hasSection)
        added.prepend('[' + section.toByteArray() + ']' + lineEnd);
    const bool behindOpenLine = place.at > markSize(content) && content.at(place.at - 1) != '\n';
    return content.insert(place.at, behindOpenLine ? lineEnd + added : added + lineEnd);
}

std::optional<QString> readProfileString(const QString &path, const QString &section, const QString &key,
                                         const QString &defaultText, qsizetype size)
{
    const std::optional<QByteArray> content = readWhole(path);
    if (!content)
        return std::nullopt;
    const auto value = findValue(*content, section.toLocal8Bit(), key.toLocal8Bit());
    return (value ? QString::fromLocal8Bit(*value) : defaultText).left(size - 1);
}

bool writeProfileString(const QString &path, const QString &section, const QString &key, const QString &value)
{
    const std::optional<QByteArray> content = readWhole(path);
    if (!content)
        return false;
    const QByteArray sectionBytes = section.toLocal8Bit();
    const QByteArray keyBytes = key.toLocal8Bit();
    const auto current = findValue(*content, sectionBytes, keyBytes);
    if (current && QString::fromLocal8Bit(*current) == value)
        return true;
    return replaceWhole(path, withValue(*content, sectionBytes, keyBytes, value.toLocal8Bit()));
}

} // namespace files
