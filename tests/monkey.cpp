// Plays with the real windows at random, as somebody would who presses everything at any time, and checks
// after every event what must always hold.
//
//     monkey [events [seed]]
//
// The same seed plays the same game: the program's own timers tick, and its speech service answers, only when
// the monkey wants it, and its fractions are what the draw draws with.

#include "appearance.h"
#include "application.h"
#include "buttons.h"
#include "combo_box.h"
#include "draw.h"
#include "frmMain.h"
#include "modMain.h"
#include "numbers.h"
#include "rich_text_box.h"
#include "sp_voice.h"
#include "text_box.h"

#include <QClipboard>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>
#include <QWindow>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <random>

using controls::ColorBox;
using controls::ColorButton;
using controls::RichTextBox;
using speech::SpVoice;

namespace {

std::mt19937 chance;

/// A number from 0 to `end` - 1.
int below(std::ptrdiff_t end)
{
    return static_cast<int>(chance() % static_cast<std::uint32_t>(end));
}

template <class List>
auto any(const List &list)
{
    return *std::next(std::begin(list), below(std::ssize(list)));
}

bool oneIn(int many)
{
    return below(many) == 0;
}

/// A speech service that begins, ends and fails when the monkey says so, also when nobody asked.
class Engine : public speech::SpEngine
{
public:
    Engine() { all.append(this); }
    ~Engine() override { all.removeOne(this); }
    void open() override {}
    void speak(const speech::SpText &) override {}
    void ping() override {}

    void act()
    {
        static const QList<speech::SpVoiceInfo> voices(20, {"Ann", "en-US"});
        const int kind = below(30);
        if (kind == 0)
            Q_EMIT failed(speech::SpLost, "The service has gone.");
        else if (kind == 1)
            Q_EMIT opened({});
        else if (kind < 10)
            Q_EMIT opened(oneIn(4) ? voices.mid(1) : voices);
        else if (kind < 15)
            Q_EMIT begun();
        else
            Q_EMIT ended();
    }

    static inline QList<Engine *> all;
};

class Monkey : public QObject
{
public:
    Monkey(int events, unsigned seed)
        : m_left(events)
        , m_seed(seed)
    {
        chance.seed(seed);
        qApp->installEventFilter(this);
        SpVoice::setSystemEngine([]() -> std::unique_ptr<speech::SpEngine> {
            if (oneIn(5))
                throw files::Error(speech::SpNotInstalled, "There is none.");
            return std::make_unique<Engine>();
        });
    }

    void play()
    {
        for (m_games = 0; m_left > 0; ++m_games)
            playUntilTheWindowCloses();
        std::printf("monkey: seed %u: %d games, %d calls, fingerprint %08x; boxes:\n", m_seed, m_games,
                    m_calls, m_fingerprint);
        for (const auto &[text, times] : m_boxes.asKeyValueRange())
            std::printf("  %5d %s\n", times, qPrintable(text));
    }

private:
    // ---- The program, from its start to the end of its window ----

    void playUntilTheWindowCloses()
    {
        m_ended = false;
        m_stale = false;
        m_history.clear();
        startTimer(0);
        voice::VoiceChoice voice;
        frmMain window(voice);
        connect(&window, &frmMain::unloading, this, [this, &window] {
            m_ended = true;
            modMain::SaveSettings(window);
            QCoreApplication::exit();
        });
        modMain::LoadSettings(window);
        window.clearDisplays();
        window.BuildButts();
        window.DrawBoards();
        window.BuildDemo();
        window.show();
        m_window = &window;
        watch();
        QCoreApplication::exec();
        m_window = nullptr;
    }

    template <class Control>
    Control *find(const QString &name) const
    {
        return m_window->findChild<Control *>(name);
    }
    ColorButton *number(int n) const { return find<ColorButton>(QString("cButt(%1)").arg(n)); }
    QString caption(const char *name) const { return find<QLabel>(name)->text(); }
    QPushButton *pause() const { return find<QPushButton>("cPause"); }

    // ---- The events ----

    /// Every event is begun by a timer of its own, so that they go on while a box is open.
    void timerEvent(QTimerEvent *event) override
    {
        killTimer(event->timerId());
        if (m_ended)
            return;
        check();
        if (m_left == 0 && !QApplication::activeModalWidget())
            return QCoreApplication::exit();
        startTimer(0);
        if (m_left > 0)
            --m_left;
        playOne();
    }

    /// The program's timers are the monkey's own to fire.
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Timer)
            return false;
        const bool isOurs =
            watched->objectName().startsWith("Timer") || qobject_cast<SpVoice *>(watched->parent());
        return isOurs && !std::exchange(m_fires, false);
    }

    void playOne()
    {
        QWidget *modal = QApplication::activeModalWidget();
        if (modal && (m_left == 0 || !m_window || oneIn(3)))
            return answer(modal);
        if (!m_window)
            return;
        if (m_left % 1000 < 300 && !oneIn(8)) // now and then it fills the board
            return oneIn(3) ? tick() : press(button("cRandNum"));
        using Play = void (Monkey::*)();
        static const std::pair<int, Play> plays[] = {{40, &Monkey::clickSomething}, {25, &Monkey::pressKey},
                                                     {12, &Monkey::tick},           {13, &Monkey::speech},
                                                     {3, &Monkey::resize},          {2, &Monkey::paste},
                                                     {3, &Monkey::choose},          {2, &Monkey::close}};
        int kind = below(100);
        for (const auto &[weight, play] : plays) {
            if ((kind -= weight) < 0)
                return (this->*play)();
        }
    }

    void answer(QWidget *modal)
    {
        note("answer");
        if (auto *box = qobject_cast<QMessageBox *>(modal)) {
            ++m_boxes[box->text().section(u'\n', 0, 0)];
            demand(!box->text().contains("Err #: -1"), "a handler failed");
            press(any(box->buttons()));
        } else {
            auto *dialog = qobject_cast<QDialog *>(modal);
            oneIn(4) ? dialog->accept() : dialog->reject(); // it prints into a file
        }
    }

    /// The window that takes clicks: an open menu or list, a box, or one of the program's windows.
    QWidget *somewhere() const
    {
        if (QWidget *popup = QApplication::activePopupWidget(); popup && !oneIn(8))
            return popup;
        QWidgetList windows{m_window, m_window};
        for (const char *name : {"frmBingo", "frmHelp", "frmVoices", "frmAbout"}) {
            if (auto *window = find<QWidget>(name); window && window->isVisible())
                windows.append(window);
        }
        return any(windows);
    }

    void clickSomething()
    {
        QWidget *window = somewhere();
        QWidgetList places{window};
        for (auto *child : window->findChildren<QWidget *>()) {
            if (!child->isWindow() && child->isVisible())
                places.append(child);
        }
        press(any(places));
    }

    void press(QWidget *target)
    {
        note(target->objectName().toUtf8() + " " + target->metaObject()->className());
        QWindow *window = target->window()->windowHandle();
        QPoint place = target->rect().center();
        if (oneIn(4))
            place = {below(target->width() + 1), below(target->height() + 1)};
        place = target->mapTo(target->window(), place);
        if (!target->window()->rect().contains(place))
            return;
        if (oneIn(30)) {
            QWheelEvent wheel(place, window->mapToGlobal(place), {}, {0, oneIn(2) ? 120 : -120}, {}, {},
                              Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(window, &wheel);
            return;
        }
        const Qt::MouseButton button = oneIn(20) ? Qt::RightButton : Qt::LeftButton;
        const QPoint global = window->mapToGlobal(place);
        qt_handleMouseEvent(window, place, global, button, button, QEvent::MouseButtonPress, {}, ++m_time);
        qt_handleMouseEvent(window, place, global, {}, button, QEvent::MouseButtonRelease, {},
                            m_time += 1000);
    }

    void pressKey()
    {
        using enum Qt::Key;
        static constexpr Qt::Key others[] = {Key_Return,   Key_Return, Key_Enter,    Key_Tab, Key_Backtab,
                                             Key_Space,    Key_Escape, Key_Delete,   Key_Up,  Key_Down,
                                             Key_Left,     Key_Right,  Key_Home,     Key_End, Key_PageUp,
                                             Key_PageDown, Key_F1,     Key_Backspace};
        if (!QGuiApplication::focusWindow())
            return m_window->activateWindow();
        const Qt::KeyboardModifiers held = any(std::initializer_list<Qt::KeyboardModifiers>{
            {}, {}, {}, {}, {}, {}, Qt::AltModifier, Qt::ControlModifier, Qt::ShiftModifier});
        const int key = oneIn(2) ? any(std::string_view("0123456789BINGORP .-,+E")) : int(any(others));
        note("key " + QByteArray::number(key));
        strike(key, held);
    }

    static void strike(int key, Qt::KeyboardModifiers held)
    {
        const bool isCharacter = key < 128 && !(held & (Qt::AltModifier | Qt::ControlModifier));
        const QString text = key == Qt::Key_Return || key == Qt::Key_Enter ? "\r"
                             : isCharacter                                 ? QString(QChar(key))
                                                                           : QString();
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
            qt_handleKeyEvent(QGuiApplication::focusWindow(), type, key, held, text);
    }

    void tick()
    {
        std::vector<QTimer *> running;
        for (QTimer *timer : m_window->findChildren<QTimer *>(QRegularExpression("^Timer")))
            if (timer->isActive())
                running.push_back(timer);
        if (running.empty())
            return;
        QTimer *timer = any(running);
        note("tick of " + timer->parent()->objectName().toUtf8() + " " + timer->objectName().toUtf8());
        QTimerEvent over(timer->timerId());
        m_fires = true;
        QCoreApplication::sendEvent(timer, &over);
    }

    void speech()
    {
        note("speech");
        if (!Engine::all.isEmpty())
            any(Engine::all)->act();
    }

    void resize()
    {
        QWidget *window = somewhere();
        note("resize " + window->objectName().toUtf8());
        const Qt::WindowStates states[] = {Qt::WindowNoState, Qt::WindowMinimized, Qt::WindowMaximized};
        if (oneIn(2))
            window->setWindowState(any(states));
        else
            window->resize(below(3000), below(2000));
    }

    void paste()
    {
        note("paste");
        static const QStringList texts{"12",
                                       "n33",
                                       " 7 ",
                                       "1e400",
                                       "12\n13",
                                       QString(9999, '9'),
                                       QString(3, QChar(0)),
                                       QString::fromUtf8("\u0661\u0662\U0001F3B1\u202E")};
        QGuiApplication::clipboard()->setText(any(texts));
        if (QGuiApplication::focusWindow())
            strike(Qt::Key_V, Qt::ControlModifier);
    }

    /// A menu's command, without the menu.
    void choose()
    {
        QList<QAction *> commands;
        for (auto *command : m_window->findChildren<QAction *>(QRegularExpression("^mnu")))
            if (!command->menu() &&
                (command->parent() != m_window || oneIn(50) || command->objectName() != "mnuExit"))
                commands.append(command);
        QAction *command = any(commands);
        note(command->objectName().toUtf8());
        if (oneIn(4))
            press(button("cBingo"));
        else if (!QApplication::activeModalWidget() && !SpVoice::isWaiting())
            command->trigger();
    }

    /// The desktop closes a window; nothing but the end of the session closes one under a box.
    void close()
    {
        QWidget *window = somewhere();
        note("close " + window->objectName().toUtf8());
        if (window == m_window ? oneIn(80) : !QApplication::activeModalWidget())
            window->close();
    }

    // ---- What must always hold ----

    /// Where the focus and the entry are left by each command.
    void watch()
    {
        for (int n = 1; n <= game::numberCount; ++n)
            after(number(n), [this] { isReadyAfterCall(); });
        after(button("cmdClear"), [this] { focusIs(entry()); });
        after(find<QAbstractButton>("chkAutoCall"),
              [this] { focusIs(callsByItself() ? static_cast<QWidget *>(pause()) : entry()); });
        for (auto *cell : m_window->findChildren<ColorBox *>())
            after(cell, [this] { focusIs(entry()); });
        for (int i = 1; i <= 21; ++i) {
            after(button(qPrintable(QString("cDemoButt(%1)").arg(i))), [this] {
                m_stale = true; // the board keeps its colours until it is next drawn
                focusIs(entry());
            });
        }
    }

    template <class Function>
    void after(QAbstractButton *button, Function function)
    {
        connect(button, &QAbstractButton::clicked, this, [this, function] {
            if (!m_ended)
                function();
        });
    }
    QPushButton *button(const char *name) const { return find<QPushButton>(name); }
    QLineEdit *entry() const { return m_window->centralWidget()->findChild<QLineEdit *>("Text1"); }
    bool callsByItself() const { return pause()->isEnabled() && pause()->text() == "Pause"; }
    void isReadyAfterCall() const
    {
        demand(entry()->text().isEmpty(), "the entry box is not emptied");
        focusIs(callsByItself() ? static_cast<QWidget *>(pause()) : entry());
    }
    void focusIs(const QWidget *wanted) const
    {
        demand(m_window->focusWidget() == wanted, "the focus is elsewhere");
    }

    void check()
    {
        if (m_ended || !m_window)
            return;
        checkBoard();
        checkCalls();
        checkCountdown();
        const QPointer<QWidget> boxBefore = std::exchange(m_box, QApplication::activeModalWidget());
        const int callsBefore = std::exchange(m_callsBefore, m_calls);
        demand(!m_box || m_box != boxBefore || m_calls == callsBefore, "it calls behind an open box");
        const QWidgetList all = QApplication::topLevelWidgets();
        demand(std::count_if(all.begin(), all.end(),
                             [](auto *w) { return w->isVisible() && w->inherits("QMessageBox"); }) <= 1,
               "a box covers a box");
        for (const char *name : {"frmBingo", "frmHelp", "frmVoices", "frmAbout"}) {
            const auto windows = m_window->findChildren<QWidget *>(name);
            demand(std::count_if(windows.begin(), windows.end(), [](auto *w) { return w->isVisible(); }) <= 1,
                   "a window is there twice");
        }
    }

    void checkBoard()
    {
        const auto *board = find<RichTextBox>("RTB2");
        bool agrees = true;
        for (int n = 1; n <= game::numberCount; ++n) {
            const bool called = m_window->isCalled(n);
            demand(number(n)->backColor() ==
                       (called ? controls::colors::buttonShadow : controls::colors::buttonFace),
                   "a button has not the colour of its flag");
            for (int i = 0; i < game::cellWidth; ++i)
                agrees =
                    agrees && (board->colorAt(game::cellOffset(n) + i) == controls::colors::red) == called;
            m_fingerprint = m_fingerprint * 31 + called;
        }
        m_stale = m_stale && !agrees && m_window->callCount() == m_history.size();
        demand(agrees || m_stale, "the board has not the colours of the flags");
    }

    void checkCalls()
    {
        const int count = m_window->callCount();
        demand(caption("lblCallCnt") == QString("Balls Called: %1").arg(count), "the count is wrong");
        if (count == 0)
            m_history.clear();
        if (count > m_history.size()) {
            m_history.prepend(m_window->lastCall(1));
            ++m_calls;
        }
        demand(count == m_history.size(), "a call was not counted once");
        QString past;
        for (int k = 1; k <= 5; ++k) {
            demand(m_window->lastCall(k) == m_history.value(k - 1), "the last calls are wrong");
            if (k > 1 && count > 0)
                past += game::pastEntry(m_history.value(k - 1)) + u' ';
        }
        demand(find<RichTextBox>("RTB3")->text() == game::currentLabel(m_history.value(0)),
               "the current number is wrong");
        demand(find<RichTextBox>("RTB4")->text() == past, "the past numbers are wrong");
    }

    void checkCountdown()
    {
        static const QRegularExpression counting("^(Paused|Auto Call In : (20|1?[1-9]|10))?$");
        const bool on = find<QCheckBox>("chkAutoCall")->isChecked();
        const QString label = caption("lblAutoCall");
        demand(find<QTimer>("Timer2")->isActive() == (on && callsByItself()),
               "Timer2 does not run as it should");
        demand(pause()->isEnabled() == on, "cPause is not enabled as it should be");
        if (!on)
            demand(label.isEmpty() && !callsByItself(), "switched off, it still shows a countdown");
        else if (callsByItself())
            demand(counting.match(label).hasMatch(), "no countdown is shown");
        else
            demand(label == "Paused" && pause()->text() == "Play", "paused, it does not say so");
    }

    void note(const QByteArray &event)
    {
        m_events.push_back(event);
        if (m_events.size() > 40)
            m_events.pop_front();
    }

    void demand(bool holds, const char *otherwise) const
    {
        if (holds)
            return;
        for (const QByteArray &event : m_events)
            std::fprintf(stderr, "  %s\n", event.constData());
        std::fprintf(stderr, "monkey: seed %u, %d events before the end: %s\n", m_seed, m_left, otherwise);
        std::_Exit(EXIT_FAILURE);
    }

    frmMain *m_window = nullptr; // null while there is none, or not whole
    int m_left;
    unsigned m_seed;
    bool m_ended = false;
    bool m_fires = false;
    bool m_stale = false;    // the flags have changed without a drawing of the board
    QList<int> m_history;    // all calls since the last clear, the newest first
    QPointer<QWidget> m_box; // the one that was open at the last check
    int m_callsBefore = 0;
    std::deque<QByteArray> m_events;
    int m_games = 0;
    int m_calls = 0;
    QMap<QString, int> m_boxes; // how often each was answered
    unsigned m_fingerprint = 0;
    int m_time = 0; // of the mouse, ms: no click follows another closely
};

} // namespace

/// Qt 6.4 loses the point of a mouse event now and then when a box opens in its middle. Leaks are looked for
/// elsewhere.
extern "C" const char *__asan_default_options()
{
    return "detect_leaks=0";
}

double board::randomFraction()
{
    return static_cast<double>(chance()) / 4294967296.0;
}

int main(int argc, char *argv[])
{
    QTemporaryDir folder; // for what it prints and saves
    QDir::setCurrent(folder.path());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_HASH_SEED", "0");
    qputenv("QT_NO_GLIB", "1"); // in the other event loop the order of the events is not always the same
    for (const char *name : {"HOME", "XDG_RUNTIME_DIR"})
        qputenv(name, folder.path().toLocal8Bit());
    modMain::SettingsPath = folder.filePath("monkey.ini");
    app::Application application(argc, argv);
    controls::applyAppearance(application);
    QApplication::setCursorFlashTime(0);
    QApplication::setDoubleClickInterval(0); // within it, an open list takes no click
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
        if (!text.startsWith("This plugin does not support"))
            std::fprintf(stderr, "%s\n", qPrintable(text));
    });
    const QStringList arguments = QCoreApplication::arguments();
    Monkey(arguments.value(1, "10000").toInt(),
           arguments.size() > 2 ? arguments[2].toUInt() : std::random_device()())
        .play();
}
