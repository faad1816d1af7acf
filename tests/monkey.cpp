// Presses everything at any time, and checks what must always hold: a game of 600 events from a new seed, or
// from the one in MONKEY_SEED.

#include "support/room.h"

#include <random>

namespace {

const QStringList steps =
    QString("cRandNum cmdClear cPause chkAutoCall chkMakeVoiceCall cBingo mnuHelp mnuAbout mnuSpeak "
            "mnuShaddow cListen cSave cOK List1 Slider1 RTB2 s s s3 a a . gone hush 'r 'p '7 '12/ "
            "'n33/ '_4/ 'x/ '/ Escape Tab Space Down cboSec "
            "frmBingo frmHelp frmAbout frmVoices Text1")
        .split(' ');

class Monkey : public QObject
{
public:
    explicit Monkey(unsigned seed)
        : m_chance(seed)
    {
    }

    void play(int events)
    {
        while (events > 0) {
            Room room;
            m_calls.clear();
            m_left = events;
            next(room);
            QVERIFY2(QTest::qWaitFor([&] { return !room.window || m_left <= 0; }, 120'000), "stuck");
            events = std::exchange(m_left, 0);
        }
    }

private:
    /// Every event is begun by a timer of its own, so that they go on while a box is open.
    void next(Room &room)
    {
        check(room);
        if (!room.window || m_left-- <= 0)
            return;
        QTimer::singleShot(0, &room, [&] { next(room); });
        playOne(room);
    }

    int below(int end) { return static_cast<int>(m_chance() % static_cast<unsigned>(end)); }

    void playOne(Room &room)
    {
        const QString array = QStringList{"%1", "%1", "p%1", "c%1", "%%1"}[below(5)];
        const int end = array.startsWith('p') ? 21 : array.startsWith('c') ? 25 : 75;
        const QString step = below(2) ? steps[below(int(steps.size()))] : array.arg(1 + below(end));
        if (below(30) == 0 && room.speech.engine) { // A silent service is not waited for.
            room.speech.speaksByItself = true;
            Q_EMIT room.speech.engine->ended();
        }
        if (QWidget *box = QApplication::activeModalWidget(); box && below(5) == 0)
            return Room::hit(box->windowHandle(), Qt::Key_Escape);
        if (!QGuiApplication::focusWindow())
            return room.window->activateWindow();
        static const QRegularExpression name("^(?!mnu|gone|hush|Escape|Tab|Space|Down)\\w{3,}$");
        const auto *control = room.window->findChild<QWidget *>(step);
        if (name.match(step).hasMatch() && (!control || !control->isVisible()))
            return;
        if ((step == "." || step == "gone") && (!room.speech.engine || below(2)))
            return;
        if (step.startsWith("mnu") && QApplication::activeModalWidget())
            return;
        m_last = m_last.mid(qMax(0, int(m_last.size()) - 30)) << step;
        room.play(step + QStringList{":Y", ":N", "", ":s", ":p", ":e"}[below(6)]);
    }

    void check(Room &room)
    {
        if (!room.window)
            return;
        const auto isOpen = [](const QWidget *box) {
            return box->isVisible() && box->inherits("QMessageBox");
        };
        const QWidgetList all = QApplication::topLevelWidgets();
        demand(std::count_if(all.begin(), all.end(), isOpen) <= 1, "a box covers a box");
        checkCalls(room);
        checkCountdown(room);
    }

    void checkCalls(const Room &room)
    {
        const int count = room.find<QLabel>("lblCallCnt")->text().section(' ', -1).toInt();
        const QString current = room.textOf("RTB3");
        if (count < m_calls.size()) // cleared
            m_calls.clear();
        if (count > m_calls.size()) {
            m_calls.prepend(current);
            const QImage picture = room.window->grab().toImage();
            demand(room.redNumbers(picture) == room.greyNumbers(picture),
                   "the board has not the buttons' colours");
        }
        demand(count == m_calls.size(), "a call was not counted once");
        demand(current == m_calls.value(0), "the current number is wrong");
        demand(room.textOf("RTB4").simplified() == m_calls.mid(1, 4).join(' '), "the past numbers are wrong");
    }

    void checkCountdown(const Room &room) const
    {
        const bool isOn = room.find<QAbstractButton>("chkAutoCall")->isChecked();
        const auto *pause = room.find<QPushButton>("cPause");
        const bool runs = isOn && pause->text() == "Pause";
        const QString label = room.find<QLabel>("lblAutoCall")->text();
        demand(room.find<QTimer>("Timer2")->isActive() == runs,
               "the countdown does not run as its button says");
        demand(pause->isEnabled() == isOn, "the pause button is not enabled as it should be");
        demand(isOn || label.isEmpty(), "switched off, it still shows a countdown");
        demand(!isOn || runs || label == "Paused", "paused, it does not say so");
    }

    void demand(bool holds, const char *otherwise) const
    {
        if (!holds)
            qFatal("%s, after %s", otherwise, qPrintable(m_last.join(' ')));
    }

    std::mt19937 m_chance;
    int m_left = 0;
    QStringList m_calls; // the newest first
    QStringList m_last;
};

} // namespace

class TestMonkey : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plays()
    {
        bool isGiven = false;
        const int given = qEnvironmentVariableIntValue("MONKEY_SEED", &isGiven);
        const unsigned seed = isGiven ? unsigned(given) : std::random_device()();
        qWarning("MONKEY_SEED=%u", seed);
        Monkey(seed).play(600);
    }
};

int main(int argc, char *argv[])
{
    return runInRoom<TestMonkey>(argc, argv);
}

#include "monkey.moc"
