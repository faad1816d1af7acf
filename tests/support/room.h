#pragma once

#include "appearance.h"
#include "application.h"
#include "draw.h"
#include "error.h"
#include "message_box.h"
#include "modMain.h"
#include "screen_awake.h"
#include "support/fake_speech.h"

#include <QtTest>
#include <QtWidgets>

inline double nextFraction = 0.5; ///< what the next draws draw with

inline bool screenStaysOn = false;

void os::keepScreenOn(bool on)
{
    screenStaysOn = on;
}

inline void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

/// Where the pixels of a colour are in a place of a picture.
inline QRect ink(const QImage &picture, const QRect &place, const QColor &color)
{
    QRect found;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x)
            found |= picture.valid(x, y) && picture.pixel(x, y) == color.rgb() ? QRect(x, y, 1, 1) : QRect();
    }
    return found;
}

/// The whole program in this process, from its start-up to its end, with a fake speech service: a hand that
/// plays, and an eye that sees what the room sees. The program's own timers tick only when the hand says so.
class Room : public QObject
{
public:
    /// Starts without settings, or with those of the room before.
    explicit Room(bool hasSettings = false)
    {
        nextFraction = 0.5;
        game::randomFraction = [] { return nextFraction; };
        if (!hasSettings && !modMain::SettingsPath.isEmpty())
            QFile::remove(modMain::SettingsPath);
        speech::SpVoice::setSystemEngine(speech.factory());
        qApp->installEventFilter(this);
        answer();
        m_program = modMain::Main();
        QVERIFY(QTest::qWaitFor([this] {
            window = qobject_cast<QMainWindow *>(QApplication::activeWindow());
            return !window.isNull();
        }));
    }
    ~Room() override { end(); }
    /// Closes the main window, and with it the program.
    void end()
    {
        if (window)
            QTimer::singleShot(0, window, &QWidget::close);
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
        m_program.reset();
    }

    template <class Control = QWidget>
    Control *find(const QString &name) const
    {
        auto *found = window->findChild<Control *>(name);
        return found ? found : (qFatal("no control %s", qPrintable(name)), nullptr);
    }
    QTextEdit *display(const QString &name) const { return find<QTextEdit>(name); }
    QLineEdit *entry() const { return window->centralWidget()->findChild<QLineEdit *>("Text1"); }
    QPoint placeOf(const QWidget *control, QPoint inside) const { return control->mapTo(window, inside); }

    static void click(const QWidget *control)
    {
        const QPoint place = control->rect().bottomRight() - QPoint(3, 3);
        QTest::mouseClick(control->window()->windowHandle(), Qt::LeftButton, {},
                          control->mapTo(control->window(), place));
    }
    /// What happens when the time of a running timer is over.
    void tick(QTimer *timer, int times = 1)
    {
        for (int i = 0; i < qMax(1, times) && timer->isActive(); ++i) {
            QTimerEvent over(timer->timerId());
            m_ticking = timer;
            QCoreApplication::sendEvent(timer, &over);
        }
    }

    /// Plays a script, word by word: the words of playOne(), and
    ///   33, 7-9   a click on a number, on some
    ///   cPause    a click on the control of that name
    ///   mnuHelp   a choice from a menu
    ///   cboSec=5  a choice from a list, once it is there, or where a slider is put
    /// A key behind a colon (33:Y) answers the question that comes, else Escape does, at first with s: the
    /// time goes on, e: a failure is to be told, u, p: chkAutoCall or cPause is pressed, as a screen reader
    /// can.
    void play(const QString &script)
    {
        for (const QString &step : script.split(' ', Qt::SkipEmptyParts)) {
            if (!QGuiApplication::focusWindow()) { // Behind a box, a window manager does this.
                window->activateWindow();
                QCoreApplication::processEvents();
            }
            m_answer = step.section(':', 1);
            playOne(step.section(':', 0, 0));
        }
    }

    /// All that the room sees, what is at rest left out: "count current/past red numbers, grey buttons (where
    /// they are others) lit cells (a to y), the countdown, the entry, focus, open windows; what was said;
    /// boxes".
    QString look()
    {
        settle();
        const QImage picture = window->grab().toImage();
        const QString red = redNumbers(picture), grey = greyNumbers(picture);
        const auto *animation = find<QTimer>("Timer1");
        const auto *pause = find<QPushButton>("cPause");
        QStringList windows;
        for (const auto *other : window->findChildren<QWidget *>(QRegularExpression("^frm")))
            windows += other->isVisible() ? QStringList(other->objectName()) : QStringList();
        const std::pair<const char *, QString> parts[] = {
            {"", find<QLabel>("lblCallCnt")->text().remove("Balls Called: ")},
            {" ", textOf("RTB3")},
            {"/", textOf("RTB4")},
            {" red ", red == "none" ? "" : red},
            {" grey ", grey == red ? "" : grey},
            {" lit ", litCells(picture)},
            {" step ", animation->isActive() ? QString::number(animation->interval()) : ""},
            {" ", find<QLabel>("lblAutoCall")->text().replace("Auto Call In : ", "in ")},
            {" ", pause->isEnabled() ? pause->text() : ""},
            {" counts", find<QTimer>("Timer2")->isActive() ? "." : ""},
            {" entry ", entry()->text()},
            {" focus ", window->focusWidget() == entry() ? "" : window->focusWidget()->objectName()},
            {" + ", windows.join(" + ")},
            {"; ", speech.spoken.mid(m_heard).join("; ").remove(" -1 0")},
            {"; ", std::exchange(boxes, {}).join("; ")},
        };
        m_heard = speech.spoken.size();
        QString seen;
        for (const auto &[what, text] : parts)
            seen += text.isEmpty() ? QString() : what + text;
        return seen;
    }

    QString textOf(const QString &name) const
    {
        return (u'.' + display(name)->toPlainText()).trimmed().mid(1); // blanks at the end are not seen
    }
    /// The numbers of the large board that are red and nowhere black: "7 12-15 33", or "none".
    QString redNumbers(const QImage &picture) const
    {
        const QTextEdit *board = display("RTB2");
        return numbersWhere([&](int n) {
            QTextCursor cell = board->document()->find(QRegularExpression(QString("\\b%1\\b").arg(n)));
            const QRect end = board->cursorRect(cell);
            cell.setPosition(cell.selectionStart());
            const QRect seen = QRect(board->cursorRect(cell).topLeft(), end.bottomLeft())
                                   .translated(placeOf(board->viewport(), {}));
            return ink(picture, seen, Qt::red).isValid() && !ink(picture, seen, Qt::black).isValid();
        });
    }
    QString greyNumbers(const QImage &picture) const
    {
        return numbersWhere([&](int n) {
            const QPoint inside = placeOf(find(QString("cButt(%1)").arg(n)), {4, 4});
            return picture.pixelColor(inside) == QColor("#A0A0A0");
        });
    }
    /// The lit cells; the entry box lies over cell 10, and hides it only while something stands in it.
    QString litCells(const QImage &picture) const
    {
        QString lit;
        for (int i = 1; i <= 25; ++i) {
            const QWidget *cell = find(QString("tDemo(%1)").arg(i));
            const QPoint inside = placeOf(cell, cell->rect().center());
            if (picture.pixelColor(inside) == Qt::black)
                lit += QChar('a' + i - 1);
        }
        return lit;
    }

    FakeSpeech speech;
    QPointer<QMainWindow> window;
    QStringList boxes; ///< "title: text" of each since the last look

private:
    QWindow *keyboard() const
    {
        QWindow *focused = QGuiApplication::focusWindow();
        return focused ? focused : window->windowHandle();
    }
    /// Presses one key, with others held.
    void press(QKeyCombination keys) const
    {
        const bool isControl = keys.keyboardModifiers() & Qt::ControlModifier;
        const QString sign = keys.key() < 128 ? QChar(keys.key() & (isControl ? 31 : 127)) : QString();
        QTest::sendKeyEvent(QTest::Click, keyboard(), keys.key(), sign, keys.keyboardModifiers());
    }
    void type(const QString &text) const
    {
        for (const char c : text.toLatin1())
            QTest::keyClick(keyboard(), c);
    }
    void playOne(const QString &step)
    {
        static const QRegularExpression form("^([%'\"?]|[a-zA-Z~.]*)=?(.*)");
        const QString word = form.match(step).captured(1), rest = form.match(step).captured(2);
        const QHash<QString, std::function<void()>> words{
            {"p", [&] { click(find(QString("cDemoButt(%1)").arg(rest))); }},
            {"c", [&] { click(find(QString("tDemo(%1)").arg(rest))); }}, // a cell of the card
            {"s", [&] { tick(find<QTimer>("Timer2"), rest.toInt()); }},  // seconds of the countdown
            {"a", [&] { tick(find<QTimer>("Timer1"), rest.toInt()); }},  // steps of the animation
            {"%", [&] { nextFraction = rest.toInt() / 100.0; }},
            {"'", [&] { type(QString(rest).replace('/', '\r').replace('_', ' ')); }},
            {"\"", [&] { commit(rest); }},
            {"key", [&] { press(QKeySequence(rest)[0]); }}, // key=Alt+F4
            {"soon",
             [&] { QTimer::singleShot(50, this, [=, this] { play(QString(rest).replace(',', ' ')); }); }},
            {"?", [&] { boxes += '(' + look() + ')'; }},
            {"voice", [&] { modMain::Voice.VoiceIndex = rest.toInt(); }}, // the choice
            {"throw", [&] { QTimer::singleShot(0, this, [] { throw std::runtime_error("out of paper"); }); }},
            {"none", [&] { speech.isInstalled = false; }},
            {"hush", [&] { speech.speaksByItself = false; }}, // ends no text by itself
            {"~", [&] { await(); }},                          // until something is said
            {".", [&] { speech.engine ? speech.engine->ended() : void(); }},
            {"gone",
             [&] {
                 speech.engine ? speech.engine->failed({-7, "it went away"}) : void();
             }},
        };
        const QStringList ends = step.split('-');
        if (words.contains(word))
            words[word]();
        else if (step.contains('='))
            choose(find(step.section('=', 0, 0)), step.section('=', 1));
        else if (auto *action = window->findChild<QAction *>(step)) {
            action->trigger();
            QCoreApplication::processEvents(); // gives a new window the focus
        } else if (!word.isEmpty())
            click(find(step));
        for (int n = ends.first().toInt(); n && n <= ends.last().toInt(); ++n)
            click(find(QString("cButt(%1)").arg(n)));
    }
    /// Chooses an entry or a row, or sets a slider.
    static void choose(QWidget *control, const QString &value)
    {
        const char *property = control->inherits("QComboBox")   ? "currentText"
                               : control->inherits("QListView") ? "currentRow"
                                                                : "value";
        QVERIFY(QTest::qWaitFor(
            [&] { return control->setProperty(property, value) && control->property(property) == value; }));
    }
    static void commit(const QString &text)
    {
        QInputMethodEvent event;
        event.setCommitString(text);
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }
    template <class Condition>
    static QString numbersWhere(Condition holds)
    {
        QString text;
        for (int n = 1, end = 0; n <= 75; n = end + 1) {
            for (end = n; end <= 75 && holds(end);)
                ++end;
            if (end > n)
                text += QString(" %1").arg(n) + (end > n + 1 ? QString("-%1").arg(end - 1) : QString());
        }
        return text.isEmpty() ? "none" : text.mid(1);
    }
    static void settle()
    {
        for (int i = 0; i < 50; ++i)
            QCoreApplication::processEvents();
    }
    /// Waits until more is said than at the last waiting, and all that comes of it.
    void await()
    {
        QVERIFY(QTest::qWaitFor([this] { return speech.spoken.size() > m_awaited; }));
        settle();
        m_awaited = speech.spoken.size();
    }
    /// Answers each box that comes.
    void answer()
    {
        QTimer::singleShot(1, this, &Room::answer);
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        if (box != m_answered) {
            boxes += m_answered && m_answered->isVisible() ? QStringList("a box over a box") : QStringList();
            m_answered = box;
            m_rounds = 0;
            boxes += box->windowTitle() + ": " + box->text().replace('\n', ' ');
            const QString answer = std::exchange(m_answer, {});
            const QMap<QString, Qt::Key> keys{{"Y", Qt::Key_Y}, {"N", Qt::Key_N}, {"/", Qt::Key_Return}};
            m_key = keys.value(box->button(QMessageBox::Yes) ? answer : QString(), Qt::Key_Escape);
            if (answer == "s")
                tick(find<QTimer>("Timer2"), 5);
            if (answer == "e")
                controls::reportError(window, {-2147221164, "No voice"});
            if (answer == "u" || answer == "p")
                find<QAbstractButton>(answer == "u" ? "chkAutoCall" : "cPause")->click();
        }
        if (m_rounds++ % 500 == 0) // The second of two keys of one time is lost.
            QTest::keyClick(box->windowHandle(), m_key);
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        return event->type() == QEvent::Timer && watched->objectName().startsWith("Timer") &&
               std::exchange(m_ticking, nullptr) != watched;
    }

    std::unique_ptr<QWidget> m_program;
    QPointer<QMessageBox> m_answered;
    QString m_answer;
    Qt::Key m_key = Qt::Key_Escape;
    int m_rounds = 0;
    QTimer *m_ticking = nullptr;
    qsizetype m_heard = 0, m_awaited = 0;
};

/// Runs the tests of an object in an application with a folder of its own.
template <class Test>
int runInRoom(int argc, char *argv[])
{
    QTemporaryDir folder;
    QDir::setCurrent(folder.path());
    qputenv("AppData", folder.path().toLocal8Bit());
    app::Application application(argc, argv);
    QApplication::setApplicationName("Vellomir");
    controls::applyAppearance(application);
    QApplication::setCursorFlashTime(0);
    Test test;
    return QTest::qExec(&test, argc, argv);
}
