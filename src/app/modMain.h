#pragma once

#include "announcement.h"

#include <QString>
#include <QWidget>

#include <memory>

class frmMain;

/// Start-up: what happens before the first event of the main window.
namespace modMain {

/// The full path of the settings file, built once at start-up.
extern QString SettingsPath;

/// The voice and the speed of the spoken calls.
extern voice::VoiceChoice Voice;

/// Makes the main window, loads the settings, draws the empty board and shows the window. Keep it until the
/// event loop has ended.
[[nodiscard]] std::unique_ptr<QWidget> Main();

bool DirExists(const QString &path);

/// Puts the stored settings into the main window's two boxes. What is not stored stays as it is.
void LoadSettings(frmMain &window);
/// Writes the texts of the two boxes, as they stand, into the settings file. A failure is not reported.
void SaveSettings(const frmMain &window);

} // namespace modMain
