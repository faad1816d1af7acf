#include "screen_reader.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QTimer>
#include <QWindow>

namespace controls {

constexpr int mostWaiting = 4;

namespace {

/// Qt takes a container for nothing. One with a name is a group, whether it was named before it was first
/// asked for or after: Qt 6.11 asks earlier than others.
class Container : public QAccessibleWidget
{
public:
    using QAccessibleWidget::QAccessibleWidget;

    QAccessible::Role role() const override
    {
        return widget()->accessibleName().isEmpty() ? QAccessible::Client : QAccessible::Grouping;
    }
};

} // namespace

/// For controls that Qt describes wrongly: it calls a display of numbers a page of text, for one.
static QAccessibleInterface *makeInterface(const QString &className, QObject *object)
{
    auto *widget = qobject_cast<QWidget *>(object);
    if (className == QStringLiteral("controls::RichTextBox"))
        return new QAccessibleWidget(widget, QAccessible::Indicator);
    if (className == QStringLiteral("controls::ScreenReader"))
        return new QAccessibleWidget(widget, QAccessible::StatusBar);
    if (qobject_cast<ScreenReader *>(object->parent()))
        return new QAccessibleWidget(widget, QAccessible::Notification);
    if (className == QStringLiteral("QWidget") && !widget->isWindow())
        return new Container(widget);
    return nullptr;
}

ScreenReader::ScreenReader(QWidget *window)
    : QWidget(window)
{
    QAccessible::installFactory(makeInterface);
    for (QWidget *&notice : m_notices)
        notice = new QWidget(this);
    resize(0, 0);
    connect(qApp, &QGuiApplication::focusWindowChanged, this, [this](QWindow *front) {
        if (front)
            m_opening.clear();
        QTimer::singleShot(0, this, &ScreenReader::sayWaiting); // after what is said of the window
    });
}

void ScreenReader::say(const QString &sentence)
{
    m_waiting += sentence;
    while (m_waiting.size() > mostWaiting)
        m_waiting.removeFirst();
    QTimer::singleShot(0, this, &ScreenReader::sayWaiting);
}

void ScreenReader::sayWaiting()
{
    const bool windowsChange = m_opening && !m_opening->isActiveWindow();
    if (m_waiting.isEmpty() || windowsChange || !QApplication::activeWindow() ||
        QApplication::activeModalWidget())
        return;
    tell(m_waiting.join(QStringLiteral(". ")));
    m_waiting.clear();
}

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
void ScreenReader::tell(const QString &sentence)
{
    QAccessibleAnnouncementEvent event(this, sentence);
    QAccessible::updateAccessibility(&event);
}
#else
/// Qt has no event for this before 6.8, but AT-SPI's screen readers read out a notification that appears in a
/// status bar. One that appears twice in quick succession is read out once, so several take turns.
void ScreenReader::tell(const QString &sentence)
{
    QWidget *notice = m_notices[m_turn++ % m_notices.size()];
    notice->setAccessibleName(sentence);
    QAccessibleEvent event(notice, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&event);
}
#endif

} // namespace controls
