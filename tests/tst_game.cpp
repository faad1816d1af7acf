// Games, seen and heard after each step and compared with what the rules say: by script, and at random.

#include "support/room.h"

#include <random>

namespace {

const std::pair<const char *, const char *> scripts[] = {
    {"only Yes takes a call back",
     "enter 12, answers N, enter 12, answers Return, enter 12, answers Y, enter 12, enter 12"},
    {"no key for commands types", "type 4, key Ctrl+R, key Alt+R, key Meta+R, key Alt+7, key Alt+P"},
    {"the first and the last of each letter",
     "draws 0, click cRandNum, draws 0.9999, type R, click chkMakeVoiceCall, enter 15, enter 16, enter 30, "
     "enter 31, enter 45, enter 46, enter 60, enter 61, enter 4, enter 9, enter 10"},
    {"nothing left to draw",
     "click cDemoButt(3), enter 16, type rrrrrrrrrrrrrrrrrrrrrrrrrrrr, type r, type r, click chkAutoCall, "
     "seconds 2, seconds 2, click cPause, answers Y, click cButt(61), click cRandNum, click cmdClear"},
    // What the rules do not say: the list of sizes, the screen, and the menu bar.
    {"an arrow takes the next size", "font 37, key Up, sees points 36"},
    {"there is none after the last", "font 60, key Down, sees iFontSize 60"},
    {"a list without a mark gives none", "font 37, key Alt+Down, key Return, sees iFontSize 37"},
    {"an arrow marks the next in the list", "font 37, key Alt+Down, key Down, key Return, sees points 38"},
    {"the wheel turns what has the focus",
     "wheel iFontSize, sees points 33, font 33, wheel iFontSize, sees points 34"},
    {"a size that is left is put back", "font 4, click cDemoButt(8), sees iFontSize 33, sees points 33"},
    {"the screen stays on as long as something happens",
     "click chkAutoCall, sees screen on, click chkAutoCall, sees screen , enter 7, sees screen on, halfhour, "
     "sees screen "},
    {"a draw leaves the menu bar and is followed later",
     "click chkAutoCall, key F10, seconds 2, sees focus , key F10, sees focus cPause"},
};

/// A step that a caller can take now. "%75" stands for a number up to that.
QString anyStep(const Rules &rules, std::mt19937 &chance)
{
    static const QString any =
        "click cButt(%75), click cButt(%75), click cDemoButt(%21), click tDemo(%25), click chkAutoCall, "
        "click cPause, seconds 1, seconds 3, seconds 5, frames 1, frames 3, answers Y, answers N, "
        "draws 0, draws 0.999, draws 0.4, ";
    static const QMap<QString, QString> steps{
        {"frmMain",
         any + "click cButt(%75), click cButt(%75), click cDemoButt(%21), click cRandNum, click cmdClear, "
               "click cmdClear, click chkMakeVoiceCall, click cBingo, enter %75, enter %75, enter n%75, "
               "enter B.9, enter 75.4, enter 2.5, enter 3.5, enter +1.2E+1, enter N 4, enter 75.5, enter -3, "
               "enter , enter BX, enter nan, enter 0x10, enter B-3, enter 1e99, enter ı25, type r, "
               "type P, type 1, type x, size 12.5, size 3, size 250, size abc, choose iFontSize 40, choose "
               "cboSec 5, choose cboSec 20, choose mnuShaddow, choose mnuHelp, choose mnuAbout, choose "
               "mnuSpeak, slip cButt(%75), slip cDemoButt(%21), slip cPause"},
        {"frmBingo", "click frmBingo, seconds 9, frames 1, type x"},
        {"frmHelp", any + "close frmHelp"},
        {"frmAbout", any + "click cOK"},
        {"frmVoices", any + "close frmVoices"},
    };
    const QStringList now = steps[rules.inFront()].split(", ");
    QString step = now[qsizetype(chance() % unsigned(now.size()))];
    const auto most = QRegularExpression("%(\\d+)").match(step);
    return most.hasMatch()
               ? step.replace(most.captured(), QString::number(1 + chance() % most.captured(1).toUInt()))
               : step;
}

} // namespace

class TestGame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void games_data()
    {
        QTest::addColumn<QString>("script");
        for (const auto &[fault, script] : scripts)
            QTest::newRow(fault) << script;
        QString patterns = "enter 33";
        for (int id = 1; id <= 21; ++id)
            patterns += QString(", click cDemoButt(%1)").arg(id) + QString(", frames 1").repeated(9);
        QTest::newRow("each pattern moves") << patterns + ", click tDemo(9), click cDemoButt(21)";
    }
    void games()
    {
        QFETCH(QString, script);
        Rules rules(EXPECTED "patterns.txt");
        Room().play(script, script.contains("sees") ? nullptr : &rules);
    }

    /// Everything at any time: GAMES games, the first from SEED or a new one.
    void chance_data()
    {
        QTest::addColumn<quint32>("seed");
        quint32 seed = qEnvironmentVariable("SEED", QString::number(std::random_device()())).toUInt();
        for (int games = qEnvironmentVariable("GAMES", "6").toInt(); games > 0; --games, ++seed)
            QTest::addRow("SEED=%u", seed) << seed;
    }
    void chance()
    {
        QFETCH(quint32, seed);
        Room room;
        Rules rules(EXPECTED "patterns.txt");
        std::mt19937 chance(seed);
        for (int step = 0; step < 60 && !QTest::currentTestFailed(); ++step)
            room.play(anyStep(rules, chance), &rules);
    }

    /// A call, and the countdown, is on the screen when its press or tick returns, before anything is said.
    void paintedAtOnce()
    {
        Room room;
        room.play("enter 12");
        const auto isPainted = [&](const QString &name) {
            const QRect place(room.find(name)->mapTo(room.window, QPoint()), room.find(name)->size());
            return room.window->screen()->grabWindow(room.window->winId()).copy(place).toImage() ==
                   room.window->grab(place).toImage();
        };
        room.find<QPushButton>("cButt(33)")->click();
        for (const char *name : {"RTB2", "RTB3", "RTB4", "cButt(33)", "lblCallCnt"})
            QVERIFY2(isPainted(name), name);
        room.play("click chkAutoCall");
        room.tick(room.find<QTimer>("Timer2"));
        QVERIFY(isPainted("lblAutoCall"));
    }

    /// A pasted number is called before whatever comes next.
    void pastedAtOnce()
    {
        Room room;
        QGuiApplication::clipboard()->setText("33\n");
        QTest::keyClick(room.find("Text1"), Qt::Key_Insert, Qt::ShiftModifier); // and nothing else meanwhile
        QCOMPARE(Room::content(room.find("RTB3")), "N33");
    }

    /// The voice that was chosen and saved speaks the calls.
    void voice()
    {
        Room room;
        room.play(
            "choose mnuSpeak, voices, click cListen, key Down, key Down, key Tab, key Right, click cListen, "
            "click cSave, click chkMakeVoiceCall, click cButt(4)");
        QTRY_COMPARE(room.speech.spoken.join(". "), "Bee 4, Oh 62, Eye 25 1 1. Bee, 4 1 1. And After 1 1");
        QCOMPARE(room.look()["boxes"], "Vellomir: Please select a voice from the list box.");
    }

    /// Calls wait for one another's texts, and are lost where the service fails. What fails anywhere else is
    /// told, too.
    void speech()
    {
        Room room;
        room.play("silence, click chkMakeVoiceCall, click cButt(12), click cButt(48)");
        for (const char *text : {"Bee, 12 -1 0", "Gee, 48 -1 0", "Gee, 4 , 8 -1 0", "Gee, 4 ,  -1 0"}) {
            QTRY_COMPARE(room.speech.spoken.join(". "), text);
            room.speech.spoken.clear();
            room.play("spoken");
        }
        QTimer::singleShot(0, &room, [] { throw std::runtime_error("out of paper"); });
        room.play("click cButt(51), click cButt(52), failure, click cButt(53)");
        QTRY_COMPARE(room.speech.spoken.join(". "), "Gee, 51 -1 0. Gee, 53 -1 0");
        QCOMPARE(
            room.look()["boxes"],
            "Run-Time Error: Desc: out of paper Err #: -1. Run-Time Error: Desc: it went away Err #: -7");
    }

    /// While a sample is spoken the countdown stands still, and input waits.
    void sample()
    {
        Room room;
        room.play("silence, click chkAutoCall, click cDemoButt(1), choose mnuSpeak, voices, key Down");
        QTimer::singleShot(50, &room, [&] {
            room.play("seconds 5, frames 1, key Tab, click cButt(7), sees RTB3 , spoken");
        });
        room.play("click cListen, sees RTB3 B7");
        QCOMPARE(room.find("frmVoices")->focusWidget()->objectName(), "Slider1");
    }
};

int main(int argc, char *argv[])
{
    return runInRoom<TestGame>(argc, argv);
}

#include "tst_game.moc"
