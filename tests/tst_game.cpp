// Games, seen and heard after each step and compared with what the rules say: by script, and at random.

#include "support/room.h"

#include <random>

namespace {

/// What the rules do not say: entries, the list of sizes, the seconds, the screen, and the menu bar.
const char *moments[] = {
    "enter B.9; enter 75.4; enter 2.5; enter 3.5; enter +1.2E+1; enter N 4; enter ٣١; enter ı25",
    "enter 75.5; enter -3; enter BX; enter nan; enter ",
    "size 12.5, enter ; size 3, enter ; size 250, enter ; size abc, enter ; size 4, click cmdClear",
    "size 37, key Up; size 60, key Down",
    "size 37, key Alt+Down, key Return; key Alt+Down, key Down, key Return",
    "click cboSec, key Up, key Return; click chkAutoCall, seconds 2; click chkAutoCall; halfhour",
    "click chkAutoCall, key Tab, key F10; seconds 2; key F10",
    "click cDemoButt(21); click cDemoButt(1); click cDemoButt(10); enter 2, type Rpr; click cmdClear",
    "choose mnuHelp; choose mnuAbout; click cOK; choose mnuSpeak; close frmVoices",
    "click chkAutoCall, click cBingo; type x, seconds 9; click frmBingo",
};

/// A step that a caller can take. "%75" stands for a number up to that.
QString anyStep(std::mt19937 &chance)
{
    static const QString steps =
        "click cButt(%75), click cButt(%75), click cButt(%75), click cDemoButt(%21), click cDemoButt(%21), "
        "click tDemo(%25), click chkAutoCall, click cPause, click cRandNum, click cmdClear, enter 0, "
        "click chkMakeVoiceCall, choose mnuShaddow, enter %75, enter %75, enter n%75, enter 76, type r, "
        "type P, type 1, type x, seconds 1, seconds 3, seconds 5, frames 1, frames 3, answers Y, answers N, "
        "draws 0, draws 0.999, draws 0.4";
    const QStringList all = steps.split(", ");
    QString step = all[qsizetype(chance() % unsigned(all.size()))];
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
        QTest::newRow("only Yes takes a call back")
            << "enter 12, answers N, enter 12, answers Return, enter 12, answers Y, enter 12, enter 12";
        QTest::newRow("the first and the last of each letter")
            << "draws 0, click cRandNum, draws 0.9999, type r, enter 15, enter 16, enter 60, enter 61";
        QTest::newRow("nothing left to draw")
            << "click cDemoButt(3), enter 16, type rrrrrrrrrrrrrrrrrrrrrrrrrrrrr, type r, click chkAutoCall, "
               "seconds 2, seconds 2, click cPause, answers Y, click cButt(61), type r, click cmdClear";
        QString patterns = "enter 33";
        for (int id = 1; id <= 21; ++id)
            patterns += QString(", click cDemoButt(%1)").arg(id) + QString(", frames 1").repeated(9);
        QTest::newRow("each pattern moves")
            << patterns + ", click chkAutoCall, click tDemo(9), click cDemoButt(21)";
    }
    void games()
    {
        QFETCH(QString, script);
        Rules rules(EXPECTED "patterns.txt");
        Room().play(script, &rules);
    }

    /// What changes with each step where the rules say nothing.
    void moments()
    {
        QStringList seen;
        for (const char *script : ::moments) {
            Room room;
            Facts before = room.look();
            for (const QString &steps : QString(script).split("; ")) {
                room.play(steps);
                const Facts now = room.look();
                seen += steps + ':';
                for (const QString &fact : now.keys())
                    seen.last() += now[fact] == before[fact] ? "" : " " + fact + " \"" + now[fact] + '"';
                before = now;
                before["said"] = before["boxes"] = "";
            }
        }
        compare(seen, EXPECTED "moments.txt");
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
            room.play(anyStep(chance), &rules);
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

    /// While a sample is spoken the countdown stands still, and input waits. The voice that was saved calls.
    void voice()
    {
        Room room;
        room.play("silence, click chkAutoCall, choose mnuSpeak, voices, click cSave, key Down, key Down, key "
                  "Tab, key Right");
        QTimer::singleShot(50, &room, [&] {
            room.play("seconds 5, click cButt(7)");
            QCOMPARE(room.look()["RTB3"], "");
            room.speech.speaksByItself = true;
            room.play("ends");
        });
        room.play("click cListen, click cSave, click chkAutoCall, click chkMakeVoiceCall, enter 4, enter 9, "
                  "enter 16, enter 45");
        (void)QTest::qWaitFor([&] { return room.speech.spoken.size() == 9; });
        QCOMPARE(room.speech.spoken.join(". "),
                 "Bee 4, Oh 62, Eye 25 1 1. Bee, 4 1 1. And After 1 1. Bee, 9 1 1. Bee, 9 1 1. Eye, 16 1 "
                 "1. Eye, 1 , 6 1 1. En, 45 1 1. En, 4 , 5 1 1");
        QCOMPARE(room.look()["RTB4"], "I16 B9 B4 B7");
    }

    /// Calls wait for one another's texts, and are lost where the service fails; any other failure is told.
    void speech()
    {
        Room room;
        room.play("silence, click chkMakeVoiceCall, click cButt(12), click cButt(61)");
        for (const char *text : {"Bee, 12 -1 0", "Oh, 61 -1 0", "Oh, 6 , 1 -1 0", "Oh, 6 ,  -1 0"}) {
            QVERIFY(QTest::qWaitFor([&] { return room.speech.spoken.endsWith(text); }));
            room.play("ends");
        }
        QTimer::singleShot(0, &room, [] { throw std::runtime_error("out of paper"); });
        QTimer::singleShot(0, &room, [] { throw base::Error(-5, "out of ink"); });
        room.play("click cButt(51), click cButt(52), failure, click cButt(53)");
        const QStringList left{"Gee, 51 -1 0", "Gee, 53 -1 0"};
        QVERIFY(QTest::qWaitFor([&] { return room.speech.spoken.mid(4) == left; }));
        QCOMPARE(room.look()["boxes"].remove("Run-Time Error: Desc: "),
                 "out of paper Err #: -1. out of ink Err #: -5. it went away Err #: -7");
    }
};

TEST_IN_ROOM(TestGame)
#include "tst_game.moc"
