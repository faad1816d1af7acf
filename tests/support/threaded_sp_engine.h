#pragma once

#include "platform/sp_engine.h"

#include <QThread>

/// An engine that lives in a thread of its own: Qt's engine waits for the service on Linux. A thread that
/// hangs when the engine is destroyed is left behind, and goes when it hangs no more.
class ThreadedSpEngine : public platform::SpEngine
{
public:
    explicit ThreadedSpEngine(std::unique_ptr<platform::SpEngine> engine)
        : m_engine(engine.release())
    {
        connect(m_engine, &SpEngine::opened, this, &SpEngine::opened);
        connect(m_engine, &SpEngine::begun, this, &SpEngine::begun);
        connect(m_engine, &SpEngine::ended, this, &SpEngine::ended);
        connect(m_engine, &SpEngine::alive, this, &SpEngine::alive);
        connect(m_engine, &SpEngine::failed, this, &SpEngine::failed);
        connect(m_thread, &QThread::finished, m_thread, &QObject::deleteLater);
        m_engine->moveToThread(m_thread);
        m_thread->start();
    }

    ~ThreadedSpEngine() override
    {
        m_engine->deleteLater();
        m_thread->quit();
        m_thread->wait(1000);
    }

    void open() override
    {
        QMetaObject::invokeMethod(m_engine, [engine = m_engine] { engine->open(); });
    }
    void speak(const platform::SpText &text) override
    {
        QMetaObject::invokeMethod(m_engine, [engine = m_engine, text] { engine->speak(text); });
    }
    void ping() override
    {
        QMetaObject::invokeMethod(m_engine, [engine = m_engine] { engine->ping(); });
    }

private:
    platform::SpEngine *m_engine;
    QThread *m_thread = new QThread;
};
