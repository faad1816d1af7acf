#pragma once

#include <QObject>

class QCoreApplication;
class QKeyEvent;

namespace controls {

/// Makes a key that is held act once, in all windows of the application: Enter, Esc, Space, letters and signs
/// do not repeat. Digits do, and so do the keys that move or erase.
class HeldKeys : public QObject
{
    Q_OBJECT

public:
    explicit HeldKeys(QCoreApplication &application);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool isRepeat(const QKeyEvent &press) const;

    // The key that was released last, and when.
    int m_releasedKey = 0;
    quint64 m_releaseTime = 0;
};

} // namespace controls
