#include "announcement.h"

#include "phrases.h"

using speech::SpVoice;

namespace voice {

void Announcement::createVoice()
{
    V = std::make_unique<SpVoice>();
    connect(V.get(), &SpVoice::EndStream, this, &Announcement::EndStream);
    connect(V.get(), &SpVoice::Failed, this, &Announcement::Failed);
}

QString Announcement::begin(int n)
{
    return sCallPhrase = firstPhrase(n);
}

void Announcement::speak(const QString &phrase)
{
    if (!V)
        createVoice();
    if (m_choice.VoiceIndex)
        V->setVoice(*m_choice.VoiceIndex);
    V->setRate(m_choice.VoiceRate);
    V->Speak(phrase, SpVoice::SVSFlagsAsync);
}

std::optional<QString> Announcement::nextPhrase()
{
    if (iSayCount == 2) {
        iSayCount = 1;
        return std::nullopt;
    }
    iSayCount = 2;
    sCallPhrase = followUp(sCallPhrase);
    return sCallPhrase;
}

} // namespace voice
