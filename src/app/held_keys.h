#pragma once

#include <QtGlobal>

class QEvent;
class QKeyEvent;
class QObject;

namespace app {

/// Makes a key that is held act once, in all windows of the application: Enter, Esc, Space, letters and signs
/// do not repeat. Digits do, and so do the keys that move or erase.
class HeldKeys
{
public:
    /// Call this for every event of the application. True for a key press that no window may get.
    bool swallows(const QObject &receiver, const QEvent &event);

private:
    bool isRepeat(const QKeyEvent &press) const;

    // The key that was released last, and when.
    int m_releasedKey = 0;
    quint64 m_releaseTime = 0;
};

} // namespace app
