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

namespace {

/// The desktop's part. Services are asked one after the other until one agrees; while an answer is
/// outstanding only the wish is noted.
class Inhibition : public QObject
{
public:
    using QObject::QObject;

    void setWanted(bool wanted)
    {
        m_isWanted = wanted;
        if (m_isAsking)
            return;
        if (wanted)
            ask(inhibitCalls());
        else
            end();
    }

private:
    void ask(QList<QDBusMessage> calls)
    {
        m_isAsking = m_isWanted && !calls.isEmpty();
        if (!m_isAsking)
            return;
        const QDBusMessage call = calls.takeFirst();
        auto *asked = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
        connect(asked, &QDBusPendingCallWatcher::finished, this, [this, asked, call, calls] {
            asked->deleteLater();
            const QVariant answer = asked->reply().arguments().value(0);
            if (asked->isError() || !answer.isValid())
                return ask(calls);
            m_isAsking = false;
            m_end = endCall(call, answer);
            if (!m_isWanted)
                end();
        });
    }

    void end()
    {
        const QDBusMessage end = std::exchange(m_end, {});
        if (end.type() == QDBusMessage::MethodCallMessage)
            QDBusConnection::sessionBus().send(end);
    }

    bool m_isWanted = false;
    bool m_isAsking = false;
    QDBusMessage m_end; // no call while nothing is granted
};

} // namespace

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
    static bool isOn = false;
    if (std::exchange(isOn, on) == on)
        return;
    suspendScreenSaver(on);
    static auto *inhibition = new Inhibition(qApp);
    inhibition->setWanted(on);
}

} // namespace os
