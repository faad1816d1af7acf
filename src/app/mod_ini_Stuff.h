#pragma once

#include <QString>

/// The settings file, one value at a time.
namespace mod_ini_Stuff {

/// The value of a key in the profile `file`, at most 2047 characters of it. `defaultText` when the file
/// cannot be read, the section or the key is missing or the value is empty.
QString ReadIni(const QString &file, const QString &section, const QString &key, const QString &defaultText);

/// Sets the value of a key in the profile `file`, which is made when it is missing. False on any error.
bool WriteIni(const QString &file, const QString &section, const QString &key, const QString &value);

} // namespace mod_ini_Stuff
