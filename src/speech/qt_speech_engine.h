#pragma once

#include "sp_engine.h"

#include <QTextToSpeech>
#include <QVoice>

namespace speech {

/// Speech through QTextToSpeech, for the desktops whose speech interface does not wait for the service. Uses
/// no more than every version of it can do: one text at a time, over when the state turns to Ready after it
/// has been Speaking. The QTextToSpeech lives in the thread that calls open().
class QtSpeechEngine : public SpEngine
{
    Q_OBJECT

public:
    /// Throws Error when Qt has no way to speak here.
    QtSpeechEngine();

    void open() override;
    void speak(const SpText &text) override;
    void ping() override { Q_EMIT alive(); }

private:
    void listVoices();
    void stateChanged(QTextToSpeech::State state);

    enum class Progress { Idle, Handed, Begun };

    std::unique_ptr<QTextToSpeech> m_speech;
    QList<QVoice> m_voices;
    Progress m_progress = Progress::Idle;
};

} // namespace speech
