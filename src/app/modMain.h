#pragma once

#include <QWidget>

#include <memory>

/// Start-up: what happens before the first event of the main window.
namespace modMain {

/// The full path of the settings file.
extern QString SettingsPath;

/// Makes the main window, loads the settings, draws the empty board and shows the window. Keep it until the
/// event loop has ended.
[[nodiscard]] std::unique_ptr<QWidget> Main();

} // namespace modMain
