// The queue of a voice and its timeouts, whatever speech-dispatcher does below.

#include "sp_voice.h"
#include "voice_language.h"

#include <QtTest>

using namespace speech;
using namespace std::chrono_literals;

/// A voice's clock stands still: its time passes with each "timeout" of its timer.
constexpr SpTimeouts timeouts{1h, 30h, 15h, 5h, 1h};

class TestSpeech : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void languages()
    {
        const QStringList tags = QString("en-029 en-GB en-US fr-BE fr-FR pt PT_br de es-419").split(' ');
        QString found;
        for (const char *user : {"pt_BR", "de_AT", "fi_FI", "C", "fr_CA", "en_NZ", "pt_PT", "es"})
            found += tags.value(bestLanguage(tags, QLocale(user)).value_or(-1), "none") + ' ';
        QCOMPARE(found, "PT_br de none none fr-FR en-US pt es-419 ");
    }

    /// With all that a service and a socket may do: CONVERSATIONS, the first from SEED or a new one. Each
    /// text is spoken in its voice and ends, in order, or is lost with all behind it in one failure.
    void chance_data()
    {
        QTest::addColumn<quint32>("seed");
        const QString anySeed = QString::number(QRandomGenerator::global()->generate());
        quint32 seed = qEnvironmentVariable("SEED", anySeed).toUInt();
        for (int left = qEnvironmentVariable("CONVERSATIONS", "5").toInt(); left > 0; --left, ++seed)
            QTest::addRow("SEED=%u", seed) << seed;
    }
    void chance()
    {
        QFETCH(quint32, seed);
        QRandomGenerator chance(seed);
        const QStringList names{"German", "Bass++", "English (America)", "French (France)"};
        const std::pair<const char *, QString> endings[] = {
            {"", ""}, {",4", ", 4"}, {"\n\u00e4\r\n.5\n.", "/\u00e4 /..5/.."}};
        const QString by = "%1%2 by CAP_LET_RECOGN none, CLIENT_NAME :vellomir:main, NOTIFICATION ALL on, "
                           "OUTPUT_MODULE %3, PRIORITY message, PUNCTUATION none, RATE %4, SPELLING off, "
                           "SYNTHESIS_VOICE %5";
        const QTemporaryDir folder;
        const QString socket = folder.filePath("socket");
        qputenv("SPEECHD_ADDRESS", "unix_socket:" + socket.toLocal8Bit());
        QProcess service;
        service.start(QFINDTESTDATA("support/fake_speechd.py"), {socket, QString::number(seed)});
        QVERIFY(service.waitForReadyRead()); // It listens.
        int unanswered = 0;                  // pings
        const auto makeEngine = [&] {
            auto engine = makeSystemEngine();
            unanswered = 0;
            connect(engine.get(), &SpEngine::alive, &service, [&] { --unanswered; });
            return engine;
        };
        SpVoice voice(makeEngine, timeouts);
        auto *clock = voice.findChild<QTimer *>();
        QStringList texts, log;
        QByteArray heard;
        int gone = 0;
        connect(&voice, &SpVoice::EndStream, [&](int number) {
            QCOMPARE(number, ++gone);
            log += texts[number - 1];
        });
        connect(&voice, &SpVoice::Failed, [&](const base::Error &error) {
            QVERIFY(gone < texts.size());
            gone = int(texts.size());
            log += error.description;
            heard += service.readAll();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the engine
        });
        for (int n = 1, position = -1; n < 100; ++n) {
            if (chance.bounded(2) == 0)
                voice.setVoice(position = chance.bounded(8));
            const QString module = position >= 0 && position < 4 ? "other" : "fake";
            const int rate = chance.bounded(-10, 11);
            voice.setRate(rate);
            const auto &[said, sent] = endings[chance.bounded(3)];
            voice.Speak(QString::number(n) + said, SpVoice::SVSFlagsAsync);
            texts += by.arg(n).arg(sent, module).arg(10 * rate).arg(names.value(position % 4, "None"));
            if (chance.bounded(20) == 0) {
                voice.Speak(" \n", SpVoice::SVSFlagsAsync);
                texts += "";
            }
            if (n < 99 && chance.bounded(3) > 0)
                continue;
            for (const QDeadlineTimer patience(30'000); gone < texts.size();) {
                QVERIFY(!patience.hasExpired());
                QCoreApplication::processEvents();
                if (clock->isActive() &&
                    (unanswered < 2 || service.peek(service.bytesAvailable()).endsWith("mute\n"))) {
                    ++unanswered;
                    QMetaObject::invokeMethod(clock, "timeout");
                }
            }
        }
        service.kill();
        service.waitForFinished();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 9999); // A loss of no text is no failure.
        heard += service.readAll();
        log = log.filter(QRegularExpression("^(?!$|The speech service was lost)"));
        QVERIFY(!log.isEmpty());
        const QRegularExpression news(" by |does not answer|^OK$");
        QCOMPARE(log, QString(heard).split('\n').filter(news).mid(0, log.size()));
    }

    /// Where nobody answers, the service is to be started; where it can be neither, there is none.
    void cannotStart()
    {
        qputenv("XDG_RUNTIME_DIR", "/none");
        qputenv("SPEECHD_CMD", "no-such-command");
        for (const char *address : {"", "inet_socket:::1:1", "unix_socket:/none"}) {
            qputenv("SPEECHD_ADDRESS", address);
            QVERIFY_THROWS_EXCEPTION(base::Error, makeSystemEngine());
        }
        qputenv("SPEECHD_CMD", "grep");
        SpVoice voice(makeSystemEngine, timeouts);
        QStringList failures;
        connect(&voice, &SpVoice::Failed, [&](const base::Error &error) { failures += error.description; });
        for (int i = 0; i < 9; ++i) // A service that is still being started is alive.
            QMetaObject::invokeMethod(voice.findChild<QTimer *>(), "timeout");
        voice.Speak("a", SpVoice::SVSFDefault); // returns when the text is lost
        QCoreApplication::processEvents();
        QCOMPARE(failures, QStringList("Try 'grep --help' for more information."));
    }
};

QTEST_GUILESS_MAIN(TestSpeech)
#include "tst_speech.moc"
