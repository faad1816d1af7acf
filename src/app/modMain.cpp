#include "modMain.h"

#include "folders.h"
#include "frmMain.h"
#include "mod_ini_Stuff.h"
#include "quit_requests.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>

#include <cstdlib>

namespace modMain {

QString SettingsPath;
VoiceChoice Voice;

namespace {

const QString section = QStringLiteral("Options");
const QString fontSizeKey = QStringLiteral("FontSz");
const QString intervalKey = QStringLiteral("AutoCallTm");

/// The main window, from when it holds the settings until it is destroyed.
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
        std::_Exit(EXIT_SUCCESS); // at the error box of the start there is nothing to keep yet
}

/// Must be there before the first box is: hears the system's wish that the program end.
void hearSystem()
{
    auto *signals = new os::QuitRequests(qApp);
    QObject::connect(signals, &os::QuitRequests::ended, qApp, endForSystem);
    QObject::connect(signals, &os::QuitRequests::saveRequested, qApp, saveOpenBoard);
    std::atexit(saveOpenBoard); // so does Qt leave when the display is gone
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
    hearSystem();
    auto *window = new frmMain(Voice);
    endWith(window);

    const QString folder = files::settingsBaseFolder() + QDir::separator() + files::executableName();
    if (!DirExists(folder))
        files::createFolder(folder);
    SettingsPath = folder + QDir::separator() + files::executableName() + QStringLiteral(".ini");
    LoadSettings(*window);
    board = window;

    window->clearDisplays();
    window->BuildButts();
    window->DrawBoards();
    window->BuildDemo();
    window->show();
}

} // namespace modMain
