#include "mod_ini_Stuff.h"

#include "profile_file.h"
#include "text_file.h"

#include <QFileInfo>
#include <QSaveFile>
#include <QStringConverter>

namespace mod_ini_Stuff {

constexpr qsizetype largestFile = 1'048'576;

/// The bytes of a profile, none when there is no file; nothing when it cannot be read.
static std::optional<QByteArray> contentOf(const QString &path)
{
    if (!QFileInfo::exists(path))
        return QByteArray();
    std::optional<QByteArray> content = base::readBytes(path, largestFile + 1);
    const auto encoding = QStringConverter::encodingForData(content.value_or(QByteArray()), u'[');
    const bool isUnicode = encoding && *encoding != QStringConverter::Utf8;
    return content && content->size() <= largestFile && !isUnicode ? content : std::nullopt;
}

/// Writes beside the file, syncs and renames.
static bool replaceFile(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() &&
           file.flush() && // `commit` alone does not see this fail
           file.commit();
}

/// Writes into the existing file, for a folder in which no new file can be made. When the new bytes do not
/// fit, the old ones are written back. The file is shortened last: a crash before that leaves the new bytes
/// followed by the end of the old ones.
static bool overwriteFile(const QString &path, const QByteArray &content, const QByteArray &former)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered))
        return false;
    const bool written = file.write(content) == content.size();
    if (!written && file.seek(0))
        file.write(former);
    return file.resize(written ? content.size() : former.size()) && written;
}

static std::optional<QString> valueIn(const QByteArray &content, const QString &section, const QString &key)
{
    const auto value = base::findValue(content, section.toLocal8Bit(), key.toLocal8Bit());
    return value ? std::optional(QString::fromLocal8Bit(*value)) : std::nullopt;
}

QString ReadIni(const QString &file, const QString &section, const QString &key, const QString &defaultText)
{
    constexpr qsizetype longestValue = 2047;
    const QByteArray content = contentOf(file).value_or(QByteArray());
    const QString value = valueIn(content, section, key).value_or(QString()).left(longestValue);
    return value.isEmpty() ? defaultText : value;
}

bool WriteIni(const QString &file, const QString &section, const QString &key, const QString &value)
{
    const std::optional<QByteArray> former = contentOf(file);
    if (!former || valueIn(*former, section, key) == value)
        return former.has_value();
    const QByteArray content =
        base::withValue(*former, section.toLocal8Bit(), key.toLocal8Bit(), value.toLocal8Bit());
    return content.size() <= largestFile &&
           (replaceFile(file, content) || overwriteFile(file, content, *former));
}

} // namespace mod_ini_Stuff
