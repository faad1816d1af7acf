#include "announcement.h"

#include "error.h"
#include "phrases.h"
#include "sp_voice.h"

using speech::SpVoice;

namespace voice {

Announcement::Announcement(const VoiceChoice &choice)
    : m_choice(choice)
{
}

Announcement::~Announcement() = default;

void Announcement::createVoice()
{
    V = std::make_unique<SpVoice>();
    connect(V.get(), &SpVoice::EndStream, this, &Announcement::EndStream);
    connect(V.get(), &SpVoice::Failed, this, &Announcement::Failed);
}

QString Announcement::firstPhrase(int n)
{
    sCallPhrase = voice::firstPhrase(n);
    return sCallPhrase;
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
