#include "modMain.h"

#include "frmMain.h"
#include "mod_ini_Stuff.h"
#include "quit_requests.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QSessionManager>
#include <QStandardPaths>

#include <cstdlib>

using mod_ini_Stuff::ReadIni;
using mod_ini_Stuff::WriteIni;

namespace modMain {

QString SettingsPath;
static voice::VoiceChoice Voice;

const QString section = QStringLiteral("Options");
const QString fontSizeKey = QStringLiteral("FontSz");
const QString intervalKey = QStringLiteral("AutoCallTm");

/// The main window, while it holds settings to be saved.
static QPointer<frmMain> board;

static bool DirExists(const QString &path)
{
    return QFileInfo(path).isDir();
}

static void LoadSettings(frmMain &window)
{
    const QString fontSize = ReadIni(SettingsPath, section, fontSizeKey, window.fontSizeText());
    window.applySettings(fontSize, ReadIni(SettingsPath, section, intervalKey, window.intervalText()));
}

/// A failure is not reported.
static void SaveSettings()
{
    if (!board)
        return;
    WriteIni(SettingsPath, section, fontSizeKey, board->fontSizeText());
    WriteIni(SettingsPath, section, intervalKey, board->intervalText());
}

static void endForSystem()
{
    if (board)
        board->close();
    else
        std::_Exit(EXIT_SUCCESS); // at the error box of the start, or again: nothing to save
}

/// Install before the first message box: SIGTERM must work there too.
static void listenToSystem()
{
    os::onQuitRequest(endForSystem);
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, qApp, SaveSettings, Qt::DirectConnection);
    // When it loses the display Qt 6.11 leaves the event loop, and an older one calls exit().
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, SaveSettings);
    std::atexit(SaveSettings);
}

/// Ends the program when the window is closed. It is not deleted here: one of its handlers may be waiting for
/// an answer.
static void endWith(frmMain *window)
{
    QObject::connect(window, &frmMain::unloading, qApp, [] {
        SaveSettings();
        board = nullptr;
        QCoreApplication::exit();
    });
}

/// The folder of the programs' settings folders: "AppData" where that is set, else the desktop's.
static QString settingsBaseFolder()
{
    const QString appData = qEnvironmentVariable("AppData");
    return appData.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                             : appData;
}

/// The file name of the running program without its extension.
static QString executableName()
{
    const QString name = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
    // Qt gives no path that is not valid in the locale's encoding.
    return name.isEmpty() ? QCoreApplication::applicationName() : name;
}

std::unique_ptr<QWidget> Main()
{
    Voice = {};
    listenToSystem();
    auto window = std::make_unique<frmMain>(Voice);
    endWith(window.get());

    const QString name = QDir::separator() + executableName();
    const QString folder = settingsBaseFolder() + name;
    if (!DirExists(folder))
        QDir().mkpath(folder);
    SettingsPath = folder + name + QStringLiteral(".ini");
    LoadSettings(*window);
    board = window.get();

    window->clearDisplays();
    window->BuildButts();
    window->DrawBoards();
    window->BuildDemo();
    window->show();
    window->activateWindow(); // where no window manager does it
    return window;
}

} // namespace modMain
