#include "double_click_filter.h"

#include <QCoreApplication>
#include <QEvent>

#include <utility>

namespace app {

DoubleClickFilter::DoubleClickFilter(QCoreApplication &application)
{
    application.installEventFilter(this);
}

bool DoubleClickFilter::eventFilter(QObject *watched, QEvent *event)
{
    if (!watched->isWindowType())
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress: // comes before each MouseButtonDblClick, too
        m_pressedBefore = std::exchange(m_pressed, watched);
        return false;
    case QEvent::MouseButtonDblClick:
        m_takesRelease = m_pressedBefore != m_pressed;
        return m_takesRelease;
    case QEvent::MouseButtonRelease:
        return std::exchange(m_takesRelease, false);
    default:
        return false;
    }
}

} // namespace app
