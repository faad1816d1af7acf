#include "quit_requests.h"

#include <QGuiApplication>
#include <QSessionManager>

#ifdef Q_OS_UNIX
#include <QSocketNotifier>

#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace os {

QuitRequests::QuitRequests(QObject *parent)
    : QObject(parent)
{
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &QuitRequests::saveRequested,
            Qt::DirectConnection);
    hearSignals();
}

#ifdef Q_OS_UNIX

namespace {

int signalSockets[2]; // a handler writes into the first, the event loop reads from the second

void tellEventLoop(int)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(signalSockets[0], &byte, sizeof byte);
}

} // namespace

void QuitRequests::hearSignals()
{
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, signalSockets) != 0)
        return;
    for (const int socket : signalSockets)
        fcntl(socket, F_SETFD, FD_CLOEXEC); // no concern of the programs that this one starts
    auto *notifier = new QSocketNotifier(signalSockets[1], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        if (read(signalSockets[1], &byte, sizeof byte) == sizeof byte)
            Q_EMIT ended();
    });
    struct sigaction action = {};
    action.sa_handler = tellEventLoop;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaction(signal, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN); // a pipe or socket that nobody reads is no reason to end unsaved
}

#else

void QuitRequests::hearSignals() {}

#endif

} // namespace os
