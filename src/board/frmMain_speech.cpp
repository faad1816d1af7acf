#include "frmMain.h"

#include "frmVoices.h"
#include "phrases.h"
#include "sp_voice.h"
#include "tool_window.h"
#include "voice_choice.h"

using speech::SpVoice;

void frmMain::createVoice()
{
    V = std::make_unique<SpVoice>();
    connect(V.get(), &SpVoice::EndStream, this, &frmMain::V_EndStream);
    connect(V.get(), &SpVoice::Failed, this, [this](int number, const QString &description) {
        m_pendingError.emplace(number, description);
        ReportError();
    });
}

void frmMain::Speak(const QString &text)
{
    try {
        if (!V)
            throw files::Error(speech::SpNotInstalled, QStringLiteral("There is no voice to speak with."));
        if (!m_voiceChoice.VoiceIndex.isEmpty())
            V->setVoice(m_voiceChoice.VoiceIndex.toInt());
        V->setRate(m_voiceChoice.VoiceRate);
        V->Speak(text, SpVoice::SVSFlagsAsync);
    } catch (const files::Error &error) {
        m_pendingError = error;
    }
    if (m_pendingError)
        ReportError();
}

/// A phrase has been spoken: the first one of a call is followed by its digits.
void frmMain::V_EndStream(int, const QVariant &)
{
    if (iSayCount < 2) {
        ++iSayCount;
        sCallPhrase = voice::followUp(sCallPhrase);
        Speak(sCallPhrase);
    } else {
        iSayCount = 1;
    }
}

void frmMain::mnuSpeak_Click()
{
    if (m_frmVoices) {
        controls::showInFront(m_frmVoices);
        return;
    }
    m_frmVoices = new frmVoices(m_voiceChoice, this);
    m_frmVoices->show();
    m_frmVoices->Form_Load(); // a failure shows its box over the open window
}
