#include "held_keys.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QOperatingSystemVersion>
#include <QWidget>

namespace app {

static bool actsOnce(const QKeyEvent &press)
{
    switch (press.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        return true;
    default:
        const QString text = press.text();
        return !text.isEmpty() && text.front().isPrint() && !text.front().isDigit();
    }
}

/// While a screen reader listens, Qt holds the keys back, and sends copies of them later, without a time.
static bool isCopy(const QKeyEvent &key)
{
    return key.timestamp() == 0;
}

HeldKeys::HeldKeys()
{
    m_altIsDown.callOnTimeout([this] {
        if (!(QGuiApplication::queryKeyboardModifiers() & Qt::AltModifier))
            m_altIsDown.stop();
    });
}

bool HeldKeys::swallows(const QObject &receiver, QEvent &event)
{
    if (event.type() == QEvent::Close && event.spontaneous() && receiver.isWidgetType() &&
        isHeldClose(static_cast<const QWidget &>(receiver))) {
        event.ignore();
        return true;
    }
    // A window gets a key before the control that has the focus does.
    if (!receiver.isWindowType())
        return false;
    if (event.type() == QEvent::KeyPress) {
        const auto &press = static_cast<const QKeyEvent &>(event);
        return isRepeat(press) && actsOnce(press);
    }
    if (event.type() == QEvent::KeyRelease) {
        const auto &release = static_cast<const QKeyEvent &>(event);
        if (isCopy(release))
            return false;
        m_releasedKey = release.key();
        m_releaseTime = release.timestamp();
    }
    return false;
}

/// A held Alt+F4 closes a window, and then the one behind it. The system does not say that keys asked for it,
/// so for a second after another window the main one stays open: while Alt is down, and whatever Alt does
/// where the other had no caption, for only keys close that.
bool HeldKeys::isHeldClose(const QWidget &window)
{
    constexpr qint64 pause = 1000; // milliseconds
    const bool isSoon = m_sinceClose.isValid() && m_sinceClose.elapsed() < pause;
    m_sinceClose.start();
    if (window.parentWidget()) {
        m_closedByKeys = window.windowFlags() & Qt::FramelessWindowHint;
        m_altIsDown.start(20);
        return false;
    }
    return isSoon && (m_closedByKeys || m_altIsDown.isActive());
}

/// The X server repeats a held key by a release and a press with the same time. Qt sets isAutoRepeat only
/// when both have arrived by the time it takes the first. On Windows isAutoRepeat is right, and the times are
/// those at which Qt takes the events: equal ones mean nothing.
bool HeldKeys::isRepeat(const QKeyEvent &press) const
{
    if (press.isAutoRepeat() || QOperatingSystemVersion::currentType() == QOperatingSystemVersion::Windows)
        return press.isAutoRepeat();
    return !isCopy(press) && press.key() == m_releasedKey && press.timestamp() == m_releaseTime;
}

} // namespace app
