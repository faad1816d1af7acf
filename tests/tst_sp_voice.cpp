// The queue and the patience of the voice, whatever the service below does.

#include "support/fake_sp_engine.h"
#include "voice_language.h"

#include <QTest>

using namespace speech;
using namespace std::chrono_literals;

constexpr int async = SpVoice::SVSFlagsAsync;

/// A voice over a fake service, and all that it signals, in order.
struct Bench
{
    explicit Bench(bool speaksByItself = true)
    {
        service.speaksByItself = speaksByItself;
        noteSignals(*voice, log);
    }

    void speak(const QStringList &texts) const
    {
        for (const QString &text : texts)
            voice->Speak(text, async);
    }
    void speakAndWait(const QString &text) const { voice->Speak(text, SpVoice::SVSFDefault); }

    FakeSpeech service;
    std::unique_ptr<SpVoice> voice =
        std::make_unique<SpVoice>(service.factory(), SpTimeouts{20ms, 200ms, 300ms, 100ms, 10ms});
    QStringList log;
};

class TestSpVoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Blank texts end by themselves, in their turn.
    void oneAfterTheOther()
    {
        const Bench bench(false);
        bench.speak({"one", "", " \t\n", "two"});
        QVERIFY(bench.log.isEmpty());
        QTRY_COMPARE(bench.service.texts(), QStringList("one"));
        Q_EMIT bench.service.engine->begun();
        QCoreApplication::processEvents();
        QCOMPARE(bench.service.texts(), QStringList("one"));
        Q_EMIT bench.service.engine->ended();
        QCOMPARE(bench.log, QStringList("known")); // nothing is signalled from inside the engine
        QTRY_COMPARE(bench.service.texts(), QStringList({"one", "two"}));
        Q_EMIT bench.service.engine->ended(); // without having begun: cancelled by somebody else
        Q_EMIT bench.service.engine->ended(); // and once too often
        QTRY_COMPARE(bench.log, QStringList({"known", "end 1", "end 2", "end 3", "end 4"}));
    }

    void voiceAndRateAreThoseOfTheMoment()
    {
        const Bench bench;
        bench.speak({"default"});
        bench.voice->setVoice(2);
        bench.voice->setRate(10);
        bench.speak({"chosen"});
        bench.voice->setVoice(3); // Nobody knows yet: it is this text's failure, and only this text's.
        bench.speak({"lost"});
        bench.voice->setVoice(0);
        bench.voice->setRate(-99);
        bench.speak({"changed"});
        QTRY_COMPARE(bench.log, QStringList({"known", "end 1", "end 2", "failed 5", "end 4"}));
        QString spoken;
        for (const SpText &text : bench.service.spoken)
            spoken += QString("%1 %2 %3|").arg(text.text).arg(text.voice.value_or(-1)).arg(text.rate);
        QCOMPARE(spoken, "default -1 0|chosen 2 10|changed 0 -10|");
        QCOMPARE(bench.voice->GetVoices(), QStringList({"Ann", "Bob", "Cid"}));
    }

    void serviceFails()
    {
        Bench bench(false);
        bench.speak({"one", "two", "three"});
        QTRY_COMPARE(bench.service.texts(), QStringList("one"));
        Q_EMIT bench.service.engine->failed(SpLost, "lost");
        QTRY_COMPARE(bench.log, QStringList({"known", "failed 2"}));
        bench.service.isInstalled = false;
        QVERIFY_THROWS_EXCEPTION(files::Error, bench.voice->Speak("thrown", async));
        bench.service.isInstalled = bench.service.speaksByItself = true;
        bench.speak({"anew"});
        QTRY_COMPARE(bench.log.last(), "end 4");
        Q_EMIT bench.service.engine->failed(SpLost, "lost"); // while nobody speaks: nobody's failure
        bench.speak({"again"});
        QTRY_COMPARE(bench.log, QStringList({"known", "failed 2", "known", "end 4", "known", "end 5"}));
        QCOMPARE(bench.service.texts(), QStringList({"one", "anew", "again"}));
    }

    /// Pings are one less than the pulses that the patience lasts, and two when nobody answers them. Twice: a
    /// service that is opened anew has all the patience again.
    void silence()
    {
        const std::tuple<const char *, bool, bool, bool, int> rows[] = {
            {"never opens", false, false, true, 9},  {"hangs while it opens", false, false, false, 2},
            {"never begins", true, false, true, 14}, {"hangs before it begins", true, false, false, 2},
            {"never ends", true, true, true, 7},     {"hangs while it speaks", true, true, false, 2},
        };
        for (const auto &[what, opens, begins, isAlive, pings] : rows) {
            Bench bench(false);
            bench.service.opens = opens;
            bench.service.isAlive = isAlive;
            for (int round = 1; round <= 2; ++round) {
                bench.log.clear();
                bench.service.pings = 0;
                bench.speak({"Oh 62", "lost with it"});
                if (begins) {
                    QTRY_COMPARE(bench.service.spoken.size(), round);
                    Q_EMIT bench.service.engine->begun();
                    bench.service.pings = 0;
                }
                QTRY_COMPARE(bench.log, opens ? QStringList({"known", "failed 3"}) : QStringList("failed 3"));
                QVERIFY2(bench.service.pings == pings, what);
                QTRY_VERIFY(!bench.service.engine);
            }
        }
    }

    void idleServiceIsLeftAlone()
    {
        Bench idle, clock(false); // another one, that runs out of patience
        idle.service.isAlive = clock.service.isAlive = false;
        idle.speak({"one"});
        clock.speak({"one"});
        QTRY_COMPARE(clock.log, QStringList({"known", "failed 3"}));
        QCOMPARE(idle.log, QStringList({"known", "end 1"}));
        QCOMPARE(idle.service.pings, 0);
    }

    void speakThatWaits()
    {
        Bench bench;
        bench.speak({"before"});
        bool isWaitingSeen = false;
        QTimer::singleShot(0, [&] { isWaitingSeen = SpVoice::isWaiting(); });
        bench.speakAndWait("Bee 4");
        QCOMPARE(bench.service.texts(), QStringList({"before", "Bee 4"}));
        bench.speakAndWait("");
        QVERIFY(isWaitingSeen && !SpVoice::isWaiting());
        QCOMPARE(bench.log, QStringList({"known", "end 1", "end 2", "end 3"}));

        bench.log.clear();
        bench.service.speaksByItself = false;
        bench.speakAndWait("waits");
        QCOMPARE(bench.log, QStringList("failed 3"));
        QTimer::singleShot(100, [&] { Q_EMIT bench.service.engine->failed(304, "refused"); });
        bench.speak({"in the queue"});
        bench.speakAndWait("waits");
        QCOMPARE(bench.log, QStringList({"failed 3", "known", "failed 304"}));
        for (const int voice : {7, -1}) {
            bench.voice->setVoice(voice);
            bench.speakAndWait("waits");
            QCOMPARE(bench.log.last(), "failed 5");
        }

        bench.voice->setVoice(1);
        QTimer::singleShot(10, [&] { bench.voice.reset(); });
        bench.speakAndWait("cut off");
        QVERIFY(!bench.voice && !bench.service.engine && !SpVoice::isWaiting());
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
};

QTEST_GUILESS_MAIN(TestSpVoice)
#include "tst_sp_voice.moc"
