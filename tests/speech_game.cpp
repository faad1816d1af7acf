// Speaks the two phrases of all 75 calls through the system's own service, for tests/speech_sound.sh.

#include "phrases.h"
#include "sp_voice.h"

#include <QCoreApplication>

#include <cstdio>

using speech::SpVoice;

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    SpVoice voice;
    for (int n = 1; n <= 75; ++n) {
        const QString phrase = voice::firstPhrase(n);
        for (const QString &text : {phrase, voice::followUp(phrase)})
            voice.Speak(text, SpVoice::SVSFlagsAsync);
    }
    int spoken = 0;
    QObject::connect(&voice, &SpVoice::EndStream, [&] {
        if (++spoken == 150)
            QCoreApplication::quit();
    });
    QObject::connect(&voice, &SpVoice::Failed, [] { QCoreApplication::exit(1); });
    const int code = QCoreApplication::exec();
    std::printf("%d spoken\n", spoken);
    return code;
}
