#include "menu_bar.h"

#include <QApplication>
#include <QKeyEvent>
#include <QShortcut>

namespace controls {

/// Alt alone opens the bar when it is released.
static bool altIsHeld()
{
    return QApplication::activeWindow() && QGuiApplication::queryKeyboardModifiers() & Qt::AltModifier;
}

MenuBar::MenuBar(QWidget *window)
    : QMenuBar(window)
{
    setNativeMenuBar(false);
    const auto *f10 = new QShortcut(Qt::Key_F10, window);
    connect(f10, &QShortcut::activated, this, &MenuBar::toggle);
    connect(f10, &QShortcut::activatedAmbiguously, this, &MenuBar::toggle);
    connect(qApp, &QApplication::focusChanged, this, &MenuBar::followFocus);
}

/// The focus leaves a bar that is destroyed, too.
MenuBar::~MenuBar()
{
    disconnect(qApp, nullptr, this, nullptr);
}

bool MenuBar::hasKeyboard() const
{
    return hasFocus() || altIsHeld();
}

bool MenuBar::isInUse()
{
    return qobject_cast<QMenuBar *>(QApplication::focusWidget()) || QApplication::activePopupWidget() ||
           altIsHeld();
}

/// Does what Alt alone does, which QMenuBar knows. F10 in a tool window comes to the bar of its parent, too.
void MenuBar::toggle()
{
    QWidget *front = QApplication::activeWindow();
    if (!front)
        return;
    for (const QEvent::Type type : {QEvent::ShortcutOverride, QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, Qt::Key_Alt, Qt::AltModifier);
        QCoreApplication::sendEvent(front, &event);
    }
}

void MenuBar::followFocus(QWidget *old, QWidget *now)
{
    if (now == this && old)
        m_before = old;
    if (old != this || QApplication::activePopupWidget()) // an open menu belongs to the bar
        return;
    // When another window comes to the front QMenuBar keeps the focus, and does nothing with it later.
    if (window()->focusWidget() == this && m_before)
        m_before->setFocus();
    Q_EMIT left();
}

} // namespace controls
