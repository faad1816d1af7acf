#pragma once

#include "error.h"
#include "sp_voice.h"

#include <QPointer>

/// A speech service for tests: it notes what it is given and does what the test tells it to. Give factory()
/// to an SpVoice, or to SpVoice::setSystemEngine for the voices that windows make. It must outlive them.
struct FakeSpeech
{
    struct Engine : speech::SpEngine
    {
        explicit Engine(FakeSpeech &made)
            : service(made)
        {
        }
        void open() override
        {
            if (service.opens)
                Q_EMIT opened({"Ann", "Bob", "Cid"});
        }
        void speak(const speech::SpText &text) override
        {
            service.spoken += text;
            if (service.speaksByItself) {
                QTimer::singleShot(0, this, &Engine::begun);
                QTimer::singleShot(0, this, &Engine::ended);
            }
        }
        void ping() override
        {
            ++service.pings;
            if (service.isAlive)
                Q_EMIT alive();
        }
        FakeSpeech &service;
    };

    speech::SpEngineFactory factory()
    {
        return [this]() -> std::unique_ptr<speech::SpEngine> {
            if (!isInstalled)
                throw files::Error(speech::SpNotInstalled, "No speech service is installed.");
            ++enginesMade;
            engine = new Engine(*this);
            return std::unique_ptr<speech::SpEngine>(engine);
        };
    }

    QStringList texts() const
    {
        QStringList list;
        for (const speech::SpText &text : spoken)
            list += text.text;
        return list;
    }

    bool isInstalled = true;
    bool opens = true;          ///< false: open() is never answered
    bool isAlive = true;        ///< false: ping() is never answered
    bool speaksByItself = true; ///< false: the test emits begun(), ended() and failed() of `engine`

    QList<speech::SpText> spoken;
    int pings = 0;
    int enginesMade = 0;
    QPointer<Engine> engine; ///< the last one made
};

/// Notes all that a voice signals, in order: "known", "end STREAM", "failed NUMBER".
inline void noteSignals(const speech::SpVoice &voice, QStringList &log)
{
    using speech::SpVoice;
    const auto note = [&log](const char *what) {
        return [&log, what](int number) { log += QString("%1 %2").arg(what).arg(number); };
    };
    QObject::connect(&voice, &SpVoice::VoicesKnown, [&log] { log += "known"; });
    QObject::connect(&voice, &SpVoice::EndStream, note("end"));
    QObject::connect(&voice, &SpVoice::Failed, note("failed"));
}
