#include "app/modMain.h"

#include "app/mod_ini_Stuff.h"
#include "board/frmMain.h"
#include "platform/end_signals.h"
#include "platform/folders.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>

namespace modMain {

QString SettingsPath;
VoiceChoice Voice;

namespace {

const QString section = QStringLiteral("Options");
const QString fontSizeKey = QStringLiteral("FontSz");
const QString intervalKey = QStringLiteral("AutoCallTm");

/// Ends the program when the window is closed, and closes the window when the system ends the program.
void endWith(frmMain *window)
{
    QObject::connect(window, &frmMain::unloading, qApp, [window] {
        SaveSettings(*window);
        QCoreApplication::exit();
    });
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, [window] { delete window; });

    auto *signals = new platform::EndSignals(qApp);
    QObject::connect(signals, &platform::EndSignals::ended, window, &QWidget::close);
    QObject::connect(signals, &platform::EndSignals::saveRequested, window,
                     [window] { SaveSettings(*window); });
}

} // namespace

bool DirExists(const QString &path)
{
    return QFileInfo(path).isDir();
}

void LoadSettings(frmMain &window)
{
    window.applySettings(app::ReadIni(SettingsPath, section, fontSizeKey, QStringLiteral("33")),
                         app::ReadIni(SettingsPath, section, intervalKey, QStringLiteral("10")));
}

void SaveSettings(const frmMain &window)
{
    app::WriteIni(SettingsPath, section, fontSizeKey, window.fontSizeText());
    app::WriteIni(SettingsPath, section, intervalKey, window.intervalText());
}

void Main()
{
    Voice = {};
    auto *window = new frmMain(Voice);
    endWith(window);

    const QString folder = platform::settingsBaseFolder() + QDir::separator() + platform::executableName();
    if (!DirExists(folder))
        platform::createFolder(folder);
    SettingsPath = folder + QDir::separator() + platform::executableName() + QStringLiteral(".ini");
    LoadSettings(*window);

    window->clearDisplays();
    window->BuildButts();
    window->DrawBoards();
    window->BuildDemo();
    window->show();
}

} // namespace modMain
