#include "mod_ini_Stuff.h"

#include "profile_file.h"

namespace app {

namespace {

constexpr qsizetype bufferSize = 2048;

} // namespace

QString ReadIni(const QString &file, const QString &section, const QString &key, const QString &defaultText)
{
    const auto value = files::readProfileString(file, section, key, QString(), bufferSize);
    if (!value)
        return QString();
    return value->isEmpty() ? defaultText : *value;
}

bool WriteIni(const QString &file, const QString &section, const QString &key, const QString &value)
{
    return files::writeProfileString(file, section, key, value);
}

} // namespace app
