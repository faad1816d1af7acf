// The pattern catalogue on the card, its animation, and the shadow on the board.

#include "patterns/catalogue.h"
#include "platform/appearance.h"
#include "support/main_window.h"

#include <QAction>

using Numbers = std::vector<int>;

namespace {

/// The numbers of whole columns, and nothing else.
Numbers columns(const QString &letters)
{
    Numbers numbers;
    for (int n = 1; n <= 75; ++n) {
        if (letters.contains(QStringLiteral("BINGO")[(n - 1) / 15]))
            numbers.push_back(n);
    }
    return numbers;
}

struct Form
{
    int id;
    Numbers cells;
};

/// Every pattern's forms, in the order in which they are shown, as cell numbers.
const std::vector<Form> forms = {
    {1, {1, 7, 13, 19, 25}},
    {1, {3, 8, 13, 18, 23}},
    {1, {5, 9, 13, 17, 21}},
    {1, {11, 12, 13, 14, 15}},
    {2, {1, 5, 21, 25}},
    {3, {7, 9, 17, 19}},
    {4, {1, 2, 6, 7}},
    {4, {4, 5, 9, 10}},
    {4, {19, 20, 24, 25}},
    {4, {16, 17, 21, 22}},
    {5, {1, 2, 4, 5, 6, 7, 9, 10}},
    {5, {1, 2, 6, 7, 19, 20, 24, 25}},
    {5, {4, 5, 9, 10, 19, 20, 24, 25}},
    {5, {4, 5, 9, 10, 16, 17, 21, 22}},
    {5, {16, 17, 19, 20, 21, 22, 24, 25}},
    {5, {1, 2, 6, 7, 19, 20, 24, 25}},
    {5, {1, 2, 6, 7, 16, 17, 21, 22}},
    {5, {4, 5, 9, 10, 16, 17, 21, 22}},
    {6, {1, 2, 3, 6, 7, 8}},
    {6, {7, 8, 12, 13, 17, 18}},
    {6, {13, 14, 15, 18, 19, 20}},
    {6, {14, 15, 19, 20, 24, 25}},
    {6, {16, 17, 18, 21, 22, 23}},
    {6, {3, 4, 8, 9, 13, 14}},
    {7, {1, 2, 3, 6, 7, 8, 11, 12, 13}},
    {7, {8, 9, 10, 13, 14, 15, 18, 19, 20}},
    {7, {12, 13, 14, 17, 18, 19, 22, 23, 24}},
    {8, {1, 2, 3, 4, 5, 6, 10, 11, 15, 16, 20, 21, 22, 23, 24, 25}},
    {9, {7, 8, 9, 12, 14, 17, 18, 19}},
    {10, {8, 12, 14, 18}},
    {11, {3, 11, 15, 23}},
    {12, {1, 2, 4, 5, 6, 7, 9, 10, 16, 17, 19, 20, 21, 22, 24, 25}},
    {13, {3, 8, 11, 12, 13, 14, 15, 18, 23}},
    {14, {1, 2, 6, 7, 13, 19, 25}},
    {14, {4, 5, 9, 10, 13, 17, 21}},
    {14, {1, 7, 13, 19, 20, 24, 25}},
    {14, {5, 9, 13, 16, 17, 21, 22}},
    {15, {1, 2, 3, 4, 5, 8, 13, 16, 18, 21, 22, 23}},
    {16, {1, 5, 6, 7, 9, 10, 11, 13, 15, 16, 20, 21, 25}},
    {17, {1, 5, 6, 7, 10, 11, 13, 15, 16, 19, 20, 21, 25}},
    {18, {1, 2, 3, 4, 5, 8, 13, 18, 23}},
    {19, {1, 5, 6, 10, 11, 15, 16, 20, 21, 22, 23, 24, 25}},
    {20, {1, 5, 7, 9, 13, 17, 19, 21, 25}},
    {21, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25}},
};

const QStringList captions{
    QStringLiteral("Bingo"),      QStringLiteral("Four Corner"), QStringLiteral("Inside Cor"),
    QStringLiteral("Stamp"),      QStringLiteral("Dbl Stamp"),   QStringLiteral("Six Pack"),
    QStringLiteral("Nine Pack"),  QStringLiteral("Outside Box"), QStringLiteral("Inside Box"),
    QStringLiteral("In Diamond"), QStringLiteral("Out Diamond"), QStringLiteral("Clover Leaf"),
    QStringLiteral("Plus Sign"),  QStringLiteral("Kite"),        QStringLiteral("J"),
    QStringLiteral("M"),          QStringLiteral("N"),           QStringLiteral("T"),
    QStringLiteral("U"),          QStringLiteral("X"),           QStringLiteral("ALL"),
};

/// A window whose patterns are selected with the mouse.
class PatternWindow : public MainWindow
{
public:
    void select(int id) const { press(qPrintable(QStringLiteral("cDemoButt(%1)").arg(id))); }
    QTimer *animation() const { return find<QTimer>(QStringLiteral("Timer1")); }
    void tick() const { fire(animation()); }
    Numbers litCells() const
    {
        Numbers lit;
        for (int i = 1; i <= 25; ++i) {
            if (find<platform::ColorBox>(QStringLiteral("tDemo(%1)").arg(i))->backColor() ==
                platform::colors::black)
                lit.push_back(i);
        }
        return lit;
    }
};

} // namespace

class TestPatterns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { platform::applyAppearance(*qApp); }
    void formsOnTheCard();
    void shadows_data();
    void shadows();
    void selectingAgainAndAnother();
    void animationStartsAfresh();
    void clearKeepsThePattern();
    void optionCountsWhenAPatternIsSelected();
    void shadowedNumbersAreOutOfPlay();
    void selectionForgetsCalls();
};

void TestPatterns::formsOnTheCard()
{
    const PatternWindow w;
    for (std::size_t i = 0; i < forms.size();) {
        const int id = forms[i].id;
        QCOMPARE(w.button(qPrintable(QStringLiteral("cDemoButt(%1)").arg(id)))->text(), captions[id - 1]);
        w.select(id);
        QVERIFY(w.entryHasFocus());
        std::vector<Numbers> expected;
        for (; i < forms.size() && forms[i].id == id; ++i)
            expected.push_back(forms[i].cells);
        const bool animated = expected.size() > 1;
        QCOMPARE(w.animation()->isActive(), animated);
        if (!animated) {
            QCOMPARE(w.litCells(), expected.front());
            continue;
        }
        QCOMPARE(w.litCells(), Numbers());
        QCOMPARE(w.animation()->interval(), 100);
        expected.push_back(expected.front()); // the cycle begins again
        for (const Numbers &cells : expected) {
            w.tick();
            QCOMPARE(w.litCells(), cells);
            QCOMPARE(w.animation()->interval(), 1500);
        }
    }
}

void TestPatterns::shadows_data()
{
    QTest::addColumn<QString>("columnLetters");
    const QHash<int, QString> shadowed{
        {2, QStringLiteral("ING")}, {3, QStringLiteral("BNO")}, {4, QStringLiteral("N")},
        {5, QStringLiteral("N")},   {9, QStringLiteral("BO")},  {10, QStringLiteral("BO")},
        {11, QStringLiteral("IG")}, {12, QStringLiteral("N")},  {14, QStringLiteral("N")},
    };
    for (int id = 1; id <= 21; ++id)
        QTest::addRow("%d", id) << shadowed.value(id);
}

void TestPatterns::shadows()
{
    QFETCH(QString, columnLetters);
    const PatternWindow w;
    w.press(8);
    w.press(40);
    w.select(QByteArray(QTest::currentDataTag()).toInt());
    QCOMPARE(w.calledButtons(), columns(columnLetters));
    QCOMPARE(w.redNumbers(), Numbers({8, 40})); // the board keeps its colours until it is redrawn
    QCOMPARE(w.caption("lblCallCnt"), QStringLiteral("Balls Called: 2"));
    QCOMPARE(w.display("RTB3")->text(), QStringLiteral("N40"));
}

void TestPatterns::selectingAgainAndAnother()
{
    const PatternWindow w;
    w.select(3);
    w.select(12);
    QCOMPARE(w.calledButtons(), columns(QStringLiteral("N")));
    QCOMPARE(w.button("cDemoButt(12)")->accessibleDescription(), QStringLiteral("selected"));
    QVERIFY(w.button("cDemoButt(3)")->accessibleDescription().isEmpty());
    QTest::mouseClick(w.find<platform::ColorBox>(QStringLiteral("tDemo(13)")), Qt::LeftButton);
    w.select(12);
    QCOMPARE(w.calledButtons(), Numbers());
    QCOMPARE(w.litCells(), Numbers());
    QVERIFY(w.button("cDemoButt(12)")->accessibleDescription().isEmpty());
    w.select(2);
    w.select(18);
    QCOMPARE(w.litCells(), Numbers({1, 2, 3, 4, 5, 8, 13, 18, 23}));
}

void TestPatterns::animationStartsAfresh()
{
    const PatternWindow w;
    w.select(14);
    QTRY_COMPARE(w.litCells(), Numbers({1, 2, 6, 7, 13, 19, 25})); // in real time, after 100 ms
    w.tick();
    w.select(7);
    QCOMPARE(w.litCells(), Numbers());
    w.tick();
    w.tick();
    w.select(7);
    QCOMPARE(w.litCells(), Numbers());
    QVERIFY(!w.animation()->isActive());
    w.select(7);
    w.tick();
    QCOMPARE(w.litCells(), Numbers({1, 2, 3, 6, 7, 8, 11, 12, 13}));
    QTest::mouseClick(w.find<platform::ColorBox>(QStringLiteral("tDemo(25)")), Qt::LeftButton);
    w.tick();
    QCOMPARE(w.litCells(), Numbers({8, 9, 10, 13, 14, 15, 18, 19, 20}));
}

void TestPatterns::clearKeepsThePattern()
{
    const PatternWindow w;
    w.press(5);
    const Answer yes(QMessageBox::Yes);
    w.press("cmdClear");
    QCOMPARE(w.litCells(), Numbers());
    QCOMPARE(w.redNumbers(), Numbers());
    QVERIFY(!w.animation()->isActive());
    w.select(4);
    w.tick();
    w.tick();
    w.press(70);
    w.press("cmdClear");
    QCOMPARE(w.calledButtons(), columns(QStringLiteral("N")));
    QCOMPARE(w.redNumbers(), columns(QStringLiteral("N")));
    QCOMPARE(w.litCells(), Numbers());
    QCOMPARE(w.animation()->interval(), 100);
    w.tick();
    QCOMPARE(w.litCells(), Numbers({1, 2, 6, 7}));
}

void TestPatterns::optionCountsWhenAPatternIsSelected()
{
    const PatternWindow w;
    auto *option = w.find<QAction>(QStringLiteral("mnuShaddow"));
    w.select(2);
    option->trigger();
    QVERIFY(!option->isChecked());
    QCOMPARE(w.calledButtons(), columns(QStringLiteral("ING")));
    w.select(9);
    QCOMPARE(w.calledButtons(), Numbers());
    option->trigger();
    QCOMPARE(w.calledButtons(), Numbers());
    w.select(10);
    QCOMPARE(w.calledButtons(), columns(QStringLiteral("BO")));
}

void TestPatterns::shadowedNumbersAreOutOfPlay()
{
    const PatternWindow w;
    w.select(3); // I and G are left
    for (int i = 0; i < 30; ++i)
        w.press("cRandNum");
    QCOMPARE(w.caption("lblCallCnt"), QStringLiteral("Balls Called: 30"));
    Numbers drawn = w.calledButtons();
    QCOMPARE(drawn.size(), 75U);
    {
        Answer ok(QMessageBox::Ok);
        w.press("cRandNum");
        QCOMPARE(ok.text, QStringLiteral("Full Board...."));
    }
    {
        const Answer yes(QMessageBox::Yes);
        w.press(33); // back into play
    }
    w.press("cRandNum");
    QCOMPARE(w.display("RTB3")->text(), QStringLiteral("N33"));
}

void TestPatterns::selectionForgetsCalls()
{
    const PatternWindow w;
    w.press(20);
    w.press(21);
    w.select(1);
    QCOMPARE(w.calledButtons(), Numbers());
    QCOMPARE(w.redNumbers(), Numbers({20, 21}));
    w.press(22);
    QCOMPARE(w.redNumbers(), Numbers({22}));
    QCOMPARE(w.display("RTB4")->text(), QStringLiteral("I21 I20   "));
    QCOMPARE(w.caption("lblCallCnt"), QStringLiteral("Balls Called: 3"));
}

QTEST_MAIN(TestPatterns)
#include "tst_patterns.moc"
