// What the board's actions cost, each beside a bare counterpart in the same run. One line a figure: its name,
// the program's value, the bare value, with tabs between them.
//   bench_board          milliseconds from an action to the painted screen, beside a repaint of what it
//   changes;
//                        megabytes after 2,000 calls, beside those after 200
//   bench_board speech   the longest time, in milliseconds, that a call with speech keeps the window from
//                        reacting, beside that of a call without

#include "appearance.h"
#include "design_table.h"
#include "main_window.h"
#include "modMain.h"

#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace {

using controls::control;
using controls::RichTextBox;
using Samples = std::vector<double>;

/// Answers each message box with Yes or OK as soon as it has been painted.
class Operator : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *box = qobject_cast<QMessageBox *>(watched);
        if (box && event->type() == QEvent::Paint) {
            QAbstractButton *yes = box->button(QMessageBox::Yes);
            QTimer::singleShot(0, yes ? yes : box->button(QMessageBox::Ok), &QAbstractButton::click);
        }
        return false;
    }
};

/// Real time, less the time in which other programs kept this thread from running.
class Stopwatch
{
public:
    void start()
    {
        m_waited = waited();
        m_clock.start();
    }
    double milliseconds() const
    {
        return static_cast<double>(m_clock.nsecsElapsed() - (waited() - m_waited)) / 1e6;
    }

private:
    static qint64 waited()
    {
        QFile file(QStringLiteral("/proc/thread-self/schedstat"));
        return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').at(1).toLongLong() : 0;
    }

    QElapsedTimer m_clock;
    qint64 m_waited = 0;
};

double median(Samples samples)
{
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}

double longest(const Samples &samples)
{
    return *std::max_element(samples.begin(), samples.end());
}

template <class Action>
double timed(const Action &action)
{
    Stopwatch watch;
    watch.start();
    action();
    QApplication::sendPostedEvents();
    QApplication::processEvents();
    QGuiApplication::sync();
    return watch.milliseconds();
}

/// The longest time between two turns of the event loop, from an action until `patience` milliseconds later.
template <class Action>
double standstill(const Action &action, int patience)
{
    Stopwatch turn;
    Samples times;
    QTimer turns;
    QObject::connect(&turns, &QTimer::timeout, [&] {
        times.push_back(turn.milliseconds());
        turn.start();
    });
    turns.start(0);
    QElapsedTimer clock;
    clock.start();
    turn.start();
    action();
    while (clock.elapsed() < patience)
        QApplication::processEvents();
    times.push_back(turn.milliseconds());
    return longest(times);
}

double megabytes()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    const qint64 pages = statm.readAll().split(' ').at(1).toLongLong();
    return static_cast<double>(pages * sysconf(_SC_PAGESIZE)) / (1024 * 1024);
}

void print(const char *name, double program, double bare)
{
    std::printf("%s\t%f\t%f\n", name, program, bare);
}

struct Figure
{
    const char *name;
    Samples action;
    Samples bare;

    ~Figure() { print(name, median(action), median(bare)); }
};

void repaint(const std::vector<QWidget *> &widgets)
{
    for (QWidget *widget : widgets) {
        auto *display = qobject_cast<RichTextBox *>(widget);
        (display ? display->viewport() : widget)->update();
    }
}

void ask(QWidget *owner)
{
    QMessageBox(QMessageBox::Question, QStringLiteral("Clear Board"),
                QStringLiteral("Clearing board,\nAre you sure?"), QMessageBox::Yes | QMessageBox::No, owner)
        .exec();
}

/// Games of 75 calls, five of them un-called, and a clear.
void playGames(const MainWindow &w, int games)
{
    QWidget *count = w.find<QLabel>(QStringLiteral("lblCallCnt"));
    std::vector<QWidget *> all = {count};
    for (const char *name : {"RTB1", "RTB2", "RTB3", "RTB4", "RTB5"})
        all.push_back(w.display(name));
    for (int n = 1; n <= 75; ++n)
        all.push_back(w.number(n));

    Figure call{"a call", {}, {}};
    Figure uncall{"an un-call, its box answered at once", {}, {}};
    Figure clear{"a clear, its box answered at once", {}, {}};
    double early = 0;
    for (int game = 1; game <= games; ++game) {
        for (int n = 1; n <= 75; ++n) {
            call.action.push_back(timed([&] { w.number(n)->click(); }));
            call.bare.push_back(timed([&] {
                repaint({count, w.number(n), w.display("RTB2"), w.display("RTB3"), w.display("RTB4")});
            }));
        }
        for (int n = 1; n <= 5; ++n) {
            uncall.action.push_back(timed([&] { w.number(n)->click(); }));
            uncall.bare.push_back(timed([&] {
                ask(w.number(n)->window());
                repaint({w.number(n), w.display("RTB2")});
            }));
        }
        clear.action.push_back(timed([&] { w.button("cmdClear")->click(); }));
        clear.bare.push_back(timed([&] {
            ask(count->window());
            repaint(all);
        }));
        if (game == 3)
            early = megabytes();
    }
    if (games == 27)
        print("memory after 2,000 calls", megabytes(), early);
}

void selectPatterns(const MainWindow &w)
{
    Figure selection{"a pattern selection", {}, {}};
    for (int i = 0; i < 100; ++i) {
        selection.action.push_back(
            timed([&] { w.button(i % 2 ? "cDemoButt(8)" : "cDemoButt(20)")->click(); }));
        selection.bare.push_back(timed([&] { repaint({w.find<QWidget>(QStringLiteral("Frame1"))}); }));
    }
}

void changeFontSize(const MainWindow &w)
{
    auto *size = w.find<QComboBox>(QStringLiteral("iFontSize"));
    Figure change{"a font-size change", {}, {}};
    for (int i = 0; i < 100; ++i) {
        size->setEditText(QString::number(30 + i % 3));
        change.action.push_back(timed([&] { QTest::keyClick(size->lineEdit(), Qt::Key_Return); }));
        change.bare.push_back(timed([&] {
            repaint({w.display("RTB1"), w.display("RTB2"), w.display("RTB5")});
        }));
    }
}

/// The first call is made while the speech service is not open yet.
void speak()
{
    const auto program = modMain::Main();
    QWidget *window = program.get();
    if (!QTest::qWaitForWindowExposed(window))
        std::exit(EXIT_FAILURE);

    int number = 0;
    const auto call = [&] {
        control<QPushButton>(window, qPrintable(QStringLiteral("cButt(%1)").arg(++number)))->click();
    };
    const auto calls = [&](int count) {
        Samples samples;
        while (count-- > 0)
            samples.push_back(standstill(call, 100));
        return samples;
    };
    auto *speaks = control<QCheckBox>(window, "chkMakeVoiceCall");
    speaks->setChecked(true);
    const double first = standstill(call, 2000);
    const Samples later = calls(25);
    speaks->setChecked(false);
    const Samples quiet = calls(25);
    print("the first call", first, median(quiet));
    print("a later call", median(later), median(quiet));
    print("the longest of all", std::max(first, longest(later)), longest(quiet));
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    controls::applyAppearance(application);
    Operator operatorAtHand;
    application.installEventFilter(&operatorAtHand);
    const QString task = QCoreApplication::arguments().at(1);
    if (task == QStringLiteral("speech")) {
        speak();
        return 0;
    }
    const MainWindow w;
    playGames(w, task.toInt());
    selectPatterns(w);
    changeFontSize(w);
    return 0;
}
