#include "double_click_filter.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>

#include <utility>

namespace app {

bool DoubleClickFilter::swallows(QObject &receiver, const QEvent &event)
{
    if (!receiver.isWindowType())
        return false;
    switch (event.type()) {
    case QEvent::MouseButtonPress: // comes before each MouseButtonDblClick, too
        m_drops = isSecondElsewhere(receiver, static_cast<const QMouseEvent &>(event));
        return m_drops;
    case QEvent::MouseButtonDblClick:
        return m_drops;
    case QEvent::MouseButtonRelease:
        return std::exchange(m_drops, false);
    default:
        return false;
    }
}

/// MouseButtonDblClick does not tell: Qt 6.11 does not send it where another window got the first click.
bool DoubleClickFilter::isSecondElsewhere(QObject &window, const QMouseEvent &press)
{
    const QStyleHints &hints = *QGuiApplication::styleHints();
    const QPoint moved = press.globalPosition().toPoint() - m_place;
    const bool isSecond = m_button == press.button() &&
                          press.timestamp() - m_time < quint64(hints.mouseDoubleClickInterval()) &&
                          moved.manhattanLength() <= hints.mouseDoubleClickDistance();
    const bool isElsewhere = m_window != &window;
    m_window = &window;
    m_button = press.button();
    m_time = press.timestamp();
    m_place = press.globalPosition().toPoint();
    return isSecond && isElsewhere;
}

} // namespace app
