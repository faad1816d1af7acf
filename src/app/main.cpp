#include "appearance.h"
#include "application.h"
#include "modMain.h"

#include <QIcon>
#include <QImageReader>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

/// What a window shows in its caption, in a taskbar and where one window is chosen among all.
static QIcon programIcon()
{
    QIcon icon;
    for (const int size : {16, 32, 48, 128}) {
        QImageReader reader(QStringLiteral(":/icons/vellomir-%1.png").arg(size), "png");
        reader.setAutoDetectImageFormat(false); // else every image plugin of the desktop is loaded
        icon.addPixmap(QPixmap::fromImageReader(&reader));
    }
    return icon;
}

/// Ends the program where no window can be opened, with one line in place of Qt's several and its abort.
static void reportNoDisplay(QtMsgType type, const QMessageLogContext &, const QString &)
{
    if (type != QtFatalMsg)
        return;
    std::fputs("vellomir: cannot open a window: no display, or no Qt platform plugin for it\n", stderr);
    std::_Exit(EXIT_FAILURE);
}

int main(int argc, char *argv[])
{
    app::Application::setDesktopSettingsAware(false);
    app::Application::setApplicationName(QStringLiteral(VELLOMIR_NAME));
    app::Application::setApplicationVersion(QStringLiteral(VELLOMIR_VERSION));
    // Frames are whole device pixels at any factor, and so a pixel of the layout is 15 twips on every screen.
    app::Application::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    int argumentCount = std::min(argc, 1); // the program's name: Qt's own options do nothing
    const QtMessageHandler formerHandler = qInstallMessageHandler(reportNoDisplay);
    app::Application application(argumentCount, argv);
    qInstallMessageHandler(formerHandler);
    app::Application::setQuitOnLastWindowClosed(false); // closing the main window ends the program
    controls::applyAppearance(application);
    app::Application::setWindowIcon(programIcon());
    const auto window = modMain::Main();
    return app::Application::exec();
}
