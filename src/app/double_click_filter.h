#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>

class QCoreApplication;
class QMouseEvent;

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
    bool isSecondElsewhere(QObject &window, const QMouseEvent &press);

    // The last press.
    QPointer<QObject> m_window;
    Qt::MouseButton m_button = Qt::NoButton;
    quint64 m_time = 0; // milliseconds
    QPoint m_place;     // on the screen

    bool m_drops = false; // what belongs to this press
};

} // namespace app
