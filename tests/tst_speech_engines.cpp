// The real engine below the voice, against a speech-dispatcher of the test's own in all its moods.

#include "ssip_engine.h"
#include "support/fake_sp_engine.h"
#include "system_engine.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace speech;
using namespace std::chrono_literals;

constexpr SpTimeouts timeouts{200ms, 3s, 600ms, 600ms, 0ms};
constexpr int async = SpVoice::SVSFlagsAsync;

class TestSpeechEngines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        qputenv("SPEECHD_ADDRESS", "unix_socket:" + m_folder->filePath("s").toLocal8Bit());
        qputenv("SPEECHD_CMD", "no-such-command");
        m_log.clear();
    }

    void cleanup()
    {
        m_voice.reset();
        m_service.kill();
        m_service.waitForFinished();
    }

    void moods_data()
    {
        QTest::addColumn<QString>("mood");
        QTest::addColumn<QString>("log");
        for (const auto &[mood, log] :
             std::initializer_list<std::array<const char *, 2>>{{"normal", "known|end 1|end 2"},
                                                                {"early", "known|end 1|end 2"},
                                                                {"cancelled", "known|end 1|end 2"},
                                                                {"refused", "known|failed 402"},
                                                                {"silent", "known|failed 3"},
                                                                {"dropped", "known|failed 2"},
                                                                {"novoices", "failed 4"},
                                                                {"stuck", "known|failed 3"},
                                                                {"mute", "failed 3"}}) {
            QTest::newRow(mood) << mood << log;
        }
    }

    /// Two texts while the service is in its mood; then, where that failed, one more to a new service.
    void moods()
    {
        QFETCH(QString, mood);
        QFETCH(QString, log);
        startService(mood);
        makeVoice();
        m_voice->Speak("Gee, 48", async);
        m_voice->Speak("Gee, 4 ,8", async);
        QTRY_COMPARE_WITH_TIMEOUT(m_log.join('|'), log, 6000);
        if (log.contains("end"))
            return;
        startService("normal");
        m_voice->Speak("And After", async);
        QTRY_COMPARE_WITH_TIMEOUT(m_log.join('|'), log + "|known|end 3", 6000);
        QVERIFY(received().contains("|And After|") && !received().contains("Gee, 4 , 8"));
    }

    /// All that the service hears, word for word.
    void conversation()
    {
        startService("normal");
        makeVoice();
        m_voice->Speak("Gee, 48", async);
        m_voice->setVoice(2);
        m_voice->setRate(-7);
        m_voice->Speak(".5\nl\u00e4\r\n.", async);
        QTRY_VERIFY(m_log.contains("end 2"));
        QCOMPARE(m_voice->GetVoices(), QStringList({"German", "English (America)", "French (France)"}));
        m_voice.reset();
        QTRY_VERIFY(received().contains("|QUIT|"));
        QString heard = received().remove("GET RATE|"); // a sign of life, asked for when the machine is slow
        heard.replace(QRegularExpression("NAME \\w+:"), "NAME LOGIN:");
        QCOMPARE(heard, "listening|SET SELF CLIENT_NAME LOGIN:vellomir:main|SET SELF PRIORITY message|SET "
                        "SELF NOTIFICATION ALL on|"
                        "SET SELF PUNCTUATION none|SET SELF CAP_LET_RECOGN none|SET SELF SPELLING off|"
                        "GET OUTPUT_MODULE|GET LANGUAGE|LIST OUTPUT_MODULES|LIST SYNTHESIS_VOICES|"
                        "SET SELF RATE 0|SPEAK|Gee, 48|.|SET SELF SYNTHESIS_VOICE French (France)|"
                        "SET SELF RATE -70|SPEAK|..5|l\u00e4 |..|.|CANCEL SELF|QUIT|");
    }

    /// Asked for while the service is about to take the text's lines.
    void signOfLifeKeepsOutOfTheText()
    {
        startService("normal");
        SsipEngine engine;
        connect(&engine, &SpEngine::opened, this, [&] {
            engine.speak({"Bee, 7", 0, 0});
            engine.ping();
        });
        engine.open();
        QTRY_VERIFY(received().contains("|SPEAK|Bee, 7|.|GET RATE|"));
    }

    /// Where nobody answers, the service is to be started; where it can be neither, there is none.
    void cannotStartTheService()
    {
        qputenv("XDG_RUNTIME_DIR", m_folder->path().toLocal8Bit());
        for (const QByteArray &address :
             {QByteArray(), QByteArray("inet_socket:::1:1"), qgetenv("SPEECHD_ADDRESS")}) {
            qputenv("SPEECHD_ADDRESS", address);
            QVERIFY_THROWS_EXCEPTION(files::Error, SpVoice());
        }
        qputenv("SPEECHD_CMD", "false");
        makeVoice();
        m_voice->Speak("Oh, 62", async);
        QTRY_COMPARE(m_log, QStringList("failed 1"));
    }

    /// Nothing that this thread calls waits for a service that never says a word.
    void neverBlocks()
    {
        startService("mute");
        QElapsedTimer time;
        time.start();
        makeVoice();
        m_voice->Speak("Oh, 62", async);
        QCoreApplication::processEvents();
        m_voice.reset();
        QVERIFY2(time.elapsed() < 50, qPrintable(QString::number(time.elapsed())));
    }

private:
    void makeVoice()
    {
        m_voice = std::make_unique<SpVoice>(makeSystemEngine, timeouts);
        noteSignals(*m_voice, m_log);
    }
    void startService(const QString &mood)
    {
        m_service.kill();
        m_service.waitForFinished();
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
    std::unique_ptr<SpVoice> m_voice;
    QByteArray m_received;
    QStringList m_log;
};

QTEST_GUILESS_MAIN(TestSpeechEngines)
#include "tst_speech_engines.moc"
