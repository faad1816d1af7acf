#pragma once

#include <QString>

namespace app {

/// The value of a key in the profile `file`, at most 2047 characters of it. `defaultText` when the file, the
/// section or the key is missing or the value is empty; empty text on any error, such as a file that cannot
/// be read.
QString ReadIni(const QString &file, const QString &section, const QString &key, const QString &defaultText);

/// Sets the value of a key in the profile `file`, which is made when it is missing. False on any error, and
/// then the file is as it was.
bool WriteIni(const QString &file, const QString &section, const QString &key, const QString &value);

} // namespace app
