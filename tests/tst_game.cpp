// Games, seen and heard after each step and compared with what the rules say: by script, and at random.

#include "support/room.h"

#include <random>

namespace {

const std::pair<const char *, const char *> scripts[] = {
    {"five numbers stay in sight",
     "click cButt(12), enter 7, click cButt(44), enter 61, click cButt(33), enter 75"},
    {"only Yes takes a call back",
     "enter 12, enter 12: No, enter 12: Enter, enter 12: Escape, enter 12: Yes, enter 12"},
    {"a letter is not checked", "enter G7, enter n33, enter i100, enter O75, enter B.9, enter ٣١, enter ı25"},
    {"an entry is typed anew",
     "type 12, click cButt(9), type 12, click cmdClear: No, type 4r, type 4p, click tDemo(10), type 1"},
    {"no key for commands types", "type 4, key Ctrl+R, key Alt+R, key Meta+R, key Alt+7, key Alt+P"},
    {"the first and the last of each letter",
     "draws 0, click cRandNum, draws 0.9999, type R, click chkMakeVoiceCall, click Text1, enter 15, enter "
     "16, "
     "enter 30, enter 31, enter 45, enter 46, enter 60, enter 61, enter 4, enter 9, enter 10"},
    {"nothing left to draw",
     "click cDemoButt(3), enter 16, type rrrrrrrrrrrrrrrrrrrrrrrrrrrr, type r, type r, click chkAutoCall, "
     "seconds 2, seconds 2, click cPause, click cButt(61): Yes, click cRandNum, click cmdClear: Yes, click "
     "cRandNum"},
    {"another interval counts from the next draw",
     "click chkAutoCall, seconds 2, choose cboSec 5, seconds 9, seconds 1, seconds 5, seconds 5"},
    {"a pause keeps the countdown",
     "click chkAutoCall, seconds 5, click cPause, seconds 9, click cPause, seconds 1, enter 3, click Text1, "
     "type p, type p, click chkAutoCall, seconds 9, click chkAutoCall, seconds 2"},
    {"a draw moves nothing in the menu bar",
     "click chkAutoCall, key F10, seconds 2, key F10, click cPause, font 4, key F10, key F10, key F10, "
     "seconds 20, key F10, click cDemoButt(21), click cPause, key F10, seconds 10, key F10"},
    {"a text for each call and its digits",
     "service waits, click chkMakeVoiceCall, click cButt(12), click cButt(48), service ends, service ends, "
     "service ends, service ends, click cButt(62), click chkMakeVoiceCall, service ends, service ends"},
    {"a service that fails loses what waits",
     "service waits, click chkMakeVoiceCall, click cButt(50), service ends, service fails, click cButt(51), "
     "service ends, click cButt(52), service ends, service ends"},
    {"the voice that was chosen",
     "choose mnuSpeak, click cListen, click cSave, choose List1 2, choose Slider1 10, click cListen, "
     "click chkMakeVoiceCall, click cButt(9), click cSave, click cButt(61), choose mnuSpeak, click cSave"},
};

const QList<Pattern> &catalogue()
{
    static QList<Pattern> all;
    QFile file(EXPECTED "patterns.txt");
    if (all.isEmpty() && file.open(QIODevice::ReadOnly)) {
        for (const QString &line : QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts)) {
            const QStringList parts = line.split("; ");
            all += {parts[0].section(' ', 1), parts[1], parts[2].split(" / ")};
        }
    }
    return all;
}

/// A step that a caller can take now.
QString anyStep(const Rules &rules, std::mt19937 &chance)
{
    static const QStringList controls{"cButt(75)", "cButt(75)",       "cDemoButt(21)", "tDemo(25)",
                                      "cRandNum",  "cmdClear",        "chkAutoCall",   "cPause",
                                      "cBingo",    "chkMakeVoiceCall"},
        texts{"75",  "75",  "n75",  "G75", "B.9",  "i100", "75.4", "2.5", "3.5", "+1.2E+1",
              " 9 ", "N 4", "76",   "0",   "75.5", "-3",   "B",    "BX",  "Z7",  "7B",
              "nan", "1.0", "0x10", "B-3", "1e99", "",     "٣١",   "ı25"},
        fonts{"12.5", "3", "250", "abc", "33", ""}, menus{"mnuShaddow", "mnuHelp", "mnuAbout", "mnuSpeak"},
        voices{"choose List1 1", "choose Slider1 5", "click cListen", "click cSave", "close frmVoices"},
        bingo{"click frmBingo", "seconds 9", "frames 1", "type x"},
        times{"seconds 1", "seconds 3",   "seconds 5", "frames 1", "frames 3",
              "draws 0",   "draws 0.999", "draws 0.4", "halfhour"},
        entries{"type r", "type P", "type 1", "type x"}, answers{": Yes", ": Yes", ": No", ": Enter", ""};
    const auto oneOf = [&](const QStringList &list) {
        return list[qsizetype(chance() % unsigned(list.size()))];
    };
    const auto upTo = [&](QString text) { // a number in place of the last
        static const QRegularExpression last("\\b(75|21|25)\\b");
        const int most = last.match(text).captured(1).toInt();
        return most ? text.replace(last, QString::number(1 + int(chance() % unsigned(most)))) : text;
    };
    const QString front = rules.inFront();
    if (front == "bar")
        return oneOf(times + QStringList{"key F10", "key F10"});
    if (front == "frmBingo")
        return oneOf(bingo);
    if (front != "frmMain" && chance() % 2)
        return front == "frmVoices" ? oneOf(voices) : "close " + front;
    const QString click = "click " + upTo(oneOf(controls)), enter = "enter " + upTo(oneOf(texts)),
                  time = oneOf(times);
    return oneOf(front != "frmMain"
                     ? QStringList(click)
                     : QStringList{click, click, click, enter, enter, enter, time, time, oneOf(entries),
                                   "choose " + oneOf(menus), "font " + oneOf(fonts), "choose iFontSize 40",
                                   "key F10", "choose cboSec " + oneOf({"5", "20"}), "slip" + click.mid(5),
                                   "rightclick" + click.mid(5), "middleclick" + click.mid(5)}) +
           oneOf(answers);
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
        for (int id = 1; id <= 21; ++id) {
            const Pattern &pattern = catalogue()[id - 1];
            const QString ticks = QString(", frames 1").repeated(int(pattern.forms.size() + 1));
            QTest::newRow(qPrintable(pattern.caption))
                << QString("enter 33, click cDemoButt(%1)%2, click tDemo(9), click cDemoButt(%1)")
                       .arg(id)
                       .arg(ticks);
        }
    }
    void games()
    {
        QFETCH(QString, script);
        Room room;
        Rules rules(catalogue());
        const QString wrong = room.play(script, rules);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
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
        Rules rules(catalogue());
        std::mt19937 chance(seed);
        QStringList script;
        for (QString wrong; script.size() < 60 && wrong.isEmpty();) {
            script += anyStep(rules, chance);
            wrong = room.play(script.last(), rules);
            if (!wrong.isEmpty())
                qWarning("%s", qPrintable(script.join(", ")));
            QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
        }
    }

    /// A call, and the countdown, is on the screen when its press or tick returns, before anything is said.
    void paintedAtOnce()
    {
        Room room;
        room.play("enter 12");
        room.look();
        const auto differs = [&] {
            QImage screen = room.window->screen()->grabWindow(room.window->winId()).toImage();
            const QImage drawn = room.window->grab().toImage();
            QPainter painter(&screen);
            painter.setCompositionMode(QPainter::CompositionMode_Difference);
            painter.drawImage(0, 0, drawn); // The edges of letters that are drawn again may be others.
            return ink(screen, screen.rect(), [](const QColor &c) { return c.lightness() > 30; }).isValid();
        };
        room.find<QPushButton>("cButt(33)")->click();
        QVERIFY(!differs());
        room.play("click chkAutoCall");
        room.look();
        room.tick(room.find<QTimer>("Timer2"));
        QVERIFY(!differs());
    }

    /// A pasted number is called before whatever comes next.
    void pastedAtOnce()
    {
        Room room;
        QGuiApplication::clipboard()->setText("33\n");
        QTest::keyClick(room.find("Text1"), Qt::Key_Insert, Qt::ShiftModifier); // and nothing else meanwhile
        QCOMPARE(Room::content(room.display("RTB3")), "N33");
    }

    /// What fails in any handler is told, and the game goes on.
    void failure()
    {
        Room room;
        QTimer::singleShot(0, &room, [] { throw std::runtime_error("out of paper"); });
        room.play("enter 7");
        Facts seen = room.look();
        QCOMPARE(seen["RTB3"] + seen["boxes"],
                 "B7Run-Time Error: Desc: out of paper Err #: -1 (Warning: OK!)");
    }

    /// While a sample is spoken the countdown stands still, and input waits.
    void sample()
    {
        Room room;
        room.speech.speaksByItself = false;
        room.play("click chkAutoCall, click cDemoButt(1), choose mnuSpeak, choose List1 0");
        room.look();
        QTimer::singleShot(50, &room, [&] {
            room.play("seconds 5, frames 1, key Tab, click cButt(7)");
            QVERIFY(room.look()["RTB3"].isEmpty());
            room.speech.engine->ended();
        });
        room.play("click cListen");
        QCOMPARE(room.look()["RTB3"], "B7");
        QCOMPARE(room.find("frmVoices")->focusWidget()->objectName(), "Slider1");
    }
};

int main(int argc, char *argv[])
{
    return runInRoom<TestGame>(argc, argv);
}

#include "tst_game.moc"
