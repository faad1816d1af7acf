#include "application.h"

#include "error.h"
#include "message_box.h"

namespace app {

bool Application::notify(QObject *receiver, QEvent *event)
{
    constexpr int unexpected = -1; // the number of a failure that has none of its own
    // Not as a filter: Qt's filter for screen readers comes first, and has the keys by then.
    if (m_heldKeys.eventFilter(receiver, event))
        return true;
    try {
        return QApplication::notify(receiver, event);
    } catch (const files::Error &error) {
        controls::reportError(activeWindow(), error);
    } catch (const std::exception &error) {
        controls::reportError(activeWindow(), {unexpected, QString::fromLocal8Bit(error.what())});
    }
    return true;
}

} // namespace app
