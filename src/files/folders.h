#pragma once

#include <QString>

namespace files {

/// The folder that holds the programs' settings folders: the value of the environment variable "AppData",
/// or, where that is unset or empty, the desktop's own configuration folder, which is made when it is
/// missing.
QString settingsBaseFolder();

/// The file name of the running program without its folder and its extension.
QString executableName();

} // namespace files
