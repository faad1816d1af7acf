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
    {"+one + +_ +4,8 ~ b e ~ e e ~", "> one -1 0|known|.|end 1|end 2|end 3|> 4, 8 -1 0|.|.|end 4"},
    {"+default r10 v2 +chosen r-99 v3 +lost v0 +changed ~ e ~ e ~ e ~ v3 v-1",
     "> default -1 0|known|.|end 1|> chosen 2 10|.|end 2|failed 5|> changed 0 -10|.|end 4|thrown|thrown"},
    {"+one +two ~ f f ~ x +thrown x +anew ~ e ~ f +again ~",
     "> one -1 0|known|.|.|failed 2|thrown|> anew -1 0|known|.|end 3|.|> again -1 0|known"},
    {"+one =two +three ~ e ~ e ~",
     "known|waits for one -1 0|.|end 1|waits for two -1 0|.|end 2|waits for three -1 0|back"},
    {"+one =two ~ f ~", "known|waits for one -1 0|.|failed 2|back"},
    {"v3 =lost ~", "known|failed 5|back"},
    {"=cut ~ -", "known|waits for cut -1 0|back"},
    // One that is alive has all its time. Who is idle is left alone.
    {"+one t9 ~ t14 b t7 e ~ t99 +two ~ t15 ~ +lost t10 ~ +four ~ b t9 ~ +five ~",
     "> one -1 0|known|.|end 1|> two -1 0|failed 3|failed 3|> four -1 0|known|failed 3|> five -1 0|known"},
    // One that is dead is given up at the third ping's time.
    {"d +one t2 ~ t2 b t2 e ~ t3 +two ~ t3 ~ +lost t3 ~ +four ~ b t3 ~",
     "> one -1 0|known|.|end 1|> two -1 0|failed 3|failed 3|> four -1 0|known|failed 3"},
};

/// Two texts of which the service makes that; where it failed, a third one finds it normal.
const std::pair<const char *, const char *> moods[] = {
    {"early", "known|end 1|end 2"}, {"cancelled", "known|end 1|end 2"}, {"refused", "known|failed 402"},
    {"dropped", "known|failed 2"},  {"novoices", "failed 4"},           {"mute", "failed 3"},
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
        const QStringList tags =
            QString("bpy en-029 en-GB en-US fr-BE fr-FR pt PT_br pt-AO de es-419").split(' ');
        QString found;
        for (const char *user : {"pt_BR", "de_AT", "fi_FI", "C", "fr_CA", "en_NZ", "pt_PT", "es"})
            found += tags.value(bestLanguage(tags, QLocale(user)).value_or(-1), "none") + ' ';
        QCOMPARE(found, "PT_br de none none fr-FR en-US pt es-419 ");
    }

    // ---- speech-dispatcher

    void inAllMoods()
    {
        for (const auto &[mood, log] : moods) {
            const bool isMute = mood == QString("mute"), ends = QString(log).contains("end");
            startService(mood);
            const QDeadlineTimer patience(3000);
            open(makeSystemEngine);
            play(isMute ? "+one +lost ~ t3" : "+one +lost");
            QVERIFY(!patience.hasExpired()); // Nothing waits for the service, least of all when it is mute.
            QTRY_COMPARE_WITH_TIMEOUT(m_log.join('|'), log, 60'000);
            play("+after");
            QTRY_COMPARE_WITH_TIMEOUT(m_log.join('|'), log + QString(ends ? "|end 3" : "|known|end 3"),
                                      60'000);
            QCOMPARE(received().contains("|lost|"), ends);
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
        QTRY_COMPARE_WITH_TIMEOUT(m_log.join('|'), "known|end 1|alive|end 2|end 3", 60'000);
        QCOMPARE(m_voice->GetVoices().mid(2, 4).join('|'),
                 "English (America) (other)|French (France) (other)|German (fake)|Bass++ (fake)");
        m_voice.reset();
        QTRY_VERIFY(received().contains("|QUIT|"));
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
        for (const QByteArray &address :
             {QByteArray(), QByteArray("inet_socket:::1:1"), qgetenv("SPEECHD_ADDRESS")}) {
            qputenv("SPEECHD_ADDRESS", address);
            QVERIFY_THROWS_EXCEPTION(files::Error, makeSystemEngine());
        }
        qputenv("SPEECHD_CMD", "false");
        open(makeSystemEngine);
        play("+one");
        QTRY_COMPARE_WITH_TIMEOUT(m_log.join('|'), "failed 1", 60'000);
    }

private:
    /// A voice whose clock stands still: all waiting is done with t.
    void open(const SpEngineFactory &factory)
    {
        m_log.clear();
        m_voice = std::make_unique<SpVoice>(factory, SpTimeouts{1h, 10h, 15h, 5h, 1h});
        connect(m_voice.get(), &SpVoice::VoicesKnown, [this] { m_log += "known"; });
        connect(m_voice.get(), &SpVoice::EndStream, [this](int n) { m_log += QString("end %1").arg(n); });
        connect(m_voice.get(), &SpVoice::Failed, [this](int n) { m_log += QString("failed %1").arg(n); });
    }
    void play(const QString &script)
    {
        m_words = script.split(' ');
        goOn();
    }
    void goOn()
    {
        while (!m_words.isEmpty()) {
            const QString word = m_words.takeFirst();
            try {
                m_steps[word[0]](word.mid(1).replace('_', ' '));
            } catch (const files::Error &) {
                m_log += "thrown";
            }
        }
    }
    void startService(const QString &mood)
    {
        cleanup();
        QFile::remove(m_folder.filePath("s"));
        m_service.start(PYTHON, {FAKE_SPEECHD, m_folder.filePath("s"), mood, "normal"});
        QTRY_VERIFY_WITH_TIMEOUT(received().contains("listening"), 60'000);
    }
    /// The lines that the service heard, with "|" behind each.
    QString received() { return QString::fromUtf8(m_service.peek(9999)).replace('\n', '|'); }

    const QHash<QChar, std::function<void(const QString &)>> m_steps{
        {'+', [this](const QString &text) { m_voice->Speak(text, SpVoice::SVSFlagsAsync); }},
        {'=',
         [this](const QString &text) {
             QTimer::singleShot(0, this, &TestSpeech::goOn);
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
        {'f', [this](const QString &) { Q_EMIT m_fake.engine->failed(SpLost, "lost"), m_log += "."; }},
        {'d', [this](const QString &) { m_fake.isAlive = false; }},
        {'x', [this](const QString &) { m_fake.isInstalled = !m_fake.isInstalled; }},
        {'~',
         [this](const QString &) {
             for (int i = 0; i < 50; ++i) {
                 QCoreApplication::processEvents();
                 while (!m_fake.spoken.isEmpty())
                     m_log += (SpVoice::isWaiting() ? "waits for " : "> ") + m_fake.spoken.takeFirst();
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
