#include "sp_engine.h"
#include "ssip_connection.h"
#include "voice_language.h"

#include <QHash>

#include <algorithm>
#include <deque>
#include <utility>

#include <pwd.h>
#include <unistd.h>

namespace speech {

constexpr char listOfVoices[] = "LIST SYNTHESIS_VOICES";

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

/// Speech through speech-dispatcher, in its text protocol SSIP. One command is under way at a time; reports
/// of a text (it began, it ended) can come at any moment, even before the text's command has been answered.
class SsipEngine : public SpEngine
{
public:
    SsipEngine()
    {
        connect(&m_connection, &SsipConnection::opened, this, &SsipEngine::greet);
        connect(&m_connection, &SsipConnection::received, this, &SsipEngine::receive);
        connect(&m_connection, &SsipConnection::failed, this, &SpEngine::failed);
    }

    ~SsipEngine() override { m_connection.send("CANCEL SELF\r\nQUIT\r\n"); }

    void open() override { m_connection.open(); }

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
        if (m_connection.isOpen())
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

    // ---- Opening ----

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
            m_connection.send(line + "\r\n");
    }

    /// A message is lines "123-text", many thousands for a list of voices, and a last line "123 text".
    void receive(const QByteArray &data)
    {
        m_received += data;
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
            m_connection.send(m_data);
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
            m_connection.send(m_commands.front().line + "\r\n");
    }

    SsipConnection m_connection;
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
