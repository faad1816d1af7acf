#include "tool_window.h"

#include "taskbar.h"

#include <QApplication>
#include <QBackingStore>
#include <QPixmapCache>
#include <QResizeEvent>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace controls {

/// What the desktop puts around a window, as around its owner: it is known of windows on screen only.
static QMargins frameOf(const QWidget *window)
{
    const QWindow *owner = window->parentWidget()->window()->windowHandle();
    return owner ? owner->frameMargins() : QMargins();
}

/// Moves a window that has not been shown yet to the middle of `area`, but inside the work area.
static void centreIn(const QRect &area, QWidget *window)
{
    const QSize outer = window->size().grownBy(frameOf(window));
    moveInside(window, area.center() - QPoint(outer.width() / 2, outer.height() / 2), frameOf(window));
}

/// On X11 a window keeps its size in device pixels when the scale changes, and the desktop keeps the limits
/// of the size that it was told. Qt paints only what has another size in its own pixels.
static void refit(QWidget *window)
{
    QWindow *handle = window->windowHandle();
    const QSize least = handle->minimumSize();
    handle->setMinimumSize(least + QSize(1, 1)); // else Qt does not tell it again
    handle->setMinimumSize(least);
    if (window->windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen)) {
        QResizeEvent resized(handle->size(), window->size());
        QCoreApplication::sendEvent(handle, &resized);
    } else {
        handle->resize(window->size());
        moveInside(window, handle->framePosition(), handle->frameMargins());
    }
    if (QBackingStore *picture = window->backingStore())
        picture->resize(QSize(1, 1)); // else Qt keeps it where only its device pixels have changed
    window->update();
    for (QWidget *part : window->findChildren<QWidget *>())
        part->update();
}

void makeToolWindow(QWidget *window)
{
    window->setWindowFlags(Qt::Tool | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
                           Qt::CustomizeWindowHint);
    window->setAttribute(Qt::WA_DeleteOnClose);
}

QSize largestSize(const QWidget *window)
{
    return window->parentWidget()->screen()->availableSize().shrunkBy(frameOf(window));
}

void centreOnScreen(QWidget *window)
{
    centreIn(window->parentWidget()->screen()->geometry(), window);
}

void moveInside(QWidget *window, QPoint place, QMargins frame)
{
    const QWidget *placed = window->isVisible() || !window->parentWidget() ? window : window->parentWidget();
    const QRect area = placed->screen()->availableGeometry();
    const QPoint last = area.bottomRight() - QRect(QPoint(), window->size().grownBy(frame)).bottomRight();
    const QPoint inside(std::max(area.left(), std::min(place.x(), last.x())),
                        std::max(area.top(), std::min(place.y(), last.y())));
    if (!window->isVisible())
        window->move(inside);
    else if (window->windowHandle()->framePosition() != inside)
        window->windowHandle()->setFramePosition(inside); // QWidget keeps the frame of another scale in mind
}

void refitWindows()
{
    QPixmapCache::clear(); // the style finds its pictures again by their size in pixels, whatever their scale
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && !window->isMinimized())
            refit(window);
    }
}

void showInFront(QWidget *window)
{
    if (window->isWindow() && !window->isVisible()) {
        if (!window->testAttribute(Qt::WA_Moved))
            centreIn(window->parentWidget()->window()->frameGeometry(), window);
        os::keepOffTaskbar(window);
    }
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
}

} // namespace controls
