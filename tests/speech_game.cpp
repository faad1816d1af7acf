// Speaks through the desktop's own service, for tests/speech_sound.sh:
//   speech_game [--at-once] [--hasty] [TEXT...]
// The texts, or else the two phrases of all 75 calls, are handed over each when the one before is over, or
// all at once. Prints "end", or "failed NUMBER", for each, then the longest time that the event loop stood
// still.

#include "platform/sp_voice.h"
#include "platform/ssip_engine.h"
#include "voice/phrases.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>

#include <algorithm>

using namespace platform;
using namespace std::chrono_literals;

namespace {

QStringList phrasesOfAGame()
{
    QStringList phrases;
    for (int n = 1; n <= 75; ++n) {
        phrases += voice::firstPhrase(n);
        phrases += voice::followUp(phrases.last());
    }
    return phrases;
}

class Game
{
public:
    Game(const SpPatience &patience, QStringList texts)
        : m_voice([] { return std::make_unique<SsipEngine>(); }, patience)
        , m_texts(std::move(texts))
    {
        QObject::connect(&m_voice, &SpVoice::EndStream, [this] { over(QStringLiteral("end")); });
        QObject::connect(&m_voice, &SpVoice::Failed,
                         [this](int number) { over(QStringLiteral("failed %1").arg(number)); });
        QObject::connect(&m_turns, &QTimer::timeout,
                         [this] { m_standstill = std::max(m_standstill, m_clock.restart()); });
        m_clock.start();
        m_turns.start(0ms);
    }

    void handOver()
    {
        ++m_handedOver;
        m_voice.Speak(m_texts.takeFirst(), SpVoice::SVSFlagsAsync);
    }

    void handOverAll()
    {
        while (!m_texts.isEmpty())
            handOver();
    }

private:
    void over(const QString &how)
    {
        m_out << how << Qt::endl;
        --m_handedOver;
        if (!m_texts.isEmpty()) {
            handOver();
        } else if (m_handedOver == 0) {
            m_out << "standstill " << m_standstill << Qt::endl;
            QCoreApplication::quit();
        }
    }

    SpVoice m_voice;
    QStringList m_texts;
    int m_handedOver = 0;
    QTextStream m_out{stdout};
    QTimer m_turns;
    QElapsedTimer m_clock;
    qint64 m_standstill = 0; ///< ms
};

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    QStringList texts = QCoreApplication::arguments().mid(1);
    const bool isAtOnce = texts.removeAll(QStringLiteral("--at-once")) > 0;
    const bool isHasty = texts.removeAll(QStringLiteral("--hasty")) > 0;
    Game game(isHasty ? SpPatience{300ms, 5s, 3s, 3s, 0ms} : SpPatience(),
              texts.isEmpty() ? phrasesOfAGame() : texts);
    if (isAtOnce)
        game.handOverAll();
    else
        game.handOver();
    return QCoreApplication::exec();
}
