#include "quit_requests.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace os {

static int signalSockets[2]; // the signal handler writes into the first, the event loop reads from the second

static void wakeEventLoop(int)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(signalSockets[0], &byte, sizeof byte);
}

void onQuitRequest(std::function<void()> quit)
{
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, signalSockets) != 0)
        return;
    auto *notifier = new QSocketNotifier(signalSockets[1], QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, [quit = std::move(quit)] {
        char byte = 0;
        if (read(signalSockets[1], &byte, sizeof byte) == sizeof byte)
            quit();
    });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        if (std::signal(signal, wakeEventLoop) == SIG_IGN)
            std::signal(signal, SIG_IGN);
    }
    std::signal(SIGPIPE, SIG_IGN); // else writing to a closed pipe would end the program unsaved
}

} // namespace os
