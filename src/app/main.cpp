#include "app/modMain.h"
#include "platform/appearance.h"
#include "platform/application.h"
#include "platform/quiet_start.h"

#include <optional>

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
    modMain::Main();
    return platform::Application::exec();
}
