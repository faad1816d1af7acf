#include "held_keys.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace controls {

namespace {

bool actsOnce(const QKeyEvent &press)
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

} // namespace

HeldKeys::HeldKeys(QCoreApplication &application)
{
    application.installEventFilter(this);
}

bool HeldKeys::eventFilter(QObject *watched, QEvent *event)
{
    // A window gets a key before the control that has the focus does.
    if (!watched->isWindowType())
        return false;
    if (event->type() == QEvent::KeyPress) {
        const auto &press = static_cast<const QKeyEvent &>(*event);
        return isRepeat(press) && actsOnce(press);
    }
    if (event->type() == QEvent::KeyRelease) {
        const auto &release = static_cast<const QKeyEvent &>(*event);
        m_releasedKey = release.key();
        m_releaseTime = release.timestamp();
    }
    return false;
}

/// On X11 isAutoRepeat is true by chance only: a held key is released and pressed again in the same
/// millisecond, and Qt sees that where both events have arrived when it takes the first.
bool HeldKeys::isRepeat(const QKeyEvent &press) const
{
    return press.isAutoRepeat() || (press.key() == m_releasedKey && press.timestamp() == m_releaseTime);
}

} // namespace controls
