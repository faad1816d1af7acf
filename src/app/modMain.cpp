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
voice::VoiceChoice Voice;

namespace {

const QString section = QStringLiteral("Options");
const QString fontSizeKey = QStringLiteral("FontSz");
const QString intervalKey = QStringLiteral("AutoCallTm");

/// The main window; null until it holds the settings.
QPointer<frmMain> board;

void saveOpenBoard()
{
    if (board)
        SaveSettings(*board);
}

void endForSystem()
{
    if (board)
        board->close();
    else
        std::_Exit(EXIT_SUCCESS); // at the error box of the start: nothing to save yet
}

/// Install before the first message box: SIGTERM must work there too.
void listenToSystem()
{
    os::onQuitRequest(endForSystem);
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, qApp, saveOpenBoard, Qt::DirectConnection);
    std::atexit(saveOpenBoard); // Qt calls exit() when it loses the display
}

/// Ends the program when the window is closed.
void endWith(frmMain *window)
{
    QObject::connect(window, &frmMain::unloading, qApp, [window] {
        SaveSettings(*window);
        QCoreApplication::exit();
    });
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, [window] { delete window; });
}

/// The folder of the programs' settings folders: "AppData" where that is set, else the desktop's.
QString settingsBaseFolder()
{
    QString folder = qEnvironmentVariable("AppData");
    if (folder.isEmpty()) {
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
        QDir().mkpath(folder);
    }
    return folder;
}

/// The file name of the running program without its extension.
QString executableName()
{
    const QString name = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
    // Qt gives no path that is not valid in the locale's encoding.
    return name.isEmpty() ? QCoreApplication::applicationName() : name;
}

} // namespace

bool DirExists(const QString &path)
{
    return QFileInfo(path).isDir();
}

void LoadSettings(frmMain &window)
{
    const QString fontSize = ReadIni(SettingsPath, section, fontSizeKey, window.fontSizeText());
    window.applySettings(fontSize, ReadIni(SettingsPath, section, intervalKey, window.intervalText()));
}

void SaveSettings(const frmMain &window)
{
    WriteIni(SettingsPath, section, fontSizeKey, window.fontSizeText());
    WriteIni(SettingsPath, section, intervalKey, window.intervalText());
}

void Main()
{
    Voice = {};
    listenToSystem();
    auto *window = new frmMain(Voice);
    endWith(window);

    const QString name = QDir::separator() + executableName();
    const QString folder = settingsBaseFolder() + name;
    if (!DirExists(folder))
        QDir().mkdir(folder);
    SettingsPath = folder + name + QStringLiteral(".ini");
    LoadSettings(*window);
    board = window;

    window->clearDisplays();
    window->BuildButts();
    window->DrawBoards();
    window->BuildDemo();
    window->show();
}

} // namespace modMain
