// Games, seen and heard after each step and compared with what the rules say: by script, and at random.

#include "support/room.h"

/// What the rules do not say: entries, the list of sizes, the seconds, the screen, the menu bar, the voice,
/// and the end.
static const char *moments[] = {
    "enter B.9; enter 75.4; enter 2.5; enter 3.5; enter +1.2E+1; enter N 4; enter ٣١; enter ı25",
    "enter 75.5, enter -3, enter BX, enter nan, enter ",
    "size 12.5, enter ; size 3, enter ; size 250, enter ; size abc, enter ; size 4, click cmdClear",
    "size 37, key Up; size 60, key Down",
    "size 37, key Alt+Down, key Return; size 37, key Alt+Down, key Escape, enter 32; "
    "size 37, key Alt+Down, size 35, key Return; "
    "size 37, key Alt+Down, key Down, key Return",
    "click cboSec, key Up, key Return; session; click chkAutoCall, seconds 2; click chkAutoCall; halfhour",
    "click chkAutoCall, key Tab, key F10; seconds 2; key F10; size 35, choose mnuExit",
    "click cDemoButt(21); click cDemoButt(1); click cDemoButt(10); enter 2, type Rpr; click cmdClear",
    "choose mnuHelp; choose mnuAbout, click cGoTo; click cOK; choose mnuSpeak; close frmVoices",
    "click chkAutoCall, click cBingo; type x, seconds 9; click frmBingo",
    "silence, click chkMakeVoiceCall, enter 12, enter 61; ends, ends; ends, ends",
    "silence, click chkMakeVoiceCall, enter 51, enter 52, failure, enter 53, voices; throws; fails",
    "silence, choose mnuSpeak, voices, click cSave, key Down, key Down, key Tab, key Right, "
    "click chkAutoCall, click chkMakeVoiceCall, "
    "listen seconds 5 and click cButt(7) and silence over and ends, click cSave, click chkAutoCall, enter 45",
};

/// The steps that a caller can take, for a number, a pattern and a cell.
static const QString anyStep =
    "click cButt(%1), click cButt(%1), click cButt(%1), click cDemoButt(%2), click cDemoButt(%2), "
    "click tDemo(%3), click chkAutoCall, click cPause, click cRandNum, click cmdClear, enter 0, "
    "click chkMakeVoiceCall, choose mnuShaddow, enter %1, enter %1, enter n%1, enter 76, type r, type P, "
    "type 1, type x, seconds 1, seconds 3, seconds 5, frames 1, frames 3, answers Y, answers N, draws 0, "
    "draws 0.999, draws 0.4";

class TestGame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void games_data()
    {
        QTest::addColumn<QString>("script");
        QTest::newRow("only Yes takes a call back")
            << "enter 12, answers N, enter 12, answers Return, enter 12, answers Y, enter 12, enter 12";
        QTest::newRow("the first and the last, and nothing left to draw")
            << "draws 0, click cRandNum, draws 0.9999, type r, click cDemoButt(3), enter 16, "
               "type rrrrrrrrrrrrrrrrrrrrrrrrrrrrr, type r, click chkAutoCall, "
               "seconds 2, seconds 2, click cPause, answers Y, click cButt(61), type r, click cmdClear";
        QString patterns = "enter 33";
        for (int id = 1; id <= 21; ++id)
            patterns += QString(", click cDemoButt(%1)").arg(id) + QString(", frames 1").repeated(9);
        QTest::newRow("each pattern moves")
            << patterns + ", click chkAutoCall, click tDemo(9), click cDemoButt(21)";
        // Everything at any time: GAMES games, the first from SEED or a new one.
        const QString any = QString::number(QRandomGenerator::global()->generate());
        quint32 seed = qEnvironmentVariable("SEED", any).toUInt();
        for (int games = qEnvironmentVariable("GAMES", "6").toInt(); games > 0; --games, ++seed) {
            QRandomGenerator chance(seed);
            QStringList steps;
            while (steps.size() < 60) {
                const int n = chance.bounded(75);
                const QStringList all = anyStep.arg(1 + n).arg(1 + n % 21).arg(1 + n % 25).split(", ");
                steps += all[chance.bounded(all.size())];
            }
            QTest::addRow("SEED=%u", seed) << steps.join(", ");
        }
    }
    void games()
    {
        QFETCH(QString, script);
        Rules rules(linesOf(QFINDTESTDATA("expected/patterns.txt")));
        Room().play(script, &rules);
    }

    /// What changes with each step where the rules say nothing.
    void moments()
    {
        QDesktopServices::setUrlHandler("https", this, "browse");
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
                before["said"] = before["boxes"] = before["spoken"] = "";
            }
        }
        compare(seen, QFINDTESTDATA("expected/moments.txt"));
        QDesktopServices::unsetUrlHandler("https");
    }

    /// A call, and the countdown, is on the screen when its press or tick returns, before anything is said.
    void paintedAtOnce()
    {
        Room room;
        const auto shown = [&] { return room.window->screen()->grabWindow(room.window->winId()).toImage(); };
        const auto isPainted = [&] {
            const QImage before = shown();
            room.keyboard();
            return shown() == before;
        };
        room.play("enter 12");
        room.find<QPushButton>("cButt(33)")->click();
        QVERIFY(isPainted());
        room.play("click chkAutoCall");
        room.tick(room.find<QTimer>("Timer2"));
        QVERIFY(isPainted());
    }

    void browse(const QUrl &address) { said += address.toString(); }
};

TEST_IN_ROOM(TestGame)
#include "tst_game.moc"
