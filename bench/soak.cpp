// A long evening in a short time: does the same again and again, and compares the memory and the pace of the
// first tenth with those of the end. Nothing may grow, and nothing may become slower.
//
//     bench_soak [divisor]
//
// A divisor of 100 does a hundredth of it.

#include "appearance.h"
#include "main_window.h"

#include <QAction>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QPixmapCache>

#include <algorithm>
#include <malloc.h>

namespace {

/// Bytes of the heap that are in use.
double heap()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

double median(std::vector<float> times)
{
    std::nth_element(times.begin(), times.begin() + std::ssize(times) / 2, times.end());
    return static_cast<double>(times[times.size() / 2]);
}

class Evening
{
public:
    explicit Evening(int divisor)
        : m_divisor(divisor)
    {
        std::printf("%-22s %9s %12s %11s %11s\n", "", "times", "heap, kB", "first, us", "last, us");
    }

    /// Does something `times` times, `settle` of them at once before the windows are painted.
    void repeat(const char *name, int times, int settle, const std::function<void(int)> &once)
    {
        times /= m_divisor;
        std::vector<float> each;
        each.reserve(static_cast<std::size_t>(times));
        double heapThen = 0;
        for (int i = 1; i <= times; ++i) {
            QElapsedTimer clock;
            clock.start();
            once(i);
            if (i % settle == 0)
                QCoreApplication::processEvents();
            each.push_back(static_cast<float>(clock.nsecsElapsed()) / 1000);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            if (i == times / 10)
                heapThen = heap();
        }
        const double grown = (heap() - heapThen) / 1024;
        const double first = median({each.begin(), each.begin() + times / 10});
        const double last = median({each.end() - times / 10, each.end()});
        std::printf("%-22s %9d %+12.0f %11.1f %11.1f\n", name, times, grown, first, last);
        m_holds = m_holds && grown < 200 && last < 3 * first;
    }

    bool holds() const { return m_holds; }

private:
    int m_divisor;
    bool m_holds = true;
};

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QApplication application(argc, argv);
    controls::applyAppearance(application);
    QPixmapCache::setCacheLimit(
        0); // it grows to its limit, and forgets only what has been there for a minute
    QFile help(QCoreApplication::applicationDirPath() + "/help.txt");
    if (help.open(QIODevice::WriteOnly))
        help.write(QByteArray(5000, 'h'));
    help.close();

    MainWindow w;
    const int divisor = argc > 1 ? std::atoi(argv[1]) : 1;
    Evening evening(divisor);
    const auto openAndClose = [&w, &evening](const char *name, const std::function<void()> &open) {
        evening.repeat(name, 10000, 1, [&](int) {
            open();
            QCoreApplication::processEvents();
            w.find<QWidget>(name)->close();
        });
    };
    const auto choose = [&w](const char *name) { w.find<QAction>(name)->trigger(); };

    w.find<QCheckBox>("chkMakeVoiceCall")->click();
    evening.repeat("calls", 100000, 1, [&](int i) {
        w.press((i - 1) % 75 + 1);
        if (i % 75 == 0)
            w.press("cDemoButt(21)"); // takes all calls back, but not the count
        while (FakeSpeech::spoken.size() < 2)
            QCoreApplication::processEvents();
        FakeSpeech::spoken.clear();
    });
    const bool counted =
        w.find<QLabel>("lblCallCnt")->text() == QString("Balls Called: %1").arg(100000 / divisor);
    std::printf("%s\n", qPrintable(w.find<QLabel>("lblCallCnt")->text()));
    w.find<QCheckBox>("chkMakeVoiceCall")->click();
    openAndClose("frmHelp", [&] { choose("mnuHelp"); });
    openAndClose("frmAbout", [&] { choose("mnuAbout"); });
    openAndClose("frmVoices", [&] { choose("mnuSpeak"); });
    openAndClose("frmBingo", [&] { w.press("cBingo"); });

    w.press("cDemoButt(1)");
    auto *animation = w.find<QTimer>("Timer1");
    evening.repeat("ticks of a pattern", 1000000, 10, [&](int) { MainWindow::fire(animation); });

    w.find<QComboBox>("cboSec")->setCurrentText("20");
    w.press("cDemoButt(21)");
    w.find<QCheckBox>("chkAutoCall")->click();
    auto *countdown = w.find<QTimer>("Timer2");
    evening.repeat("ticks of a countdown", 1000000, 10, [&](int i) {
        MainWindow::fire(countdown);
        if (i % 1400 == 0)
            w.press("cDemoButt(21)");
    });

    w.press("cBingo");
    auto *flash = w.find<QWidget>("frmBingo")->findChild<QTimer *>();
    evening.repeat("ticks of BINGO", 1000000, 50, [&](int) { MainWindow::fire(flash); });
    help.remove();
    return evening.holds() && counted ? EXIT_SUCCESS : EXIT_FAILURE;
}
