#include "app/modMain.h"

#include "board/frmMain.h"
#include "platform/folders.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>

#include <memory>

namespace modMain {

QString SettingsPath;

bool DirExists(const QString &path)
{
    return QFileInfo(path).isDir();
}

void Main()
{
    static std::unique_ptr<frmMain> window;
    window = std::make_unique<frmMain>();
    QObject::connect(window.get(), &frmMain::unloading, qApp, [] { QCoreApplication::exit(); });
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, [] { window.reset(); });

    const QString name = platform::executableName();
    const QString folder = platform::settingsBaseFolder() + QDir::separator() + name;
    if (!DirExists(folder))
        platform::createFolder(folder);
    SettingsPath = folder + QDir::separator() + name + QStringLiteral(".ini");

    window->clearDisplays();
    window->BuildButts();
    window->DrawBoards();
    window->BuildDemo();
    window->show();
}

} // namespace modMain
