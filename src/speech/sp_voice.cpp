#include "sp_voice.h"

#include <QEventLoop>
#include <QRegularExpression>

#include <utility>

namespace speech {

/// A comma before a digit is a decimal comma in many languages, and makes no pause. With a blank it does.
static QString withPauses(QString text)
{
    static const QRegularExpression comma(QStringLiteral(",(?=\\d)"));
    return text.replace(comma, QStringLiteral(", "));
}

static base::Error noSuchVoice(qsizetype position)
{
    return {SpNoSuchVoice, QStringLiteral("There is no voice number %1.").arg(position + 1)};
}

SpVoice::SpVoice()
    // The first window is painted before a service that has to be started competes with it.
    : SpVoice(s_systemEngine, {.beforeOpening = std::chrono::milliseconds(150)})
{
}

SpVoice::SpVoice(SpEngineFactory makeEngine, const SpTimeouts &timeouts)
    : m_makeEngine(std::move(makeEngine))
    , m_timeouts(timeouts)
{
    m_pingTimer.setInterval(m_timeouts.ping);
    connect(&m_pingTimer, &QTimer::timeout, this, &SpVoice::ping);
    openEngine();
}

void SpVoice::setVoice(qsizetype position)
{
    if (position < 0 || (!m_voices.isEmpty() && position >= m_voices.size()))
        throw noSuchVoice(position);
    m_voice = position;
}

// ---- The queue ----

int SpVoice::Speak(const QString &text, int flags)
{
    if (!m_engine)
        openEngine();
    const int number = ++m_lastStream;
    m_streams.push_back({{text, m_voice, m_rate}, number});
    post([this] { speakNext(); });
    if (!(flags & SVSFlagsAsync))
        waitFor(number);
    return number;
}

/// Returns when the text has left the queue. The end of this voice or of the program ends the wait, too.
void SpVoice::waitFor(int number)
{
    QEventLoop loop;
    connect(this, &SpVoice::queueShortened, &loop, [this, &loop, number] {
        if (m_streams.empty() || m_streams.front().number > number)
            loop.quit();
    });
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    ++s_waiting;
    loop.exec();
    --s_waiting;
}

void SpVoice::speakNext()
{
    if (m_speaking || m_streams.empty())
        return;
    const Stream first = m_streams.front();
    if (first.text.trimmed().isEmpty())
        return endFirst(); // Some services never report the end of a blank text.
    if (m_voices.isEmpty())
        return;
    if (first.voice && *first.voice >= m_voices.size()) {
        m_streams.pop_front();
        signalFailure(noSuchVoice(*first.voice));
        post([this] { speakNext(); });
    } else {
        m_speaking = true;
        startTimeout(m_timeouts.toBegin);
        m_engine->speak({withPauses(first.text), first.voice, first.rate});
    }
}

void SpVoice::textBegan()
{
    if (m_speaking)
        startTimeout(m_timeouts.toEnd + m_streams.front().text.size() * m_timeouts.toEndPerCharacter);
}

void SpVoice::textEnded()
{
    if (!m_speaking)
        return;
    m_speaking = false;
    m_pingTimer.stop();
    endFirst();
}

void SpVoice::endFirst()
{
    const Stream first = m_streams.front();
    m_streams.pop_front();
    Q_EMIT queueShortened(QPrivateSignal());
    post([this, first] {
        speakNext();
        Q_EMIT EndStream(first.number, first.text.size());
    });
}

void SpVoice::signalFailure(const base::Error &error)
{
    Q_EMIT queueShortened(QPrivateSignal());
    post([this, error] { Q_EMIT Failed(error); });
}

// ---- The engine ----

void SpVoice::openEngine()
{
    m_engine = m_makeEngine();
    SpEngine *engine = m_engine.get();
    connect(engine, &SpEngine::opened, this, &SpVoice::engineOpened);
    connect(engine, &SpEngine::begun, this, &SpVoice::textBegan);
    connect(engine, &SpEngine::ended, this, &SpVoice::textEnded);
    connect(engine, &SpEngine::alive, this, [this] { m_unanswered = 0; });
    connect(engine, &SpEngine::failed, this, &SpVoice::engineFailed);
    startTimeout(m_timeouts.toOpen);
    QTimer::singleShot(m_timeouts.beforeOpening, engine, &SpEngine::open);
}

void SpVoice::engineOpened(const QStringList &voices)
{
    if (voices.isEmpty())
        return engineFailed({SpNoVoices, QStringLiteral("The speech service has no voices.")});
    m_pingTimer.stop();
    m_voices = voices;
    post([this] { Q_EMIT VoicesKnown(); });
    speakNext();
}

void SpVoice::engineFailed(const base::Error &error)
{
    m_pingTimer.stop();
    m_speaking = false;
    m_engine->disconnect(this);
    m_engine.release()->deleteLater(); // This may be a call from inside it.
    const bool isNoticed = m_voices.isEmpty() || !m_streams.empty();
    m_voices.clear();
    m_streams.clear();
    if (isNoticed)
        signalFailure(error);
}

void SpVoice::startTimeout(std::chrono::milliseconds time)
{
    m_timeLeft = time;
    m_unanswered = 0;
    m_pingTimer.start();
}

void SpVoice::ping()
{
    m_timeLeft -= m_timeouts.ping;
    if (m_timeLeft.count() <= 0 || m_unanswered == 2) {
        QString description = QStringLiteral("The speech service does not answer.");
        if (!m_streams.empty() && !isWaiting())
            description += QStringLiteral(" The waiting calls were not spoken.");
        engineFailed({SpSilent, description});
        return;
    }
    ++m_unanswered;
    m_engine->ping();
}

} // namespace speech
