#include "application.h"

#include "error.h"
#include "message_box.h"

namespace app {

bool Application::notify(QObject *receiver, QEvent *event)
{
    // Not in an event filter: Qt's own for screen readers would come first, and take the keys.
    if (m_heldKeys.swallows(*receiver, *event) || m_doubleClickFilter.swallows(*receiver, *event))
        return true;
    try {
        return QApplication::notify(receiver, event);
    } catch (const base::Error &error) {
        controls::reportError(activeWindow(), error);
    } catch (const std::exception &error) {
        controls::reportError(activeWindow(), {-1, QString::fromLocal8Bit(error.what())}); // it has no number
    }
    return true;
}

} // namespace app
