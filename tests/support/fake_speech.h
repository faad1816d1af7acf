#pragma once

#include "sp_voice.h"

/// A speech service that notes what it is given and does what the test tells it to.
struct FakeSpeech : speech::SpEngine
{
    FakeSpeech() { engine = this; }
    void open() override { Q_EMIT opened({"Ann", "Bob", "Cid"}); }
    void speak(const speech::SpText &text) override
    {
        spoken += QString("%1 %2 %3").arg(text.text).arg(text.voice.value_or(-1)).arg(text.rate);
        if (speaksByItself)
            QTimer::singleShot(0, this, &FakeSpeech::ended);
    }
    void ping() override { Q_EMIT alive(); }

    /// When false the test lets `engine` emit begun(), ended() and failed().
    static inline bool speaksByItself = true;
    static inline QStringList spoken; ///< "text voice rate" of each
    static inline FakeSpeech *engine; ///< the last one made
};
