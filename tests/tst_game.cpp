// Games, played by a hand and seen by an eye.

#include "support/room.h"

namespace {

const struct
{
    const char *script, *seen;
} games[] = {
    // ---- calls
    {"12 7 44 61 33 75", "6 O75/N33 O61 N44 B7 red 7 12 33 44 61 75"},
    {"12 7 7:Y 7 12:Y", "3 B7/B7  B12 red 7; Q; Q"},
    {"12 12:N 12:/ 12 12:e", "1 B12 red 12; Q; Q; Q; Q; E No voice Err #: -2147221164"},
    // ---- entry
    {"'n33/ 'G7/ 'O75/ 'i100/ 'B.9/", "5 B1/B10 O75 B7  N33 red 1 7 10 33 75"},
    {"'75.4/ '2.5/ '3.5/ '+1.2E+1/ '_9_/ 'N_34/", "6 B3/B9  B12 B4  B2 red 2-4 9 12 75"},
    {"'76/ '0/ '75.5/ '-3/ 'B/ 'BX/ 'Z7/ '7B/ 'nan/ '1,0/ '0x10/ 'B-3/ '1e9999/", "0"},
    {"'12/ '12/:Y '1", "1 B12 entry 1; Q"},
    {"%0 '12R '3p \"r '4r key=Ctrl+Z key=Ctrl+R key=Alt+R key=Meta+R key=Alt+7", "3 B3/B2  B1 red 1-3"},
    {"33 RTB1 RTB2 RTB3 RTB4 RTB5 'x", "1 N33 red 33 entry x"},
    {"key=Tab c10 c3 c3", "0 lit j"},
    {"c10 '7", "0 entry 7"}, // which lies over that cell
    {"key=Shift+Tab key=Shift+Tab key=Shift+Tab key=Shift+Tab", "0 focus chkAutoCall"},
    // ---- draw
    {"%0 cRandNum cRandNum %99 cRandNum cRandNum", "4 O74/O75 B2  B1 red 1-2 74-75"},
    {"p3 16-30 46-60 33:Y '4r '5r", "31 N33/G60 G59 G58 G57 red 1-75 lit giqs; Q; F"},
    // ---- countdown
    {"chkAutoCall s12", "2 N39/N38 red 38-39 in 10 Pause counts. focus cPause"},
    {"chkAutoCall s5 cboSec=5 s7", "2 N39/N38 red 38-39 in 5 Pause counts. focus cPause"},
    {"chkAutoCall s7 cPause s9", "1 N38 red 38 Paused Play focus cPause"},
    {"chkAutoCall s7 cPause cPause s", "1 N38 red 38 in 4 Pause counts. focus cPause"},
    {"chkAutoCall s5 chkAutoCall s9 chkAutoCall s2 chkAutoCall", "2 N39/N38 red 38-39"},
    {"chkAutoCall 33", "1 N33 red 33 Pause counts. focus cPause"},
    {"chkAutoCall s4 cPause 33 '1p", "2 N33/N38 red 33 38 Paused Pause counts."},
    {"3 chkAutoCall s 3:s", "1 B3 red 3 in 1 Pause counts. focus cPause; Q"},
    {"1-75 chkAutoCall s4", "75 O75/O74 O73 O72 O71 red 1-75 in 2 Pause counts. focus cPause; F; F"},
    {"none gone chkAutoCall chkMakeVoiceCall s2:p",
     "1 N38 red 38 Paused Play; E it went away Err #: -7; E No speech service is installed. Err #: 1"},
    {"1-75 chkAutoCall s2:u", "75 O75/O74 O73 O72 O71 red 1-75; F"},
    {"throw", "0; E out of paper Err #: -1"},
    // ---- clear, BINGO
    {"12 7 44 chkAutoCall cmdClear:Y 9", "1 B9 red 9 Paused Play; C"},
    {"12 7 44 chkAutoCall s3 cmdClear:s", "4 N39/N44 B7  B12 red 7 12 39 44 Paused Play; C"},
    {"p4 a2 70 cmdClear:Y a", "0 red 31-45 lit abfg step 1500; C"},
    {"9 chkAutoCall s cBingo s5 cBingo", "1 B9 red 9 Paused Play + frmBingo"},
    // ---- patterns
    {"p14 a2 p14 c13 p12 p12", "0"},
    {"8 p2 p2", "1 B8 red 8 grey none"},
    {"p7 a c25 c1 a", "0 lit hijmnorst step 1500"},
    {"p2 mnuShaddow 20:Y 1", "1 B1 red 1 16-19 21-60 lit aeuy; Q"},
    {"p2 mnuShaddow p9", "0 lit ghilnqrs"},
    // ---- voice
    {"chkMakeVoiceCall 4 ~ 15 ~ 16 ~ 30 ~ 31 ~ 75 ~ 75:Y",
     "6 O75/N31 I30 I16 B15 red 4 15-16 30-31; Bee, 4; And After; Bee, 15; Bee, 1 , 5; Eye, 16; "
     "Eye, 1 , 6; Eye, 30; Eye, 3 , 0; En, 31; En, 3 , 1; Oh, 75; Oh, 7 , 5; Q"},
    {"hush chkMakeVoiceCall 33 ~ chkMakeVoiceCall . ~ . 62", "2 O62/N33 red 33 62; En, 33; En, 3 , 3"},
    {"hush chkMakeVoiceCall 12 48 ~ . ~ . ~ . ~ .",
     "2 G48/B12 red 12 48; Bee, 12; Gee, 48; Gee, 4 , 8; Gee, 4 , "},
    {"hush chkMakeVoiceCall 50 ~ . ~ gone 51 ~ . 52 ~ . ~ .",
     "3 G52/G51 G50 red 50-52; Gee, 50; Gee, 5 , 0; Gee, 51; Gee, 52; Gee, 5 , 2; E it went away Err #: -7"},
    {"chkMakeVoiceCall 8 ~ voice=99 9",
     "2 B9/B8 red 8-9; Bee, 8; Bee, 8; E There is no voice number 100. Err #: 5"},
    // ---- voices
    {"mnuSpeak mnuSpeak cListen cSave", "0 + frmVoices; P; P"},
    {"voice=1 mnuSpeak List1=2 Slider1=10 cListen 8 chkMakeVoiceCall 9 ~ cSave 61 ~",
     "3 O61/B9  B8 red 8-9 61; Bee 4, Oh 62, Eye 25 2 10; Bee, 9 1 0; Bee, 9 1 0; Oh, 61 2 10; "
     "Oh, 6 , 1 2 10"},
    {"hush chkAutoCall p1 mnuSpeak List1=0 soon=s5,a,7,?,. cListen a", // the time stands still, input waits
     "1 B7 red 7 lit agmsy step 1500 Pause counts. focus cPause + frmVoices; "
     "(0 step 100 Pause counts. + frmVoices; Bee 4, Oh 62, Eye 25 0 0)"},
    {"none mnuSpeak cListen", "0 + frmVoices; E No speech service is installed. Err #: 1; P; E No speech "
                              "service is installed. Err #: 1"},
    {"hush mnuSpeak List1=0 soon=gone cListen",
     "0 + frmVoices; Bee 4, Oh 62, Eye 25 0 0; E it went away Err #: -7"},
};

const std::pair<const char *, const char *> boxes[] = {
    {"Q", "Clear Board: Clearing button, Are you sure?"},
    {"C", "Clear Board: Clearing board, Are you sure?"},
    {"F", "Vellomir: Full Board...."},
    {"P", "Vellomir: Please select a voice from the list box."},
    {"E", "Run-Time Error: Desc:"},
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
        int failed = 0;
        for (const auto &[script, seen] : ::games) {
            Room room;
            room.play(script);
            QString really = room.look();
            for (const auto &[sign, box] : ::boxes)
                really.replace(box, sign);
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
    }

    /// The second call is on the screen when its press returns, before anything is said.
    void callIsPaintedAtOnce()
    {
        Room room;
        room.play("12");
        room.look();
        room.find<QPushButton>("cButt(33)")->click();
        const QImage screen = room.window->screen()->grabWindow(room.window->winId()).toImage();
        QCOMPARE(room.redNumbers(screen), "12 33");
        QCOMPARE(screen, room.window->grab().toImage().convertToFormat(screen.format()));
    }
};

int main(int argc, char *argv[])
{
    return runInRoom<TestGame>(argc, argv);
}

#include "tst_game.moc"
