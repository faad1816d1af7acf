#include "screen_awake.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QGuiApplication>

#include <xcb/screensaver.h>

#include <utility>

namespace os {

static QDBusMessage inhibit(const char *service, const char *path, const QVariantList &arguments,
                            const char *interface = nullptr)
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface ? interface : service,
                                                       QStringLiteral("Inhibit"));
    call.setArguments(arguments);
    return call;
}

/// What can be called, the next where one fails. GNOME, Plasma, Cinnamon, light-locker and XScreenSaver have
/// the first (old Plasma the second), Xfce's own screen saver the third, MATE the session manager, a sandbox
/// the portal alone.
static QList<QDBusMessage> inhibitCalls()
{
    const QString program = QCoreApplication::applicationName();
    const QString reason = QStringLiteral("The numbers of a Bingo game are called");
    constexpr uint idle = 8; // of the flags that say what is inhibited
    constexpr const char *saver = "org.freedesktop.ScreenSaver";
    QList<QDBusMessage> calls{
        inhibit(saver, "/org/freedesktop/ScreenSaver", {program, reason}),
        inhibit(saver, "/ScreenSaver", {program, reason}),
        inhibit("org.xfce.ScreenSaver", "/org/xfce/ScreenSaver", {program, reason}),
        inhibit("org.gnome.SessionManager", "/org/gnome/SessionManager", {program, 0U, reason, idle}),
    };
    for (QDBusMessage &call : calls)
        call.setAutoStartService(false); // another desktop's screen saver may be installed
    return calls << inhibit("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                            {QString(), idle, QVariantMap{{QStringLiteral("reason"), reason}}},
                            "org.freedesktop.portal.Inhibit");
}

/// The call that ends what `call` was granted with `answer`: a cookie, or the portal's object.
static QDBusMessage endCall(const QDBusMessage &call, const QVariant &answer)
{
    if (answer.canConvert<QDBusObjectPath>())
        return QDBusMessage::createMethodCall(call.service(), answer.value<QDBusObjectPath>().path(),
                                              QStringLiteral("org.freedesktop.portal.Request"),
                                              QStringLiteral("Close"));
    const bool isGnome = call.service() == QStringLiteral("org.gnome.SessionManager");
    QDBusMessage end =
        QDBusMessage::createMethodCall(call.service(), call.path(), call.interface(),
                                       isGnome ? QStringLiteral("Uninhibit") : QStringLiteral("UnInhibit"));
    end.setArguments({answer});
    return end;
}

// The desktop's part. Services are asked one after the other until one agrees; while an answer is outstanding
// only the wish is noted.
static bool isWanted = false;
static bool isAsking = false;
static QDBusMessage endOfGrant; // no call while nothing is granted

static void endInhibition()
{
    const QDBusMessage end = std::exchange(endOfGrant, {});
    if (end.type() == QDBusMessage::MethodCallMessage)
        QDBusConnection::sessionBus().send(end);
}

static void ask(QList<QDBusMessage> calls)
{
    isAsking = isWanted && !calls.isEmpty();
    if (!isAsking)
        return;
    const QDBusMessage call = calls.takeFirst();
    auto *asked = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), qApp);
    QObject::connect(asked, &QDBusPendingCallWatcher::finished, qApp, [asked, call, calls] {
        asked->deleteLater();
        const QVariant answer = asked->reply().arguments().value(0);
        if (asked->isError() || !answer.isValid())
            return ask(calls);
        isAsking = false;
        endOfGrant = endCall(call, answer);
        if (!isWanted)
            endInhibition();
    });
}

/// The X server's part: its own screen saver and the saving of power. The server counts what is suspended.
static void suspendScreenSaver(bool suspend)
{
    if (QGuiApplication::platformName() != QStringLiteral("xcb"))
        return;
    xcb_connection_t *display = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(display, &xcb_screensaver_id);
    if (!extension || !extension->present)
        return;
    xcb_discard_reply(display, xcb_screensaver_suspend_checked(display, suspend).sequence);
    xcb_flush(display);
}

void keepScreenOn(bool on)
{
    if (std::exchange(isWanted, on) == on)
        return;
    suspendScreenSaver(on);
    if (isAsking)
        return;
    if (on)
        ask(inhibitCalls());
    else
        endInhibition();
}

} // namespace os
