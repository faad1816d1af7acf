#include "mod_ini_Stuff.h"

#include "profile_file.h"

namespace mod_ini_Stuff {

QString ReadIni(const QString &file, const QString &section, const QString &key, const QString &defaultText)
{
    constexpr qsizetype longestValue = 2047;
    const QString value = files::readProfileString(file, section, key).left(longestValue);
    return value.isEmpty() ? defaultText : value;
}

bool WriteIni(const QString &file, const QString &section, const QString &key, const QString &value)
{
    return files::writeProfileString(file, section, key, value);
}

} // namespace mod_ini_Stuff
