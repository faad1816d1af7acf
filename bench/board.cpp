// What the board's actions cost, from the press to the painted screen, each beside a bare repaint of what it
// changes, in the same run.

#include "platform/appearance.h"
#include "support/main_window.h"

#include <algorithm>
#include <cstdio>

namespace {

using Samples = std::vector<double>; // milliseconds

template <class Action>
double timed(const Action &action)
{
    QElapsedTimer clock;
    clock.start();
    action();
    QApplication::sendPostedEvents();
    QApplication::processEvents();
    QGuiApplication::sync();
    return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

double quantile(Samples samples, double part)
{
    std::sort(samples.begin(), samples.end());
    return samples[static_cast<std::size_t>(part * static_cast<double>(samples.size() - 1))];
}

void print(const char *name, const Samples &action, const Samples &bare)
{
    const double median = quantile(action, 0.5);
    std::printf("%-20s %8.2f %8.2f %14.2f %8.2f\n", name, median, quantile(action, 0.95), quantile(bare, 0.5),
                median / quantile(bare, 0.5));
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    platform::applyAppearance(application);
    std::printf("%-20s %8s %8s %14s %8s\n", "milliseconds", "median", "95 %", "bare repaint", "ratio");

    Samples calls;
    Samples displays;
    for (int game = 0; game < 4; ++game) {
        const MainWindow w;
        for (int n = 1; n <= board::numberCount; ++n) {
            calls.push_back(timed([&] { w.number(n)->click(); }));
            displays.push_back(timed([&] {
                for (const char *name : {"RTB2", "RTB3", "RTB4"})
                    w.display(name)->refresh();
            }));
        }
    }
    print("a call", calls, displays);

    const MainWindow w;
    for (const int n : {4, 20, 33, 50, 75})
        w.press(n);
    auto *card = w.find<QWidget>(QStringLiteral("Frame1"));
    Samples selections;
    Samples cards;
    for (int i = 0; i < 100; ++i) {
        QPushButton *button = w.button(i % 2 ? "cDemoButt(8)" : "cDemoButt(20)");
        selections.push_back(timed([&] { button->click(); }));
        cards.push_back(timed([&] { card->repaint(); }));
    }
    print("a pattern selection", selections, cards);

    auto *size = w.find<platform::ComboBox>(QStringLiteral("iFontSize"));
    Samples sizes;
    Samples boards;
    for (int i = 0; i < 50; ++i) {
        size->setEditText(QString::number(30 + i % 3));
        sizes.push_back(timed([&] { QTest::keyClick(size->lineEdit(), Qt::Key_Return); }));
        boards.push_back(timed([&] {
            for (const char *name : {"RTB1", "RTB2", "RTB5"})
                w.display(name)->refresh();
        }));
    }
    print("a font size", sizes, boards);
    return 0;
}
