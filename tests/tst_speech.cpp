// The queue of a voice and its timeouts, whatever the service below does; and speech-dispatcher.

#include "support/fake_speech.h"
#include "voice_language.h"

#include <QtTest>

#include <random>

using namespace speech;
using namespace std::chrono_literals;

namespace {

/// +text is to be spoken (_ is a blank), =text too, and is waited for while the script goes on; v2 and r9 are
/// a voice and a rate; the service begins (b), ends (e) or fails (f), dies (d) or becomes (not) installed
/// (x); t9 are nine pings' times; ~ is a while in which all that can happen happens; - ends the voice. In the
/// log a point stands behind what is signalled from inside the service.
const std::pair<const char *, const char *> queue[] = {
    {"+a +4,8 + +_ +b ~ b e e ~ e ~", "> a|known|.|.|end 1|> 4, 8|.|end 2|end 3|end 4|> b"},
    {"+a r10 v2 +b r-99 v3 +lost v0 +c ~ e ~ e ~ e ~ v3 v-1",
     "> a|known|.|end 1|> b 2 10|.|end 2|failed 5|> c 0 -10|.|end 4|thrown|thrown"},
    {"+a +b ~ f f t3 ~ x +c x +d ~ e ~ f +e ~",
     "> a|known|.|.|failed 2|thrown|> d|known|.|end 3|.|> e|known"},
    {"+a =b +c ~ e ~ e ~", "known|waits for a|.|end 1|waits for b|.|back|end 2|> c"},
    {"+a =b ~ f ~", "known|waits for a|.|back|failed 2"},
    {"v3 =a ~", "known|failed 5|back"},
    {"=a ~ -", "known|waits for a|back"},
    // One that is alive has all its time. Who is idle is left alone.
    {"+a t9 ~ t14 b t5 e ~ t99 +b ~ t15 ~", "> a|known|.|end 1|> b|failed 3"},
    {"+a t10 ~ +b ~ b t6 ~ +c ~", "failed 3|> b|known|failed 3|> c|known"},
    // One that is dead is given up at the third ping's time.
    {"d t2 ~ t3 +a ~ t2 b t2 e ~ t3 +b ~ t3 ~ +c t3 ~", "known|> a|.|end 1|> b|failed 3|failed 3"},
};

} // namespace

class TestSpeech : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        qputenv("XDG_RUNTIME_DIR", m_folder.path().toLocal8Bit());
        qputenv("SPEECHD_ADDRESS", "unix_socket:" + m_folder.filePath("s").toLocal8Bit());
        qputenv("SPEECHD_CMD", "no-such-command");
    }
    void cleanup()
    {
        m_voice.reset();
        m_service.kill();
        m_service.waitForFinished();
    }

    void oneAfterTheOther()
    {
        for (const auto &[script, log] : queue) {
            m_voice.reset();
            m_fake = {.speaksByItself = false};
            open(m_fake.factory());
            play(script);
            QCOMPARE(m_log.join('|'), log);
        }
    }

    void languages()
    {
        const QStringList tags = QString("en-029 en-GB en-US fr-BE fr-FR pt PT_br de es-419").split(' ');
        QString found;
        for (const char *user : {"pt_BR", "de_AT", "fi_FI", "C", "fr_CA", "en_NZ", "pt_PT", "es"})
            found += tags.value(bestLanguage(tags, QLocale(user)).value_or(-1), "none") + ' ';
        QCOMPARE(found, "PT_br de none none fr-FR en-US pt es-419 ");
    }

    // ---- speech-dispatcher

    /// Whatever a service and a socket lawfully do: CONVERSATIONS of them, the first from SEED or a new one.
    /// Each text is spoken in its voice and ends, in order, or is lost with all behind it in one failure.
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
        QString module = "fake", voice = "None";
        QStringList heard, ended;
        bool isMute = false;
        startService(QString::number(seed));
        int signsOfLife = 0;
        open([&] {
            auto engine = makeSystemEngine();
            connect(engine.get(), &SpEngine::alive, this, [&] { ++signsOfLife; });
            return engine;
        });
        for (int first = 1, next = 1; first < 40; first = next) {
            QStringList texts, log, must;
            m_log.clear();
            do {
                if (const int position = below(16); position < 8) {
                    m_voice->setVoice(position);
                    module = position < 4 ? "other" : "fake";
                    voice = names[position % 4];
                }
                const int rate = below(21) - 10;
                m_voice->setRate(rate);
                const auto &[said, sent] = endings[below(3)];
                m_voice->Speak(QString::number(next) + said, SpVoice::SVSFlagsAsync);
                texts +=
                    QString("%1%2 by CAP_LET_RECOGN none, CLIENT_NAME :vellomir:main, NOTIFICATION ALL on, "
                            "OUTPUT_MODULE %3, PRIORITY message, PUNCTUATION none, RATE %4, SPELLING off, "
                            "SYNTHESIS_VOICE %5")
                        .arg(next++)
                        .arg(sent, module)
                        .arg(10 * rate)
                        .arg(voice);
            } while (below(3) > 0);
            play("~ t1");
            const QDeadlineTimer patience(30'000);
            while (!patience.hasExpired() && log.size() < texts.size() && !log.join("").contains("failed")) {
                QCoreApplication::processEvents();
                const QString news = m_service.canReadLine() ? m_service.readLine().trimmed() : "";
                isMute = isMute || news == "mute";
                play(isMute ? "t3" : "t0");
                heard += news.isEmpty() || news == "mute" ? QStringList() : QStringList(news);
                log = m_log.filter(QRegularExpression("end|failed"));
            }
            for (qsizetype i = 0; i < log.filter("end").size(); ++i) {
                must += QString("end %1").arg(first + i);
                ended += texts.value(i);
            }
            if (must.size() < texts.size())
                must += std::exchange(isMute, false) ? "failed 3" : "failed";
            QCOMPARE(log.join('|').remove(QRegularExpression("(?<=failed) (2|4|402)$")), must.join('|'));
        }
        while (heard.size() < ended.size() && m_service.waitForReadyRead())
            heard += QString(m_service.readAll()).remove("mute\n").split('\n', Qt::SkipEmptyParts);
        QCOMPARE(heard, ended);
        QVERIFY(signsOfLife > 0);
    }

    /// Where nobody answers, the service is to be started; where it can be neither, there is none.
    void cannotStart()
    {
        for (const char *address : {"", "inet_socket:::1:1", "unix_socket:/none"}) {
            qputenv("SPEECHD_ADDRESS", address);
            QVERIFY_THROWS_EXCEPTION(base::Error, makeSystemEngine());
        }
        qputenv("SPEECHD_CMD", "false");
        open(makeSystemEngine);
        play("+a ~ t9");
        QVERIFY(QTest::qWaitFor([this] { return m_log == QStringList("failed 1"); }, 30'000));
    }

private:
    /// A voice whose clock stands still: all waiting is done with t.
    void open(const SpEngineFactory &factory)
    {
        m_log.clear();
        m_voice = std::make_unique<SpVoice>(factory, SpTimeouts{1h, 10h, 15h, 5h, 1h});
        connect(m_voice.get(), &SpVoice::VoicesKnown, [this] { m_log += "known"; });
        connect(m_voice.get(), &SpVoice::EndStream, [this](int n) { m_log += QString("end %1").arg(n); });
        connect(m_voice.get(), &SpVoice::Failed,
                [this](const base::Error &e) { m_log += QString("failed %1").arg(e.number); });
    }
    void play(const QString &script)
    {
        m_words = script.split(' ');
        while (!m_words.isEmpty())
            goOn();
    }
    void goOn()
    {
        if (m_words.isEmpty())
            return;
        const QString word = m_words.takeFirst();
        try {
            m_steps[word[0]](word.mid(1).replace('_', ' '));
        } catch (const base::Error &) {
            m_log += "thrown";
        }
    }
    void startService(const QString &mood)
    {
        cleanup();
        QFile::remove(m_folder.filePath("s"));
        m_service.start(PYTHON, {FAKE_SPEECHD, m_folder.filePath("s"), mood});
        QVERIFY(QTest::qWaitFor([this] { return m_service.canReadLine(); }, 30'000));
        m_service.readLine(); // "listening"
    }

    const QHash<QChar, std::function<void(const QString &)>> m_steps{
        {'+', [this](const QString &text) { m_voice->Speak(text, SpVoice::SVSFlagsAsync); }},
        {'=',
         [this](const QString &text) {
             QTimer meanwhile;
             connect(&meanwhile, &QTimer::timeout, this, &TestSpeech::goOn);
             meanwhile.start(0);
             m_voice->Speak(text, SpVoice::SVSFDefault);
             m_log += "back";
         }},
        {'v', [this](const QString &number) { m_voice->setVoice(number.toInt()); }},
        {'r', [this](const QString &number) { m_voice->setRate(number.toInt()); }},
        {'t',
         [this](const QString &number) {
             auto *timer = m_voice->findChild<QTimer *>();
             for (int i = 0; i < number.toInt() && timer->isActive(); ++i)
                 QMetaObject::invokeMethod(timer, "timeout");
         }},
        {'b', [this](const QString &) { Q_EMIT m_fake.engine->begun(); }},
        {'e', [this](const QString &) { Q_EMIT m_fake.engine->ended(), m_log += "."; }},
        {'f',
         [this](const QString &) {
             Q_EMIT m_fake.engine->failed({SpLost, "lost"}), m_log += ".";
         }},
        {'d', [this](const QString &) { m_fake.isAlive = false; }},
        {'x', [this](const QString &) { m_fake.isInstalled = !m_fake.isInstalled; }},
        {'~',
         [this](const QString &) {
             for (int i = 0; i < 50; ++i) {
                 QCoreApplication::processEvents();
                 while (!m_fake.spoken.isEmpty())
                     m_log += (SpVoice::isWaiting() ? "waits for " : "> ") +
                              m_fake.spoken.takeFirst().remove(" -1 0");
             }
         }},
        {'-', [this](const QString &) { m_voice.reset(); }},
    };

    const QTemporaryDir m_folder;
    FakeSpeech m_fake;
    std::unique_ptr<SpVoice> m_voice;
    QStringList m_words, m_log;
    QProcess m_service;
};

QTEST_GUILESS_MAIN(TestSpeech)
#include "tst_speech.moc"
