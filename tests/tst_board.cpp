// The main window's board: its design, calling and un-calling, the displays, the entry and the draw.

#include "appearance.h"
#include "held_keys.h"
#include "support/main_window.h"

#include <QClipboard>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

class TestBoard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { controls::applyAppearance(*qApp); }

    void places()
    {
        const MainWindow w;
        const std::pair<const char *, QRect> rows[] = {
            // places in the container
            {"cButt(15)", {406, 28, 24, 24}},   {"cButt(16)", {28, 55, 24, 24}},
            {"cDemoButt(9)", {72, 23, 73, 17}}, {"cDemoButt(21)", {152, 136, 33, 17}},
            {"cPause", {1036, 168, 120, 22}},   {"RTB2", {48, 191, 1221, 473}},
        };
        for (const auto &[name, place] : rows) {
            const QRect real = w.find(name)->geometry();
            QVERIFY2(place.adjusted(-1, -1, 1, 1).contains(real) &&
                         real.contains(place.adjusted(1, 1, -1, -1)),
                     name);
        }
        for (int i = 1; i < 25; ++i)
            QVERIFY2(!w.cell(i)->geometry().adjusted(0, 0, 1, 1).intersects(w.cell(i + 1)->geometry()),
                     "cells touch");
    }

    void tabOrder()
    {
        const MainWindow w;
        QStringList all;
        for (QWidget *at = w.entry(); all.isEmpty() || at != w.entry(); at = at->nextInFocusChain()) {
            if (at->focusPolicy() & Qt::TabFocus && !at->focusProxy())
                all += at->objectName().remove("cDemoButt");
        }
        QString names = all.join(' ');
        for (const QString array : {"cButt(%1)", "tDemo(%1)"}) { // whose elements follow one another
            for (int i = 75; i > 1; --i)
                names.replace(array.arg(i - 1) + ' ' + array.arg(i), array.arg(i - 1));
        }
        QCOMPARE(
            names,
            "Text1 cButt(1) iFontSize cmdClear RTB2 RTB1 RTB3 RTB4 tDemo(1) "
            "(2) (1) (4) (5) (6) (3) (8) (9) (7) (10) (11) (12) (13) (14) (17) (19) (20) (21) (18) (16) (15) "
            "RTB5 cRandNum chkAutoCall cboSec chkMakeVoiceCall cPause cBingo");
    }

    void nothingIsCutOff()
    {
        MainWindow w;
        for (const int n : {75, 48, 46, 47, 60})
            w.press(n);
        for (const char *name : {"RTB1", "RTB2", "RTB3", "RTB4", "RTB5"}) {
            QCOMPARE(w.display(name)->horizontalScrollBar()->maximum(), 0);
            QVERIFY2(!QString("RTB2 RTB4").contains(name) || !w.display(name)->verticalScrollBar()->maximum(),
                     name);
        }
        QCOMPARE(w.display("RTB4")->document()->begin().layout()->lineCount(), 2);
        for (auto *button : w.window.findChildren<QAbstractButton *>()) {
            const int text = button->fontMetrics().horizontalAdvance(button->text().remove('&'));
            QVERIFY2(text + (button->isCheckable() ? 17 : 4) <= button->width(),
                     qPrintable(button->objectName()));
        }
        w.press(2); // A short label stands in the middle, too.
        for (const char *name : {"RTB1", "RTB3", "RTB5"}) {
            const double middle =
                w.display(name)->document()->begin().layout()->lineAt(0).naturalTextRect().center().x();
            QVERIFY2(qAbs(middle - w.display(name)->viewport()->width() / 2.0) <= 1.0, name);
        }

        w.window.resize(10, 10);
        QCOMPARE(w.window.centralWidget()->size(), QSize(926, 548));
        QCOMPARE(w.display("RTB2")->size(), QSize(865, 347));
        w.display("RTB2")->verticalScrollBar()->setValue(50);
        w.window.resize(930, 600);
        QCOMPARE(w.display("RTB2")->verticalScrollBar()->value(), 0);
    }

    /// At every size the letters stand level with their rows, and the called numbers stay red.
    void fontSizes()
    {
        MainWindow w;
        w.window.resize(926, 600); // too small for the larger sizes: both scroll
        w.press(40);
        auto *font = w.find<controls::ComboBox>("iFontSize");
        auto *letters = w.display("RTB1"), *board = w.display("RTB2");
        const auto tops = [](const controls::RichTextBox *display) {
            QList<double> found;
            for (QTextBlock line = display->document()->begin(); line.isValid(); line = line.next())
                found += line.layout()->boundingRect().height() + line.layout()->position().y() -
                         display->verticalScrollBar()->value();
            return found;
        };
        const auto letterPitch = [&] { // beside the buttons
            const QList<double> found = tops(w.display("RTB5"));
            return found[1] - found[0];
        };
        QCOMPARE(letterPitch(), 27.0);
        const std::tuple<const char *, const char *, double> rows[] = {
            {"huge", "huge", 33}, {"3", "5", 5},    {"250", "100", 100}, {"12.5", "12.5", 12.5},
            {"", "", 12.5},       {"52", "52", 52}, {"20", "20", 20}};
        for (const auto &[typed, shown, drawn] : rows) {
            font->setEditText(typed);
            QTest::keyClick(font->lineEdit(), Qt::Key_Return);
            QCOMPARE(font->currentText(), shown);
            QCOMPARE(board->fontSizeAt(0), drawn);
            QCOMPARE(letters->fontSizeAt(0), drawn);
            QCOMPARE(letters->horizontalScrollBar()->maximum(), 0);
            for (const int place : {0, board->verticalScrollBar()->maximum()}) {
                board->verticalScrollBar()->setValue(place);
                QCOMPARE(tops(letters), tops(board));
            }
            QVERIFY(w.red() == "40" && w.entryHasFocus());
        }
        w.window.applySettings("900", "17"); // as the settings file may say; 17 is in no list
        w.window.DrawBoards();
        QVERIFY(board->fontSizeAt(0) == 100 && w.window.intervalText() == "10");
        w.window.applySettings("20", "18");
        w.window.DrawBoards();
        QCOMPARE(w.window.intervalText(), "18");
        // No trace is left of letters that were narrowed for a large size.
        QCOMPARE(letters->document()->begin().layout()->lineAt(0).naturalTextWidth(),
                 QFontMetricsF(letters->font(), letters).horizontalAdvance('B'));
        font->setFocus();
        QTest::keyClick(font, Qt::Key_Down);
        QCOMPARE(board->fontSizeAt(0), 22.0);
        QVERIFY(w.red() == "40" && w.entryHasFocus());
        QCOMPARE(letterPitch(), 27.0);
        font->setFocus();
        font->setEditText("40");
        w.button("cmdClear")->setFocus(); // It was not entered.
        QCOMPARE(board->fontSizeAt(0), 22);
        QCOMPARE(w.window.focusWidget(), w.button("cmdClear"));
    }

    void focusStaysInTheEntry()
    {
        const MainWindow w;
        w.press(33);
        for (const char *name : {"RTB1", "RTB2", "RTB3", "RTB4", "RTB5"}) {
            controls::RichTextBox *display = w.display(name);
            const QString before = display->text();
            QTest::mouseDClick(display->viewport(), Qt::LeftButton);
            QVERIFY2(w.entryHasFocus(), name);
            QTest::keyClicks(display, "x");
            QCOMPARE(display->text(), before);
            QVERIFY2(display->cursorWidth() == 0 && !display->textCursor().hasSelection(), name);
        }
        for (const char *name : {"iFontSize", "cboSec"}) { // the wheel changes only what has the focus
            auto *box = w.find<QComboBox>(name);
            const QString before = box->currentText();
            QWheelEvent wheel({5, 5}, box->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {}, {}, false);
            QApplication::sendEvent(box, &wheel);
            QVERIFY2(box->currentText() == before && w.entryHasFocus(), name);
        }
    }

    /// The entry box lies over cell 10, and hides it only while something stands in it.
    void cardOverTheEntry()
    {
        const MainWindow w;
        const QPoint inside = w.entry()->geometry().center() + QPoint(8, 4);
        const auto pixel = [&] { return w.window.centralWidget()->grab().toImage().pixel(inside); };
        QTest::mouseClick(w.cell(10), Qt::LeftButton, {}, QPoint(w.cell(10)->width() - 3, 3));
        QVERIFY(w.cell(10)->accessibleName() == "Pattern row 2, column O, lit" && w.entryHasFocus());
        QCOMPARE(pixel(), controls::colors::black);
        QTest::keyClicks(w.entry(), "7");
        QCOMPARE(pixel(), controls::colors::white);
        QTest::mouseClick(w.window.centralWidget(), Qt::LeftButton, {}, inside);
        QVERIFY(w.entryHasFocus());
        QTest::mouseClick(w.cell(10), Qt::LeftButton, {}, QPoint(w.cell(10)->width() - 3, 3));
        QCOMPARE(w.cell(10)->backColor(), controls::colors::white);
    }

    void calls()
    {
        const MainWindow w;
        QCOMPARE(w.seen(), "0|||");
        w.press(12);
        QCOMPARE(w.seen(), "1|B12|    |12");
        QCOMPARE(w.number(12)->accessibleName() + w.number(12)->accessibleDescription(), "B 12called");
        for (const int n : {7, 44, 61, 33})
            w.press(n);
        QCOMPARE(w.seen(), "5|N33|O61 N44 B7  B12 |7 12 33 44 61");
        QCOMPARE(w.display("RTB3")->colorAt(0), controls::colors::red);
        w.press(75);
        QCOMPARE(w.seen(), "6|O75|N33 O61 N44 B7  |7 12 33 44 61 75");
        const Answer yes(QMessageBox::Yes);
        w.enter("B7");
        QCOMPARE(w.seen(), "6|O75|N33 O61 N44 B7  |12 33 44 61 75");
        QCOMPARE(w.called(), "12 33 44 61 75");
        w.press(7); // counts again
        QCOMPARE(w.seen(), "7|B7|O75 N33 O61 N44 |7 12 33 44 61 75");
        QCOMPARE(w.display("RTB2")->text(), game::boardText());
        QVERIFY(w.entryHasFocus() && w.entry()->text().isEmpty());
    }

    /// The second call is on the screen when its press returns.
    void callIsPaintedAtOnce()
    {
        const MainWindow w;
        w.press(12);
        QCoreApplication::processEvents();
        qApp->installEventFilter(this);
        w.number(33)->click();
        qApp->removeEventFilter(this);
        QSet<QObject *> shown{w.number(33), w.find("lblCallCnt")};
        for (const char *name : {"RTB2", "RTB3", "RTB4"})
            shown += w.display(name)->viewport();
        QVERIFY(m_painted.contains(shown));
    }

    void entry()
    {
        const MainWindow w;
        const controls::HeldKeys heldKeys(*qApp);
        const auto hold = [&w](QWidget *widget, Qt::Key key, const QString &text) {
            widget->setFocus();
            for (quint64 i = 0; i < 5; ++i) { // as on X11
                QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
                QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
                press.setTimestamp(1000 + i);
                release.setTimestamp(1001 + i);
                QApplication::sendEvent(w.window.windowHandle(), &press);
                QApplication::sendEvent(w.window.windowHandle(), &release);
            }
        };
        const auto count = [&] { return w.called().split(' ', Qt::SkipEmptyParts).size(); };
        QTest::keyClicks(w.entry(), "n33\r");
        QTest::keyClicks(w.entry(), "G7");
        QTest::keyClick(w.entry(), Qt::Key_Enter);
        QCOMPARE(w.called(), "7 33");
        QTest::keyClicks(w.entry(), "12r");
        QTest::keyClicks(w.entry(), "R5p");
        QVERIFY(count() == 4 && w.entry()->text().isEmpty() && !w.timer("Timer2")->isActive());
        QTest::keyClick(w.entry(), Qt::Key_R, Qt::ControlModifier);
        QTest::keyClick(w.entry(), Qt::Key_R, Qt::AltModifier);
        QCOMPARE(count(), 4);

        hold(w.entry(), Qt::Key_R, "r"); // A held key acts once,
        hold(w.button("cRandNum"), Qt::Key_Return, "\r");
        QCOMPARE(count(), 6);
        hold(w.entry(), Qt::Key_7, "7"); // but writes on and on.
        QCOMPARE(w.entry()->text(), "77777");

        for (const QString &text : {QString(10000, '7'), QString(10000, 'B'), QString("N\t\x01\x02")}) {
            QGuiApplication::clipboard()->setText(text);
            w.entry()->paste();
            QTest::keyClick(w.entry(), Qt::Key_Return);
            QVERIFY(count() == 6 && w.entry()->text().isEmpty());
        }
    }

private:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            m_painted += watched;
        return false;
    }

    QSet<QObject *> m_painted;
};

QTEST_MAIN(TestBoard)
#include "tst_board.moc"
