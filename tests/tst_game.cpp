// An evening's commands: the countdown, pause and play, clear, BINGO, errors, and the end.

#include "app/modMain.h"
#include "platform/appearance.h"
#include "platform/application.h"
#include "platform/error.h"
#include "platform/message_box.h"
#include "support/main_window.h"
#include "windows/frmBingo.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>

using Numbers = std::vector<int>;

namespace {

/// A window whose countdown is driven tick by tick.
class GameWindow : public MainWindow
{
public:
    GameWindow() { find<QComboBox>(QStringLiteral("cboSec"))->setCurrentText(QStringLiteral("10")); }

    QTimer *countdown() const { return find<QTimer>(QStringLiteral("Timer2")); }
    void tick() const { fire(countdown()); }
    void setAutoCall(bool on) const
    {
        auto *box = find<QCheckBox>(QStringLiteral("chkAutoCall"));
        if (box->isChecked() != on)
            QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(6, 6));
    }
    QString left() const { return caption("lblAutoCall"); }
    frmBingo *announcement() const { return window.findChild<frmBingo *>(); }
};

QString leftText(int seconds)
{
    return QStringLiteral("Auto Call In : %1").arg(seconds);
}

} // namespace

class TestGame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { platform::applyAppearance(*qApp); }
    void countdown();
    void countdownInRealTime();
    void newIntervalCountsAfterTheNextDraw();
    void pauseAndPlay();
    void switchingOff();
    void focusWhileItRuns();
    void fullBoardGoesOnAsking();
    void nothingIsDrawnBehindAQuestion();
    void clear_data();
    void clear();
    void bingo();
    void bingoColours();
    void bingoFitsEveryWindow();
    void errorsWaitTheirTurn();
    void failingHandler();
    void settings();
    void closing();
};

void TestGame::countdown()
{
    const GameWindow w;
    w.setAutoCall(true);
    QCOMPARE(w.left(), QString());
    QVERIFY(w.countdown()->isActive() && w.countdown()->interval() == 1000);
    QCOMPARE(w.window.focusWidget(), w.button("cPause"));
    w.tick();
    QCOMPARE(w.left(), leftText(1));
    QVERIFY(w.calledButtons().empty());
    for (std::size_t draws = 1; draws <= 2; ++draws) {
        w.tick();
        QCOMPARE(w.left(), leftText(10));
        QCOMPARE(w.calledButtons().size(), draws);
        for (int seconds = 9; seconds >= 1; --seconds) {
            w.tick();
            QCOMPARE(w.left(), leftText(seconds));
        }
        QCOMPARE(w.calledButtons().size(), draws);
    }
}

void TestGame::countdownInRealTime()
{
    const GameWindow w;
    QElapsedTimer clock;
    w.setAutoCall(true);
    clock.start();
    QTRY_COMPARE(w.calledButtons().size(), 1U);
    QVERIFY2(qAbs(clock.elapsed() - 2000) < 150, qPrintable(QString::number(clock.elapsed())));
}

void TestGame::newIntervalCountsAfterTheNextDraw()
{
    const GameWindow w;
    w.setAutoCall(true);
    for (int i = 0; i < 5; ++i)
        w.tick();
    QCOMPARE(w.left(), leftText(7));
    w.find<QComboBox>(QStringLiteral("cboSec"))->setCurrentText(QStringLiteral("5"));
    for (const int seconds : {6, 5, 4, 3, 2, 1, 5, 4}) {
        w.tick();
        QCOMPARE(w.left(), leftText(seconds));
    }
}

void TestGame::pauseAndPlay()
{
    const GameWindow w;
    w.setAutoCall(true);
    for (int i = 0; i < 8; ++i)
        w.tick();
    QCOMPARE(w.left(), leftText(4));
    w.press("cPause");
    QVERIFY(!w.countdown()->isActive());
    QCOMPARE(w.left(), QStringLiteral("Paused"));
    QCOMPARE(w.button("cPause")->text(), QStringLiteral("Play"));
    w.entry()->setFocus();
    w.type(QStringLiteral("1P"));
    QCOMPARE(w.button("cPause")->text(), QStringLiteral("Pause"));
    QCOMPARE(w.left(), QStringLiteral("Paused"));
    QVERIFY(w.entry()->text().isEmpty());
    w.tick();
    QCOMPARE(w.left(), leftText(3));
}

void TestGame::switchingOff()
{
    const GameWindow w;
    w.setAutoCall(true);
    w.tick();
    w.tick();
    w.setAutoCall(false);
    QVERIFY(!w.countdown()->isActive() && !w.button("cPause")->isEnabled());
    QCOMPARE(w.left(), QString());
    QCOMPARE(w.button("cPause")->text(), QStringLiteral("Play"));
    QVERIFY(w.entryHasFocus());
    w.setAutoCall(true);
    w.tick();
    QCOMPARE(w.left(), leftText(1));
}

void TestGame::focusWhileItRuns()
{
    const GameWindow w;
    w.setAutoCall(true);
    w.press(3);
    QCOMPARE(w.window.focusWidget(), w.button("cPause"));
    w.press("cPause");
    w.press(4);
    QVERIFY(w.entryHasFocus());
}

void TestGame::fullBoardGoesOnAsking()
{
    const GameWindow w;
    for (int n = 1; n <= 75; ++n)
        w.press(n);
    w.setAutoCall(true);
    Answer ok(QMessageBox::Ok);
    for (int shown = 1; shown <= 2; ++shown) {
        w.tick();
        w.tick();
        QCOMPARE(ok.shown, shown);
        QCOMPARE(w.left(), leftText(2));
        QVERIFY(w.countdown()->isActive());
    }
}

void TestGame::nothingIsDrawnBehindAQuestion()
{
    const GameWindow w;
    w.press(3);
    w.setAutoCall(true);
    w.tick();
    QTimer::singleShot(0, &w.window, [&] {
        for (int i = 0; i < 30; ++i)
            w.tick();
        QCOMPARE(w.left(), leftText(1));
        static_cast<QMessageBox *>(QApplication::activeModalWidget())->button(QMessageBox::No)->click();
    });
    w.press(3);
    QCOMPARE(w.calledButtons(), Numbers({3}));
    w.tick();
    QCOMPARE(w.calledButtons().size(), 2U);
}

void TestGame::clear_data()
{
    QTest::addColumn<bool>("yes");
    QTest::newRow("yes") << true;
    QTest::newRow("no") << false;
}

void TestGame::clear()
{
    QFETCH(bool, yes);
    const GameWindow w;
    for (const int n : {12, 7, 44})
        w.press(n);
    w.setAutoCall(true);
    w.entry()->setText(QStringLiteral("5"));
    Answer answer(yes ? QMessageBox::Yes : QMessageBox::No);
    w.press("cmdClear");
    QCOMPARE(answer.title, QStringLiteral("Clear Board"));
    QCOMPARE(answer.text, QStringLiteral("Clearing board,\nAre you sure?"));
    const Numbers left = yes ? Numbers() : Numbers({7, 12, 44});
    QCOMPARE(w.calledButtons(), left);
    QCOMPARE(w.redNumbers(), left);
    QCOMPARE(w.caption("lblCallCnt"), QStringLiteral("Balls Called: %1").arg(left.size()));
    QCOMPARE(w.display("RTB3")->text(), yes ? QString() : QStringLiteral("N44"));
    QCOMPARE(w.display("RTB4")->text(), yes ? QString() : QStringLiteral("B7  B12   "));
    QCOMPARE(w.display("RTB2")->text(), board::boardText());
    QCOMPARE(w.left(), QStringLiteral("Paused"));
    QVERIFY(!w.countdown()->isActive());
    QVERIFY(w.entryHasFocus() && w.entry()->text().isEmpty());
    if (yes) {
        w.press(9);
        QCOMPARE(w.display("RTB4")->text(), QStringLiteral("    "));
    }
}

void TestGame::bingo()
{
    const GameWindow w;
    w.press(9);
    w.setAutoCall(true);
    w.press("cBingo");
    QCOMPARE(w.left(), QStringLiteral("Paused"));
    QPointer<frmBingo> first = w.announcement();
    QVERIFY(first && first->isVisible());
    QCOMPARE(first->geometry(), w.window.frameGeometry());
    QCOMPARE(w.find<platform::RichTextBox>(QStringLiteral("RTB1"))->text(), board::letterColumn(2));
    w.press("cBingo");
    QCOMPARE(w.window.findChildren<frmBingo *>().size(), 1);
    QCOMPARE(w.left(), QStringLiteral("Paused"));
    QTest::keyClicks(first, QStringLiteral("x\r "));
    QVERIFY(first->isVisible());
    QTest::mouseClick(first->findChild<platform::RichTextBox *>()->viewport(), Qt::LeftButton);
    QTRY_VERIFY(!first);
    QCOMPARE(w.calledButtons(), Numbers({9}));
}

void TestGame::bingoColours()
{
    frmBingo announcement(nullptr);
    announcement.setAttribute(Qt::WA_DeleteOnClose, false);
    announcement.resize(1300, 720);
    announcement.show();
    auto *display = announcement.findChild<platform::RichTextBox *>();
    auto *timer = announcement.findChild<QTimer *>();
    const auto shows = [display](double points, QRgb color) {
        for (int i = 2; i < 7; ++i)
            QVERIFY(display->fontSizeAt(i) == points && display->colorAt(i) == color);
    };
    QCOMPARE(display->text(), QStringLiteral("\r\nBINGO"));
    QCOMPARE(timer->interval(), 500);
    shows(250, 0xFF00FFFF);
    const struct
    {
        double points;
        QRgb color;
    } phases[] = {{250, 0xFFFFFFFF}, {300, 0xFF0000FF}, {150, 0xFFFF0000}, {300, 0xFF000000},
                  {150, 0xFF00FF00}, {300, 0xFFFFFF00}, {150, 0xFFFF00FF}, {300, 0xFF0000FF}};
    double points = 250;
    for (const auto &phase : phases) {
        MainWindow::fire(timer);
        QCOMPARE(timer->interval(), 250);
        shows(points, 0xFFFFFFFF);
        QCOMPARE(display->fontSizeAt(0), 100.0);
        MainWindow::fire(timer);
        shows(phase.points, phase.color);
        points = phase.points;
    }
    QCOMPARE(announcement.focusWidget()->objectName(), QStringLiteral("Text1"));
}

void TestGame::bingoFitsEveryWindow()
{
    frmBingo announcement(nullptr);
    announcement.setAttribute(Qt::WA_DeleteOnClose, false);
    announcement.show();
    auto *display = announcement.findChild<platform::RichTextBox *>();
    for (const QSize size : {QSize(940, 600), QSize(1284, 720), QSize(3840, 2160)}) {
        announcement.resize(size);
        QCOMPARE(display->size(), size);
        QVERIFY2(display->document()->idealWidth() <= size.width(),
                 qPrintable(QString::number(size.width())));
    }
}

void TestGame::errorsWaitTheirTurn()
{
    QStringList seen;
    QTimer::singleShot(0, qApp, [&] {
        platform::reportError(nullptr, {-2147221164, QStringLiteral("No voice")});
        QCOMPARE(QApplication::topLevelWidgets().count(QApplication::activeModalWidget()), 1);
    });
    QTimer answering;
    connect(&answering, &QTimer::timeout, &answering, [&] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            seen += box->windowTitle() + u'|' + box->text();
            box->button(QMessageBox::Ok)->click();
        }
    });
    answering.start(20);
    platform::notice(nullptr, QStringLiteral("first"), QStringLiteral("Notice"));
    QTRY_COMPARE(seen, QStringList({QStringLiteral("Notice|first"),
                                    QStringLiteral("Run-Time Error|Desc: No voice\nErr #: -2147221164")}));
}

void TestGame::failingHandler()
{
    GameWindow w;
    w.press(9);
    Answer ok(QMessageBox::Ok);
    QTimer::singleShot(0, &w.window, [] { throw std::runtime_error("out of paper"); });
    QTRY_COMPARE(ok.shown, 1);
    QCOMPARE(ok.text, QStringLiteral("Desc: out of paper\nErr #: -1"));
    w.press(10);
    QCOMPARE(w.calledButtons(), Numbers({9, 10}));
}

void TestGame::settings()
{
    const QTemporaryDir folder;
    modMain::SettingsPath = folder.filePath(QStringLiteral("s.ini"));
    {
        GameWindow w;
        modMain::LoadSettings(w.window);
        auto *size = w.find<QComboBox>(QStringLiteral("iFontSize"));
        QCOMPARE(size->currentText(), QStringLiteral("33"));
        size->setEditText(QStringLiteral("huge"));
        w.find<QComboBox>(QStringLiteral("cboSec"))->setCurrentText(QStringLiteral("18"));
        modMain::SaveSettings(w.window);
    }
    GameWindow w;
    modMain::LoadSettings(w.window);
    QCOMPARE(w.window.fontSizeText(), QStringLiteral("huge"));
    QCOMPARE(w.window.intervalText(), QStringLiteral("18"));
    w.window.DrawBoards();
    QCOMPARE(w.display("RTB2")->fontSizeAt(0), 33.0);
    w.window.applySettings(QStringLiteral("900"), QStringLiteral("17"));
    QCOMPARE(w.window.intervalText(), QStringLiteral("18"));
    w.window.DrawBoards();
    QCOMPARE(w.display("RTB2")->fontSizeAt(0), 100.0);
}

void TestGame::closing()
{
    GameWindow w;
    const QSignalSpy unloading(&w.window, &frmMain::unloading);
    w.window.close();
    QCOMPARE(unloading.size(), 1);
    w.find<QAction>(QStringLiteral("mnuExit"))->trigger();
    QCOMPARE(unloading.size(), 2);
}

int main(int argc, char *argv[])
{
    platform::Application application(argc, argv);
    TestGame test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_game.moc"
