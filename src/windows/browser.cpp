#include "browser.h"

#include <QDesktopServices>
#include <QUrl>

namespace windows {

void openAddress(const QString &address)
{
    QDesktopServices::openUrl(QUrl(address));
}

} // namespace windows
