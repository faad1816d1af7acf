#pragma once

#include "platform/error.h"
#include "platform/sp_engine.h"

#include <QPointer>
#include <QTimer>

/// A speech service for tests: it notes what it is given and does what the test tells it to. Give factory()
/// to an SpVoice, or to SpVoice::setSystemEngine for the voices that windows make. It must outlive them.
struct FakeSpeech
{
    class Engine : public platform::SpEngine
    {
    public:
        explicit Engine(FakeSpeech &service)
            : m_service(service)
        {
        }

        void open() override
        {
            if (m_service.opens)
                Q_EMIT opened(m_service.voices);
        }

        void speak(const platform::SpText &text) override
        {
            m_service.spoken.append(text);
            if (m_service.speaksByItself) {
                QTimer::singleShot(0, this, &Engine::begun);
                QTimer::singleShot(0, this, &Engine::ended);
            }
        }

        void ping() override
        {
            ++m_service.pings;
            if (m_service.isAlive)
                Q_EMIT alive();
        }

    private:
        FakeSpeech &m_service;
    };

    platform::SpEngineFactory factory()
    {
        return [this]() -> std::unique_ptr<platform::SpEngine> {
            if (!isInstalled)
                throw platform::Error(platform::SpNotInstalled,
                                      QStringLiteral("No speech service is installed."));
            auto made = std::make_unique<Engine>(*this);
            engine = made.get();
            ++enginesMade;
            return made;
        };
    }

    QStringList texts() const
    {
        QStringList list;
        for (const platform::SpText &text : spoken)
            list.append(text.text);
        return list;
    }

    bool isInstalled = true;
    bool opens = true;          ///< false: open() is never answered
    bool isAlive = true;        ///< false: ping() is never answered
    bool speaksByItself = true; ///< false: the test emits begun(), ended() and failed() of `engine`
    QList<platform::SpVoiceInfo> voices{{QStringLiteral("Ann"), QStringLiteral("de-DE")},
                                        {QStringLiteral("Bob"), QStringLiteral("en-US")},
                                        {QStringLiteral("Cid"), QStringLiteral("fr-FR")}};

    QList<platform::SpText> spoken;
    int pings = 0;
    int enginesMade = 0;
    QPointer<Engine> engine; ///< the last one made
};
