// The queue of a voice and its timeouts, whatever the service below does; and speech-dispatcher in all its
// moods.

#include "support/fake_speech.h"
#include "voice_language.h"

#include <QtTest>

using namespace speech;
using namespace std::chrono_literals;

namespace {

constexpr SpTimeouts hasty{20ms, 200ms, 300ms, 100ms, 10ms}, patient{200ms, 3s, 800ms, 800ms, 0ms};

/// A voice, and all that it signals, in order: "known", "end STREAM", "failed NUMBER".
struct Speaker
{
    explicit Speaker(const SpEngineFactory &factory, const SpTimeouts &timeouts = hasty)
        : voice(std::make_unique<SpVoice>(factory, timeouts))
    {
        QObject::connect(voice.get(), &SpVoice::VoicesKnown, [this] { log += "known"; });
        QObject::connect(voice.get(), &SpVoice::EndStream,
                         [this](int n) { log += QString("end %1").arg(n); });
        QObject::connect(voice.get(), &SpVoice::Failed,
                         [this](int n) { log += QString("failed %1").arg(n); });
    }
    void speak(const QStringList &texts) const
    {
        for (const QString &text : texts)
            voice->Speak(text, SpVoice::SVSFlagsAsync);
    }
    void speakAndWait(const QString &text) const { voice->Speak(text, SpVoice::SVSFDefault); }

    std::unique_ptr<SpVoice> voice;
    QStringList log;
};

/// +text is to be spoken (_ is a blank), v2 and r9 are a voice and a rate; the service begins (b), ends (e)
/// or fails (f), is not installed (x) or speaks by itself (a); ~ is a while.
const std::pair<const char *, const char *> queue[] = {
    {"+one + +_ +two ~ b ~ e", "> one -1 0|known"}, // nothing is signalled from inside the engine
    {"+one + +_ +two ~ b ~ e ~ e e ~", "> one -1 0|known|end 1|end 2|end 3|> two -1 0|end 4"},
    {"a +default r10 v2 +chosen r-99 v3 +lost v0 +changed ~",
     "> default -1 0|known|end 1|> chosen 2 10|end 2|failed 5|> changed 0 -10|end 4"},
    {"+one +two ~ f ~ x +thrown a +anew ~ f +again ~",
     "> one -1 0|known|failed 2|thrown|> anew -1 0|known|end 3|> again -1 0|known|end 4"},
};

} // namespace

class TestSpeech : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        qputenv("XDG_RUNTIME_DIR", m_folder->path().toLocal8Bit());
        qputenv("SPEECHD_ADDRESS", "unix_socket:" + m_folder->filePath("s").toLocal8Bit());
        qputenv("SPEECHD_CMD", "no-such-command");
    }
    void cleanup()
    {
        m_service.kill();
        m_service.waitForFinished();
    }

    void oneAfterTheOther()
    {
        for (const auto &[script, log] : queue) {
            FakeSpeech fake{.speaksByItself = false};
            Speaker speaker(fake.factory());
            for (const QString &word : QString(script).split(' '))
                step(word, fake, speaker);
            QCOMPARE(speaker.log.join('|'), log);
        }
    }

    /// Asked for a sign of life as long as the timeout lasts, or twice when there is none; and all that again
    /// when the service is opened anew.
    void silence()
    {
        const std::tuple<const char *, bool, bool, bool, int> rows[] = {
            {"never opens", false, false, true, 9},  {"hangs while it opens", false, false, false, 2},
            {"never begins", true, false, true, 14}, {"hangs before it begins", true, false, false, 2},
            {"never ends", true, true, true, 7},     {"hangs while it speaks", true, true, false, 2},
        };
        FakeSpeech quiet;
        Speaker idle(quiet.factory());
        idle.speak({"one"});
        QTRY_COMPARE(idle.log.size(), 2);
        for (const auto &[what, opens, begins, isAlive, pings] : rows) {
            FakeSpeech fake{.opens = opens, .isAlive = isAlive, .speaksByItself = false};
            Speaker speaker(fake.factory());
            for (int round = 1; round <= 2; ++round) {
                speaker.log.clear();
                fake.pings = 0;
                speaker.speak({"Oh 62", "lost with it"});
                if (begins) {
                    QTRY_COMPARE(fake.spoken.size(), round);
                    Q_EMIT fake.engine->begun();
                    fake.pings = 0;
                }
                QTRY_COMPARE(speaker.log.join('|'), opens ? "known|failed 3" : "failed 3");
                QVERIFY2(fake.pings == pings, what);
            }
        }
        QCOMPARE(quiet.pings, 0); // Who is idle is left alone.
    }

    void speakThatWaits()
    {
        FakeSpeech fake;
        Speaker speaker(fake.factory());
        bool isWaitingSeen = false;
        QTimer::singleShot(0, [&] { isWaitingSeen = SpVoice::isWaiting(); });
        speaker.speak({"before"});
        speaker.speakAndWait("Bee 4");
        QVERIFY(isWaitingSeen && !SpVoice::isWaiting() && fake.spoken.size() == 2);
        fake.speaksByItself = false;
        QTimer::singleShot(50, [&] { Q_EMIT fake.engine->failed(304, "refused"); });
        speaker.speak({"in the queue"});
        speaker.speakAndWait("waits");
        QTRY_COMPARE(speaker.log.join('|'), "known|end 1|end 2|failed 304");
        QTimer::singleShot(10, [&] { speaker.voice.reset(); });
        speaker.speakAndWait("cut off");
        QVERIFY(!SpVoice::isWaiting());
    }

    void languages()
    {
        const QString many = "bpy en-029 en-GB en-US fr-BE fr-FR pt pt-BR de";
        const std::tuple<QString, const char *, int> rows[] = {
            {many, "pt_BR", 7}, {many, "de_AT", 8}, {many, "fi_FI", -1},       {many, "C", -1},
            {many, "fr_CA", 5}, {many, "en_NZ", 3}, {"en_US es-419", "es", 1}, {"af PT_br", "pt_BR", 1},
        };
        for (const auto &[languages, user, position] : rows)
            QVERIFY2(bestLanguage(languages.split(' '), QLocale(user)).value_or(-1) == position, user);
    }

    // ---- speech-dispatcher

    /// Two texts while the service is in its mood; then, where that failed, one more to a new service.
    void moods()
    {
        const std::pair<const char *, const char *> rows[] = {
            {"normal", "known|end 1|end 2"},
            {"early", "known|end 1|end 2"},
            {"cancelled", "known|end 1|end 2"},
            {"refused", "known|failed 402"},
            {"silent", "known|failed 3"},
            {"dropped", "known|failed 2"},
            {"novoices", "failed 4"},
            {"stuck", "known|failed 3"},
            {"mute", "failed 3"},
        };
        for (const auto &[mood, log] : rows) {
            startService(mood);
            QElapsedTimer clock;
            clock.start();
            const Speaker speaker(makeSystemEngine, patient);
            speaker.speak({"Gee, 48", "Gee, 4 ,8"});
            QVERIFY(clock.elapsed() < 500); // Nothing waits for the service, least of all when it is mute.
            QTRY_COMPARE_WITH_TIMEOUT(speaker.log.join('|'), log, 10000);
            if (QString(log).contains("end"))
                continue;
            startService("normal");
            speaker.speak({"And After"});
            QTRY_COMPARE_WITH_TIMEOUT(speaker.log.join('|'), QString(log) + "|known|end 3", 10000);
            QVERIFY(received().contains("|And After|") && !received().contains("Gee, 4"));
        }
    }

    /// All that the service hears, word for word; a sign of life is not asked for in the middle of a text.
    void conversation()
    {
        startService("normal");
        Speaker speaker(makeSystemEngine, patient);
        speaker.speak({"Gee, 48", "Gee, 4 ,8"});
        speaker.voice->setVoice(2);
        speaker.voice->setRate(-7);
        speaker.speak({".5\nl\u00e4\r\n."});
        QTRY_VERIFY(speaker.log.contains("end 3"));
        QCOMPARE(speaker.voice->GetVoices().mid(2, 4).join('|'),
                 "English (America) (other)|French (France) (other)|German (fake)|Bass++ (fake)");
        speaker.voice.reset();
        QTRY_VERIFY(received().contains("|QUIT|"));
        QString heard = received().remove("GET RATE|"); // a sign of life, asked for when the machine is slow
        QCOMPARE(heard.replace(QRegularExpression("NAME \\w+:"), "NAME LOGIN:"),
                 "listening|SET SELF CLIENT_NAME LOGIN:vellomir:main|SET SELF PRIORITY message|"
                 "SET SELF NOTIFICATION ALL on|SET SELF PUNCTUATION none|SET SELF CAP_LET_RECOGN none|"
                 "SET SELF SPELLING off|GET OUTPUT_MODULE|GET LANGUAGE|LIST OUTPUT_MODULES|"
                 "SET SELF OUTPUT_MODULE other|LIST SYNTHESIS_VOICES|SET SELF OUTPUT_MODULE fake|"
                 "LIST SYNTHESIS_VOICES|SET SELF RATE 0|SPEAK|Gee, 48|.|SPEAK|Gee, 4 , 8|.|"
                 "SET SELF OUTPUT_MODULE other|SET SELF SYNTHESIS_VOICE English (America)|"
                 "SET SELF RATE -70|SPEAK|..5|l\u00e4 |..|.|CANCEL SELF|QUIT|");

        startService("normal");
        const auto engine = makeSystemEngine();
        connect(engine.get(), &SpEngine::opened, this, [&] {
            engine->speak({"Bee, 7", 0, 0});
            engine->ping();
        });
        engine->open();
        QTRY_VERIFY(received().contains("|SPEAK|Bee, 7|.|GET RATE|"));
    }

    /// Where nobody answers, the service is to be started; where it can be neither, there is none.
    void cannotStart()
    {
        for (const QByteArray &address :
             {QByteArray(), QByteArray("inet_socket:::1:1"), qgetenv("SPEECHD_ADDRESS")}) {
            qputenv("SPEECHD_ADDRESS", address);
            QVERIFY_THROWS_EXCEPTION(files::Error, makeSystemEngine());
        }
        qputenv("SPEECHD_CMD", "false");
        const Speaker speaker(makeSystemEngine, patient);
        speaker.speak({"Oh, 62"});
        QTRY_COMPARE(speaker.log.join('|'), "failed 1");
    }

private:
    static void step(const QString &word, FakeSpeech &fake, Speaker &speaker)
    {
        QString rest = word.mid(1);
        switch (word[0].unicode()) {
        case '+':
            try {
                speaker.speak({rest.replace('_', ' ')});
            } catch (const files::Error &) {
                speaker.log += "thrown";
            }
            break;
        case 'v':
            return speaker.voice->setVoice(rest.toInt());
        case 'r':
            return speaker.voice->setRate(rest.toInt());
        case 'b':
            return Q_EMIT fake.engine->begun();
        case 'e':
            return Q_EMIT fake.engine->ended();
        case 'f':
            return Q_EMIT fake.engine->failed(SpLost, "lost");
        case 'x':
            fake.isInstalled = false;
            break;
        case 'a':
            fake.isInstalled = fake.speaksByItself = true;
            break;
        default:
            for (int i = 0; i < 50; ++i) {
                QCoreApplication::processEvents();
                while (!fake.spoken.isEmpty())
                    speaker.log += "> " + fake.spoken.takeFirst();
            }
        }
    }
    void startService(const QString &mood)
    {
        cleanup();
        QFile::remove(m_folder->filePath("s"));
        m_received.clear();
        m_service.start(PYTHON, {FAKE_SPEECHD, m_folder->filePath("s"), mood});
        QTRY_VERIFY(received().contains("listening"));
    }
    /// The lines that the service heard, with "|" behind each.
    QString received()
    {
        m_received += m_service.readAll();
        return QString::fromUtf8(m_received).replace('\n', '|');
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QProcess m_service;
    QByteArray m_received;
};

QTEST_GUILESS_MAIN(TestSpeech)
#include "tst_speech.moc"
