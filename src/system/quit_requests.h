#pragma once

#include <QObject>

namespace os {

/// Hears when the system asks the program to end: SIGTERM, SIGINT and SIGHUP where there are signals, and the
/// end of the session. There is one of these at most.
class QuitRequests : public QObject
{
    Q_OBJECT

public:
    explicit QuitRequests(QObject *parent);

Q_SIGNALS:
    /// The program is to end.
    void ended();
    /// The session is about to end: what is to be kept must be saved now; the program may yet go on.
    void saveRequested();

private:
    void hearSignals();
};

} // namespace os
