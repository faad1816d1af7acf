#include "sp_voice.h"

#include "system_engine.h"

#include <QEventLoop>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace speech {

namespace {

SpEngineFactory &systemEngine()
{
    static SpEngineFactory factory = makeSystemEngine;
    return factory;
}

/// What names the language in "en-US" or "en_US".
QString languageOf(const QString &tag)
{
    return tag.section(u'-', 0, 0).section(u'_', 0, 0).toLower();
}

/// The best voice for a language: of its territory, of none, of the language's main territory, of any.
std::optional<qsizetype> voiceFor(const QList<SpVoiceInfo> &voices, const QLocale &locale)
{
    const QString language = languageOf(locale.name());
    for (const QString &wish : {locale.name(), language, QLocale(language).name()}) {
        for (qsizetype i = 0; i < voices.size(); ++i) {
            QString tag = voices[i].language;
            if (tag.replace(u'_', u'-').compare(QString(wish).replace(u'_', u'-'), Qt::CaseInsensitive) == 0)
                return i;
        }
    }
    for (qsizetype i = 0; i < voices.size(); ++i) {
        if (languageOf(voices[i].language) == language)
            return i;
    }
    return std::nullopt;
}

files::Error noSuchVoice(qsizetype position)
{
    return {SpNoSuchVoice, QStringLiteral("There is no voice number %1.").arg(position + 1)};
}

} // namespace

/// The event loop in which a Speak waits, and how it ended.
struct SpVoice::Wait
{
    QEventLoop loop;
    std::optional<files::Error> error;
};

SpVoice::SpVoice(QObject *parent)
    // A program's first window is painted before a service that has to be started competes with it.
    : SpVoice(systemEngine(), {.beforeOpening = std::chrono::milliseconds(150)}, parent)
{
}

SpVoice::SpVoice(SpEngineFactory makeEngine, const SpPatience &patience, QObject *parent)
    : QObject(parent)
    , m_makeEngine(std::move(makeEngine))
    , m_patience(patience)
{
    m_pulse.setInterval(m_patience.pulse);
    connect(&m_pulse, &QTimer::timeout, this, &SpVoice::pulse);
    openEngine();
}

SpVoice::~SpVoice()
{
    for (const Stream &stream : m_streams) {
        if (stream.wait)
            stream.wait->loop.quit();
    }
}

void SpVoice::setSystemEngine(SpEngineFactory makeEngine)
{
    systemEngine() = std::move(makeEngine);
}

// ---- Voices
// --------------------------------------------------------------------------------------------------

qsizetype SpVoice::defaultVoice(const QList<SpVoiceInfo> &voices, const QLocale &user)
{
    for (qsizetype i = 0; i < voices.size(); ++i) {
        if (voices[i].isDefault && languageOf(voices[i].language) == languageOf(user.name()))
            return i;
    }
    if (const auto position = voiceFor(voices, user))
        return *position;
    return voiceFor(voices, QLocale(QLocale::English, QLocale::UnitedStates)).value_or(0);
}

QStringList SpVoice::GetVoices() const
{
    QStringList descriptions;
    for (const SpVoiceInfo &voice : m_voices.value_or(QList<SpVoiceInfo>()))
        descriptions.append(voice.description);
    return descriptions;
}

void SpVoice::setVoice(qsizetype position)
{
    if (position < 0 || (m_voices && position >= m_voices->size()))
        throw noSuchVoice(position);
    m_voice = position;
}

void SpVoice::setRate(int rate)
{
    m_rate = std::clamp(rate, -10, 10);
}

// ---- Speaking
// ------------------------------------------------------------------------------------------------

int SpVoice::Speak(const QString &text, int flags)
{
    if (!m_engine)
        openEngine();
    const int number = ++m_lastStream;
    m_streams.push_back({number, text, m_voice, m_rate, nullptr});
    later([this] { speakNext(); });
    if (!(flags & SVSFlagsAsync))
        waitForLast();
    return number;
}

void SpVoice::waitForLast()
{
    Wait wait;
    m_streams.back().wait = &wait;
    const QPointer<SpVoice> self(this);
    ++s_waiting;
    wait.loop.exec();
    --s_waiting;
    if (self) { // The loop also ends when the program does, with the text still in the queue.
        for (Stream &stream : m_streams) {
            if (stream.wait == &wait)
                stream.wait = nullptr;
        }
    }
    if (wait.error)
        throw files::Error(*wait.error);
}

void SpVoice::speakNext()
{
    if (m_speaking || m_streams.empty())
        return;
    const Stream &first = m_streams.front();
    if (first.text.trimmed().isEmpty()) {
        endFirst(); // Of a blank text some services never report the end.
    } else if (m_voices) {
        const qsizetype position = first.voice.value_or(defaultVoice(*m_voices, QLocale::system()));
        speakFirst(position);
    }
}

void SpVoice::speakFirst(qsizetype position)
{
    const Stream &first = m_streams.front();
    if (position < m_voices->size()) {
        m_speaking = true;
        bePatientFor(m_patience.toBegin);
        m_engine->speak({first.text, position, first.rate});
    } else {
        lose({first}, noSuchVoice(position));
        m_streams.pop_front();
        later([this] { speakNext(); });
    }
}

void SpVoice::textBegan()
{
    if (m_speaking)
        bePatientFor(m_patience.toEnd + m_streams.front().text.size() * m_patience.toEndPerCharacter);
}

void SpVoice::textEnded()
{
    if (!m_speaking)
        return;
    m_speaking = false;
    m_pulse.stop();
    endFirst();
}

void SpVoice::endFirst()
{
    const Stream first = m_streams.front();
    m_streams.pop_front();
    if (first.wait)
        first.wait->loop.quit();
    later([this, first] { Q_EMIT EndStream(first.number, first.text.size()); });
    later([this] { speakNext(); });
}

/// One failure for all that wait: whoever waits in Speak has it thrown, for the others it is signalled once.
void SpVoice::lose(const std::deque<Stream> &streams, const files::Error &error)
{
    bool isSignalled = false;
    for (const Stream &stream : streams) {
        if (stream.wait) {
            stream.wait->error = error;
            stream.wait->loop.quit();
        } else {
            isSignalled = true;
        }
    }
    if (isSignalled)
        later([this, error] { Q_EMIT Failed(error.number, error.description); });
}

// ---- The engine
// ----------------------------------------------------------------------------------------------

void SpVoice::openEngine()
{
    m_engine = m_makeEngine();
    SpEngine *engine = m_engine.get();
    connect(engine, &SpEngine::opened, this, &SpVoice::engineOpened);
    connect(engine, &SpEngine::begun, this, &SpVoice::textBegan);
    connect(engine, &SpEngine::ended, this, &SpVoice::textEnded);
    connect(engine, &SpEngine::alive, this, [this] { m_unanswered = 0; });
    connect(engine, &SpEngine::failed, this, [this](int number, const QString &description) {
        engineFailed({number, description});
    });
    bePatientFor(m_patience.toOpen);
    QTimer::singleShot(m_patience.beforeOpening, engine, &SpEngine::open);
}

void SpVoice::engineOpened(const QList<SpVoiceInfo> &voices)
{
    if (voices.isEmpty()) {
        engineFailed({SpNoVoices, QStringLiteral("The speech service has no voices.")});
        return;
    }
    m_pulse.stop();
    m_voices = voices;
    later([this] { Q_EMIT VoicesKnown(); });
    speakNext();
}

void SpVoice::engineFailed(const files::Error &error)
{
    if (!m_voices)
        later([this, error] { Q_EMIT VoicesUnknown(error.number, error.description); });
    m_pulse.stop();
    m_voices.reset();
    m_speaking = false;
    m_engine->disconnect(this);
    m_engine.release()->deleteLater(); // It may be the one that is telling.
    lose(std::exchange(m_streams, {}), error);
}

void SpVoice::bePatientFor(std::chrono::milliseconds time)
{
    m_timeLeft = time;
    m_unanswered = 0;
    m_pulse.start();
}

void SpVoice::pulse()
{
    m_timeLeft -= m_patience.pulse;
    if (m_timeLeft.count() <= 0 || m_unanswered == 2) {
        engineFailed({SpSilent, QStringLiteral("The speech service does not answer.")});
        return;
    }
    ++m_unanswered;
    m_engine->ping();
}

template <typename Function>
void SpVoice::later(Function function)
{
    QMetaObject::invokeMethod(this, std::move(function), Qt::QueuedConnection);
}

} // namespace speech
