#include "announcement.h"

#include "error.h"
#include "phrases.h"

using speech::SpVoice;

namespace voice {

Announcement::Announcement(const VoiceChoice &choice)
    : m_choice(choice)
{
}

void Announcement::createVoice()
{
    V = std::make_unique<SpVoice>();
    connect(V.get(), &SpVoice::EndStream, this, &Announcement::EndStream);
    connect(V.get(), &SpVoice::Failed, this, &Announcement::Failed);
}

QString Announcement::firstPhrase(int n)
{
    return sCallPhrase = voice::firstPhrase(n);
}

void Announcement::speak(const QString &phrase)
{
    if (!V)
        throw files::Error(speech::SpNotInstalled, QStringLiteral("There is no voice to speak with."));
    if (!m_choice.VoiceIndex.isEmpty())
        V->setVoice(m_choice.VoiceIndex.toInt());
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
