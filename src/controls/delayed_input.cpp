#include "delayed_input.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <utility>
#include <vector>

namespace controls {

/// What the system sends to a window, and the shortcuts that Qt has already made of it.
static bool isInput(const QObject *receiver, const QEvent *event)
{
    if (event->type() == QEvent::Shortcut)
        return true;
    return receiver->isWindowType() && event->isInputEvent() && event->type() != QEvent::ShortcutOverride &&
           event->type() != QEvent::Enter;
}

static bool isClick(const QEvent *event)
{
    return event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease ||
           event->type() == QEvent::MouseButtonDblClick;
}

/// Sends a copy of `event`, which is made when it is sent: copies share their position, and a later event of
/// the same mouse would change it.
static std::function<void()> delivery(const QPointer<QObject> &receiver, const QMouseEvent &event)
{
    return [receiver, type = event.type(), place = event.position(), onScreen = event.globalPosition(),
            button = event.button(), buttons = event.buttons(), modifiers = event.modifiers(),
            device = event.pointingDevice(), time = event.timestamp()] {
        QMouseEvent copy(type, place, place, onScreen, button, buttons, modifiers, device);
        copy.setTimestamp(time);
        if (receiver)
            QCoreApplication::sendEvent(receiver, &copy);
    };
}

static std::function<void()> delivery(const QPointer<QObject> &receiver, const QEvent &event)
{
    return [receiver, copy = std::shared_ptr<QEvent>(event.clone())] {
        if (receiver)
            QCoreApplication::sendEvent(receiver, copy.get());
    };
}

/// Waits while a message box is open: the windows under it would take nothing.
static void deliverAll(const std::vector<std::function<void()>> &deliveries)
{
    if (QApplication::activeModalWidget())
        return QTimer::singleShot(50, qApp, [deliveries] { deliverAll(deliveries); });
    for (const auto &deliver : deliveries)
        deliver();
}

namespace {

class DelayedInput : public QObject
{
public:
    DelayedInput()
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        qApp->installEventFilter(this);
    }

    ~DelayedInput() override
    {
        QApplication::restoreOverrideCursor();
        QMetaObject::invokeMethod(
            qApp, [deliveries = std::move(m_deliveries)] { deliverAll(deliveries); }, Qt::QueuedConnection);
    }

    bool eventFilter(QObject *receiver, QEvent *event) override
    {
        if (!isInput(receiver, event) || QApplication::activeModalWidget())
            return false;
        if (isClick(event))
            m_deliveries.push_back(delivery(receiver, *static_cast<QMouseEvent *>(event)));
        else if (!event->isPointerEvent()) // of the mouse only its clicks are kept
            m_deliveries.push_back(delivery(receiver, *event));
        event->ignore(); // leaves Alt+F4 to the system
        return true;
    }

private:
    std::vector<std::function<void()>> m_deliveries; ///< each sends one event that was kept
};

} // namespace

std::unique_ptr<QObject> delayInput()
{
    return std::make_unique<DelayedInput>();
}

} // namespace controls
