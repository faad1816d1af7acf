#pragma once

#include "sp_engine.h"

#include <QByteArray>
#include <QHash>
#include <QProcess>
#include <QSocketNotifier>
#include <QTemporaryFile>

#include <deque>

namespace speech {

/// Speech through speech-dispatcher, in its text protocol SSIP over its unix socket. Starts the service when
/// nobody answers. One command is under way at a time; reports of a text (it began, it ended) can come at any
/// moment, even before the answer that names the text.
class SsipEngine : public SpEngine
{
    Q_OBJECT

public:
    /// Throws Error when nobody answers the socket and there is no command to start the service with.
    SsipEngine();
    ~SsipEngine() override;

    void open() override;
    void speak(const SpText &text) override;
    void ping() override;

private:
    struct Reply
    {
        int code = 0;
        QList<QByteArray> lines; ///< without their codes, and without the last one
        QByteArray text;         ///< of the last one
        bool isRefusal() const { return code >= 300; }
    };
    using Handler = std::function<void(const Reply &)>;
    struct Command
    {
        QByteArray line;
        Handler done;
    };
    struct Event
    {
        int code = 0;
        QByteArray text; ///< the service's name for the text that it is about
    };
    struct Voice
    {
        QByteArray module;
        QByteArray name;
        QString language; ///< as in "en-US"
    };

    void connectionFailed();
    void startService();
    QString startError();
    void greet();
    void listVoices(QList<QByteArray> modules);
    void addVoices(const QByteArray &module, const QList<QByteArray> &lines);
    void chooseDefaultVoice();
    QStringList descriptions() const;

    void set(const QByteArray &name, const QByteArray &value);
    void request(const QByteArray &line, Handler done);
    void requireOk(const QByteArray &line, Handler done = {});
    Handler orFail(Handler done);
    void sendNext();
    void send(const QByteArray &data);
    void receive();
    void readLines();
    void dispatch(const Reply &message);
    void textAccepted(const QByteArray &name);
    void report(const Event &event);

    QString m_address;
    int m_socket = -1; ///< connected to the service, or -1
    QSocketNotifier m_incoming{QSocketNotifier::Read};
    std::unique_ptr<QProcess> m_starter;
    QTemporaryFile m_starterOutput; ///< no pipe: the starter may run longer than this program
    int m_triesLeft;
    std::deque<Command> m_commands;           ///< not sent yet
    Handler m_done;                           ///< of the command that is under way; empty when none is
    QByteArray m_received;                    ///< beyond the last whole line
    QList<QByteArray> m_lines;                ///< of a message from the service, as far as it has come
    QHash<QByteArray, QByteArray> m_settings; ///< as the service has them
    QList<Voice> m_voices;
    Voice m_default;            ///< without a name: the module's own voice
    QByteArray m_text;          ///< the service's name for the text being spoken; empty until it is known
    QList<Event> m_earlyEvents; ///< those that came before the name
};

} // namespace speech
