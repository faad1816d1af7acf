#include "tool_window.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#if QT_CONFIG(xcb)
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#endif

namespace controls {

namespace {

/// What the desktop puts around a window. It is known of windows on screen only, so it is taken from the
/// parent.
QSize frameOf(const QWidget *window)
{
    const QWidget *parent = window->parentWidget();
    return parent ? parent->window()->frameSize() - parent->window()->size() : QSize(0, 0);
}

#if QT_CONFIG(xcb)

xcb_atom_t atom(xcb_connection_t *display, QByteArrayView name)
{
    const auto request = xcb_intern_atom(display, false, static_cast<uint16_t>(name.size()), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(display, request, nullptr), std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

/// For a window that is not on screen. Window managers do list tool windows, unless they are told in so many
/// words. Qt does not tell them; when it shows the window it adds its own states to this one.
void keepOffTaskbar(const QWidget *window)
{
    if (QGuiApplication::platformName() != QStringLiteral("xcb"))
        return;
    xcb_connection_t *display = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    const xcb_atom_t skip = atom(display, "_NET_WM_STATE_SKIP_TASKBAR");
    xcb_change_property(display, XCB_PROP_MODE_APPEND, static_cast<xcb_window_t>(window->winId()),
                        atom(display, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32, 1, &skip);
}

#else

void keepOffTaskbar(const QWidget *) {}

#endif

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
        keepOffTaskbar(window);
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
}

} // namespace controls
