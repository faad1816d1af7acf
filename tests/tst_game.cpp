// Games, played by a hand and seen by an eye.

#include "support/room.h"

namespace {

const struct
{
    const char *script, *seen;
} games[] = {
    // ---- calls
    {"", "0"},
    {"12", "1 B12 red 12"},
    {"12 7 44 61 33 75", "6 O75/N33 O61 N44 B7 red 7 12 33 44 61 75"},
    {"12 7 7:Y", "2 B7/B12 red 12; Q"},
    {"12 7 7:Y 7", "3 B7/B7  B12 red 7 12; Q"},
    {"12 12:N", "1 B12 red 12; Q"},
    {"12 12:/", "1 B12 red 12; Q"},
    {"12 12", "1 B12 red 12; Q"},
    {"12 12:e", "1 B12 red 12; Q; Run-Time Error: Desc: No voice Err #: -2147221164"},
    // ---- entry
    {"'n33/ 'G7/ 'O75/ 'i100/ 'B.9/", "5 B1/B10 O75 B7  N33 red 1 7 10 33 75"},
    {"'75.4/ '2.5/ '3.5/ '+1.2E+1/", "4 B12/B4  B2  O75 red 2 4 12 75"},
    {"'76/ '0/ '75.5/ '-3/ 'B/ 'BX/ 'Z7/ '7B/ 'nan/ '1,0/ '0x10/ 'B-3/ '1e9999/", "0"},
    {"'_7_/ 'N_34/", "2 B3/B7 red 3 7"},
    {"'12/ '12/:Y", "1 B12; Q"},
    {"'1", "0 entry 1"},
    {"%0 '12R '3p", "1 B1 red 1"},
    {"%0 \"r", "1 B1 red 1"},
    {"Ctrl+r Alt+r Meta+r Alt+7", "0"},
    {"%0 '12r Ctrl+z", "1 B1 red 1"},
    {"33 RTB1 RTB2 RTB3 RTB4 RTB5 'x", "1 N33 red 33 entry x"},
    {"Tab Tab", "0 focus cButt(2)"},
    {"Backtab Backtab Backtab Backtab Backtab", "0 focus cRandNum"},
    // ---- draw
    {"%0 cRandNum cRandNum %99 cRandNum cRandNum", "4 O74/O75 B2  B1 red 1-2 74-75"},
    {"p3 16-30 46-60 cRandNum:/",
     "30 G60/G59 G58 G57 G56 red 1-75 lit giqs focus cRandNum; Vellomir: Full Board...."},
    {"p3 16-30 46-60 33:Y cRandNum", "31 N33/G60 G59 G58 G57 red 1-75 lit giqs; Q"},
    // ---- countdown
    {"chkAutoCall", "0 Pause counts. focus cPause"},
    {"chkAutoCall s", "0 in 1 Pause counts. focus cPause"},
    {"chkAutoCall s2", "1 N38 red 38 in 10 Pause counts. focus cPause"},
    {"chkAutoCall s11", "1 N38 red 38 in 1 Pause counts. focus cPause"},
    {"chkAutoCall s12", "2 N39/N38 red 38-39 in 10 Pause counts. focus cPause"},
    {"chkAutoCall s5 cboSec=5 s6", "1 N38 red 38 in 1 Pause counts. focus cPause"},
    {"chkAutoCall s5 cboSec=5 s7", "2 N39/N38 red 38-39 in 5 Pause counts. focus cPause"},
    {"chkAutoCall s7 cPause s9", "1 N38 red 38 Paused Play focus cPause"},
    {"chkAutoCall s7 cPause cPause", "1 N38 red 38 Paused Pause counts. focus cPause"},
    {"chkAutoCall s7 cPause cPause s", "1 N38 red 38 in 4 Pause counts. focus cPause"},
    {"chkAutoCall s5 chkAutoCall s9", "1 N38 red 38"},
    {"chkAutoCall s5 chkAutoCall chkAutoCall s", "1 N38 red 38 in 1 Pause counts. focus cPause"},
    {"chkAutoCall 33", "1 N33 red 33 Pause counts. focus cPause"},
    {"chkAutoCall s4 cPause 33", "2 N33/N38 red 33 38 Paused Play"},
    {"chkAutoCall s4 cPause 33 '1p", "2 N33/N38 red 33 38 Paused Pause counts."},
    {"3 chkAutoCall s 3:s", "1 B3 red 3 in 1 Pause counts. focus cPause; Q"},
    {"1-75 chkAutoCall s4", "75 O75/O74 O73 O72 O71 red 1-75 in 2 Pause counts. focus cPause; "
                            "Vellomir: Full Board....; Vellomir: Full Board...."},
    {"1-75 chkAutoCall s2:u", "75 O75/O74 O73 O72 O71 red 1-75; Vellomir: Full Board...."},
    // ---- clear, BINGO
    {"12 7 44 chkAutoCall '5 cmdClear:N s9", "3 N44/B7  B12 red 7 12 44 Paused Play; C"},
    {"12 7 44 chkAutoCall cmdClear:Y 9", "1 B9 red 9 Paused Play; C"},
    {"12 7 44 chkAutoCall s3 cmdClear:s", "4 N39/N44 B7  B12 red 7 12 39 44 Paused Play; C"},
    {"p4 a2 70 cmdClear:Y", "0 red 31-45 step 100; C"},
    {"p4 a2 70 cmdClear:Y a", "0 red 31-45 lit abfg step 1500; C"},
    {"9 chkAutoCall s cBingo s5", "1 B9 red 9 Paused Play + frmBingo"},
    {"chkAutoCall cPause cBingo cBingo", "0 Paused Play + frmBingo"},
    // ---- patterns
    {"p3 p12", "0 grey 31-45 lit abdefgijpqstuvxy"},
    {"p3 p12 c13 p12", "0"},
    {"8 p2 p2", "1 B8 red 8 grey none"},
    {"8 p2 p2 22", "2 I22/B8 red 22"},
    {"p14", "0 grey 31-45 step 100"},
    {"p14 a2 p7", "0 step 100"},
    {"p14 a2 p14", "0"},
    {"p14 a2 p14 p14 a", "0 grey 31-45 lit abfgmsy step 1500"},
    {"p7 a c25 c1 a", "0 lit hijmnorst step 1500"},
    {"p2 mnuShaddow 1", "1 B1 red 1 16-60 lit aeuy"},
    {"p2 mnuShaddow p9", "0 lit ghilnqrs"},
    {"p2 20:Y", "0 red 16-19 21-60 lit aeuy; Q"},
    {"c10 c3 c3", "0 lit j"},
    // ---- voice
    {"chkMakeVoiceCall 4 ~", "1 B4 red 4; Bee, 4; And After"},
    {"chkMakeVoiceCall 7 ~ 62 ~ 62:Y 30 ~",
     "3 I30/O62 B7 red 7 30; Bee, 7; Bee, 7; Oh, 62; Oh, 6 , 2; Eye, 30; Eye, 3 , 0; Q"},
    {"chkMakeVoiceCall 7 ~ chkMakeVoiceCall 62", "2 O62/B7 red 7 62; Bee, 7; Bee, 7"},
    {"chkMakeVoiceCall hush 33 ~ chkMakeVoiceCall . ~",
     "1 N33 red 33 focus chkMakeVoiceCall; En, 33; En, 3 , 3"},
    {"chkMakeVoiceCall hush 12 48 ~ . ~ . ~ . ~ .",
     "2 G48/B12 red 12 48; Bee, 12; Gee, 48; Gee, 4 , 8; Gee, 4 , "},
    {"chkMakeVoiceCall hush 50 ~ . ~ gone 51 ~ . 52 ~ . ~ .",
     "3 G52/G51 G50 red 50-52; Gee, 50; Gee, 5 , 0; "
     "Gee, 51; Gee, 52; Gee, 5 , 2; Run-Time Error: Desc: it went away Err #: -7"},
    {"hush chkMakeVoiceCall 15 ~ . ~ . 16 ~ . ~ . 30 ~ . ~ . 31 ~ . ~ . 75 ~ . ~ .",
     "5 O75/N31 I30 I16 B15 red 15-16 30-31 75; Bee, 15; Bee, 1 , 5; Eye, 16; Eye, 1 , 6; Eye, 30; Eye, 3 , "
     "0; "
     "En, 31; En, 3 , 1; Oh, 75; Oh, 7 , 5"},
    {"chkMakeVoiceCall 8 ~ voice=99 9", "2 B9/B8 red 8-9; Bee, 8; Bee, 8; "
                                        "Run-Time Error: Desc: There is no voice number 100. Err #: 5"},
    {"voice=2 8 chkMakeVoiceCall 9 ~", "2 B9/B8 red 8-9; Bee, 9 2 0; Bee, 9 2 0"},
};

/// Numbers of the shadow, and the forms in the order in which they are shown: a word holds the cells of one,
/// a to y row by row.
const struct
{
    const char *caption, *shadow, *forms;
} catalogue[] = {
    {"Bingo", "", "agmsy chmrw eimqu klmno"},
    {"Four Corner", " grey 16-60", "aeuy"},
    {"Inside Cor", " grey 1-15 31-45 61-75", "giqs"},
    {"Stamp", " grey 31-45", "abfg deij stxy pquv"},
    {"Dbl Stamp", " grey 31-45", "abdefgij abfgstxy deijstxy deijpquv pqstuvxy abfgstxy abfgpquv deijpquv"},
    {"Six Pack", "", "abcfgh ghlmqr mnorst nostxy pqruvw cdhimn"},
    {"Nine Pack", "", "abcfghklm hijmnorst lmnqrsvwx"},
    {"Outside Box", "", "abcdefjkoptuvwxy"},
    {"Inside Box", " grey 1-15 61-75", "ghilnqrs"},
    {"In Diamond", " grey 1-15 61-75", "hlnr"},
    {"Out Diamond", " grey 16-30 46-60", "ckow"},
    {"Clover Leaf", " grey 31-45", "abdefgijpqstuvxy"},
    {"Plus Sign", "", "chklmnorw"},
    {"Kite", " grey 31-45", "abfgmsy deijmqu agmstxy eimpquv"},
    {"J", "", "abcdehmpruvw"},
    {"M", "", "aefgijkmoptuy"},
    {"N", "", "aefgjkmopstuy"},
    {"T", "", "abcdehmrw"},
    {"U", "", "aefjkoptuvwxy"},
    {"X", "", "aegimqsuy"},
    {"ALL", "", "abcdefghijklmnopqrstuvwxy"},
};

} // namespace

class TestGame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void games()
    {
        const QString button = "Clear Board: Clearing button, Are you sure?";
        const QString board = "Clear Board: Clearing board, Are you sure?";
        int failed = 0;
        for (const auto &[script, seen] : ::games) {
            Room room;
            room.play(script);
            const QString really = room.look().replace(button, "Q").replace(board, "C");
            if (really != seen)
                qWarning("%d: %s\n  %s\n  %s", ++failed, script, seen, qPrintable(really));
        }
        QCOMPARE(failed, 0);
    }

    void patterns()
    {
        Room room;
        int id = 0;
        for (const auto &[caption, shadow, forms] : catalogue) {
            room.play(QString("p%1").arg(++id));
            QCOMPARE(room.find<QPushButton>(QString("cDemoButt(%1)").arg(id))->text(), caption);
            const QString at = QString("0%1%2").arg(shadow);
            const QStringList cycle = QString(forms).split(' ');
            QCOMPARE(room.look(), at.arg(cycle.size() == 1 ? " lit " + cycle[0] : " step 100"));
            for (qsizetype i = 0; i <= cycle.size() && cycle.size() > 1; ++i) {
                room.play("a");
                QCOMPARE(room.look(), at.arg(" lit " + cycle[i % cycle.size()] + " step 1500"));
            }
        }
        QCOMPARE(id, 21);
    }

    /// The second call is on the screen when its press returns, before anything is said.
    void callIsPaintedAtOnce()
    {
        Room room;
        room.play("12");
        QCoreApplication::processEvents();
        struct : QObject
        {
            QSet<QObject *> painted;
            bool eventFilter(QObject *watched, QEvent *event) override
            {
                if (event->type() == QEvent::Paint)
                    painted += watched;
                return false;
            }
        } eye;
        qApp->installEventFilter(&eye);
        room.find<QPushButton>("cButt(33)")->click();
        qApp->removeEventFilter(&eye);
        QSet<QObject *> shown{room.find("cButt(33)"), room.find("lblCallCnt")};
        for (const char *name : {"RTB2", "RTB3", "RTB4"})
            shown += room.display(name)->viewport();
        QVERIFY(eye.painted.contains(shown));
    }

    void failures()
    {
        Room room;
        QTimer::singleShot(0, room.window, [] { throw std::runtime_error("out of paper"); });
        QTRY_COMPARE(room.boxes, QStringList("Run-Time Error: Desc: out of paper Err #: -1"));
    }
};

int main(int argc, char *argv[])
{
    return runInRoom<TestGame>(argc, argv);
}

#include "tst_game.moc"
