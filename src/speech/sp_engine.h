#pragma once

#include "error.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace speech {

/// The numbers of the failures that are found on this side. A service's own refusals keep its numbers.
enum SpFailure { SpNotInstalled = 1, SpLost, SpSilent, SpNoVoices, SpNoSuchVoice };

/// One text to speak. `voice` is a position in the list of voices, or nothing for the service's default;
/// `rate` goes from -10 to 10.
struct SpText
{
    QString text;
    std::optional<qsizetype> voice;
    int rate = 0;
};

/// One connection to a speech service, as small as SpVoice needs it: it speaks one text at a time and keeps
/// neither a queue nor a clock. No function waits for the service. After failed() an engine is only
/// destroyed, which silences its own text but not that of other programs.
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
    void opened(const QStringList &voices); ///< their descriptions
    void begun();
    void ended();
    void alive();
    void failed(const base::Error &error);
};

/// Makes a new engine, or throws Error when it is known at once that no service is installed.
using SpEngineFactory = std::function<std::unique_ptr<SpEngine>()>;

/// Makes the engine for this system's service: SsipEngine, or SapiEngine on Windows.
std::unique_ptr<SpEngine> makeSystemEngine();

} // namespace speech
