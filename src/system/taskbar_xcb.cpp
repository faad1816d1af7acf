#include "taskbar.h"

#include <QGuiApplication>
#include <QWidget>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace os {

static xcb_atom_t atom(xcb_connection_t *display, QByteArrayView name)
{
    const auto request = xcb_intern_atom(display, false, static_cast<uint16_t>(name.size()), name.data());
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(display, request, nullptr), std::free);
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

/// Qt does not set SKIP_TASKBAR for tool windows; when it shows the window it keeps what is set here.
void keepOffTaskbar(const QWidget *window)
{
    if (QGuiApplication::platformName() != QStringLiteral("xcb"))
        return;
    xcb_connection_t *display = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    const xcb_atom_t skip = atom(display, "_NET_WM_STATE_SKIP_TASKBAR");
    xcb_change_property(display, XCB_PROP_MODE_APPEND, static_cast<xcb_window_t>(window->winId()),
                        atom(display, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32, 1, &skip);
}

} // namespace os
