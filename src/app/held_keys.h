#pragma once

#include <QElapsedTimer>
#include <QTimer>

class QKeyEvent;
class QWidget;

namespace app {

/// Makes a key that is held act once, in all windows of the application: Enter, Esc, Space, letters and signs
/// do not repeat. Digits do, and so do the keys that move or erase. Alt+F4 closes the window that it was
/// pressed on, and does not go on to the main window, which would end the game.
class HeldKeys
{
public:
    HeldKeys();
    /// Call this for every event of the application. True for one that must go no further.
    bool swallows(const QObject &receiver, QEvent &event);

private:
    bool isRepeat(const QKeyEvent &press) const;
    bool isHeldClose(const QWidget &window);

    // The key that was released last, and when.
    int m_releasedKey = 0;
    quint64 m_releaseTime = 0;
    QElapsedTimer m_sinceClose;  // since the system last asked a window to close
    bool m_closedByKeys = false; // that window had no caption
    QTimer m_altIsDown;          // runs until Alt is seen released
};

} // namespace app
