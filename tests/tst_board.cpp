// The main window's board: its design, calling and un-calling, the displays, the entry and the draw.

#include "board/frmMain_design.h"
#include "platform/appearance.h"
#include "support/main_window.h"

#include <QAction>
#include <QClipboard>
#include <QMenuBar>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTextBlock>
#include <QTextLayout>

using Numbers = std::vector<int>;
namespace colors = platform::colors;

namespace {

/// Keeps what has been painted.
class Painted : public QObject
{
public:
    QSet<QObject *> widgets;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            widgets.insert(watched);
        return false;
    }
};

} // namespace

class TestBoard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void placesAndNames();
    void numberButtonsAndCellsFollowTheirRule();
    void tabOrder();
    void boardFollowsTheWindow();
    void nothingIsCutOff();
    void lettersStandLevelWithTheirRows_data();
    void lettersStandLevelWithTheirRows();
    void displaysAreOutputOnly();
    void wheelOverAnUnfocusedComboBox();
    void emptyEntryShowsTheCard();
    void callShowsEverywhere();
    void callIsPaintedAtOnce();
    void pastNumbers();
    void uncallAsksFirst();
    void recallsCountAgain();
    void entryKeys();
    void heldKeysActOnce();
    void entrySurvivesWhatIsPasted();
    void drawsTheWholeBoard();
    void fontSizes_data();
    void fontSizes();
    void cells();
};

void TestBoard::initTestCase()
{
    platform::applyAppearance(*qApp);
}

void TestBoard::placesAndNames()
{
    const MainWindow w;
    const auto check = [&](const QString &name, const platform::DesignRow &row) {
        const auto *widget = w.find<QWidget>(name);
        const QRectF design(row.left / 15.0, row.top / 15.0, row.width / 15.0, row.height / 15.0);
        const QRectF real = widget->geometry();
        const bool sized = row.kind != platform::Kind::Label && !name.startsWith(QStringLiteral("RTB2")) &&
                           !name.startsWith(QStringLiteral("RTB1"));
        QVERIFY2(qAbs(real.x() - design.x()) <= 1 && qAbs(real.y() - design.y()) <= 1 &&
                     (!sized || (qAbs(real.width() - design.width()) <= 1 &&
                                 qAbs(real.height() - design.height()) <= 1)),
                 qPrintable(name));
    };
    for (const platform::DesignRow &row : mainDesign::controls())
        check(QString::fromLatin1(row.name), row);
    for (int i = 1; i <= 21; ++i)
        check(QStringLiteral("cDemoButt(%1)").arg(i), mainDesign::patternButton(i));
    // Two places written out, so that the rule itself is held to something.
    QCOMPARE(w.button("cDemoButt(21)")->geometry(), QRect(152, 136, 33, 17));
    QCOMPARE(w.button("cDemoButt(9)")->geometry(), QRect(72, 23, 73, 17));

    QCOMPARE(w.window.windowTitle(), QStringLiteral("Vellomir"));
    QVERIFY(!w.button("cPause")->isEnabled());
    QVERIFY(w.find<QAction>(QStringLiteral("mnuShaddow"))->isChecked());
    QCOMPARE(w.find<QAction>(QStringLiteral("mnuExit"))->text(), QStringLiteral("E&xit"));
    QCOMPARE(w.find<QTimer>(QStringLiteral("Timer1"))->interval(), 100);
    QCOMPARE(w.find<QTimer>(QStringLiteral("Timer2"))->interval(), 1000);
    QVERIFY(w.entryHasFocus());
    QVERIFY(w.display("RTB3")->text().isEmpty() && w.caption("lblAutoCall").isEmpty());
}

void TestBoard::numberButtonsAndCellsFollowTheirRule()
{
    const MainWindow w;
    for (int n = 1; n <= 75; ++n) {
        QCOMPARE(w.number(n)->geometry(), QRect(28 + (n - 1) % 15 * 27, 28 + (n - 1) / 15 * 27, 24, 24));
        QCOMPARE(w.number(n)->text(), QString::number(n));
    }
    const double rows[] = {0, 460, 920, 1380, 1840};
    QRegion card;
    for (int i = 1; i <= 25; ++i) {
        const auto *cell = w.find<platform::ColorBox>(QStringLiteral("tDemo(%1)").arg(i));
        QCOMPARE(cell->x(), (i - 1) % 5 * 29);
        QVERIFY(qAbs(cell->y() - rows[(i - 1) / 5] / 15) <= 1);
        QVERIFY2(!card.intersects(cell->geometry().adjusted(-1, -1, 0, 0)), "two cells touch");
        card += cell->geometry();
        QCOMPARE(cell->backColor(), colors::white);
    }
}

void TestBoard::tabOrder()
{
    const MainWindow w;
    QStringList names;
    QWidget *widget = w.entry();
    do {
        if (widget->focusPolicy() & Qt::TabFocus && !widget->focusProxy())
            names += widget->objectName();
        widget = widget->nextInFocusChain();
    } while (widget != w.entry());
    QStringList expected{QStringLiteral("Text1")};
    for (int n = 1; n <= 75; ++n)
        expected += QStringLiteral("cButt(%1)").arg(n);
    for (const char *name : {"iFontSize", "cmdClear", "RTB2", "RTB1", "RTB3", "RTB4"})
        expected += QString::fromLatin1(name);
    for (int i = 1; i <= 25; ++i)
        expected += QStringLiteral("tDemo(%1)").arg(i);
    for (const int i : {2, 1, 4, 5, 6, 3, 8, 9, 7, 10, 11, 12, 13, 14, 17, 19, 20, 21, 18, 16, 15})
        expected += QStringLiteral("cDemoButt(%1)").arg(i);
    for (const char *name :
         {"RTB5", "cRandNum", "chkAutoCall", "cboSec", "chkMakeVoiceCall", "cPause", "cBingo"})
        expected += QString::fromLatin1(name);
    QCOMPARE(names, expected);
}

void TestBoard::boardFollowsTheWindow()
{
    MainWindow w;
    const int bar = w.window.menuBar()->height();
    w.window.resize(1282, 674 + bar);
    QCOMPARE(w.display("RTB2")->geometry(), QRect(48, 191, 1221, 473));
    QCOMPARE(w.display("RTB1")->geometry(), QRect(8, 191, 41, 473));
    w.window.resize(1600, 900 + bar);
    QCOMPARE(w.display("RTB2")->size(), QSize(1600 - 13 - 48, 900 - 10 - 191));
    w.window.resize(10, 10);
    QCOMPARE(w.window.centralWidget()->size(), QSize(926, 548));
    QCOMPARE(w.display("RTB2")->size(), QSize(865, 347));
    w.display("RTB2")->verticalScrollBar()->setValue(50);
    w.window.resize(930, 600);
    QCOMPARE(w.display("RTB2")->verticalScrollBar()->value(), 0);
}

void TestBoard::nothingIsCutOff()
{
    MainWindow w;
    w.window.resize(1282, 674 + w.window.menuBar()->height());
    QCOMPARE(w.display("RTB2")->verticalScrollBar()->maximum(), 0);
    QCOMPARE(w.display("RTB2")->horizontalScrollBar()->maximum(), 0);
    for (const int n : {75, 48, 46, 47, 60})
        w.press(n);
    QCOMPARE(w.display("RTB3")->horizontalScrollBar()->maximum(), 0);
    QCOMPARE(w.display("RTB4")->document()->begin().layout()->lineCount(), 2);
    QCOMPARE(w.display("RTB4")->verticalScrollBar()->maximum(), 0);
    const auto fits = [](const QAbstractButton *button, int besideText) {
        const int text = button->fontMetrics().horizontalAdvance(button->text().remove(u'&'));
        QVERIFY2(text + besideText <= button->width(), qPrintable(button->objectName()));
    };
    for (const QPushButton *button : w.window.findChildren<QPushButton *>())
        fits(button, 4);
    for (const QCheckBox *box : w.window.findChildren<QCheckBox *>())
        fits(box, 13 + 4);
}

void TestBoard::lettersStandLevelWithTheirRows_data()
{
    QTest::addColumn<QString>("size");
    for (const char *size : {"5", "12.5", "20", "33", "52", "100"})
        QTest::newRow(size) << size;
}

void TestBoard::lettersStandLevelWithTheirRows()
{
    QFETCH(QString, size);
    MainWindow w;
    w.window.resize(926, 600); // too small for the larger sizes: both scroll
    auto *font = w.find<platform::ComboBox>(QStringLiteral("iFontSize"));
    font->setEditText(size);
    QTest::keyClick(font->lineEdit(), Qt::Key_Return);
    const auto tops = [](const platform::RichTextBox *display) {
        std::vector<double> found;
        for (QTextBlock line = display->document()->begin(); line.isValid(); line = line.next())
            found.push_back(line.layout()->boundingRect().height() + line.layout()->position().y() -
                            display->verticalScrollBar()->value());
        return found;
    };
    auto *down = w.display("RTB2")->verticalScrollBar();
    for (const int place : {0, down->maximum()}) {
        down->setValue(place);
        QCOMPARE(tops(w.display("RTB1")), tops(w.display("RTB2")));
    }
    QCOMPARE(w.display("RTB1")->horizontalScrollBar()->maximum(), 0);
    const int buttonPitch = 27;
    const QTextBlock first = w.display("RTB5")->document()->begin();
    QCOMPARE(first.next().layout()->position().y() - first.layout()->position().y(), buttonPitch);
}

void TestBoard::displaysAreOutputOnly()
{
    const MainWindow w;
    w.press(33);
    for (const char *name : {"RTB1", "RTB2", "RTB3", "RTB4", "RTB5"}) {
        platform::RichTextBox *display = w.display(name);
        const QString before = display->text();
        QTest::mouseDClick(display->viewport(), Qt::LeftButton);
        QVERIFY2(w.entryHasFocus(), name);
        QTest::keyClicks(display, QStringLiteral("x"));
        QCOMPARE(display->text(), before);
        QCOMPARE(display->cursorWidth(), 0);
        QVERIFY(!display->textCursor().hasSelection());
    }
}

void TestBoard::wheelOverAnUnfocusedComboBox()
{
    const MainWindow w;
    for (const char *name : {"iFontSize", "cboSec"}) {
        auto *box = w.find<platform::ComboBox>(QString::fromLatin1(name));
        const QString before = box->currentText();
        QWheelEvent wheel(QPointF(5, 5), box->mapToGlobal(QPointF(5, 5)), {}, {0, -120}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(box, &wheel);
        QCOMPARE(box->currentText(), before);
        QVERIFY(w.entryHasFocus());
    }
}

void TestBoard::emptyEntryShowsTheCard()
{
    const MainWindow w;
    auto *cell = w.find<platform::ColorBox>(QStringLiteral("tDemo(10)"));
    const QPoint inside = w.entry()->geometry().center() + QPoint(8, 4);
    const auto pixel = [&] { return QColor(w.window.centralWidget()->grab().toImage().pixel(inside)).rgb(); };
    QTest::mouseClick(cell, Qt::LeftButton, {}, QPoint(cell->width() - 3, 3));
    QCOMPARE(pixel(), colors::black);
    w.type(QStringLiteral("7"));
    QCOMPARE(pixel(), colors::white);
    QTest::mouseClick(w.window.centralWidget(), Qt::LeftButton, {}, inside);
    QVERIFY(w.entryHasFocus());
}

void TestBoard::callShowsEverywhere()
{
    const MainWindow w;
    w.press(33);
    QCOMPARE(w.calledButtons(), Numbers({33}));
    QCOMPARE(w.redNumbers(), Numbers({33}));
    QCOMPARE(w.caption("lblCallCnt"), QStringLiteral("Balls Called: 1"));
    QCOMPARE(w.display("RTB3")->text(), QStringLiteral("N33"));
    QCOMPARE(w.display("RTB3")->colorAt(0), colors::red);
    QCOMPARE(w.display("RTB4")->text(), QStringLiteral("    "));
    QVERIFY(w.entryHasFocus());
    w.press(16);
    w.press(1);
    QCOMPARE(w.calledButtons(), Numbers({1, 16, 33}));
    QCOMPARE(w.redNumbers(), Numbers({1, 16, 33}));
    QCOMPARE(w.caption("lblCallCnt"), QStringLiteral("Balls Called: 3"));
    QCOMPARE(w.display("RTB2")->text(), board::boardText());
    QCOMPARE(w.display("RTB2")->colorAt(board::cellOffset(15)), colors::black);
    QCOMPARE(w.number(16)->accessibleName(), QStringLiteral("I 16"));
    QCOMPARE(w.number(16)->accessibleDescription(), QStringLiteral("called"));
}

/// The second call is on the screen when its press returns.
void TestBoard::callIsPaintedAtOnce()
{
    const MainWindow w;
    w.press(12);
    QCoreApplication::processEvents();
    Painted painted;
    qApp->installEventFilter(&painted);
    w.number(33)->click();
    QSet<QObject *> expected = {w.number(33), w.find<QLabel>(QStringLiteral("lblCallCnt"))};
    for (const char *name : {"RTB2", "RTB3", "RTB4"})
        expected.insert(w.display(name)->viewport());
    QVERIFY(painted.widgets.contains(expected));
}

void TestBoard::pastNumbers()
{
    const MainWindow w;
    for (const int n : {12, 7, 44, 61, 33})
        w.press(n);
    QCOMPARE(w.display("RTB3")->text(), QStringLiteral("N33"));
    QCOMPARE(w.display("RTB4")->text(), QStringLiteral("O61 N44 B7  B12 "));
    w.press(75);
    QCOMPARE(w.display("RTB4")->text(), QStringLiteral("N33 O61 N44 B7  "));
    w.press(2);
    for (const char *name : {"RTB1", "RTB3", "RTB5"}) { // a short label stands in the middle, too
        const QTextLine line = w.display(name)->document()->begin().layout()->lineAt(0);
        const double middle = line.naturalTextRect().center().x();
        QVERIFY2(qAbs(middle - w.display(name)->viewport()->width() / 2.0) <= 1.0, name);
    }
}

void TestBoard::uncallAsksFirst()
{
    const MainWindow w;
    w.press(8);
    w.press(61);
    {
        Answer no(QMessageBox::No);
        w.press(8);
        QCOMPARE(no.shown, 1);
        QCOMPARE(no.title, QStringLiteral("Clear Board"));
        QCOMPARE(no.text, QStringLiteral("Clearing button,\nAre you sure?"));
        QCOMPARE(no.buttons, QMessageBox::Yes | QMessageBox::No);
    }
    QCOMPARE(w.calledButtons(), Numbers({8, 61}));
    QCOMPARE(w.redNumbers(), Numbers({8, 61}));
    {
        const Answer yes(QMessageBox::Yes);
        w.enter(QStringLiteral("B8"));
    }
    QCOMPARE(w.calledButtons(), Numbers({61}));
    QCOMPARE(w.redNumbers(), Numbers({61}));
    QCOMPARE(w.caption("lblCallCnt"), QStringLiteral("Balls Called: 2"));
    QCOMPARE(w.display("RTB3")->text(), QStringLiteral("O61"));
    QCOMPARE(w.display("RTB4")->text(), QStringLiteral("B8     "));
    QVERIFY(w.entryHasFocus());
    QVERIFY(w.entry()->text().isEmpty());
}

void TestBoard::recallsCountAgain()
{
    const MainWindow w;
    w.press(7);
    {
        const Answer yes(QMessageBox::Yes);
        w.press(7);
    }
    w.press(7);
    QCOMPARE(w.caption("lblCallCnt"), QStringLiteral("Balls Called: 2"));
    QCOMPARE(w.display("RTB4")->text(), QStringLiteral("B7     "));
    QCOMPARE(w.redNumbers(), Numbers({7}));
}

void TestBoard::entryKeys()
{
    const MainWindow w;
    w.type(QStringLiteral("n33\r"));
    QCOMPARE(w.calledButtons(), Numbers({33}));
    QTest::keyClicks(w.entry(), QStringLiteral("G7"));
    QTest::keyClick(w.entry(), Qt::Key_Enter);
    QCOMPARE(w.calledButtons(), Numbers({7, 33}));
    w.type(QStringLiteral("12r"));
    QCOMPARE(w.calledButtons().size(), 3U);
    w.type(QStringLiteral("R"));
    QCOMPARE(w.calledButtons().size(), 4U);
    w.type(QStringLiteral("5p"));
    QVERIFY(w.entry()->text().isEmpty());
    QVERIFY(!w.find<QTimer>(QStringLiteral("Timer2"))->isActive());
    QTest::keyClick(w.entry(), Qt::Key_R, Qt::ControlModifier);
    QTest::keyClick(w.entry(), Qt::Key_R, Qt::AltModifier);
    QCOMPARE(w.calledButtons().size(), 4U);
}

void TestBoard::heldKeysActOnce()
{
    const MainWindow w;
    const auto hold = [](QWidget *widget, Qt::Key key, const QString &text) {
        QKeyEvent first(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(widget, &first);
        for (int i = 0; i < 5; ++i) {
            QKeyEvent again(QEvent::KeyPress, key, Qt::NoModifier, text, true);
            QApplication::sendEvent(widget, &again);
        }
    };
    hold(w.entry(), Qt::Key_R, QStringLiteral("r"));
    QCOMPARE(w.calledButtons().size(), 1U);
    QVERIFY(w.entry()->text().isEmpty());
    hold(w.entry(), Qt::Key_7, QStringLiteral("7"));
    QCOMPARE(w.entry()->text(), QStringLiteral("777777"));
    hold(w.button("cRandNum"), Qt::Key_Return, QStringLiteral("\r"));
    QCOMPARE(w.calledButtons().size(), 2U);
}

void TestBoard::entrySurvivesWhatIsPasted()
{
    const MainWindow w;
    for (const QString &text :
         {QString(10000, u'7'), QString(10000, u'B'), QStringLiteral("B"), QStringLiteral("N\t\x01\x02"),
          QStringLiteral("nan"), QStringLiteral("１２")}) {
        QGuiApplication::clipboard()->setText(text);
        w.entry()->paste();
        QTest::keyClick(w.entry(), Qt::Key_Return);
        QVERIFY(w.entry()->text().isEmpty());
    }
    QVERIFY(w.calledButtons().empty());
}

void TestBoard::drawsTheWholeBoard()
{
    const MainWindow w;
    w.press(1);
    for (int i = 2; i <= 75; ++i)
        w.press("cRandNum");
    Numbers all;
    for (int n = 1; n <= 75; ++n)
        all.push_back(n);
    QCOMPARE(w.calledButtons(), all);
    QCOMPARE(w.redNumbers(), all);
    QCOMPARE(w.caption("lblCallCnt"), QStringLiteral("Balls Called: 75"));
    Answer ok(QMessageBox::Ok);
    w.press("cRandNum");
    QCOMPARE(ok.shown, 1);
    QCOMPARE(ok.text, QStringLiteral("Full Board...."));
    QCOMPARE(ok.buttons, QMessageBox::Ok);
    QCOMPARE(w.caption("lblCallCnt"), QStringLiteral("Balls Called: 75"));
}

void TestBoard::fontSizes_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<double>("drawn");
    QTest::newRow("too small") << "3"
                               << "5" << 5.0;
    QTest::newRow("too large") << "250"
                               << "100" << 100.0;
    QTest::newRow("with a point") << "12.5"
                                  << "12.5" << 12.5;
    QTest::newRow("no number") << "huge"
                               << "huge" << 33.0;
    QTest::newRow("empty") << ""
                           << "" << 33.0;
}

void TestBoard::fontSizes()
{
    QFETCH(QString, typed);
    const MainWindow w;
    w.press(40);
    auto *font = w.find<platform::ComboBox>(QStringLiteral("iFontSize"));
    font->setEditText(typed);
    QTest::keyClick(font->lineEdit(), Qt::Key_Return);
    QTEST(font->currentText(), "shown");
    QTEST(w.display("RTB2")->fontSizeAt(0), "drawn");
    QTEST(w.display("RTB1")->fontSizeAt(0), "drawn");
    font->setEditText(QStringLiteral("20"));
    QTest::keyClick(font->lineEdit(), Qt::Key_Return);
    const auto *letters =
        w.display("RTB1"); // no trace is left of letters that were narrowed for a large size
    QCOMPARE(letters->document()->begin().layout()->lineAt(0).naturalTextWidth(),
             QFontMetricsF(letters->font(), letters).horizontalAdvance(u'B'));
    QCOMPARE(w.redNumbers(), Numbers({40}));
    QVERIFY(w.entryHasFocus());

    font->setFocus();
    QTest::keyClick(font, Qt::Key_Down);
    QCOMPARE(w.display("RTB2")->fontSizeAt(0), font->currentText().toDouble());
    QCOMPARE(w.redNumbers(), Numbers({40}));
    QVERIFY(w.entryHasFocus());
}

void TestBoard::cells()
{
    const MainWindow w;
    auto *cell = w.find<platform::ColorBox>(QStringLiteral("tDemo(14)"));
    QTest::mouseClick(cell, Qt::LeftButton);
    QCOMPARE(cell->backColor(), colors::black);
    QCOMPARE(cell->accessibleName(), QStringLiteral("Pattern row 3, column G, lit"));
    QVERIFY(w.entryHasFocus());
    QTest::mouseClick(cell, Qt::LeftButton);
    QCOMPARE(cell->backColor(), colors::white);
    QVERIFY(w.calledButtons().empty());
}

QTEST_MAIN(TestBoard)
#include "tst_board.moc"
