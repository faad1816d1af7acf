// The queue of a voice and its timeouts, whatever the service below does; and speech-dispatcher in all its
// moods.

#include "support/fake_speech.h"
#include "voice_language.h"

#include <QtTest>

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

/// What the service makes of two texts. A third one finds it normal where it failed.
const std::pair<const char *, const char *> moods[] = {{"cancelled", "known|end 1|end 2"},
                                                       {"refused", "known|failed 402"},
                                                       {"dropped", "known|failed 2"},
                                                       {"novoices", "failed 4"},
                                                       {"mute", "failed 3"}};

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

    void inAllMoods()
    {
        for (const auto &[mood, log] : moods) {
            startService(mood);
            const QDeadlineTimer patience(3000);
            open(makeSystemEngine);
            play(mood == QString("mute") ? "+a +b ~ t3" : "+a +b");
            QVERIFY(!patience.hasExpired()); // Nothing waits for the service, least of all when it is mute.
            expect(log);
            play("+c");
            QVERIFY(QTest::qWaitFor([this] { return m_log.endsWith("end 3"); }, 30'000));
        }
    }

    /// All that the service hears, word for word; a sign of life is not asked for in the middle of a text.
    void conversation()
    {
        startService("normal");
        open([this] {
            auto engine = makeSystemEngine();
            connect(engine.get(), &SpEngine::opened, engine.get(), &SpEngine::ping, Qt::QueuedConnection);
            connect(
                engine.get(), &SpEngine::alive, this, [this] { m_log += "alive"; }, Qt::QueuedConnection);
            return engine;
        });
        play("+Gee,_48 +Gee,_4_,8 v2 r-7 +.5\nl\u00e4\r\n.");
        expect("known|end 1|alive|end 2|end 3");
        QCOMPARE(m_voice->GetVoices().mid(3, 2).join('|'), "French (France) (other)|German (fake)");
        m_voice.reset();
        QVERIFY(QTest::qWaitFor([this] { return received().contains("|QUIT|"); }, 30'000));
        QCOMPARE(received().replace(QRegularExpression("NAME \\w+:"), "NAME LOGIN:"),
                 "listening|SET SELF CLIENT_NAME LOGIN:vellomir:main|SET SELF PRIORITY message|"
                 "SET SELF NOTIFICATION ALL on|SET SELF PUNCTUATION none|SET SELF CAP_LET_RECOGN none|"
                 "SET SELF SPELLING off|GET OUTPUT_MODULE|GET LANGUAGE|LIST OUTPUT_MODULES|"
                 "SET SELF OUTPUT_MODULE other|LIST SYNTHESIS_VOICES|SET SELF OUTPUT_MODULE fake|"
                 "LIST SYNTHESIS_VOICES|SET SELF RATE 0|SPEAK|Gee, 48|.|GET RATE|SPEAK|Gee, 4 , 8|.|"
                 "SET SELF OUTPUT_MODULE other|SET SELF SYNTHESIS_VOICE English (America)|"
                 "SET SELF RATE -70|SPEAK|..5|l\u00e4 |..|.|CANCEL SELF|QUIT|");
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
        expect("failed 1");
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
    void expect(const QString &log)
    {
        (void)QTest::qWaitFor([&] { return m_log.join('|') == log; }, 30'000);
        QCOMPARE(m_log.join('|'), log);
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
        m_service.start(PYTHON, {FAKE_SPEECHD, m_folder.filePath("s"), mood, "normal"});
        QVERIFY(QTest::qWaitFor([this] { return received().contains("listening"); }, 30'000));
    }
    /// The lines that the service heard, with "|" behind each.
    QString received() { return QString::fromUtf8(m_service.peek(9999)).replace('\n', '|'); }

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
