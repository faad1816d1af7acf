#include "qt_speech_engine.h"

#include "error.h"

#include <QLocale>

#include <algorithm>
#include <utility>

namespace speech {

namespace {

QList<QLocale> sortedLocales(const QTextToSpeech &speech)
{
    QList<QLocale> locales = speech.availableLocales();
    std::sort(locales.begin(), locales.end(),
              [](const QLocale &a, const QLocale &b) { return a.name() < b.name(); });
    return locales;
}

SpVoiceInfo infoOf(const QVoice &voice, const QVoice &defaultVoice)
{
    const QLocale locale = voice.locale();
    return {QStringLiteral("%1 - %2 (%3)")
                .arg(voice.name(), QLocale::languageToString(locale.language()),
                     QLocale::territoryToString(locale.territory())),
            locale.name(), voice == defaultVoice};
}

} // namespace

QtSpeechEngine::QtSpeechEngine()
{
    if (QTextToSpeech::availableEngines().isEmpty())
        throw files::Error(SpNotInstalled, QStringLiteral("No speech service is installed."));
}

void QtSpeechEngine::open()
{
    m_speech = std::make_unique<QTextToSpeech>();
    connect(m_speech.get(), &QTextToSpeech::stateChanged, this, &QtSpeechEngine::stateChanged);
    if (m_speech->state() == QTextToSpeech::Error)
        Q_EMIT failed(SpEngineFailed, m_speech->errorString());
    else
        listVoices();
}

/// The desktop's own order differs from run to run: the list is sorted by language.
void QtSpeechEngine::listVoices()
{
    const QVoice defaultVoice = m_speech->voice();
    QList<SpVoiceInfo> infos;
    for (const QLocale &locale : sortedLocales(*m_speech)) {
        m_speech->setLocale(locale);
        for (const QVoice &voice : m_speech->availableVoices()) {
            if (voice.name().contains(u'+')) // a timbre of espeak-ng
                continue;
            m_voices.append(voice);
            infos.append(infoOf(voice, defaultVoice));
        }
    }
    Q_EMIT opened(infos);
}

void QtSpeechEngine::speak(const SpText &text)
{
    const QVoice &voice = m_voices.at(text.voice);
    m_speech->setLocale(voice.locale());
    m_speech->setVoice(voice);
    m_speech->setRate(text.rate / 10.0);
    m_progress = Progress::Handed;
    // The sapi engine reads its texts as XML.
    const bool isXml = m_speech->engine() == QStringLiteral("sapi");
    m_speech->say(isXml ? text.text.toHtmlEscaped() : text.text);
}

/// Trusts the argument alone: state() may have moved on. A Ready without a Speaking before it is no end: some
/// engines report one when the voice changes.
void QtSpeechEngine::stateChanged(QTextToSpeech::State state)
{
    if (state == QTextToSpeech::Error) {
        m_progress = Progress::Idle;
        Q_EMIT failed(SpEngineFailed, m_speech->errorString());
    } else if (state == QTextToSpeech::Speaking && m_progress == Progress::Handed) {
        m_progress = Progress::Begun;
        Q_EMIT begun();
    } else if (state == QTextToSpeech::Ready && m_progress == Progress::Begun) {
        m_progress = Progress::Idle;
        Q_EMIT ended();
    }
}

} // namespace speech
