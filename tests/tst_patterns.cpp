// The pattern catalogue on the card, its animation, and the shadow on the board.

#include "appearance.h"
#include "support/main_window.h"

namespace {

/// The forms in the order in which they are shown; a word holds the cells of one, a to y row by row.
const struct
{
    const char *caption, *shadow, *forms;
} catalogue[] = {
    {"Bingo", "", "agmsy chmrw eimqu klmno"},
    {"Four Corner", "ING", "aeuy"},
    {"Inside Cor", "BNO", "giqs"},
    {"Stamp", "N", "abfg deij stxy pquv"},
    {"Dbl Stamp", "N", "abdefgij abfgstxy deijstxy deijpquv pqstuvxy abfgstxy abfgpquv deijpquv"},
    {"Six Pack", "", "abcfgh ghlmqr mnorst nostxy pqruvw cdhimn"},
    {"Nine Pack", "", "abcfghklm hijmnorst lmnqrsvwx"},
    {"Outside Box", "", "abcdefjkoptuvwxy"},
    {"Inside Box", "BO", "ghilnqrs"},
    {"In Diamond", "BO", "hlnr"},
    {"Out Diamond", "IG", "ckow"},
    {"Clover Leaf", "N", "abdefgijpqstuvxy"},
    {"Plus Sign", "", "chklmnorw"},
    {"Kite", "N", "abfgmsy deijmqu agmstxy eimpquv"},
    {"J", "", "abcdehmpruvw"},
    {"M", "", "aefgijkmoptuy"},
    {"N", "", "aefgjkmopstuy"},
    {"T", "", "abcdehmrw"},
    {"U", "", "aefjkoptuvwxy"},
    {"X", "", "aegimqsuy"},
    {"ALL", "", "abcdefghijklmnopqrstuvwxy"},
};

/// The numbers of whole columns, and nothing else.
QString columns(const QString &letters)
{
    QStringList numbers;
    for (int n = 1; n <= 75; ++n) {
        if (letters.contains(QString("BINGO")[(n - 1) / 15]))
            numbers += QString::number(n);
    }
    return numbers.join(' ');
}

/// A window whose patterns are selected with the mouse.
class PatternWindow : public MainWindow
{
public:
    auto *pattern(int id) const { return button(QString("cDemoButt(%1)").arg(id)); }
    void select(int id) const { click(pattern(id)); }
    bool isAnimated() const { return timer("Timer1")->isActive(); }
    QString litAfterTick() const
    {
        tick("Timer1");
        return lit();
    }
    QString lit() const
    {
        QString cells;
        for (int i = 1; i <= 25; ++i)
            cells +=
                cell(i)->backColor() == controls::colors::black ? QString(QChar('a' + i - 1)) : QString();
        return cells;
    }
};

} // namespace

class TestPatterns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { controls::applyAppearance(*qApp); }

    /// What is selected forgets what was called; the board keeps its colours until the next call.
    void everyPattern()
    {
        const PatternWindow w;
        w.press(8);
        w.press(40);
        int id = 0;
        for (const auto &[caption, shadow, forms] : catalogue) {
            QCOMPARE(w.pattern(++id)->text(), caption);
            w.select(id);
            QVERIFY(w.entryHasFocus());
            QCOMPARE(w.called(), columns(shadow));
            QCOMPARE(w.seen(), "2|N40|B8     |8 40");
            QStringList cycle = QString(forms).split(' ');
            QCOMPARE(w.isAnimated(), cycle.size() > 1);
            if (!w.isAnimated()) {
                QCOMPARE(w.lit(), cycle.first());
                continue;
            }
            QCOMPARE(w.lit(), "");
            QCOMPARE(w.timer("Timer1")->interval(), 100);
            cycle += cycle.first();
            for (const QString &cells : cycle) {
                QCOMPARE(w.litAfterTick(), cells);
                QCOMPARE(w.timer("Timer1")->interval(), 1500);
            }
        }
        QCOMPARE(id, 21);
        w.select(1);
        w.press(22);
        QCOMPARE(w.seen(), "3|I22|N40 B8    |22");
    }

    void selectingAgainAndAnother()
    {
        const PatternWindow w;
        w.select(3);
        w.select(12);
        QCOMPARE(w.pattern(12)->accessibleDescription(), "selected");
        QCOMPARE(w.pattern(3)->accessibleDescription(), "");
        QTest::mouseClick(w.cell(13), Qt::LeftButton);
        w.select(12);
        QCOMPARE(w.called() + w.lit() + w.pattern(12)->accessibleDescription(), "");
        w.select(14);
        QTRY_COMPARE(w.lit(), "abfgmsy"); // in real time, after 100 ms
        w.tick("Timer1");
        w.select(7); // Another begins with its first form,
        QCOMPARE(w.lit(), "");
        w.tick("Timer1", 2);
        w.select(7);
        QVERIFY(w.lit().isEmpty() && !w.isAnimated());
        w.select(7); // and so does the same one selected anew.
        QCOMPARE(w.litAfterTick(), "abcfghklm");
        QTest::mouseClick(w.cell(25), Qt::LeftButton);
        QCOMPARE(w.litAfterTick(), "hijmnorst");
    }

    void clearKeepsThePattern()
    {
        const PatternWindow w;
        const Answer yes(QMessageBox::Yes);
        w.press("cmdClear");
        QVERIFY(w.lit().isEmpty() && !w.isAnimated());
        w.select(4);
        w.tick("Timer1", 2);
        w.press(70);
        w.press("cmdClear");
        QCOMPARE(w.called(), columns("N"));
        QCOMPARE(w.seen(), "0|||" + columns("N"));
        QVERIFY(w.lit().isEmpty() && w.timer("Timer1")->interval() == 100);
        QCOMPARE(w.litAfterTick(), "abfg");
    }

    /// The option counts when a pattern is selected; shadowed numbers are out of play.
    void shadow()
    {
        const PatternWindow w;
        w.select(2);
        w.choose("mnuShaddow");
        QCOMPARE(w.called(), columns("ING"));
        w.select(9);
        w.choose("mnuShaddow");
        QCOMPARE(w.called(), "");
        w.select(3); // I and G are left
        for (int i = 0; i < 30; ++i)
            w.press("cRandNum");
        QCOMPARE(w.called(), columns("BINGO"));
        QCOMPARE(w.caption("lblCallCnt"), "Balls Called: 30");
        {
            const Answer ok(QMessageBox::Ok);
            w.press("cRandNum");
            QVERIFY(ok.said.join("").endsWith("|Full Board...."));
        }
        const Answer yes(QMessageBox::Yes);
        w.press(33); // back into play
        w.press("cRandNum");
        QCOMPARE(w.display("RTB3")->text(), "N33");
    }
};

QTEST_MAIN(TestPatterns)
#include "tst_patterns.moc"
