#include "profile_file.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringConverter>

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

/// Some editors begin a UTF-8 file with a byte order mark.
qsizetype bomSize(QByteArrayView content)
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
    for (qsizetype start = bomSize(content), next = 0; start < content.size(); start = next) {
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

bool isUtf16(const QByteArray &content)
{
    const auto encoding = QStringConverter::encodingForData(content, u'[');
    return encoding && *encoding != QStringConverter::Utf8;
}

/// The bytes of a profile, none when there is no file; nothing when it cannot be read.
std::optional<QByteArray> readWhole(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return QByteArray();
    QFile file(path);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) // opening a pipe would wait
        return std::nullopt;
    QByteArray content = file.read(largestFile + 1);
    if (file.error() != QFileDevice::NoError || content.size() > largestFile || isUtf16(content))
        return std::nullopt;
    return content;
}

/// Writes beside the file, syncs and renames.
bool replaceFile(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() &&
           file.flush() && // `commit` alone does not see this fail
           file.commit();
}

/// Writes into the file that is there, for a folder that takes no new file. The old bytes come back when the
/// new ones do not fit. Nothing is cut off first, so that a crash leaves the new bytes, at worst with an old
/// end behind them.
bool overwriteFile(const QString &path, const QByteArray &content, const QByteArray &former)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered))
        return false;
    const bool written = file.write(content) == content.size();
    if (!written && file.seek(0))
        file.write(former);
    return file.resize(written ? content.size() : former.size()) && written;
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
    const bool behindOpenLine = place.at > bomSize(content) && content.at(place.at - 1) != '\n';
    return content.insert(place.at, behindOpenLine ? lineEnd + added : added + lineEnd);
}

QString readProfileString(const QString &path, const QString &section, const QString &key)
{
    const QByteArray content = readWhole(path).value_or(QByteArray());
    const auto value = findValue(content, section.toLocal8Bit(), key.toLocal8Bit());
    return QString::fromLocal8Bit(value.value_or(QByteArray()));
}

bool writeProfileString(const QString &path, const QString &section, const QString &key, const QString &value)
{
    const std::optional<QByteArray> former = readWhole(path);
    if (!former)
        return false;
    const QByteArray sectionBytes = section.toLocal8Bit();
    const QByteArray keyBytes = key.toLocal8Bit();
    const auto current = findValue(*former, sectionBytes, keyBytes);
    if (current && QString::fromLocal8Bit(*current) == value)
        return true;
    const QByteArray content = withValue(*former, sectionBytes, keyBytes, value.toLocal8Bit());
    return content.size() <= largestFile &&
           (replaceFile(path, content) || overwriteFile(path, content, *former));
}

} // namespace files
