// An evening's commands: the countdown, pause and play, clear, BINGO, errors, and the end.

#include "appearance.h"
#include "application.h"
#include "error.h"
#include "frmBingo.h"
#include "message_box.h"
#include "support/main_window.h"

namespace {

/// A window whose countdown is driven tick by tick.
class GameWindow : public MainWindow
{
public:
    void tick(int times = 1) const { MainWindow::tick("Timer2", times); }
    void toggleAutoCall() const { press("chkAutoCall"); }
    bool isCounting() const { return timer("Timer2")->isActive(); }
    /// What the countdown says: "label|pause button".
    QString countdown() const
    {
        return caption("lblAutoCall").replace("Auto Call In : ", "in ") + '|' + button("cPause")->text();
    }
    auto draws() const { return called().split(' ', Qt::SkipEmptyParts).size(); }
};

} // namespace

class TestGame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { controls::applyAppearance(*qApp); }

    void countdown()
    {
        const GameWindow w;
        w.toggleAutoCall();
        QCOMPARE(w.countdown(), "|Pause");
        QCOMPARE(w.window.focusWidget(), w.button("cPause"));
        w.press(33);
        QCOMPARE(w.window.focusWidget(), w.button("cPause"));
        w.tick();
        QVERIFY(w.countdown() == "in 1|Pause" && w.draws() == 1);
        for (int draw = 2; draw <= 3; ++draw) {
            for (int seconds = 10; seconds >= 1; --seconds) {
                w.tick();
                QCOMPARE(w.countdown(), QString("in %1|Pause").arg(seconds));
                QCOMPARE(w.draws(), draw);
            }
        }
        w.find<QComboBox>("cboSec")->setCurrentText("5"); // counts after the next draw
        w.tick();
        QVERIFY(w.countdown() == "in 5|Pause" && w.draws() == 4);

        w.tick(2);
        w.press("cPause");
        QVERIFY(w.countdown() == "Paused|Play" && !w.isCounting());
        w.entry()->setFocus();
        QTest::keyClicks(w.entry(), "1P");
        QVERIFY(w.countdown() == "Paused|Pause" && w.isCounting() && w.entry()->text().isEmpty());
        w.tick();
        QCOMPARE(w.countdown(), "in 2|Pause");

        w.toggleAutoCall();
        QVERIFY(w.countdown() == "|Play" && !w.isCounting() && !w.button("cPause")->isEnabled());
        QVERIFY(w.entryHasFocus());
        w.toggleAutoCall();
        w.tick();
        QCOMPARE(w.countdown(), "in 1|Pause");
    }

    void fullBoardGoesOnAsking()
    {
        const GameWindow w;
        for (int n = 1; n <= 75; ++n)
            w.press(n);
        w.toggleAutoCall();
        const Answer ok(QMessageBox::Ok);
        for (int shown = 1; shown <= 2; ++shown) {
            w.tick(2);
            QCOMPARE(ok.said.size(), shown);
            QVERIFY(w.countdown() == "in 2|Pause" && w.isCounting());
        }
    }

    void nothingIsDrawnBehindAQuestion()
    {
        const GameWindow w;
        w.press(3);
        w.toggleAutoCall();
        w.tick();
        QTimer::singleShot(0, &w.window, [&] {
            w.tick(30);
            QCOMPARE(w.countdown(), "in 1|Pause");
            static_cast<QMessageBox *>(QApplication::activeModalWidget())->button(QMessageBox::No)->click();
        });
        w.press(3);
        QCOMPARE(w.called(), "3");
        w.tick();
        QCOMPARE(w.draws(), 2);
    }

    void clear()
    {
        for (const auto &[answer, seen] :
             {std::pair(QMessageBox::No, "3|N44|B7  B12   |7 12 44"), std::pair(QMessageBox::Yes, "0|||")}) {
            const GameWindow w;
            for (const int n : {12, 7, 44})
                w.press(n);
            w.toggleAutoCall();
            w.entry()->setText("5");
            const Answer question(answer);
            w.press("cmdClear");
            QCOMPARE(question.said.value(0), "Clear Board|Clearing board,\nAre you sure?");
            QCOMPARE(w.seen(), seen);
            QCOMPARE(w.called(), w.red());
            QCOMPARE(w.display("RTB2")->text(), game::boardText());
            QVERIFY(w.countdown() == "Paused|Play" && !w.isCounting());
            QVERIFY(w.entryHasFocus() && w.entry()->text().isEmpty());
            w.press(9);
            QCOMPARE(w.display("RTB4")->text(), answer == QMessageBox::Yes ? "    " : "N44 B7  B12  ");
        }
    }

    void bingo()
    {
        const GameWindow w;
        w.press(9);
        w.toggleAutoCall();
        w.press("cBingo");
        QCOMPARE(w.countdown(), "Paused|Play");
        const QPointer<frmBingo> bingo = w.window.findChild<frmBingo *>();
        QCOMPARE(bingo->geometry(), w.window.frameGeometry());
        w.press("cBingo");
        QCOMPARE(w.window.findChildren<frmBingo *>().size(), 1);
        QCOMPARE(w.countdown(), "Paused|Play");

        auto *display = bingo->findChild<controls::RichTextBox *>();
        auto *timer = bingo->findChild<QTimer *>();
        const auto shows = [display](double points, QRgb color) {
            for (int i = 2; i < 7; ++i)
                QVERIFY(display->fontSizeAt(i) == points && display->colorAt(i) == color);
        };
        QCOMPARE(display->text(), "\r\nBINGO");
        QCOMPARE(timer->interval(), 500);
        shows(250, 0xFF00FFFF);
        const double sizes[] = {250, 250, 300, 150, 300, 150, 300, 150, 300};
        const QRgb phases[] = {0xFFFFFFFF, 0xFF0000FF, 0xFFFF0000, 0xFF000000,
                               0xFF00FF00, 0xFFFFFF00, 0xFFFF00FF, 0xFF0000FF};
        for (int i = 0; i < 8; ++i) {
            w.fire(timer);
            shows(sizes[i], 0xFFFFFFFF);
            w.fire(timer);
            shows(sizes[i + 1], phases[i]);
        }
        QVERIFY(timer->interval() == 250 && display->fontSizeAt(0) == 100);
        QCOMPARE(bingo->focusWidget()->objectName(), "Text1");
        for (const QSize size : {QSize(940, 600), QSize(1284, 720), QSize(3840, 2160)}) {
            bingo->resize(size);
            QCOMPARE(display->size(), size);
            QVERIFY(display->document()->idealWidth() <= size.width());
        }
        QTest::keyClicks(bingo, "x\r ");
        QVERIFY(bingo->isVisible());
        QTest::mouseClick(display->viewport(), Qt::LeftButton);
        QTRY_VERIFY(!bingo);
        QCOMPARE(w.called(), "9");
    }

    void errorsWaitTheirTurn()
    {
        const Answer ok(QMessageBox::Ok);
        QTimer::singleShot(0, qApp, [] {
            controls::reportError(nullptr, {-2147221164, "No voice"});
            QCOMPARE(QApplication::topLevelWidgets().count(QApplication::activeModalWidget()), 1);
        });
        controls::notice(nullptr, "first", "Notice");
        QTRY_COMPARE(ok.said,
                     QStringList({"Notice|first", "Run-Time Error|Desc: No voice\nErr #: -2147221164"}));
        const GameWindow w;
        QTimer::singleShot(0, &w.window, [] { throw std::runtime_error("out of paper"); });
        QTRY_COMPARE(ok.said.last(), "Run-Time Error|Desc: out of paper\nErr #: -1");
        w.press(10);
        QCOMPARE(w.called(), "10");
    }
};

int main(int argc, char *argv[])
{
    app::Application application(argc, argv);
    TestGame test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_game.moc"
