#pragma once

#include "error.h"
#include "sp_engine.h"

#include <QLocale>
#include <QStringList>
#include <QTimer>
#include <QVariant>

#include <chrono>
#include <deque>
#include <optional>

namespace speech {

/// How long a silent service is waited for. Time is counted in pulses: at every pulse the service is asked
/// for a sign of life, and two pulses without one end the patience at once.
struct SpPatience
{
    std::chrono::milliseconds pulse = std::chrono::seconds(5);
    std::chrono::milliseconds toOpen = std::chrono::seconds(20);
    std::chrono::milliseconds toBegin = std::chrono::seconds(60); ///< another program may be speaking
    std::chrono::milliseconds toEnd = std::chrono::seconds(20);
    std::chrono::milliseconds toEndPerCharacter = std::chrono::milliseconds(500);
    std::chrono::milliseconds beforeOpening{}; ///< so long a service is left alone after a voice is made
};

/// A voice that speaks the texts handed to it one after the other, whatever the desktop's speech service does
/// or fails to do. Each text ends in exactly one of two ways: spoken (EndStream) or failed. A failure that is
/// known before a function returns is thrown as Error; one that comes later is signalled. When the service
/// fails, all texts that wait are lost with it, in one failure; the next text opens the service anew.
/// Signals come from the event loop, never from inside a function.
class SpVoice : public QObject
{
    Q_OBJECT

public:
    enum SpeakFlags {
        SVSFDefault = 0,   ///< Speak returns when the text has been spoken
        SVSFlagsAsync = 1, ///< Speak returns at once
    };

    /// Opens the desktop's speech service behind the caller's back. Throws Error when none is installed.
    explicit SpVoice(QObject *parent = nullptr);
    SpVoice(SpEngineFactory makeEngine, const SpPatience &patience, QObject *parent = nullptr);
    ~SpVoice() override;

    /// What the voices made from now on speak through, instead of the desktop's service: for tests of
    /// windows.
    static void setSystemEngine(SpEngineFactory makeEngine);

    /// True while a Speak that waits is under way, in any voice.
    static bool isWaiting() { return s_waiting > 0; }

    /// The position of the voice for a user who has chosen none: the desktop's own choice where that speaks
    /// the user's language, else a voice of that language, else an English one, else 0. `voices` is not
    /// empty.
    static qsizetype defaultVoice(const QList<SpVoiceInfo> &voices, const QLocale &user);

    /// The descriptions of the installed voices, in the order of their positions. Empty as long as the list
    /// is not known: VoicesKnown tells when it is, VoicesUnknown that it cannot be had.
    QStringList GetVoices() const;

    /// The voice of the texts that follow. Throws Error when the list is known and has no such position;
    /// otherwise the texts are checked, one by one, when it is.
    void setVoice(qsizetype position);

    /// The speed of the texts that follow, -10 to 10; what lies outside counts as the nearer end.
    void setRate(int rate);

    /// Taken note of only: no text here is ever cut into by another.
    void setAlertBoundary(int boundary) { m_alertBoundary = boundary; }
    int alertBoundary() const { return m_alertBoundary; }

    /// Queues `text` and returns the number of its stream, 1 or more. Without SVSFlagsAsync it then runs an
    /// event loop until the text has been spoken; throws Error when it could not be. What the user types and
    /// clicks meanwhile is the application's matter: see isWaiting.
    int Speak(const QString &text, int flags);

Q_SIGNALS:
    void VoicesKnown();
    void VoicesUnknown(int number, const QString &description);
    void EndStream(int StreamNumber, const QVariant &StreamPosition);
    void Failed(int number, const QString &description);

private:
    struct Wait;
    struct Stream
    {
        int number = 0;
        QString text;
        std::optional<qsizetype> voice;
        int rate = 0;
        Wait *wait = nullptr; ///< the Speak that waits for it, if one does
    };

    void openEngine();
    void engineOpened(const QList<SpVoiceInfo> &voices);
    void engineFailed(const files::Error &error);
    void waitForLast();
    void speakNext();
    void speakFirst(qsizetype position);
    void textBegan();
    void textEnded();
    void endFirst();
    void lose(const std::deque<Stream> &streams, const files::Error &error);
    void bePatientFor(std::chrono::milliseconds time);
    void pulse();
    template <typename Function>
    void later(Function function);

    SpEngineFactory m_makeEngine;
    SpPatience m_patience;
    std::unique_ptr<SpEngine> m_engine;
    std::optional<QList<SpVoiceInfo>> m_voices; ///< known once the engine is open
    std::deque<Stream> m_streams;               ///< the first one is being spoken when m_speaking
    bool m_speaking = false;
    std::optional<qsizetype> m_voice;
    int m_rate = 0;
    int m_alertBoundary = 0;
    int m_lastStream = 0;
    QTimer m_pulse{this};
    std::chrono::milliseconds m_timeLeft{};
    int m_unanswered = 0; ///< pulses since the last sign of life

    static inline int s_waiting = 0;
};

} // namespace speech
