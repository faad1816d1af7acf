// The announcement of calls and the voice options window, with a stand-in for the speech service.

#include "appearance.h"
#include "application.h"
#include "frmVoices.h"
#include "support/main_window.h"

#include <QListWidget>
#include <QSlider>

namespace {

/// A window that makes voice calls; what it says goes to `speech`.
class TalkingWindow : public MainWindow
{
public:
    explicit TalkingWindow(bool speaksByItself = true)
    {
        speech.speaksByItself = speaksByItself;
        setVoiceCalls(true);
    }

    void setVoiceCalls(bool on) const { find<QCheckBox>("chkMakeVoiceCall")->setChecked(on); }
    QString said() const { return speech.texts().join('|'); }
    /// The service has spoken the text that it was given last.
    void end() { Q_EMIT speech.engine->ended(); }

    frmVoices *openVoices() const
    {
        choose("mnuSpeak");
        return window.findChild<frmVoices *>();
    }
    static auto *voices(const frmVoices *options) { return options->findChild<QListWidget *>(); }
    static void press(const frmVoices *options, const QString &name)
    {
        click(options->findChild<QPushButton *>(name));
    }
    using MainWindow::press;
};

} // namespace

class TestVoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { controls::applyAppearance(*qApp); }

    void calls()
    {
        const TalkingWindow w;
        QString said;
        for (const auto &[n, phrases] :
             {std::pair(4, "Bee, 4|And After"), {7, "Bee, 7|Bee, 7"}, {62, "Oh, 62|Oh, 6 , 2"}}) {
            w.press(n);
            said += QString(said.isEmpty() ? "" : "|") + phrases;
            QTRY_COMPARE(w.said(), said);
            QTest::qWait(0);
        }
        const Answer yes(QMessageBox::Yes);
        w.press(4);
        w.setVoiceCalls(false);
        w.press(5);
        QTest::qWait(10);
        QCOMPARE(w.said(), said); // neither what is taken back nor what is called in silence
    }

    void phrasesInTheService()
    {
        TalkingWindow w(false);
        const auto endAfter = [&](const char *said) {
            QTRY_COMPARE(w.said(), said);
            w.end();
        };
        w.press(33);
        endAfter("En, 33");
        w.setVoiceCalls(false); // between the phrases
        endAfter("En, 33|En, 3 , 3");
        w.speech.spoken.clear();
        w.setVoiceCalls(true);
        w.press(12); // two in quick succession
        w.press(48);
        for (const char *said : {"Bee, 12", "Bee, 12|Gee, 48", "Bee, 12|Gee, 48|Gee, 4 , 8",
                                 "Bee, 12|Gee, 48|Gee, 4 , 8|Gee, 4 , "})
            endAfter(said);
        QTest::qWait(10);
        QCOMPARE(w.speech.spoken.size(), 4);
    }

    /// The count of phrases stays where it was: the next call is said once, the one after that twice again.
    void failureInTheFollowUp()
    {
        TalkingWindow w(false);
        w.press(50);
        QTRY_COMPARE(w.said(), "Gee, 50");
        w.end();
        QTRY_COMPARE(w.said(), "Gee, 50|Gee, 5 , 0");
        const Answer ok(QMessageBox::Ok);
        Q_EMIT w.speech.engine->failed(-7, "it went away");
        QTRY_COMPARE(ok.said, QStringList("Run-Time Error|Desc: it went away\nErr #: -7"));
        w.speech.speaksByItself = true;
        w.press(51);
        QTRY_COMPARE(w.speech.spoken.size(), 3);
        QTest::qWait(20);
        w.press(52);
        QTRY_COMPARE(w.said(), "Gee, 50|Gee, 5 , 0|Gee, 51|Gee, 52|Gee, 5 , 2");
        w.voice.VoiceIndex = "99";
        w.press(8);
        QTRY_COMPARE(ok.said.size(), 2);
        QVERIFY(w.red() == "8 50 51 52" && w.speech.spoken.size() == 5);
    }

    void noService()
    {
        TalkingWindow w;
        const Answer ok(QMessageBox::Ok);
        w.speech.isInstalled = false;
        QTimer::singleShot(0, &w.window, [&] { w.openVoices(); });
        QTRY_COMPARE(ok.said.size(), 1);
        auto *options = w.window.findChild<frmVoices *>();
        QCOMPARE(ok.owner.data(), options); // over another window it would bring that one to the front
        w.press(options, "cListen");
        QVERIFY(ok.said.size() == 2 && options->close());
    }

    void choosingAVoice()
    {
        TalkingWindow w;
        w.voice = {"1", -3};
        const QPointer<frmVoices> closed = w.openVoices();
        QTRY_COMPARE(w.voices(closed)->count(), 3);
        w.voices(closed)->setCurrentRow(0);
        closed->close();
        QTRY_VERIFY(!closed);
        QVERIFY(w.voice.VoiceIndex == "1" && w.voice.VoiceRate == -3);

        frmVoices *options = w.openVoices();
        QCOMPARE(w.openVoices(), options);
        auto *speed = options->findChild<QSlider *>();
        QTRY_COMPARE(w.voices(options)->count(), 3);
        QVERIFY(w.voices(options)->selectedItems().isEmpty() && speed->value() == 0);
        {
            const Answer ok(QMessageBox::Ok);
            w.press(options, "cListen");
            w.press(options, "cSave");
            QCOMPARE(ok.said, QStringList(2, QApplication::applicationDisplayName() +
                                                 "|Please select a voice from the list box."));
        }
        QVERIFY(w.speech.spoken.isEmpty() && options->isVisible());

        w.voices(options)->setCurrentRow(2);
        speed->setValue(99);
        w.press(options, "cListen");
        QCOMPARE(w.said(), "Bee 4, Oh 62, Eye 25");
        QCOMPARE(w.voice.VoiceIndex, "1");
        w.press(options, "cSave");
        QVERIFY(w.voice.VoiceIndex == "2" && w.voice.VoiceRate == 10 && !options->isVisible());
        w.press(61);
        QTRY_COMPARE(w.speech.spoken.size(), 3);
        QVERIFY(w.speech.spoken[2].voice == 2 && w.speech.spoken[2].rate == 10);
    }

    void sampleHoldsTheTimers()
    {
        TalkingWindow w(false);
        frmVoices *options = w.openVoices();
        QTRY_COMPARE(w.voices(options)->count(), 3);
        w.voices(options)->setCurrentRow(0);
        w.press("chkAutoCall");
        w.press("cDemoButt(1)");
        QTimer::singleShot(50, &w.window, [&] {
            w.tick("Timer2", 5);
            w.tick("Timer1");
            QTest::mouseClick(w.window.windowHandle(), Qt::LeftButton, {},
                              w.number(7)->mapTo(&w.window, QPoint(6, 6)));
            QCOMPARE(w.called(), "");
            w.end();
        });
        w.press(options, "cListen");
        QTRY_COMPARE(w.called(), "7"); // kept till now
        QCOMPARE(w.cell(13)->backColor(), controls::colors::white);
        w.tick("Timer1");
        QCOMPARE(w.cell(13)->backColor(), controls::colors::black);
    }
};

int main(int argc, char *argv[])
{
    app::Application application(argc, argv);
    TestVoice test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_voice.moc"
