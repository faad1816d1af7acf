#include "app/modMain.h"
#include "platform/appearance.h"
#include "platform/quiet_start.h"

#include <QApplication>

#include <optional>

int main(int argc, char *argv[])
{
    QApplication::setDesktopSettingsAware(false);
    QApplication::setApplicationName(QStringLiteral("vellomir"));
    QApplication::setApplicationDisplayName(QStringLiteral("Vellomir"));
    QApplication::setApplicationVersion(QStringLiteral(VELLOMIR_VERSION));
    std::optional<platform::QuietStart> start(std::in_place);
    QApplication application(argc, argv);
    start.reset();
    platform::applyAppearance(application);
    modMain::Main();
    return QApplication::exec();
}
