// The queue and the patience of the voice, whatever the service below does.

#include "platform/sp_voice.h"
#include "support/fake_sp_engine.h"

#include <QSignalSpy>
#include <QTest>

using namespace platform;
using namespace std::chrono_literals;

constexpr int async = SpVoice::SVSFlagsAsync;
constexpr SpPatience patience{20ms, 200ms, 300ms, 100ms, 10ms};

/// A voice over a fake service, and all that it signals, in order.
struct Bench
{
    explicit Bench(const SpPatience &patient = patience)
        : voice(std::make_unique<SpVoice>(service.factory(), patient))
    {
        QObject::connect(voice.get(), &SpVoice::VoicesKnown, [this] { log += "known"; });
        QObject::connect(voice.get(), &SpVoice::VoicesUnknown,
                         [this](int number) { log += QStringLiteral("unknown %1").arg(number); });
        QObject::connect(voice.get(), &SpVoice::EndStream,
                         [this](int number) { log += QStringLiteral("end %1").arg(number); });
        QObject::connect(voice.get(), &SpVoice::Failed,
                         [this](int number) { log += QStringLiteral("failed %1").arg(number); });
    }

    FakeSpeech service;
    std::unique_ptr<SpVoice> voice;
    QStringList log;
};

class TestSpVoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreSpokenInOrder();
    void nextTextWaitsForTheEndOfTheOneBefore();
    void blankTextsEndByThemselvesInTheirTurn();
    void voiceAndRateAreThoseOfTheMoment();
    void positionThatTheListDoesNotHave();
    void notInstalled();
    void serviceFails();
    void silence_data();
    void silence();
    void idleServiceIsLeftAlone();
    void speakThatWaits();
    void speakThatWaitsFails();
    void voiceGoesWhileSpeakWaits();
    void defaultVoices_data();
    void defaultVoices();
};

void TestSpVoice::textsAreSpokenInOrder()
{
    Bench bench;
    QStringList texts, ends{"known"};
    for (int i = 1; i <= 200; ++i) {
        texts += QString::number(i);
        ends += QStringLiteral("end %1").arg(i);
        QCOMPARE(bench.voice->Speak(texts.last(), async), i);
    }
    QVERIFY(bench.log.isEmpty());
    QTRY_COMPARE(bench.log, ends);
    QCOMPARE(bench.service.texts(), texts);
    QCOMPARE(bench.voice->GetVoices(), QStringList({"Ann", "Bob", "Cid"}));
}

void TestSpVoice::nextTextWaitsForTheEndOfTheOneBefore()
{
    Bench bench;
    bench.service.speaksByItself = false;
    bench.voice->Speak("one", async);
    bench.voice->Speak("two", async);
    QTRY_COMPARE(bench.service.texts(), QStringList("one"));
    Q_EMIT bench.service.engine->begun();
    QCoreApplication::processEvents();
    QCOMPARE(bench.service.texts(), QStringList("one"));
    Q_EMIT bench.service.engine->ended();
    QVERIFY2(!bench.log.contains("end 1"), "signalled from inside the engine");
    QTRY_COMPARE(bench.service.texts(), QStringList({"one", "two"}));
    Q_EMIT bench.service.engine->ended(); // without having begun: cancelled by somebody else
    Q_EMIT bench.service.engine->ended(); // and once too often
    QTRY_COMPARE(bench.log, QStringList({"known", "end 1", "end 2"}));
}

void TestSpVoice::blankTextsEndByThemselvesInTheirTurn()
{
    Bench bench;
    bench.service.speaksByItself = false;
    for (const char *text : {"one", "", " \t\n", "two"})
        bench.voice->Speak(text, async);
    QTRY_COMPARE(bench.service.texts(), QStringList("one"));
    QCOMPARE(bench.log, QStringList("known"));
    Q_EMIT bench.service.engine->ended();
    QTRY_COMPARE(bench.service.texts(), QStringList({"one", "two"}));
    QCOMPARE(bench.log, QStringList({"known", "end 1", "end 2", "end 3"}));
}

void TestSpVoice::voiceAndRateAreThoseOfTheMoment()
{
    Bench bench;
    bench.voice->Speak("default", async);
    bench.voice->setVoice(2);
    bench.voice->setRate(10);
    bench.voice->Speak("chosen", async);
    bench.voice->setVoice(0);
    bench.voice->setRate(-99);
    bench.voice->Speak("changed", async);
    QTRY_VERIFY(bench.log.contains("end 3"));
    QList<qsizetype> voices;
    QList<int> rates;
    for (const SpText &text : bench.service.spoken) {
        voices += text.voice;
        rates += text.rate;
    }
    QCOMPARE(voices, QList<qsizetype>({1, 2, 0}));
    QCOMPARE(rates, QList<int>({0, 10, -10}));
}

void TestSpVoice::positionThatTheListDoesNotHave()
{
    Bench bench;
    bench.voice->Speak("before", async);
    bench.voice->setVoice(3); // Nobody knows yet: it is this text's failure, and only this text's.
    bench.voice->Speak("lost", async);
    bench.voice->setVoice(2);
    bench.voice->Speak("after", async);
    QTRY_COMPARE(bench.log, QStringList({"known", "end 1", "failed 5", "end 3"}));
    QCOMPARE(bench.service.texts(), QStringList({"before", "after"}));
    for (const int position : {3, -1})
        QVERIFY_THROWS_EXCEPTION(Error, bench.voice->setVoice(position));
    QCOMPARE(bench.service.enginesMade, 1);
}

void TestSpVoice::notInstalled()
{
    FakeSpeech service;
    service.isInstalled = false;
    SpVoice::setSystemEngine(service.factory());
    QVERIFY_THROWS_EXCEPTION(Error, SpVoice());
}

void TestSpVoice::serviceFails()
{
    Bench bench;
    bench.service.speaksByItself = false;
    for (const char *text : {"one", "two", "three"})
        bench.voice->Speak(text, async);
    QTRY_COMPARE(bench.service.texts(), QStringList("one"));
    Q_EMIT bench.service.engine->failed(SpLost, "lost");
    QTRY_COMPARE(bench.log, QStringList({"known", "failed 2"}));
    QTRY_VERIFY(!bench.service.engine);

    bench.service.isInstalled = false;
    QVERIFY_THROWS_EXCEPTION(Error, bench.voice->Speak("thrown", async));

    bench.service.isInstalled = bench.service.speaksByItself = true;
    bench.voice->Speak("anew", async);
    QTRY_COMPARE(bench.log, QStringList({"known", "failed 2", "known", "end 4"}));
    QCOMPARE(bench.service.texts(), QStringList({"one", "anew"}));

    Q_EMIT bench.service.engine->failed(SpLost, "lost"); // while nobody speaks: nobody's failure
    bench.voice->Speak("again", async);
    QTRY_COMPARE(bench.log.mid(4), QStringList({"known", "end 5"}));
    QCOMPARE(bench.service.enginesMade, 3);
}

void TestSpVoice::silence_data()
{
    QTest::addColumn<bool>("opens");
    QTest::addColumn<bool>("begins");
    QTest::addColumn<bool>("isAlive");
    QTest::addColumn<QStringList>("log");
    QTest::addColumn<int>(
        "pings"); // one less than the pulses that the patience lasts; two when nobody answers
    const QStringList unknown{"unknown 3", "failed 3"};
    const QStringList failed{"known", "failed 3"};
    QTest::newRow("never opens") << false << false << true << unknown << 9;
    QTest::newRow("hangs while it opens") << false << false << false << unknown << 2;
    QTest::newRow("never begins") << true << false << true << failed << 14;
    QTest::newRow("hangs before it begins") << true << false << false << failed << 2;
    QTest::newRow("never ends") << true << true << true << failed << 7;
    QTest::newRow("hangs while it speaks") << true << true << false << failed << 2;
}

/// Twice: a service that is opened anew has all the patience again.
void TestSpVoice::silence()
{
    QFETCH(bool, opens);
    QFETCH(bool, begins);
    QFETCH(bool, isAlive);
    QFETCH(QStringList, log);
    Bench bench;
    bench.service.speaksByItself = false;
    bench.service.opens = opens;
    bench.service.isAlive = isAlive;
    for (int round = 1; round <= 2; ++round) {
        bench.log.clear();
        bench.service.pings = 0;
        bench.voice->Speak("Oh 62", async);
        bench.voice->Speak("lost with it", async);
        if (begins) {
            QTRY_COMPARE(bench.service.spoken.size(), round);
            Q_EMIT bench.service.engine->begun();
            bench.service.pings = 0;
        }
        QTRY_COMPARE(bench.log, log);
        QTEST(bench.service.pings, "pings");
        QTRY_VERIFY(!bench.service.engine);
    }
}

void TestSpVoice::idleServiceIsLeftAlone()
{
    Bench bench;
    bench.service.isAlive = false;
    bench.voice->Speak("one", async);
    QTRY_COMPARE(bench.log, QStringList({"known", "end 1"}));
    Bench clock; // another one, that runs out of patience
    clock.service.isAlive = clock.service.speaksByItself = false;
    clock.voice->Speak("one", async);
    QTRY_COMPARE(clock.log, QStringList({"known", "failed 3"}));
    QCOMPARE(bench.log.size(), 2);
    QCOMPARE(bench.service.pings, 0);
}

void TestSpVoice::speakThatWaits()
{
    Bench bench;
    bench.voice->Speak("before", async);
    bool isWaitingSeen = false;
    QTimer::singleShot(0, [&] { isWaitingSeen = SpVoice::isWaiting(); });
    QCOMPARE(bench.voice->Speak("Bee 4", SpVoice::SVSFDefault), 2);
    QCOMPARE(bench.service.texts(), QStringList({"before", "Bee 4"}));
    QCOMPARE(bench.voice->Speak("", SpVoice::SVSFDefault), 3);
    QVERIFY(isWaitingSeen);
    QVERIFY(!SpVoice::isWaiting());
    QTRY_COMPARE(bench.log, QStringList({"known", "end 1", "end 2", "end 3"}));
}

void TestSpVoice::speakThatWaitsFails()
{
    Bench bench;
    bench.service.speaksByItself = false;
    const auto speakAndCatch = [&] {
        try {
            bench.voice->Speak("waits", SpVoice::SVSFDefault);
        } catch (const Error &error) {
            return error.number;
        }
        return 0;
    };
    QCOMPARE(speakAndCatch(), int(SpSilent));
    QCOMPARE(bench.log, QStringList("known")); // thrown, so not signalled
    QVERIFY(!SpVoice::isWaiting());

    QTimer::singleShot(100, [&] { Q_EMIT bench.service.engine->failed(304, "refused"); });
    bench.voice->Speak("in the queue", async);
    QCOMPARE(speakAndCatch(), 304);
    QTRY_COMPARE(bench.log, QStringList({"known", "known", "failed 304"})); // of the one in the queue

    bench.voice->setVoice(7);
    QCOMPARE(speakAndCatch(), int(SpNoSuchVoice));
}

void TestSpVoice::voiceGoesWhileSpeakWaits()
{
    Bench bench;
    bench.service.speaksByItself = false;
    QTimer::singleShot(10, [&] { bench.voice.reset(); });
    bench.voice->Speak("cut off", SpVoice::SVSFDefault);
    QVERIFY(!bench.voice);
    QVERIFY(!bench.service.engine);
    QVERIFY(!SpVoice::isWaiting());
}

void TestSpVoice::defaultVoices_data()
{
    QTest::addColumn<QString>("languages"); // the desktop's own default has a star
    QTest::addColumn<QString>("user");
    QTest::addColumn<int>("position");
    const QString many = "bpy en-029 en-GB en-US fr-BE fr-FR pt pt-BR de";
    QTest::newRow("territory") << many << "pt_BR" << 7;
    QTest::newRow("no voice of the territory") << many << "de_AT" << 8;
    QTest::newRow("the language's main territory") << many << "fr_CA" << 5;
    QTest::newRow("English is not Caribbean") << many << "en_NZ" << 3;
    QTest::newRow("any territory") << "en-US es-419"
                                   << "es_ES" << 1;
    QTest::newRow("no voice of the language") << many << "fi_FI" << 3;
    QTest::newRow("no language") << many << "C" << 3;
    QTest::newRow("only the King's English") << "af en-GB"
                                             << "fi_FI" << 1;
    QTest::newRow("no English either") << "af bpy"
                                       << "fi_FI" << 0;
    QTest::newRow("desktop's choice") << "en_GB *en_IE en_US"
                                      << "en_US" << 1;
    QTest::newRow("desktop's choice in a foreign tongue") << "en_US *bpy"
                                                          << "en_US" << 0;
}

void TestSpVoice::defaultVoices()
{
    QFETCH(QString, languages);
    QFETCH(QString, user);
    QList<SpVoiceInfo> voices;
    for (const QString &language : languages.split(u' '))
        voices.append({{}, QString(language).remove(u'*'), language.startsWith(u'*')});
    QTEST(int(SpVoice::defaultVoice(voices, QLocale(user))), "position");
}

QTEST_GUILESS_MAIN(TestSpVoice)
#include "tst_sp_voice.moc"
