#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

namespace speech {

/// The numbers of the failures that are found on this side. A service's own refusals keep its numbers.
enum SpFailure {
    SpNotInstalled = 1,
    SpLost = 2,
    SpSilent = 3,
    SpNoVoices = 4,
    SpNoSuchVoice = 5,
    SpEngineFailed = 6,
};

struct SpVoiceInfo
{
    QString description;
    QString language;       ///< as in "en-US"; letter case does not matter
    bool isDefault = false; ///< the one that the desktop speaks with when nobody chooses
};

/// One text to speak. `voice` is a position in the list of voices, `rate` goes from -10 to 10.
struct SpText
{
    QString text;
    qsizetype voice = 0;
    int rate = 0;
};

/// One connection to a speech service, as small as SpVoice needs it: it speaks one text at a time and keeps
/// neither a queue nor a clock. No function waits for the service. An engine that has failed is of no more
/// use; destroying one silences its own text and nobody else's.
class SpEngine : public QObject
{
    Q_OBJECT

public:
    /// Called once, first. Answered by opened() or failed().
    virtual void open() = 0;

    /// Called after opened() and after the ended() of the text before; `text` holds more than blanks.
    /// Answered by begun() and ended(), or by failed().
    virtual void speak(const SpText &text) = 0;

    /// Asks for a sign of life: alive(), which a service that hangs does not give.
    virtual void ping() = 0;

Q_SIGNALS:
    void opened(const QList<speech::SpVoiceInfo> &voices);
    void begun();
    void ended();
    void alive();
    void failed(int number, const QString &description);
};

/// Makes a new engine, or throws Error when it is known at once that no service is installed.
using SpEngineFactory = std::function<std::unique_ptr<SpEngine>()>;

} // namespace speech
