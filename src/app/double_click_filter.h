#pragma once

#include <QPoint>
#include <QPointer>

class QEvent;
class QMouseEvent;

namespace app {

/// Takes the second click of a double click away from a window that did not get the first. That one closed
/// the window above or opened this one, so the user did not aim at what lies here.
class DoubleClickFilter
{
public:
    /// Call this for every event of the application. True for one that must go no further.
    bool swallows(QObject &receiver, const QEvent &event);

private:
    bool isSecondElsewhere(QObject &window, const QMouseEvent &press);

    // The last press.
    QPointer<QObject> m_window;
    Qt::MouseButton m_button = Qt::NoButton;
    quint64 m_time = 0; // milliseconds
    QPoint m_place;     // on the screen

    bool m_drops = false; // what belongs to this press
};

} // namespace app
