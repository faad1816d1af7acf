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

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    QStringList texts = QCoreApplication::arguments().mid(1);
    const bool isAtOnce = texts.removeAll(QStringLiteral("--at-once")) > 0;
    const bool isHasty = texts.removeAll(QStringLiteral("--hasty")) > 0;
    if (texts.isEmpty())
        texts = phrasesOfAGame();

    QElapsedTimer clock;
    qint64 standstill = 0; // ms
    QTimer turns;
    QObject::connect(&turns, &QTimer::timeout, [&] { standstill = std::max(standstill, clock.restart()); });
    clock.start();
    turns.start(0ms);

    SpVoice voice([] { return std::make_unique<SsipEngine>(); },
                  isHasty ? SpPatience{300ms, 5s, 3s, 3s, 0ms} : SpPatience());
    int waiting = 0;
    const auto handOver = [&] {
        ++waiting;
        voice.Speak(texts.takeFirst(), SpVoice::SVSFlagsAsync);
    };
    const auto over = [&](const QString &how) {
        QTextStream(stdout) << how << Qt::endl;
        --waiting;
        if (!texts.isEmpty())
            handOver();
        else if (waiting == 0)
            QCoreApplication::quit();
    };
    QObject::connect(&voice, &SpVoice::EndStream, [&] { over(QStringLiteral("end")); });
    QObject::connect(&voice, &SpVoice::Failed,
                     [&](int number) { over(QStringLiteral("failed %1").arg(number)); });
    do
        handOver();
    while (isAtOnce && !texts.isEmpty());
    const int result = QCoreApplication::exec();
    QTextStream(stdout) << "standstill " << standstill << Qt::endl;
    return result;
}
