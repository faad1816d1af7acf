#include "appearance.h"
#include "application.h"
#include "held_keys.h"
#include "modMain.h"
#include "quiet_start.h"

#include <QIcon>
#include <QImageReader>

#include <optional>

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

} // namespace

int main(int argc, char *argv[])
{
    app::Application::setDesktopSettingsAware(false);
    app::Application::setApplicationName(QStringLiteral("Vellomir"));
    app::Application::setApplicationVersion(QStringLiteral(VELLOMIR_VERSION));
    // A factor between whole ones would cut frames; the windows are laid out by dots per inch instead.
    app::Application::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::Floor);
    std::optional<os::QuietStart> start(std::in_place);
    app::Application application(argc, argv);
    start.reset();
    const controls::HeldKeys heldKeys(application);
    app::Application::setQuitOnLastWindowClosed(false); // closing the main window ends the program
    controls::applyAppearance(application);
    app::Application::setWindowIcon(programIcon());
    modMain::Main();
    return app::Application::exec();
}
