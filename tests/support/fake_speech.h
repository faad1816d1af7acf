#pragma once

#include "sp_voice.h"

#include <QPointer>

/// A speech service that notes what it is given and does what the test tells it to. It must outlive the
/// voices that speak through factory().
struct FakeSpeech
{
    struct Engine : speech::SpEngine
    {
        void open() override { Q_EMIT opened({"Ann", "Bob", "Cid"}); }
        void speak(const speech::SpText &text) override
        {
            service->spoken += QString("%1 %2 %3").arg(text.text).arg(text.voice.value_or(-1)).arg(text.rate);
            if (service->speaksByItself)
                QTimer::singleShot(0, this, &Engine::ended);
        }
        void ping() override { Q_EMIT alive(); }
        FakeSpeech *service = nullptr;
    };

    speech::SpEngineFactory factory()
    {
        return [this] {
            auto made = std::make_unique<Engine>();
            made->service = this;
            engine = made.get();
            return made;
        };
    }

    bool speaksByItself = true; ///< false: the test emits begun(), ended() and failed() of `engine`
    QStringList spoken{};       ///< "text voice rate" of each
    QPointer<Engine> engine{};  ///< the last one made
};
