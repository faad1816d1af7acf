#pragma once

#include "sp_engine.h"

#include <QTimer>
#include <QVariant>

#include <algorithm>
#include <chrono>
#include <deque>

namespace speech {

/// Timeouts. Two unanswered pings in a row count as failure.
struct SpTimeouts
{
    std::chrono::milliseconds ping = std::chrono::seconds(5);
    std::chrono::milliseconds toOpen = std::chrono::seconds(20);
    std::chrono::milliseconds toBegin = std::chrono::seconds(25); ///< another program may be speaking
    std::chrono::milliseconds toEnd = std::chrono::seconds(20);
    std::chrono::milliseconds toEndPerCharacter = std::chrono::milliseconds(500);
    std::chrono::milliseconds beforeOpening{}; ///< between making a voice and opening its service
};

/// Speaks the texts handed to it one after the other, whatever the system's speech service does or fails to
/// do. Each text ends in exactly one of two ways: EndStream or Failed. When the service fails, all waiting
/// texts are lost in one failure; the next text opens the service anew. Signals come from the event loop,
/// never from inside a function.
class SpVoice : public QObject
{
    Q_OBJECT

public:
    enum SpeakFlags {
        SVSFDefault = 0,   ///< Speak returns when the text has been spoken
        SVSFlagsAsync = 1, ///< Speak returns at once
    };

    /// Starts to open the system's speech service and returns. Throws Error when none is installed.
    SpVoice();
    SpVoice(SpEngineFactory makeEngine, const SpTimeouts &timeouts);
    /// For tests: what voices made from now on speak through, instead of the system's service.
    static void setSystemEngine(SpEngineFactory makeEngine) { s_systemEngine = std::move(makeEngine); }
    /// True while any voice is in a Speak that waits.
    static bool isWaiting() { return s_waiting > 0; }
    /// The descriptions of the installed voices, in the order of their positions. Empty until VoicesKnown.
    QStringList GetVoices() const { return m_voices; }
    /// The voice of the texts that follow; the service's default until one is set. Throws Error when the list
    /// is known and has no such position; else the texts that are spoken with it fail.
    void setVoice(qsizetype position);
    /// The speed of the texts that follow, clamped to -10 to 10.
    void setRate(int rate) { m_rate = std::clamp(rate, -10, 10); }
    /// Queues `text` and returns the number of its stream, 1 or more. Without SVSFlagsAsync it then runs an
    /// event loop until the text has been spoken or lost. Throws Error when no service is installed.
    int Speak(const QString &text, int flags);

Q_SIGNALS:
    void VoicesKnown();
    void EndStream(int StreamNumber, const QVariant &StreamPosition);
    /// Texts were lost, or the service could not be opened although no text wanted it yet.
    void Failed(const base::Error &error);
    void queueShortened(QPrivateSignal);

private:
    struct Stream : SpText
    {
        int number = 0;
    };

    void openEngine();
    void engineOpened(const QStringList &voices);
    void engineFailed(const base::Error &error);
    void waitFor(int number);
    void speakNext();
    void textBegan();
    void textEnded();
    void endFirst();
    void signalFailure(const base::Error &error);
    void startTimeout(std::chrono::milliseconds time);
    void ping();
    void post(const std::function<void()> &function)
    {
        QMetaObject::invokeMethod(this, function, Qt::QueuedConnection);
    }

    SpEngineFactory m_makeEngine;
    SpTimeouts m_timeouts;
    std::unique_ptr<SpEngine> m_engine;
    QStringList m_voices;         ///< empty until the engine is open
    std::deque<Stream> m_streams; ///< the first one is being spoken when m_speaking
    bool m_speaking = false;
    std::optional<qsizetype> m_voice;
    int m_rate = 0;
    int m_lastStream = 0;
    QTimer m_pingTimer{this};
    std::chrono::milliseconds m_timeLeft{};
    int m_unanswered = 0; ///< pings since the last sign of life

    static inline int s_waiting = 0;
    static inline SpEngineFactory s_systemEngine = makeSystemEngine;
};

} // namespace speech
