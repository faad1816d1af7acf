#pragma once

#include <QString>

class frmMain;

/// Start-up: what happens before the first event of the main window.
namespace modMain {

/// The full path of the settings file, built once at start-up.
extern QString SettingsPath;

/// Makes the main window, finds the settings, draws the empty board and shows the window, which lives until
/// the program ends.
void Main();

bool DirExists(const QString &path);

} // namespace modMain
