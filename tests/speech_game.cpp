// Speaks through the desktop's own service, for tests/speech_sound.sh: the texts of its arguments, or else
// the two phrases of all 75 calls, one after the other. Prints "end", or "failed NUMBER", for each.

#include "phrases.h"
#include "sp_voice.h"

#include <QCoreApplication>

#include <cstdio>

using speech::SpVoice;

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    QStringList texts = QCoreApplication::arguments().mid(1);
    for (int n = 1; n <= 75 && argc == 1; ++n)
        texts << voice::firstPhrase(n) << voice::followUp(voice::firstPhrase(n));

    SpVoice voice;
    const auto speakNext = [&] {
        if (texts.isEmpty())
            QCoreApplication::quit();
        else
            voice.Speak(texts.takeFirst(), SpVoice::SVSFlagsAsync);
    };
    QObject::connect(&voice, &SpVoice::EndStream, [&] {
        std::puts("end");
        speakNext();
    });
    QObject::connect(&voice, &SpVoice::Failed, [&](int number) {
        std::printf("failed %d\n", number);
        speakNext();
    });
    speakNext();
    return QCoreApplication::exec();
}
