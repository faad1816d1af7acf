// The queue of a voice and its timeouts, whatever speech-dispatcher does below.

#include "sp_voice.h"
#include "voice_language.h"

#include <QtTest>

#include <random>

using namespace speech;
using namespace std::chrono_literals;

class TestSpeech : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { m_voice.reset(); }

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
        quint32 seed = qEnvironmentVariable("SEED", QString::number(std::random_device()())).toUInt();
        for (int left = qEnvironmentVariable("CONVERSATIONS", "5").toInt(); left > 0; --left, ++seed)
            QTest::addRow("SEED=%u", seed) << seed;
    }
    void chance()
    {
        QFETCH(quint32, seed);
        std::mt19937 chance(seed);
        const auto below = [&](int end) { return int(chance() % unsigned(end)); };
        const QStringList names{"German", "Bass++", "English (America)", "French (France)"};
        const std::pair<const char *, const char *> endings[] = {
            {"", ""}, {",4", ", 4"}, {"\n\u00e4\r\n.5\n.", "/\u00e4 /..5/.."}};
        const QString by = " by CAP_LET_RECOGN none, CLIENT_NAME :vellomir:main, NOTIFICATION ALL on, "
                           "OUTPUT_MODULE %1, PRIORITY message, PUNCTUATION none, RATE %2, SPELLING off, "
                           "SYNTHESIS_VOICE %3";
        QString module = "fake", voice = "None", trouble;
        QStringList heard, ended;
        const QString socket = m_folder.filePath(QString::number(seed));
        qputenv("SPEECHD_ADDRESS", "unix_socket:" + socket.toLocal8Bit());
        QProcess service;
        service.start(FAKE_SPEECHD, {socket, QString::number(seed)});
        QVERIFY(QTest::qWaitFor([&] { return service.canReadLine(); }, 30'000));
        open();
        for (int first = 1, next = 1; next < 40;) {
            QStringList texts;
            do {
                if (const int position = below(16); position < 8) {
                    m_voice->setVoice(position);
                    module = position < 4 ? "other" : "fake";
                    voice = names[position % 4];
                }
                const int rate = below(21) - 10;
                m_voice->setRate(rate);
                const auto &[said, sent] = endings[below(3)];
                const bool isBlank = below(20) == 0;
                m_voice->Speak(isBlank ? " \n" : QString::number(next) + said, SpVoice::SVSFlagsAsync);
                texts +=
                    isBlank ? "" : QString::number(next) + sent + by.arg(module).arg(10 * rate).arg(voice);
                ++next;
            } while (below(3) > 0);
            const QDeadlineTimer patience(30'000);
            while (!patience.hasExpired() && m_log.size() < texts.size() &&
                   !m_log.join("").contains("failed")) {
                QCoreApplication::processEvents();
                while (service.canReadLine()) {
                    const QString news = service.readLine().trimmed();
                    heard += QStringList(news).filter(" by ");
                    if (news == "mute" || news == "late")
                        trouble = news;
                }
                while (m_pingTimer->isActive() && (m_isAlive || trouble == "mute"))
                    ping();
            }
            const QStringList log = std::exchange(m_log, {});
            for (const QString &end : log.filter("end")) {
                QCOMPARE(end, QString("end %1").arg(first++));
                ended += texts.takeFirst();
            }
            const QRegularExpression failure(
                trouble.isEmpty() ? "failed OK|failed The speech service was lost"
                                  : "The speech service does not answer. The waiting calls were not spoken.");
            if (!texts.isEmpty()) {
                QCOMPARE(log.filter(failure).size(), 1);
                trouble.clear();
            }
            first = next;
        }
        ended.removeAll("");
        while (heard.size() < ended.size() && service.waitForReadyRead())
            heard += QString(service.readAll()).split('\n').filter(" by ");
        QCOMPARE(heard, ended);
        QVERIFY(!ended.isEmpty());
        service.kill();
        service.waitForFinished();
    }

    /// Where nobody answers, the service is to be started; where it can be neither, there is none.
    void cannotStart()
    {
        qputenv("XDG_RUNTIME_DIR", m_folder.path().toLocal8Bit());
        qputenv("SPEECHD_CMD", "no-such-command");
        for (const char *address : {"", "inet_socket:::1:1", "unix_socket:/none"}) {
            qputenv("SPEECHD_ADDRESS", address);
            QVERIFY_THROWS_EXCEPTION(base::Error, makeSystemEngine());
        }
        qputenv("SPEECHD_CMD", "ls");
        open();
        for (int i = 0; i < 9; ++i)
            ping();                                // A service that is still being started is alive.
        m_voice->Speak("a", SpVoice::SVSFDefault); // returns when the text is lost
        QVERIFY(QTest::qWaitFor(
            [this] {
                return m_log == QStringList("failed Try '" + QStandardPaths::findExecutable("ls") +
                                            " --help' for more information.");
            },
            30'000));
    }

private:
    /// A voice whose clock stands still: its time passes with ping().
    void open()
    {
        const auto makeEngine = [this] {
            auto engine = makeSystemEngine();
            m_isAlive = true;
            connect(engine.get(), &SpEngine::alive, this, [this] { m_isAlive = true; });
            return engine;
        };
        m_voice = std::make_unique<SpVoice>(makeEngine, SpTimeouts{1h, 10h, 15h, 5h, 1h});
        m_pingTimer = m_voice->findChild<QTimer *>();
        connect(m_voice.get(), &SpVoice::EndStream, [this](int n) { m_log += QString("end %1").arg(n); });
        connect(m_voice.get(), &SpVoice::Failed,
                [this](const base::Error &e) { m_log += "failed " + e.description; });
    }
    void ping()
    {
        m_isAlive = false;
        QMetaObject::invokeMethod(m_pingTimer, "timeout");
    }

    const QTemporaryDir m_folder;
    std::unique_ptr<SpVoice> m_voice;
    QTimer *m_pingTimer = nullptr;
    bool m_isAlive = true; ///< as far as the last ping has shown
    QStringList m_log;
};

QTEST_GUILESS_MAIN(TestSpeech)
#include "tst_speech.moc"
