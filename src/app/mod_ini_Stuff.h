#pragma once

#include <QString>

/// The settings file, one value at a time: a profile of at most 1 MiB in the system code page.
namespace mod_ini_Stuff {

/// The value of a key in the profile `file`, at most 2047 characters of it. `defaultText` when the section or
/// the key is missing, the value is empty, or the file is missing or cannot be read: no regular file, no
/// permission, too large, UTF-16.
QString ReadIni(const QString &file, const QString &section, const QString &key, const QString &defaultText);

/// Sets the value of a key in the profile `file`, which is made when it is missing (its folder is not). The
/// save replaces the whole file or nothing; only where the folder takes no new file it writes into the old
/// one. A link stays a link, and permissions stay. False on any error, also when the file cannot be read, and
/// then it is as it was. A value that already reads as `value` keeps its bytes. Characters that the code page
/// lacks are replaced.
bool WriteIni(const QString &file, const QString &section, const QString &key, const QString &value);

} // namespace mod_ini_Stuff
