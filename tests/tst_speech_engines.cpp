// The real engines below the voice, against a speech-dispatcher of the test's own in all its moods.

#include "platform/error.h"
#include "platform/qt_speech_engine.h"
#include "platform/sp_voice.h"
#include "platform/ssip_engine.h"
#include "support/threaded_sp_engine.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace platform;
using namespace std::chrono_literals;

constexpr SpPatience patience{200ms, 3s, 600ms, 600ms, 0ms};
constexpr int async = SpVoice::SVSFlagsAsync;

class TestSpeechEngines : public QObject
{
    Q_OBJECT

public:
    /// Qt's engine knows no language "C".
    static void initMain() { qputenv("LC_ALL", "en_US.UTF-8"); }

private Q_SLOTS:
    void init();
    void cleanup();
    void moods_data();
    void moods();
    void conversation();
    void signOfLifeKeepsOutOfTheText();
    void startsTheService();
    void cannotStartTheService();
    void notInstalled_data();
    void notInstalled();
    void neverBlocks();

private:
    void startService(const QString &mood);
    void stopService();
    void makeVoice(const SpEngineFactory &factory);
    QStringList received();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_service;
    std::unique_ptr<SpVoice> m_voice;
    QByteArray m_received;
    QStringList m_log;
};

std::unique_ptr<SpEngine> makeSsipEngine()
{
    return std::make_unique<SsipEngine>();
}

std::unique_ptr<SpEngine> makeQtEngine()
{
    return std::make_unique<ThreadedSpEngine>(std::make_unique<QtSpeechEngine>());
}

void TestSpeechEngines::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("SPEECHD_ADDRESS", "unix_socket:" + m_folder->filePath("s").toLocal8Bit());
    qputenv("SPEECHD_CMD", "no-such-command");
    m_log.clear();
}

void TestSpeechEngines::cleanup()
{
    m_voice.reset();
    stopService();
}

void TestSpeechEngines::stopService()
{
    if (m_service) {
        m_service->kill();
        m_service->waitForFinished();
        m_service.reset();
    }
}

void TestSpeechEngines::startService(const QString &mood)
{
    stopService();
    QFile::remove(m_folder->filePath("s"));
    m_received.clear();
    m_service = std::make_unique<QProcess>();
    m_service->setProcessChannelMode(QProcess::MergedChannels);
    m_service->start(PYTHON, {FAKE_SPEECHD, m_folder->filePath("s"), mood});
    QTRY_VERIFY(received().contains("listening"));
}

QStringList TestSpeechEngines::received()
{
    m_received += m_service->readAll();
    return QString::fromUtf8(m_received).split(u'\n');
}

void TestSpeechEngines::makeVoice(const SpEngineFactory &factory)
{
    m_voice = std::make_unique<SpVoice>(factory, patience);
    connect(m_voice.get(), &SpVoice::VoicesKnown, this, [this] { m_log += "known"; });
    connect(m_voice.get(), &SpVoice::VoicesUnknown, this,
            [this](int number) { m_log += QStringLiteral("unknown %1").arg(number); });
    connect(m_voice.get(), &SpVoice::EndStream, this,
            [this](int number) { m_log += QStringLiteral("end %1").arg(number); });
    connect(m_voice.get(), &SpVoice::Failed, this,
            [this](int number) { m_log += QStringLiteral("failed %1").arg(number); });
}

void TestSpeechEngines::moods_data()
{
    QTest::addColumn<bool>("isQt");
    QTest::addColumn<QString>("mood");
    QTest::addColumn<QStringList>("log");
    const QStringList spoken{"known", "end 1", "end 2"};
    const auto row = [](const char *mood, const QStringList &ssip, const QStringList &qt) {
        QTest::addRow("SSIP %s", mood) << false << mood << ssip;
        QTest::addRow("Qt %s", mood) << true << mood << qt;
    };
    row("normal", spoken, spoken);
    row("early", spoken, spoken);
    row("cancelled", spoken, spoken);
    row("refused", {"known", "failed 402"}, {"known", "failed 6"});
    row("silent", {"known", "failed 3"}, {"known", "failed 3"});
    row("dropped", {"known", "failed 2"}, {"known", "failed 6"});
    row("stuck", {"known", "failed 3"}, {"known", "failed 3"});
    row("novoices", {"unknown 4", "failed 4"}, {"unknown 6", "failed 6"});
    row("mute", {"unknown 3", "failed 3"}, {"unknown 3", "failed 3"});
}

/// Two texts while the service is in its mood; then, where that failed, one more to a new service.
void TestSpeechEngines::moods()
{
    QFETCH(bool, isQt);
    QFETCH(QString, mood);
    QFETCH(QStringList, log);
    if (isQt && !QTextToSpeech::availableEngines().contains("speechd"))
        QSKIP("Qt's plugin for speech-dispatcher is not installed");
    startService(mood);
    makeVoice(isQt ? makeQtEngine : makeSsipEngine);
    m_voice->Speak("Gee, 48", async);
    m_voice->Speak("Gee, 4 ,8", async);
    QTRY_COMPARE_WITH_TIMEOUT(m_log, log, 6000);
    if (log.last().startsWith("end"))
        return;
    startService("normal");
    m_voice->Speak("And After", async);
    QTRY_COMPARE_WITH_TIMEOUT(m_log, log + QStringList({"known", "end 3"}), 6000);
    QVERIFY(received().contains("And After"));
    QVERIFY(!received().contains("Gee, 4 ,8"));
}

/// All that the service hears, word for word.
void TestSpeechEngines::conversation()
{
    startService("normal");
    makeVoice(makeSsipEngine);
    m_voice->Speak("Gee, 48", async);
    m_voice->setVoice(2);
    m_voice->setRate(-7);
    m_voice->Speak(".5\nl\u00e4\r\n.", async);
    QTRY_VERIFY(m_log.contains("end 2"));
    QCOMPARE(m_voice->GetVoices(), QStringList({"German", "English (America)", "French (France)"}));
    m_voice.reset();
    QTRY_VERIFY(received().contains("QUIT"));
    const QStringList expected = QStringLiteral("listening|SET SELF CLIENT_NAME user:vellomir:main|"
                                                "SET SELF PRIORITY message|SET SELF NOTIFICATION ALL on|"
                                                "SET SELF PUNCTUATION none|LIST OUTPUT_MODULES|"
                                                "SET SELF OUTPUT_MODULE fake|LIST SYNTHESIS_VOICES|"
                                                "SET SELF OUTPUT_MODULE fake|"
                                                "SET SELF SYNTHESIS_VOICE English (America)|"
                                                "SET SELF RATE 0|SPEAK|Gee, 48|.|"
                                                "SET SELF OUTPUT_MODULE fake|"
                                                "SET SELF SYNTHESIS_VOICE French (France)|"
                                                "SET SELF RATE -70|SPEAK|..5|l\u00e4 |..|.|CANCEL SELF|QUIT|")
                                     .split(u'|');
    QStringList lines = received();
    lines.removeAll("GET RATE"); // a sign of life, asked for when the machine is slow
    QCOMPARE(lines, expected);
}

/// Asked for while the service is about to take the text's lines.
void TestSpeechEngines::signOfLifeKeepsOutOfTheText()
{
    startService("normal");
    SsipEngine engine;
    connect(&engine, &SpEngine::opened, this, [&] {
        engine.speak({QStringLiteral("Bee, 7"), 0, 0});
        engine.ping();
    });
    connect(&engine, &SpEngine::ended, this, [this] { m_log += "end"; });
    connect(&engine, &SpEngine::alive, this, [this] { m_log += "alive"; });
    engine.open();
    QTRY_COMPARE(m_log, QStringList({"end", "alive"}));
    QTRY_VERIFY(received().join(u'|').contains("|SPEAK|Bee, 7|.|GET RATE|"));
}

/// The command to start the service with comes up with one that daemonizes, as the real one does.
void TestSpeechEngines::startsTheService()
{
    const QString command = m_folder->filePath("start");
    QFile file(command);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\n[ \"$1 $2 $3 $4\" = '--spawn --communication-method unix_socket --socket-path' ] "
               "|| exit 3\n"
               "'" PYTHON "' '" FAKE_SPEECHD "' \"$5\" normal >/dev/null 2>&1 &\n"
               "echo $! > \"$5.pid\"\n");
    file.close();
    file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    qputenv("SPEECHD_CMD", command.toLocal8Bit());
    makeVoice(makeSsipEngine);
    m_voice->Speak("Oh, 62", async);
    QTRY_COMPARE(m_log, QStringList({"known", "end 1"}));
    QFile pid(m_folder->filePath("s.pid"));
    QVERIFY(pid.open(QIODevice::ReadOnly));
    QCOMPARE(QProcess::execute("kill", {QString::fromLatin1(pid.readAll().trimmed())}), 0);
}

void TestSpeechEngines::cannotStartTheService()
{
    qputenv("SPEECHD_CMD", "false");
    makeVoice(makeSsipEngine);
    m_voice->Speak("Oh, 62", async);
    QTRY_COMPARE(m_log, QStringList({"unknown 1", "failed 1"}));
}

void TestSpeechEngines::notInstalled_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::newRow("nobody at the address") << qgetenv("SPEECHD_ADDRESS");
    QTest::newRow("nobody at the usual address") << QByteArray();
    QTest::newRow("a kind of address that is not known") << QByteArray("inet_socket:127.0.0.1:6560");
}

void TestSpeechEngines::notInstalled()
{
    QFETCH(QByteArray, address);
    qputenv("SPEECHD_ADDRESS", address);
    qputenv("XDG_RUNTIME_DIR", m_folder->path().toLocal8Bit());
    QVERIFY_THROWS_EXCEPTION(Error, SpVoice());
}

/// Nothing that this thread calls waits for a service that never says a word.
void TestSpeechEngines::neverBlocks()
{
    startService("mute");
    QElapsedTimer time;
    time.start();
    makeVoice(makeSsipEngine);
    m_voice->Speak("Oh, 62", async);
    QCoreApplication::processEvents();
    m_voice.reset();
    QVERIFY2(time.elapsed() < 50, qPrintable(QString::number(time.elapsed())));
}

QTEST_GUILESS_MAIN(TestSpeechEngines)
#include "tst_speech_engines.moc"
