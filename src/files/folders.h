#pragma once

#include <QString>

namespace files {

/// The folder that holds the programs' settings folders: the value of the environment variable "AppData",
/// or, where that is unset or empty, the desktop's own configuration folder, which is made when it is
/// missing.
QString settingsBaseFolder();

/// The file name of the running program without its folder and its extension.
QString executableName();

/// The folder that holds the running program.
QString executableFolder();

/// Makes one folder in a folder that exists. False when that fails; a folder that is already there is a
/// failure.
bool createFolder(const QString &path);

} // namespace files
