#pragma once

#include "error.h"

#include <QObject>
#include <QProcess>
#include <QSocketNotifier>
#include <QTemporaryFile>

#include <memory>

namespace speech {

/// The way to speech-dispatcher: bytes to and from its unix socket. Starts the service when nobody answers
/// there. No function waits.
class SsipConnection : public QObject
{
    Q_OBJECT

public:
    /// Throws Error when nobody answers and there is no command to start the service with, or when
    /// SPEECHD_ADDRESS is no unix socket.
    SsipConnection();
    ~SsipConnection() override;

    /// Answered by opened() or failed(), unless the starter succeeds and the service never comes up.
    void open();
    bool isOpen() const { return m_socket >= 0; }
    /// Sends as much as the service takes at once; that the rest is lost shows in what it answers, or in its
    /// silence. Does nothing while it is not open.
    void send(const QByteArray &data) const;

Q_SIGNALS:
    void opened();
    void received(const QByteArray &data);
    void failed(const base::Error &error);

private:
    void tryAgain();
    void startService();
    QString startError();
    void receive();

    QString m_address;
    int m_socket; ///< connected to the service, or -1
    QSocketNotifier m_incoming{QSocketNotifier::Read};
    std::unique_ptr<QProcess> m_starter;
    QTemporaryFile m_starterOutput; ///< no pipe: the starter may run longer than this program
    int m_triesLeft = 40;           ///< when the starter has failed: another one may be at work
};

} // namespace speech
