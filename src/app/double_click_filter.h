#pragma once

#include <QObject>
#include <QPointer>

class QCoreApplication;

namespace app {

/// Takes the second click of a double click away from a window that did not get the first. That one closed
/// the window above or opened this one, so the user did not aim at what lies here. Install on the
/// application.
class DoubleClickFilter : public QObject
{
    Q_OBJECT

public:
    explicit DoubleClickFilter(QCoreApplication &application);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<QObject> m_pressed; // the windows of the last two presses
    QPointer<QObject> m_pressedBefore;
    bool m_takesRelease = false;
};

} // namespace app
