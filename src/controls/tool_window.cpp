#include "tool_window.h"

#include "taskbar.h"

#include <QScreen>
#include <QWidget>

namespace controls {

namespace {

/// What the desktop puts around a window. It is known of windows on screen only, so it is taken from the
/// parent.
QSize frameOf(const QWidget *window)
{
    const QWidget *parent = window->parentWidget();
    return parent ? parent->window()->frameSize() - parent->window()->size() : QSize(0, 0);
}

} // namespace

void makeToolWindow(QWidget *window)
{
    window->setWindowFlags(Qt::Tool | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
                           Qt::CustomizeWindowHint);
    window->setAttribute(Qt::WA_DeleteOnClose);
}

QSize roomFor(const QWidget *window)
{
    return window->screen()->availableSize() - frameOf(window);
}

void centreOnScreen(QWidget *window)
{
    const QSize outer = window->size() + frameOf(window);
    window->move(window->screen()->geometry().center() - QPoint(outer.width() / 2, outer.height() / 2));
}

void showInFront(QWidget *window)
{
    if (!window->isVisible() && window->windowType() == Qt::Tool)
        os::keepOffTaskbar(window);
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
}

} // namespace controls
