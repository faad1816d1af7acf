#include "ssip_connection.h"

#include "sp_engine.h"

#include <QFile>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace speech {

using namespace std::chrono_literals;

/// The path of the service's socket. Throws Error when SPEECHD_ADDRESS is of another kind.
static QString socketPath()
{
    const QString address = qEnvironmentVariable("SPEECHD_ADDRESS");
    if (!address.isEmpty() && address.section(u':', 0, 0) != QStringLiteral("unix_socket"))
        throw base::Error(SpNotInstalled,
                          QStringLiteral("Speech service at an unknown kind of address: ") + address);
    QString path = address.section(u':', 1);
    if (!path.isEmpty())
        return path;
    QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return folder + QStringLiteral("/speech-dispatcher/speechd.sock");
}

/// The program that starts the service; empty where there is none.
static QString serviceCommand()
{
    return QStandardPaths::findExecutable(
        qEnvironmentVariable("SPEECHD_CMD", QStringLiteral("speech-dispatcher")));
}

/// A non-blocking socket connected to the service, or -1 when nobody answers.
static int connectedSocket(const QString &address)
{
    const QByteArray path = QFile::encodeName(address);
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    if (path.size() >= static_cast<qsizetype>(sizeof name.sun_path))
        return -1;
    std::copy(path.begin(), path.end(), name.sun_path);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (::connect(socket, reinterpret_cast<const sockaddr *>(&name), sizeof name) == 0)
        return socket;
    ::close(socket);
    return -1;
}

SsipConnection::SsipConnection()
    : m_address(socketPath())
    , m_socket(connectedSocket(m_address))
{
    if (!isOpen() && serviceCommand().isEmpty())
        throw base::Error(SpNotInstalled, QStringLiteral("No speech service is installed."));
    connect(&m_incoming, &QSocketNotifier::activated, this, &SsipConnection::receive);
}

SsipConnection::~SsipConnection()
{
    // A starter still at work goes on: killed half-way, it would leave half a service running.
    if (m_starter && m_starter->state() != QProcess::NotRunning) {
        QProcess *starter = m_starter.release();
        connect(starter, &QProcess::finished, starter, &QObject::deleteLater);
    }
    if (isOpen()) {
        m_incoming.setEnabled(false);
        ::close(m_socket);
    }
}

void SsipConnection::open()
{
    if (!isOpen())
        m_socket = connectedSocket(m_address);
    if (!isOpen())
        return tryAgain();
    m_incoming.setSocket(m_socket);
    m_incoming.setEnabled(true);
    Q_EMIT opened();
}

/// Starts the service, once, and tries again in a moment. If the service never comes up although the starter
/// succeeded, SpVoice's timeout ends the tries.
void SsipConnection::tryAgain()
{
    if (!m_starter)
        startService();
    const bool startFailed = m_starter->state() == QProcess::NotRunning &&
                             (m_starter->error() == QProcess::FailedToStart || m_starter->exitCode() != 0);
    if (startFailed && --m_triesLeft == 0)
        Q_EMIT failed({SpNotInstalled, startError()});
    else
        QTimer::singleShot(50ms, this, &SsipConnection::open);
}

void SsipConnection::startService()
{
    m_starter = std::make_unique<QProcess>();
    m_starter->setProcessChannelMode(QProcess::MergedChannels);
    if (m_starterOutput.open())
        m_starter->setStandardOutputFile(m_starterOutput.fileName());
    m_starter->start(serviceCommand(),
                     {QStringLiteral("--spawn"), QStringLiteral("--communication-method"),
                      QStringLiteral("unix_socket"), QStringLiteral("--socket-path"), m_address});
}

/// The starter's last line of output tells the reason.
QString SsipConnection::startError()
{
    const QString output = QString::fromLocal8Bit(m_starterOutput.readAll()).trimmed();
    return output.isEmpty() ? QStringLiteral("The speech service cannot be started.")
                            : output.section(u'\n', -1).trimmed();
}

void SsipConnection::send(const QByteArray &data) const
{
    ::send(m_socket, data.data(), static_cast<std::size_t>(data.size()), MSG_NOSIGNAL);
}

void SsipConnection::receive()
{
    std::array<char, 65536> data;
    const ssize_t size = ::recv(m_socket, data.data(), data.size(), 0);
    if (size > 0) {
        Q_EMIT received(QByteArray(data.data(), size));
    } else if (size == 0 || (errno != EAGAIN && errno != EINTR)) {
        m_incoming.setEnabled(false);
        Q_EMIT failed({SpLost, QStringLiteral("The speech service was lost.")});
    }
}

} // namespace speech
