#include "app/modMain.h"
#include "platform/appearance.h"
#include "platform/application.h"
#include "platform/quiet_start.h"

#include <QIcon>
#include <QImageReader>

#include <optional>

namespace {

/// The sizes that a window shows. The larger ones are for the desktop, which has them installed.
QIcon programIcon()
{
    QIcon icon;
    for (const int size : {16, 32, 48}) {
        QImageReader reader(QStringLiteral(":/icons/vellomir-%1.png").arg(size), "png");
        reader.setAutoDetectImageFormat(false); // else every image plugin of the desktop is loaded
        icon.addPixmap(QPixmap::fromImageReader(&reader));
    }
    return icon;
}

} // namespace

int main(int argc, char *argv[])
{
    platform::Application::setDesktopSettingsAware(false);
    platform::Application::setApplicationName(QStringLiteral("Vellomir"));
    platform::Application::setApplicationVersion(QStringLiteral(VELLOMIR_VERSION));
    std::optional<platform::QuietStart> start(std::in_place);
    platform::Application application(argc, argv);
    start.reset();
    platform::Application::setQuitOnLastWindowClosed(false); // closing the main window ends the program
    platform::applyAppearance(application);
    platform::Application::setWindowIcon(programIcon());
    modMain::Main();
    return platform::Application::exec();
}
