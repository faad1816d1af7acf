#include "appearance.h"
#include "application.h"
#include "modMain.h"

#include <QIcon>
#include <QImageReader>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

/// The sizes that a window shows. The larger ones are for the desktop, which has them installed.
QIcon programIcon()
{
    QIcon icon;
    for (const int size : {16, 32}) {
        QImageReader reader(QStringLiteral(":/icons/vellomir-%1.png").arg(size), "png");
        reader.setAutoDetectImageFormat(false); // else every image plugin of the desktop is loaded
        icon.addPixmap(QPixmap::fromImageReader(&reader));
    }
    return icon;
}

/// Ends the program where no window can be opened, with one line in place of Qt's several and its abort.
void reportNoDisplay(QtMsgType type, const QMessageLogContext &, const QString &)
{
    if (type != QtFatalMsg)
        return;
    std::fputs("vellomir: cannot open a window: no display, or no Qt platform plugin for it\n", stderr);
    std::_Exit(EXIT_FAILURE);
}

} // namespace

int main(int argc, char *argv[])
{
    app::Application::setDesktopSettingsAware(false);
    app::Application::setApplicationName(QStringLiteral(VELLOMIR_NAME));
    app::Application::setApplicationVersion(QStringLiteral(VELLOMIR_VERSION));
    // A factor between whole ones would cut frames; the windows are laid out by dots per inch instead.
    app::Application::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::Floor);
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
