#pragma once

#include "sp_voice.h"

namespace voice {

/// The voice and the speed of the spoken calls, chosen for the rest of the run.
struct VoiceChoice
{
    /// Position in the list of installed voices, from 0; none for the default voice.
    std::optional<int> VoiceIndex;
    /// Speaking rate, -10 to 10.
    int VoiceRate = 0;
};

/// Says two phrases of each call, the second when the first has been spoken, by the voice that the operator
/// chose. It does not know the board, and shows no failure: it throws or signals it.
class Announcement : public QObject
{
    Q_OBJECT

public:
    /// `choice` is read at each phrase and must live as long as this.
    explicit Announcement(const VoiceChoice &choice)
        : m_choice(choice)
    {
    }

    /// Creates the voice. Throws base::Error when no speech service is installed.
    void createVoice();
    /// Begins the announcement of number `n`, 1 to 75, and returns its first phrase.
    QString begin(int n);
    /// Queues a phrase after those not spoken yet, by a new voice where none could be created before. Throws
    /// base::Error when it cannot be spoken.
    void speak(const QString &phrase);
    /// What is to be said now that a phrase has been spoken: after a first phrase its follow-up.
    std::optional<QString> nextPhrase();

Q_SIGNALS:
    void EndStream(int StreamNumber, const QVariant &StreamPosition);
    void Failed(const base::Error &error);

private:
    const VoiceChoice &m_choice;
    std::unique_ptr<speech::SpVoice> V; // null until a speech service is installed
    int iSayCount = 1;                  // 2 while a follow-up is being spoken
    QString sCallPhrase;                // what is being said of the current call
};

} // namespace voice
