#pragma once

#include "appearance.h"
#include "application.h"
#include "draw.h"
#include "error.h"
#include "message_box.h"
#include "modMain.h"
#include "support/fake_speech.h"

#include <QtTest>
#include <QtWidgets>

inline double nextFraction = 0.5; ///< what the next draws draw with

double board::randomFraction()
{
    return nextFraction;
}

inline void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

/// The whole program in this process, from its start-up to its end, with a fake speech service: a hand that
/// plays, and an eye that sees what the room sees. The program's own timers tick only when the hand says so.
class Room : public QObject
{
public:
    Room()
    {
        nextFraction = 0.5;
        speech::SpVoice::setSystemEngine(speech.factory());
        qApp->installEventFilter(this);
        answer();
        modMain::Main();
        for (QWidget *top : QApplication::topLevelWidgets())
            window = top->objectName() == "frmMain" ? qobject_cast<QMainWindow *>(top) : window.data();
        [[maybe_unused]] const bool active = QTest::qWaitForWindowActive(window);
    }
    ~Room() override
    {
        end();
        QFile::remove(modMain::SettingsPath);
    }
    /// Closes the main window, and with it the program.
    void end()
    {
        if (window)
            QTimer::singleShot(0, window, &QWidget::close);
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
        QObject::disconnect(qApp, &QCoreApplication::aboutToQuit, qApp, nullptr);
    }

    template <class Control = QWidget>
    Control *find(const QString &name) const
    {
        auto *found = window->findChild<Control *>(name);
        if (!found)
            qFatal("no control %s", qPrintable(name));
        return found;
    }
    QTextEdit *display(const QString &name) const { return find<QTextEdit>(name); }
    QLineEdit *entry() const { return window->centralWidget()->findChild<QLineEdit *>("Text1"); }

    static void click(QWidget *control)
    {
        const QPoint place = control->rect().bottomRight() - QPoint(3, 3);
        QTest::mouseClick(control->window()->windowHandle(), Qt::LeftButton, {},
                          control->mapTo(control->window(), place));
    }
    /// Types where the focus is, "\r" for Enter.
    void type(const QString &text, Qt::KeyboardModifiers held = {}) const
    {
        for (const QChar c : text)
            hit(keyboard(), c == u'\r' ? int(Qt::Key_Return) : int(c.toUpper().unicode()),
                QString(held & Qt::ControlModifier ? QChar(c.unicode() & 31) : c), held);
    }
    QWindow *keyboard() const
    {
        QWindow *focused = QGuiApplication::focusWindow();
        return focused ? focused : window->windowHandle();
    }
    static void hit(QPointer<QWindow> at, int key, const QString &text = {}, Qt::KeyboardModifiers held = {})
    {
        for (const auto action : {QTest::Press, QTest::Release}) {
            if (at) // A press may close it.
                QTest::sendKeyEvent(action, at, Qt::Key(key), text, held);
        }
    }
    /// What happens when the time of a running timer is over.
    void tick(QTimer *timer, int times = 1)
    {
        for (; times > 0 && timer->isActive(); --times) {
            QTimerEvent over(timer->timerId());
            m_ticking = timer;
            QCoreApplication::sendEvent(timer, &over);
        }
    }

    /// Plays a script, word by word:
    ///   33, 7-9   a click on a number, on some   p3, c25   on a pattern button, on a cell
    ///   cPause    on the control of that name    mnuHelp   a choice from a menu
    ///   'n33/     keys, / Enter, _ blank         s3, a     seconds of the countdown, steps of the animation
    ///   %25       the next draws' fraction       ~         until something is said
    ///   cboSec=5  a choice                       Alt+r     a key with others held
    ///   "r        from an input method           hush      from now on the voice ends no text by itself:
    ///   .         it ended one                   gone      the service is lost
    ///   voice=9   the voice that was chosen      Tab       that key, or Backtab, Escape, Space, Down
    /// A key behind a colon (33:Y) answers the box that comes, else Escape does, at first with s: the time
    /// goes on, e: a failure is to be told, u, p: chkAutoCall or cPause is pressed, as a screen reader can.
    void play(const QString &script)
    {
        static const QRegularExpression word("([%'\"a-zA-Z~.]*)(.*)");
        for (QString step : script.split(' ', Qt::SkipEmptyParts)) {
            if (!QGuiApplication::focusWindow()) { // Behind a box, a window manager does this.
                window->activateWindow();
                QCoreApplication::processEvents();
            }
            m_answer = step.section(':', 1);
            step = step.section(':', 0, 0);
            const QString kind = word.match(step).captured(1), rest = word.match(step).captured(2);
            if (kind.isEmpty())
                for (int n = rest.section('-', 0, 0).toInt(); n <= rest.section('-', -1).toInt(); ++n)
                    click(find(QString("cButt(%1)").arg(n)));
            else if (kind == "p" || kind == "c")
                click(find(QString(kind == "p" ? "cDemoButt(%1)" : "tDemo(%1)").arg(rest)));
            else if (kind == "s" || kind == "a")
                tick(find<QTimer>(kind == "s" ? "Timer2" : "Timer1"), qMax(1, rest.toInt()));
            else if (kind == "%")
                nextFraction = rest.toInt() / 100.0;
            else if (kind == "~")
                await();
            else if (kind == ".")
                Q_EMIT speech.engine->ended();
            else if (kind == "voice")
                modMain::Voice.VoiceIndex = rest.mid(1);
            else if (kind == "hush")
                speech.speaksByItself = false;
            else if (kind == "gone")
                Q_EMIT speech.engine->failed(-7, "it went away");
            else if (kind.startsWith('\''))
                type(step.mid(1).replace('/', '\r').replace('_', ' '));
            else if (kind.startsWith('"'))
                commit(step.mid(1));
            else if (rest.startsWith('+'))
                type(rest.mid(1), QKeySequence(kind + "+A")[0].keyboardModifiers());
            else if (kind == "Escape" || kind == "Tab" || kind == "Backtab" || kind == "Space" ||
                     kind == "Down")
                hit(keyboard(), QKeySequence(kind)[0].key());
            else if (kind.startsWith("mnu"))
                find<QAction>(kind)->trigger();
            else if (rest.startsWith('='))
                find<QComboBox>(kind)->setCurrentText(rest.mid(1));
            else
                click(find(step));
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
        QString seen = find<QLabel>("lblCallCnt")->text().remove("Balls Called: ");
        const auto add = [&seen](const QString &what, const QString &text) {
            seen += text.isEmpty() ? QString() : what + text;
        };
        const auto *animation = find<QTimer>("Timer1");
        const auto *pause = find<QPushButton>("cPause");
        add(" ", textOf("RTB3"));
        add("/", textOf("RTB4"));
        add(" red ", red);
        add(" grey ", grey == red ? "" : grey.isEmpty() ? "none" : grey);
        add(" lit ", litCells(picture));
        add(" step ", animation->isActive() ? QString::number(animation->interval()) : "");
        add(" ", find<QLabel>("lblAutoCall")->text().replace("Auto Call In : ", "in "));
        add(" ", pause->isEnabled() ? pause->text() : "");
        add(" counts", find<QTimer>("Timer2")->isActive() ? "." : "");
        add(" entry ", entry()->text());
        add(" focus ", window->focusWidget() == entry() ? "" : window->focusWidget()->objectName());
        for (const auto *other : window->findChildren<QWidget *>(QRegularExpression("^frm")))
            add(" + ", other->isVisible() ? other->objectName() : "");
        for (; m_heard < speech.spoken.size(); ++m_heard)
            seen += "; " + QString(speech.spoken[m_heard]).remove(" -1 0");
        add("; ", std::exchange(boxes, {}).join("; "));
        return seen;
    }

    QString textOf(const QString &name) const
    {
        return (u'.' + display(name)->toPlainText()).trimmed().mid(1); // blanks at the end are not seen
    }
    /// The numbers of the large board that are red and nowhere black: "7 12-15 33".
    QString redNumbers(const QImage &picture) const
    {
        QTextEdit *board = display("RTB2");
        return numbersWhere([&](int n) {
            QTextCursor cell = board->document()->find(QRegularExpression(QString("\\b%1\\b").arg(n)));
            const QRect end = board->cursorRect(cell);
            cell.setPosition(cell.selectionStart());
            const QRect place(board->cursorRect(cell).topLeft(), end.bottomLeft());
            const QImage seen =
                picture.copy(place.translated(board->viewport()->mapTo(window.data(), QPoint())));
            return has(seen, Qt::red) && !has(seen, Qt::black);
        });
    }
    static bool has(const QImage &picture, const QColor &color)
    {
        for (int i = 0; i < picture.width() * picture.height(); ++i) {
            if (picture.pixel(i % picture.width(), i / picture.width()) == color.rgb())
                return true;
        }
        return false;
    }
    QString greyNumbers(const QImage &picture) const
    {
        return numbersWhere([&](int n) {
            const QPoint inside = find(QString("cButt(%1)").arg(n))->mapTo(window.data(), QPoint(4, 4));
            return picture.pixelColor(inside) == QColor("#A0A0A0");
        });
    }
    QString litCells(const QImage &picture) const
    {
        QString lit;
        for (int i = 1; i <= 25; ++i) {
            const QWidget *cell = find(QString("tDemo(%1)").arg(i));
            const QPoint corner = cell->mapTo(window.data(), cell->rect().bottomRight() - QPoint(3, 3));
            if (picture.valid(corner) && picture.pixelColor(corner) == Qt::black)
                lit += QChar('a' + i - 1);
        }
        return lit;
    }

    FakeSpeech speech;
    QPointer<QMainWindow> window;
    QStringList boxes; ///< "title: text" of each since the last look

private:
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
        return text.mid(1);
    }
    static void commit(const QString &text)
    {
        QInputMethodEvent event;
        event.setCommitString(text);
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
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
    void answer()
    {
        QTimer::singleShot(1, this, &Room::answer);
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (box && box == m_answered && ++m_rounds % 500 == 0) // the key was lost
            hit(box->windowHandle(), Qt::Key_Escape);
        if (!box || box == m_answered)
            return;
        boxes += m_answered && m_answered->isVisible() ? QStringList("a box over a box") : QStringList();
        m_answered = box;
        boxes += box->windowTitle() + ": " + box->text().replace('\n', ' ');
        const QString answer = std::exchange(m_answer, {});
        if (answer == "s")
            tick(find<QTimer>("Timer2"), 5);
        if (answer == "e")
            controls::reportError(window, {-2147221164, "No voice"});
        if (answer == "u" || answer == "p")
            find<QAbstractButton>(answer == "u" ? "chkAutoCall" : "cPause")->click();
        const QMap<QString, int> keys{{"Y", Qt::Key_Y}, {"N", Qt::Key_N}, {"/", Qt::Key_Return}};
        hit(box->windowHandle(), keys.value(answer, Qt::Key_Escape));
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        return event->type() == QEvent::Timer && watched->objectName().startsWith("Timer") &&
               std::exchange(m_ticking, nullptr) != watched;
    }

    QPointer<QMessageBox> m_answered;
    QString m_answer;
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
