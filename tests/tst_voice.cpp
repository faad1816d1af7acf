// The announcement of calls and the voice options window, with a stand-in for the speech service.

#include "platform/appearance.h"
#include "platform/application.h"
#include "support/main_window.h"
#include "voice/frmVoices.h"

#include <QListWidget>
#include <QSlider>

using Numbers = std::vector<int>;

namespace {

/// A window that makes voice calls; what it says goes to `speech`.
class TalkingWindow : public MainWindow
{
public:
    TalkingWindow() { setVoiceCalls(true); }

    void setVoiceCalls(bool on) const { find<QCheckBox>(QStringLiteral("chkMakeVoiceCall"))->setChecked(on); }
    void speakByHand()
    {
        speech.speaksByItself = false;
        QTRY_VERIFY(speech.engine);
    }
    /// The service has spoken the text that it was given last.
    void end() { Q_EMIT speech.engine->ended(); }

    frmVoices *openVoices() const
    {
        find<QAction>(QStringLiteral("mnuSpeak"))->trigger();
        return window.findChild<frmVoices *>();
    }
};

QStringList list(std::initializer_list<const char *> texts)
{
    QStringList strings;
    for (const char *text : texts)
        strings += QString::fromLatin1(text);
    return strings;
}

} // namespace

class TestVoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { platform::applyAppearance(*qApp); }
    void eachCallIsSaidTwice();
    void silentCalls();
    void untickingBetweenThePhrases();
    void twoCallsInQuickSuccession();
    void failureInTheFollowUp();
    void noServiceInstalled();
    void positionOutOfRange();
    void choosingAVoice();
    void voicesWindowKeepsNothing();
    void sampleHoldsTheTimers();
    void voicesWindowWithoutService();
};

void TestVoice::eachCallIsSaidTwice()
{
    TalkingWindow w;
    for (const int n : {4, 7, 12, 62}) {
        const qsizetype before = w.speech.spoken.size();
        w.press(n);
        QTRY_COMPARE(w.speech.spoken.size(), before + 2);
        QTest::qWait(0);
    }
    QCOMPARE(w.speech.texts(),
             list({"Bee, 4", "And After", "Bee, 7", "Bee, 7", "Bee, 12", "Bee, 1 ,2", "Oh, 62", "Oh, 6 ,2"}));
}

void TestVoice::silentCalls()
{
    TalkingWindow w;
    w.setVoiceCalls(false);
    w.press(4);
    w.setVoiceCalls(true);
    const Answer yes(QMessageBox::Yes);
    w.press(4);
    QTest::qWait(10);
    QVERIFY(w.speech.spoken.isEmpty());
}

void TestVoice::untickingBetweenThePhrases()
{
    TalkingWindow w;
    w.speakByHand();
    w.press(33);
    QTRY_COMPARE(w.speech.texts(), list({"En, 33"}));
    w.setVoiceCalls(false);
    w.end();
    QTRY_COMPARE(w.speech.texts(), list({"En, 33", "En, 3 ,3"}));
    w.end();
    QTest::qWait(10);
    QCOMPARE(w.speech.spoken.size(), 2);
}

void TestVoice::twoCallsInQuickSuccession()
{
    TalkingWindow w;
    w.speakByHand();
    w.press(12);
    w.press(48);
    for (int said = 1; said <= 4; ++said) {
        QTRY_COMPARE(w.speech.spoken.size(), said);
        w.end();
    }
    QTest::qWait(10);
    QCOMPARE(w.speech.texts(), list({"Bee, 12", "Gee, 48", "Gee, 4 ,8", "Gee, 4 , "}));
}

void TestVoice::failureInTheFollowUp()
{
    TalkingWindow w;
    w.speakByHand();
    w.press(50);
    QTRY_COMPARE(w.speech.spoken.size(), 1);
    w.end();
    QTRY_COMPARE(w.speech.spoken.size(), 2);
    {
        Answer ok(QMessageBox::Ok);
        Q_EMIT w.speech.engine->failed(-7, QStringLiteral("the service went away"));
        QTRY_COMPARE(ok.shown, 1);
        QCOMPARE(ok.title, QStringLiteral("Run-Time Error"));
        QCOMPARE(ok.text, QStringLiteral("Desc: the service went away\nErr #: -7"));
        QTest::qWait(20);
        QCOMPARE(ok.shown, 1);
    }
    // The count of phrases stays where it was: the next call is said once, the one after that twice again.
    w.speech.speaksByItself = true;
    w.press(51);
    QTRY_COMPARE(w.speech.spoken.size(), 3);
    QTest::qWait(20);
    w.press(52);
    QTRY_COMPARE(w.speech.texts().mid(2), list({"Gee, 51", "Gee, 52", "Gee, 5 ,2"}));
}

void TestVoice::noServiceInstalled()
{
    FakeSpeech none;
    none.isInstalled = false;
    platform::SpVoice::setSystemEngine(none.factory());
    Answer ok(QMessageBox::Ok);
    VoiceChoice voice;
    frmMain window(voice);
    QCOMPARE(ok.shown, 1);
    QVERIFY(ok.text.startsWith(QStringLiteral("Desc: No speech service is installed.\nErr #: ")));
    window.BuildButts();
    window.BuildDemo();
    window.DrawBoards();
    window.findChild<QCheckBox *>(QStringLiteral("chkMakeVoiceCall"))->setChecked(true);
    for (int n = 1; n <= 2; ++n) {
        window.cButt_Click(n);
        QCOMPARE(ok.shown, 1 + n);
    }
    QCOMPARE(window.findChild<QLabel *>(QStringLiteral("lblCallCnt"))->text(),
             QStringLiteral("Balls Called: 2"));
}

void TestVoice::positionOutOfRange()
{
    TalkingWindow w;
    w.voice.VoiceIndex = QStringLiteral("99");
    Answer ok(QMessageBox::Ok);
    w.press(8);
    QTRY_COMPARE(ok.shown, 1);
    QVERIFY(w.speech.spoken.isEmpty());
    QCOMPARE(w.redNumbers(), Numbers({8}));
}

void TestVoice::choosingAVoice()
{
    TalkingWindow w;
    frmVoices *voices = w.openVoices();
    QVERIFY(voices->isVisible());
    QCOMPARE(w.openVoices(), voices);
    QCOMPARE(voices->windowTitle(), QStringLiteral("Form1"));
    auto *installed = voices->findChild<QListWidget *>();
    auto *speed = voices->findChild<QSlider *>();
    QTRY_COMPARE(installed->count(), 3);
    QCOMPARE(installed->item(2)->text(), QStringLiteral("Cid"));
    QVERIFY(installed->selectedItems().isEmpty());
    const auto press = [voices](const char *name) {
        QTest::mouseClick(voices->findChild<QPushButton *>(QString::fromLatin1(name)), Qt::LeftButton);
    };
    {
        Answer ok(QMessageBox::Ok);
        press("cListen");
        press("cSave");
        QCOMPARE(ok.shown, 2);
        QCOMPARE(ok.text, QStringLiteral("Please select a voice from the list box."));
        QCOMPARE(ok.title, QApplication::applicationDisplayName());
    }
    QVERIFY(w.speech.spoken.isEmpty() && voices->isVisible());

    installed->setCurrentRow(2);
    speed->setValue(99);
    press("cListen");
    QCOMPARE(w.speech.texts(), list({"Bee 4, Oh 62, Eye 25"}));
    QCOMPARE(w.voice.VoiceIndex, QString());
    press("cSave");
    QCOMPARE(w.voice.VoiceIndex, QStringLiteral("2"));
    QCOMPARE(w.voice.VoiceRate, 10);
    QVERIFY(!voices->isVisible());
    w.press(61);
    QTRY_COMPARE(w.speech.spoken.size(), 3);
    for (qsizetype i = 1; i < 3; ++i)
        QVERIFY(w.speech.spoken[i].voice == 2 && w.speech.spoken[i].rate == 10);
}

void TestVoice::voicesWindowKeepsNothing()
{
    TalkingWindow w;
    w.voice = {QStringLiteral("1"), -3};
    QPointer<frmVoices> first = w.openVoices();
    QTRY_COMPARE(first->findChild<QListWidget *>()->count(), 3);
    first->findChild<QListWidget *>()->setCurrentRow(0);
    first->close();
    QTRY_VERIFY(!first);
    QCOMPARE(w.voice.VoiceIndex, QStringLiteral("1"));
    QCOMPARE(w.voice.VoiceRate, -3);
    QCOMPARE(w.openVoices()->findChild<QSlider *>()->value(), 0);
}

void TestVoice::sampleHoldsTheTimers()
{
    TalkingWindow w;
    w.speech.speaksByItself = false;
    frmVoices *voices = w.openVoices();
    auto *installed = voices->findChild<QListWidget *>();
    QTRY_COMPARE(installed->count(), 3);
    installed->setCurrentRow(0);
    QTest::mouseClick(w.find<QCheckBox>(QStringLiteral("chkAutoCall")), Qt::LeftButton, {}, QPoint(6, 6));
    w.press("cDemoButt(1)");
    QTimer::singleShot(50, &w.window, [&] {
        for (int i = 0; i < 5; ++i)
            MainWindow::fire(w.find<QTimer>(QStringLiteral("Timer2")));
        MainWindow::fire(w.find<QTimer>(QStringLiteral("Timer1")));
        QTest::mouseClick(w.find<QWidget>(QStringLiteral("cButt(7)")), Qt::LeftButton);
        w.end();
    });
    QTest::mouseClick(voices->findChild<QPushButton *>(QStringLiteral("cListen")), Qt::LeftButton);
    QVERIFY(w.calledButtons().empty());
    QCOMPARE(w.find<platform::ColorBox>(QStringLiteral("tDemo(13)"))->backColor(), platform::colors::white);
    MainWindow::fire(w.find<QTimer>(QStringLiteral("Timer1")));
    QCOMPARE(w.find<platform::ColorBox>(QStringLiteral("tDemo(13)"))->backColor(), platform::colors::black);
}

void TestVoice::voicesWindowWithoutService()
{
    TalkingWindow w;
    w.speech.isInstalled = false;
    Answer ok(QMessageBox::Ok);
    QTimer::singleShot(0, &w.window, [&] { w.openVoices(); });
    QTRY_COMPARE(ok.shown, 1);
    QCOMPARE(ok.title, QStringLiteral("Run-Time Error"));
    auto *voices = w.window.findChild<frmVoices *>();
    QVERIFY(voices && voices->isVisible());
    QCOMPARE(ok.owner.data(), voices); // over another window it would bring that one to the front
    QTest::mouseClick(voices->findChild<QPushButton *>(QStringLiteral("cListen")), Qt::LeftButton);
    QCOMPARE(ok.shown, 2);
    QVERIFY(voices->close());
}

int main(int argc, char *argv[])
{
    platform::Application application(argc, argv);
    TestVoice test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_voice.moc"
