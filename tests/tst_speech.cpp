// The queue and the patience of a voice, whatever the service below does; and speech-dispatcher in all its
// moods.

#include "support/fake_speech.h"
#include "voice_language.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace speech;
using namespace std::chrono_literals;

namespace {

constexpr int async = SpVoice::SVSFlagsAsync;
constexpr SpTimeouts hasty{20ms, 200ms, 300ms, 100ms, 10ms}, patient{200ms, 3s, 800ms, 800ms, 0ms};

/// A voice, and all that it signals, in order: "known", "end STREAM", "failed NUMBER".
struct Speaker
{
    explicit Speaker(const SpEngineFactory &factory, const SpTimeouts &timeouts = hasty)
        : voice(std::make_unique<SpVoice>(factory, timeouts))
    {
        QObject::connect(voice.get(), &SpVoice::VoicesKnown, [this] { log += "known"; });
        QObject::connect(voice.get(), &SpVoice::EndStream, [this](int n) { note("end", n); });
        QObject::connect(voice.get(), &SpVoice::Failed, [this](int n) { note("failed", n); });
    }
    void note(const char *what, int number) { log += QString("%1 %2").arg(what).arg(number); }
    void speak(const QStringList &texts) const
    {
        for (const QString &text : texts)
            voice->Speak(text, async);
    }
    void speakAndWait(const QString &text) const { voice->Speak(text, SpVoice::SVSFDefault); }

    std::unique_ptr<SpVoice> voice;
    QStringList log;
};

} // namespace

class TestSpeech : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_fake = std::make_unique<FakeSpeech>();
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

    /// Blank texts end by themselves, in their turn; nothing is signalled from inside the engine.
    void oneAfterTheOther()
    {
        m_fake->speaksByItself = false;
        const Speaker speaker(m_fake->factory());
        speaker.speak({"one", "", " \t\n", "two"});
        QTRY_COMPARE(m_fake->spoken.join('|'), "one -1 0");
        Q_EMIT m_fake->engine->begun();
        QCoreApplication::processEvents();
        QCOMPARE(m_fake->spoken.size(), 1);
        Q_EMIT m_fake->engine->ended();
        QCOMPARE(speaker.log.join('|'), "known");
        QTRY_COMPARE(m_fake->spoken.join('|'), "one -1 0|two -1 0");
        Q_EMIT m_fake->engine->ended(); // without having begun: cancelled by somebody else
        Q_EMIT m_fake->engine->ended(); // and once too often
        QTRY_COMPARE(speaker.log.join('|'), "known|end 1|end 2|end 3|end 4");
    }

    /// A voice that is not there is the failure of one text.
    void voiceAndRateOfTheMoment()
    {
        const Speaker speaker(m_fake->factory());
        speaker.speak({"default"});
        speaker.voice->setRate(10);
        for (const auto &[voice, text] : {std::pair(2, "chosen"), {3, "lost"}, {0, "changed"}}) {
            speaker.voice->setVoice(voice);
            speaker.speak({text});
            speaker.voice->setRate(-99);
        }
        QTRY_COMPARE(speaker.log.join('|'), "known|end 1|end 2|failed 5|end 4");
        QCOMPARE(m_fake->spoken.join('|'), "default -1 0|chosen 2 10|changed 0 -10");
    }

    void serviceFails()
    {
        m_fake->speaksByItself = false;
        const Speaker speaker(m_fake->factory());
        speaker.speak({"one", "two", "three"});
        QTRY_COMPARE(m_fake->spoken.size(), 1);
        Q_EMIT m_fake->engine->failed(SpLost, "lost");
        QTRY_COMPARE(speaker.log.join('|'), "known|failed 2");
        m_fake->isInstalled = false;
        QVERIFY_THROWS_EXCEPTION(files::Error, speaker.voice->Speak("thrown", async));
        m_fake->isInstalled = m_fake->speaksByItself = true;
        speaker.speak({"anew"});
        QTRY_COMPARE(speaker.log.last(), "end 4");
        Q_EMIT m_fake->engine->failed(SpLost, "lost"); // while nobody speaks: nobody's failure
        speaker.speak({"again"});
        QTRY_COMPARE(speaker.log.join('|'), "known|failed 2|known|end 4|known|end 5");
    }

    /// Asked for a sign of life as long as the patience lasts, or twice when there is none; and all that
    /// again when the service is opened anew.
    void silence()
    {
        const std::tuple<const char *, bool, bool, bool, int> rows[] = {
            {"never opens", false, false, true, 9},  {"hangs while it opens", false, false, false, 2},
            {"never begins", true, false, true, 14}, {"hangs before it begins", true, false, false, 2},
            {"never ends", true, true, true, 7},     {"hangs while it speaks", true, true, false, 2},
        };
        Speaker idle(m_fake->factory());
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
        QCOMPARE(m_fake->pings, 0); // Who is idle is left alone.
    }

    void speakThatWaits()
    {
        Speaker speaker(m_fake->factory());
        speaker.speak({"before"});
        bool isWaitingSeen = false;
        QTimer::singleShot(0, [&] { isWaitingSeen = SpVoice::isWaiting(); });
        speaker.speakAndWait("Bee 4");
        QCOMPARE(m_fake->spoken.join('|'), "before -1 0|Bee 4 -1 0");
        speaker.speakAndWait("");
        QVERIFY(isWaitingSeen && !SpVoice::isWaiting());
        QTRY_COMPARE(speaker.log.last(), "end 3");
        m_fake->speaksByItself = false;
        speaker.speakAndWait("waits");
        QCOMPARE(speaker.log.last(), "end 3"); // the wait ends before its failure is signalled
        QTRY_COMPARE(speaker.log.last(), "failed 3");
        QTimer::singleShot(100, [&] { Q_EMIT m_fake->engine->failed(304, "refused"); });
        speaker.speak({"in the queue"});
        speaker.speakAndWait("waits");
        QTRY_COMPARE(speaker.log.join('|'), "known|end 1|end 2|end 3|failed 3|known|failed 304");
        speaker.voice->setVoice(7);
        speaker.speakAndWait("in no voice");
        QTRY_COMPARE(speaker.log.last(), "failed 5");
        speaker.voice->setVoice(0);
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
            QElapsedTimer clock;
            startService(mood);
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
        speaker.speak({"Gee, 48"});
        speaker.voice->setVoice(2);
        speaker.voice->setRate(-7);
        speaker.speak({".5\nl\u00e4\r\n."});
        QTRY_VERIFY(speaker.log.contains("end 2"));
        QCOMPARE(speaker.voice->GetVoices(), QStringList({"German", "English (America)", "French (France)"}));
        speaker.voice.reset();
        QTRY_VERIFY(received().contains("|QUIT|"));
        QString heard = received().remove("GET RATE|"); // a sign of life, asked for when the machine is slow
        heard.replace(QRegularExpression("NAME \\w+:"), "NAME LOGIN:");
        QCOMPARE(heard, "listening|SET SELF CLIENT_NAME LOGIN:vellomir:main|SET SELF PRIORITY message|"
                        "SET SELF NOTIFICATION ALL on|SET SELF PUNCTUATION none|SET SELF CAP_LET_RECOGN none|"
                        "SET SELF SPELLING off|GET OUTPUT_MODULE|GET LANGUAGE|LIST OUTPUT_MODULES|"
                        "LIST SYNTHESIS_VOICES|SET SELF RATE 0|SPEAK|Gee, 48|.|"
                        "SET SELF SYNTHESIS_VOICE French (France)|"
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

    std::unique_ptr<FakeSpeech> m_fake;
    std::unique_ptr<QTemporaryDir> m_folder;
    QProcess m_service;
    QByteArray m_received;
};

QTEST_GUILESS_MAIN(TestSpeech)
#include "tst_speech.moc"
