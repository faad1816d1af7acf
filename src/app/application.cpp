#include "application.h"

#include "error.h"
#include "message_box.h"
#include "sp_voice.h"

namespace app {

namespace {

constexpr int unexpected = -1; // the number of a failure that has none of its own

void report(const files::Error &error)
{
    controls::reportError(QApplication::activeWindow(), error);
}

/// What a user does with keys, mouse, pen or fingers inside a window. Closing a window is not among it.
bool isInput(const QEvent &event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
        return true;
    default:
        return false;
    }
}

} // namespace

bool Application::notify(QObject *receiver, QEvent *event)
{
    if (speech::SpVoice::isWaiting() && isInput(*event) && !activeModalWidget())
        return true;
    try {
        return QApplication::notify(receiver, event);
    } catch (const files::Error &error) {
        report(error);
    } catch (const std::exception &error) {
        report({unexpected, QString::fromLocal8Bit(error.what())});
    } catch (...) {
        report({unexpected, QStringLiteral("Unexpected failure")});
    }
    return true;
}

} // namespace app
