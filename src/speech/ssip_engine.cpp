#include "ssip_engine.h"

#include "error.h"

#include <QFile>
#include <QStandardPaths>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace speech {

using namespace std::chrono_literals;

namespace {

constexpr auto retryPause = 50ms;
constexpr int starterPatience = 1000; // milliseconds
// A starter that fails may have met another one at work: this many more tries find out.
constexpr int triesAfterFailedStart = 40;

/// The path of the service's socket. Throws Error when the user has sent programs to another kind of address.
QString socketPath()
{
    const QString address = qEnvironmentVariable("SPEECHD_ADDRESS");
    const QString scheme = QStringLiteral("unix_socket");
    if (!address.isEmpty() && address.section(u':', 0, 0) != scheme)
        throw files::Error(SpNotInstalled,
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
QString serviceCommand()
{
    return QStandardPaths::findExecutable(
        qEnvironmentVariable("SPEECHD_CMD", QStringLiteral("speech-dispatcher")));
}

/// A socket that is connected to the service; -1 when nobody answers. Nothing that is done with it waits.
int connectedSocket(const QString &address)
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

bool somebodyAnswers(const QString &address)
{
    const int socket = connectedSocket(address);
    return socket >= 0 && ::close(socket) == 0;
}

/// A text as the protocol wants it: lines end in CR LF, a point at the start of one is doubled, and a line
/// with a point alone ends it all.
QByteArray dataLines(const QString &text)
{
    QByteArray data;
    for (const QString &line : text.split(u'\n'))
        data += (line.startsWith(u'.') ? "." : "") + line.toUtf8().replace('\r', ' ') + "\r\n";
    return data + '.';
}

} // namespace

SsipEngine::SsipEngine()
    : m_address(socketPath())
    , m_triesLeft(triesAfterFailedStart)
{
    if (serviceCommand().isEmpty() && !somebodyAnswers(m_address))
        throw files::Error(SpNotInstalled, QStringLiteral("No speech service is installed."));
    connect(&m_incoming, &QSocketNotifier::activated, this, &SsipEngine::receive);
}

SsipEngine::~SsipEngine()
{
    m_starter.waitForFinished(starterPatience); // killed half-way, it would leave half a service behind
    if (m_socket >= 0) {
        m_incoming.setEnabled(false);
        send("CANCEL SELF\r\nQUIT\r\n");
        ::close(m_socket);
    }
}

// ---- Reaching the service
// ------------------------------------------------------------------------------------

void SsipEngine::open()
{
    m_socket = connectedSocket(m_address);
    if (m_socket < 0) {
        connectionFailed();
        return;
    }
    m_incoming.setSocket(m_socket);
    m_incoming.setEnabled(true);
    greet();
}

/// Nobody answers: starts the service, once, and tries again. A service that never comes up although it was
/// started well is a matter of SpVoice's patience.
void SsipEngine::connectionFailed()
{
    if (m_starter.arguments().isEmpty())
        startService();
    const bool startFailed = m_starter.state() == QProcess::NotRunning &&
                             (m_starter.error() == QProcess::FailedToStart || m_starter.exitCode() != 0);
    if (startFailed && --m_triesLeft == 0)
        Q_EMIT failed(SpNotInstalled, QStringLiteral("The speech service cannot be started."));
    else
        QTimer::singleShot(retryPause, this, &SsipEngine::open);
}

void SsipEngine::startService()
{
    m_starter.setStandardOutputFile(QProcess::nullDevice());
    m_starter.setStandardErrorFile(QProcess::nullDevice());
    m_starter.start(serviceCommand(),
                    {QStringLiteral("--spawn"), QStringLiteral("--communication-method"),
                     QStringLiteral("unix_socket"), QStringLiteral("--socket-path"), m_address});
}

void SsipEngine::greet()
{
    demand("SET SELF CLIENT_NAME user:vellomir:main");
    demand("SET SELF PRIORITY message");
    demand("SET SELF NOTIFICATION ALL on");
    demand("SET SELF PUNCTUATION none");
    demand("LIST OUTPUT_MODULES", [this](const Reply &reply) { listVoices(reply.lines); });
}

void SsipEngine::listVoices(QList<QByteArray> modules)
{
    modules.removeAll("dummy");
    if (modules.isEmpty()) {
        Q_EMIT opened(m_voiceInfos);
        return;
    }
    const QByteArray module = modules.takeFirst();
    demand("SET SELF OUTPUT_MODULE " + module);
    request("LIST SYNTHESIS_VOICES", [this, module, modules](const Reply &reply) {
        if (!reply.isRefusal())
            addVoices(module, reply.lines);
        listVoices(modules);
    });
}

/// A line is name, language and variant with tabs between them.
void SsipEngine::addVoices(const QByteArray &module, const QList<QByteArray> &lines)
{
    for (const QByteArray &line : lines) {
        // espeak-ng lists each voice once more with every timbre: "English (America)+Annie".
        if (line.contains('+'))
            continue;
        const QList<QByteArray> fields = line.split('\t');
        m_voices.append({module, fields[0]});
        m_voiceInfos.append({QString::fromUtf8(fields[0]), QString::fromUtf8(fields.value(1))});
    }
}

// ---- Speaking
// ------------------------------------------------------------------------------------------------

void SsipEngine::speak(const SpText &text)
{
    const Voice &voice = m_voices.at(text.voice);
    m_text.clear();
    m_earlyEvents.clear();
    demand("SET SELF OUTPUT_MODULE " + voice.module);
    demand("SET SELF SYNTHESIS_VOICE " + voice.name);
    demand("SET SELF RATE " + QByteArray::number(10 * text.rate));
    demand("SPEAK", [this, data = dataLines(text.text)](const Reply &) {
        // Ahead of everything that has been asked meanwhile: the service takes the next lines for the text.
        m_commands.push_front(
            {data, orFail([this](const Reply &reply) { textAccepted(reply.lines.value(0)); })});
    });
}

void SsipEngine::ping()
{
    if (m_socket >= 0)
        request("GET RATE", [this](const Reply &) { Q_EMIT alive(); });
    else
        Q_EMIT alive();
}

void SsipEngine::textAccepted(const QByteArray &name)
{
    m_text = name;
    for (const Event &event : std::exchange(m_earlyEvents, {}))
        report(event);
}

void SsipEngine::report(const Event &event)
{
    if (m_text.isEmpty())
        m_earlyEvents.append(event);
    if (event.text != m_text)
        return;
    constexpr int begin = 701;
    constexpr int end = 702;
    constexpr int cancelled = 703; // by a screen reader, say: the text is over
    if (event.code == begin)
        Q_EMIT begun();
    else if (event.code == end || event.code == cancelled)
        Q_EMIT ended();
}

// ---- The protocol
// --------------------------------------------------------------------------------------------

void SsipEngine::request(const QByteArray &line, Handler done)
{
    m_commands.push_back({line, std::move(done)});
    sendNext();
}

/// A command without which nothing goes on: its refusal is a failure.
void SsipEngine::demand(const QByteArray &line, Handler done)
{
    request(line, orFail(std::move(done)));
}

SsipEngine::Handler SsipEngine::orFail(Handler done)
{
    return [this, done = std::move(done)](const Reply &reply) {
        if (reply.isRefusal())
            Q_EMIT failed(reply.code, QString::fromUtf8(reply.text));
        else if (done)
            done(reply);
    };
}

void SsipEngine::sendNext()
{
    if (m_done || m_commands.empty())
        return;
    send(m_commands.front().line + "\r\n");
    m_done = std::move(m_commands.front().done);
    m_commands.pop_front();
}

/// What a service that is gone or hangs does not take is not sent: receive() or SpVoice's patience notice.
void SsipEngine::send(const QByteArray &data)
{
    ::send(m_socket, data.data(), static_cast<std::size_t>(data.size()), MSG_NOSIGNAL);
}

void SsipEngine::receive()
{
    std::array<char, 65536> data;
    const ssize_t size = ::recv(m_socket, data.data(), data.size(), 0);
    if (size > 0) {
        m_received.append(data.data(), size);
        readLines();
    } else if (size == 0 || (errno != EAGAIN && errno != EINTR)) {
        m_incoming.setEnabled(false);
        Q_EMIT failed(SpLost, QStringLiteral("The speech service was lost."));
    }
}

/// A message is lines "123-text" and a last line "123 text", with CR LF behind each. A list of voices can
/// have many thousands.
void SsipEngine::readLines()
{
    qsizetype start = 0;
    for (qsizetype end; (end = m_received.indexOf("\r\n", start)) >= 0; start = end + 2) {
        const QByteArray line = m_received.mid(start, end - start);
        if (line.mid(3, 1) == "-")
            m_lines.append(line.mid(4));
        else
            take({line.left(3).toInt(), std::exchange(m_lines, {}), line.mid(4)});
    }
    m_received.remove(0, start);
}

/// What begins with a 7 is reported unasked; all else answers the command that is under way.
void SsipEngine::take(const Reply &message)
{
    if (message.code / 100 == 7) {
        report({message.code, message.lines.value(0)});
    } else if (m_done) {
        m_done(message);
        m_done = {};
        sendNext();
    }
}

} // namespace speech
