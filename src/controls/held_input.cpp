#include "held_input.h"

#include <QApplication>
#include <QEvent>

namespace controls {

namespace {

/// Input as it comes from the system, before a window hands it to one of its controls, and the shortcuts that
/// Qt has already made of it.
bool isInput(const QObject *receiver, const QEvent *event)
{
    if (event->type() == QEvent::Shortcut)
        return true;
    return receiver->isWindowType() && event->isInputEvent() && event->type() != QEvent::ShortcutOverride &&
           event->type() != QEvent::Enter;
}

} // namespace

HeldInput::HeldInput()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    qApp->installEventFilter(this);
}

HeldInput::~HeldInput()
{
    qApp->removeEventFilter(this);
    QApplication::restoreOverrideCursor();
    for (auto &[receiver, event] : m_events) {
        if (receiver)
            QCoreApplication::postEvent(receiver, event.release());
    }
}

bool HeldInput::eventFilter(QObject *receiver, QEvent *event)
{
    if (!isInput(receiver, event) || QApplication::activeModalWidget())
        return false;
    m_events.emplace_back(receiver, event->clone());
    event->ignore(); // leaves Alt+F4 to the system
    return true;
}

} // namespace controls
