#include "sp_engine.h"
#include "voice_language.h"

#include <QFile>
#include <QHash>
#include <QProcess>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <deque>
#include <utility>

#include <pwd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace speech {

using namespace std::chrono_literals;

constexpr char listOfVoices[] = "LIST SYNTHESIS_VOICES";

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

static QByteArray loginName()
{
    const passwd *user = getpwuid(getuid());
    return user ? user->pw_name : "user";
}

/// A text as the protocol wants it: a point at the start of a line is doubled, a point alone ends it all.
static QByteArray dataLines(const QString &text)
{
    QByteArray data;
    for (const QString &line : text.split(u'\n'))
        data += (line.startsWith(u'.') ? "." : "") + line.toUtf8().replace('\r', ' ') + "\r\n";
    return data + ".\r\n";
}

namespace {

/// Speech through speech-dispatcher, in its text protocol SSIP over its unix socket. Starts the service when
/// nobody answers. One command is under way at a time; reports of a text (it began, it ended) can come at any
/// moment, even before the text's command has been answered.
class SsipEngine : public SpEngine
{
public:
    /// Throws Error when nobody answers the socket and there is no command to start the service with.
    SsipEngine()
        : m_address(socketPath())
        , m_socket(connectedSocket(m_address))
    {
        if (m_socket < 0 && serviceCommand().isEmpty())
            throw base::Error(SpNotInstalled, QStringLiteral("No speech service is installed."));
        connect(&m_incoming, &QSocketNotifier::activated, this, &SsipEngine::receive);
    }

    ~SsipEngine() override
    {
        // A starter still at work goes on: killed half-way, it would leave half a service running.
        if (m_starter && m_starter->state() != QProcess::NotRunning) {
            QProcess *starter = m_starter.release();
            connect(starter, &QProcess::finished, starter, &QObject::deleteLater);
        }
        if (m_socket >= 0) {
            m_incoming.setEnabled(false);
            send("CANCEL SELF\r\nQUIT\r\n");
            ::close(m_socket);
        }
    }

    void open() override
    {
        if (m_socket < 0)
            m_socket = connectedSocket(m_address);
        if (m_socket < 0)
            return connectionFailed();
        m_incoming.setSocket(m_socket);
        m_incoming.setEnabled(true);
        greet();
    }

    void speak(const SpText &text) override
    {
        const Voice &voice = text.voice ? m_voices.at(*text.voice) : m_default;
        set("OUTPUT_MODULE", voice.module);
        if (!voice.name.isEmpty())
            set("SYNTHESIS_VOICE", voice.name);
        set("RATE", QByteArray::number(10 * text.rate));
        m_data = dataLines(text.text);
        request("SPEAK");
    }

    void ping() override
    {
        if (m_socket >= 0)
            request("GET RATE", [this](const Reply &) { Q_EMIT alive(); });
        else
            Q_EMIT alive();
    }

private:
    struct Reply
    {
        int code = 0;
        QList<QByteArray> lines; ///< without their codes, and without the last one
        QByteArray text;         ///< of the last one
    };
    using Handler = std::function<void(const Reply &)>;
    struct Command
    {
        QByteArray line;
        Handler done;
    };
    struct Voice
    {
        QByteArray module;
        QByteArray name;
        QString language; ///< as in "en-US"
    };

    // ---- Reaching the service ----

    /// Nobody answers: starts the service, once, and tries again. If it never comes up although the starter
    /// succeeded, SpVoice's timeout ends the tries.
    void connectionFailed()
    {
        if (!m_starter)
            startService();
        const bool startFailed =
            m_starter->state() == QProcess::NotRunning &&
            (m_starter->error() == QProcess::FailedToStart || m_starter->exitCode() != 0);
        if (startFailed && --m_triesLeft == 0)
            Q_EMIT failed({SpNotInstalled, startError()});
        else
            QTimer::singleShot(50ms, this, &SsipEngine::open);
    }

    void startService()
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
    QString startError()
    {
        const QString output = QString::fromLocal8Bit(m_starterOutput.readAll()).trimmed();
        return output.isEmpty() ? QStringLiteral("The speech service cannot be started.")
                                : output.section(u'\n', -1).trimmed();
    }

    void greet()
    {
        set("CLIENT_NAME", loginName() + ":vellomir:main");
        set("PRIORITY", "message");
        set("NOTIFICATION", "ALL on");
        // A screen reader's user may want texts spelt, or their commas named. Calls are spoken as they are.
        set("PUNCTUATION", "none");
        set("CAP_LET_RECOGN", "none");
        set("SPELLING", "off");
        request("GET OUTPUT_MODULE", [this](const Reply &reply) {
            m_default.module = m_settings["OUTPUT_MODULE"] = reply.lines.value(0);
        });
        request("GET LANGUAGE",
                [this](const Reply &reply) { m_default.language = QString::fromUtf8(reply.lines.value(0)); });
        request("LIST OUTPUT_MODULES", [this](const Reply &reply) { listVoices(reply.lines); });
    }

    void listVoices(QList<QByteArray> modules)
    {
        modules.removeAll("dummy");
        if (modules.isEmpty()) {
            chooseDefaultVoice();
            Q_EMIT opened(descriptions());
            return;
        }
        const QByteArray module = modules.takeFirst();
        set("OUTPUT_MODULE", module);
        request(listOfVoices, [this, module, modules](const Reply &reply) {
            addVoices(module, reply.lines);
            listVoices(modules);
        });
    }

    /// A line is name, language and variant with tabs between them. A refusal has no lines. espeak-ng lists
    /// each voice once more with every timbre: "English (America)+Annie", language, "Annie".
    void addVoices(const QByteArray &module, const QList<QByteArray> &lines)
    {
        for (const QByteArray &line : lines) {
            const QList<QByteArray> fields = line.split('\t');
            const QByteArray timbre = '+' + fields.value(2);
            if (timbre == "+" || !fields[0].endsWith(timbre))
                m_voices.append({module, fields[0], QString::fromUtf8(fields.value(1))});
        }
    }

    /// The default module's own voice, or the one for the user's language where that voice has another.
    void chooseDefaultVoice()
    {
        const QLocale user(QLocale::system().uiLanguages().value(0));
        if (bestLanguage({m_default.language}, user))
            return;
        QStringList languages;
        for (const Voice &voice : m_voices)
            languages.append(voice.module == m_default.module ? voice.language : QString());
        if (const auto position = bestLanguage(languages, user))
            m_default = m_voices[*position];
    }

    /// The voices' names, with the module where two voices have the same.
    QStringList descriptions() const
    {
        QStringList list;
        for (const Voice &voice : m_voices) {
            const bool isUnique = std::ranges::count(m_voices, voice.name, &Voice::name) == 1;
            list.append(QString::fromUtf8(isUnique ? voice.name : voice.name + " (" + voice.module + ')'));
        }
        return list;
    }

    // ---- The protocol ----

    /// Sends a setting when it changes.
    void set(const QByteArray &name, const QByteArray &value)
    {
        if (m_settings.value(name) == value)
            return;
        m_settings[name] = value;
        if (name == "OUTPUT_MODULE")
            m_settings.remove("SYNTHESIS_VOICE"); // the service forgets the voice
        request("SET SELF " + name + ' ' + value);
    }

    void request(const QByteArray &line, Handler done = {})
    {
        m_commands.push_back({line, std::move(done)});
        if (m_commands.size() == 1)
            send(line + "\r\n");
    }

    /// Does not wait. What the service does not take is lost; receive() or SpVoice's timeout notices that.
    void send(const QByteArray &data)
    {
        ::send(m_socket, data.data(), static_cast<std::size_t>(data.size()), MSG_NOSIGNAL);
    }

    void receive()
    {
        std::array<char, 65536> data;
        const ssize_t size = ::recv(m_socket, data.data(), data.size(), 0);
        if (size > 0) {
            m_received.append(data.data(), size);
            readLines();
        } else if (size == 0 || (errno != EAGAIN && errno != EINTR)) {
            m_incoming.setEnabled(false);
            Q_EMIT failed({SpLost, QStringLiteral("The speech service was lost.")});
        }
    }

    /// A message is lines "123-text", many thousands for a list of voices, and a last line "123 text".
    void readLines()
    {
        qsizetype start = 0;
        for (qsizetype end; (end = m_received.indexOf("\r\n", start)) >= 0; start = end + 2) {
            const QByteArray line = m_received.mid(start, end - start);
            if (line.mid(3, 1) == "-")
                m_lines.append(line.mid(4));
            else
                dispatch({line.left(3).toInt(), std::exchange(m_lines, {}), line.mid(4)});
        }
        m_received.remove(0, start);
    }

    /// Reports are of this program's texts only, and the service has one at a time.
    void dispatch(const Reply &message)
    {
        constexpr int receivingData = 230;
        constexpr int begin = 701;
        constexpr int end = 702;
        constexpr int cancelled = 703; // by a screen reader, say: the text is over
        if (message.code == begin)
            Q_EMIT begun();
        else if (message.code == end || message.code == cancelled)
            Q_EMIT ended();
        else if (message.code == receivingData)
            send(m_data);
        else if (message.code / 100 != 7 && !m_commands.empty())
            finishCommand(message);
    }

    /// A refusal is a failure, but for a module that cannot tell its voices.
    void finishCommand(const Reply &reply)
    {
        const Command command = m_commands.front();
        constexpr int firstRefusal = 300;
        if (reply.code >= firstRefusal && command.line != listOfVoices)
            Q_EMIT failed({reply.code, QString::fromUtf8(reply.text)});
        else if (command.done)
            command.done(reply);
        m_commands.pop_front();
        if (!m_commands.empty())
            send(m_commands.front().line + "\r\n");
    }

    QString m_address;
    int m_socket; ///< connected to the service, or -1
    QSocketNotifier m_incoming{QSocketNotifier::Read};
    std::unique_ptr<QProcess> m_starter;
    QTemporaryFile m_starterOutput;           ///< no pipe: the starter may run longer than this program
    int m_triesLeft = 40;                     ///< when the starter has failed: another one may be at work
    std::deque<Command> m_commands;           ///< the first one is under way
    QByteArray m_data;                        ///< the lines that follow SPEAK
    QByteArray m_received;                    ///< the beginning of a line
    QList<QByteArray> m_lines;                ///< of the message that is coming in
    QHash<QByteArray, QByteArray> m_settings; ///< as the service has them
    QList<Voice> m_voices;
    Voice m_default; ///< without a name: the module's own voice
};

} // namespace

std::unique_ptr<SpEngine> makeSystemEngine()
{
    return std::make_unique<SsipEngine>();
}

} // namespace speech
