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
/// moment, even before the text's command has been answered.
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

    void connectionFailed();
    void startService();
    QString startError();
    void greet();
    void listVoices(QList<QByteArray> modules);
    void addVoices(const QByteArray &module, const QList<QByteArray> &lines);
    void chooseDefaultVoice();
    QStringList descriptions() const;

    void set(const QByteArray &name, const QByteArray &value);
    void request(const QByteArray &line, Handler done = {});
    void send(const QByteArray &data);
    void receive();
    void readLines();
    void dispatch(const Reply &message);
    void finishCommand(const Reply &reply);
    void report(int event);

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

} // namespace speech
