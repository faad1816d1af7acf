#include "held_keys.h"

#include <QKeyEvent>
#include <QOperatingSystemVersion>

namespace app {

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

/// While a screen reader listens, Qt takes the keys from their windows and sends copies later, without a
/// time.
bool isCopy(const QKeyEvent &key)
{
    return key.timestamp() == 0;
}

} // namespace

bool HeldKeys::swallows(const QObject &receiver, const QEvent &event)
{
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
