#pragma once

#include "appearance.h"
#include "application.h"
#include "draw.h"
#include "error.h"
#include "message_box.h"
#include "modMain.h"
#include "support/fake_speech.h"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>
#include <QTimer>

inline double nextFraction = 0.5; ///< what the next draws draw with

double board::randomFraction()
{
    return nextFraction;
}

/// The whole program in this process, from its start-up to its end, with a fake speech service: a hand that
/// plays, and an eye that sees what the room sees. The program's own timers tick only when the hand says so.
class Room : public QObject
{
public:
    /// `settings` is what the settings file holds when the program starts.
    explicit Room(const QByteArray &settings = {})
    {
        nextFraction = 0.5;
        const QString name = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
        QDir::current().mkdir(name);
        QFile file(name + '/' + name + ".ini");
        if (!settings.isEmpty() && file.open(QIODevice::WriteOnly))
            file.write(settings);
        file.close();
        speech::SpVoice::setSystemEngine(speech.factory());
        qApp->installEventFilter(this);
        answer();
        modMain::Main();
        for (QWidget *top : QApplication::topLevelWidgets()) {
            if (top->objectName() == "frmMain")
                window = qobject_cast<QMainWindow *>(top);
        }
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

    static void click(QWidget *control)
    {
        const QPoint place(control->width() - 4, control->height() - 4);
        QTest::mouseClick(control->window()->windowHandle(), Qt::LeftButton, {},
                          control->mapTo(control->window(), place));
    }
    /// Types where the focus is, "\r" for Enter.
    void type(const QString &text) const
    {
        for (const QChar c : text)
            hit(keyboard(), c == u'\r' ? Qt::Key_Return : Qt::Key(c.toUpper().unicode()), QString(c));
    }
    void strike(QKeyCombination keys) const
    {
        const QChar key = QChar(keys.key()).toLower();
        const bool isControl = keys.keyboardModifiers() & Qt::ControlModifier;
        hit(keyboard(), keys.key(), QString(isControl ? QChar(key.unicode() & 31) : key),
            keys.keyboardModifiers());
    }
    static void hit(QPointer<QWindow> at, Qt::Key key, const QString &text = {},
                    Qt::KeyboardModifiers held = {})
    {
        QTest::sendKeyEvent(QTest::Press, at, key, text, held);
        if (at)
            QTest::sendKeyEvent(QTest::Release, at, key, text, held);
    }
    QWindow *keyboard() const
    {
        QWindow *focused = QGuiApplication::focusWindow();
        return focused ? focused : window->windowHandle();
    }
    static void commit(const QString &text)
    {
        QInputMethodEvent event;
        event.setCommitString(text);
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }
    /// What happens when the time of a running timer is over.
    void tick(QTimer *timer)
    {
        QTimerEvent over(timer->timerId());
        m_ticking = timer;
        if (timer->isActive())
            QCoreApplication::sendEvent(timer, &over);
    }

    /// Plays a script, word by word:
    ///   33, 7-9   a click on a number, on some   p3, c25   on a pattern button, on a cell
    ///   cPause    on the control of that name   mnuHelp   a choice from a menu
    ///   'n33/     keys, / Enter, _ blank          s3, a     seconds of the countdown, steps of the animation
    ///   %25       the next draw's fraction      ~         until something is said
    ///   cboSec=5  a choice                      key=Alt+R a key with others held
    ///   "r        from an input method          hush      from now on the voice ends no text by itself:
    ///   .         it ended one                  gone      the service is lost
    ///   voice=9   the voice that was chosen
    /// A key behind a colon (33:Y) answers the box that comes; Escape does when none is given, or s or p,
    /// which first let the time go on or press the pause button, as a screen reader can, or e, when a failure
    /// is to be told.
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
                for (int i = 0; i < qMax(1, rest.toInt()); ++i)
                    tick(find<QTimer>(kind == "s" ? "Timer2" : "Timer1"));
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
            else if (kind == "key")
                strike(QKeySequence(rest.mid(1))[0]);
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
            if (!text.isEmpty())
                seen += what + text;
        };
        add(" ", textOf("RTB3"));
        add("/", textOf("RTB4"));
        add(" red ", red);
        add(" grey ", grey == red ? "" : grey.isEmpty() ? "none" : grey);
        add(" lit ", litCells(picture));
        const auto *animation = find<QTimer>("Timer1");
        add(" step ", animation->isActive() ? QString::number(animation->interval()) : "");
        add(" ", find<QLabel>("lblAutoCall")->text().replace("Auto Call In : ", "in "));
        const auto *pause = find<QPushButton>("cPause");
        add(" ", pause->isEnabled() ? pause->text() : "");
        add(" counts", find<QTimer>("Timer2")->isActive() ? "." : "");
        add(" entry ", entry()->text());
        add(" focus ", window->focusWidget() == entry() ? "" : window->focusWidget()->objectName());
        for (const char *name : {"frmBingo", "frmHelp", "frmAbout", "frmVoices"}) {
            for (const auto *other : window->findChildren<QWidget *>(name))
                add(" + ", other->isVisible() ? name : "");
        }
        for (; m_heard < speech.spoken.size(); ++m_heard)
            seen += "; " + QString(speech.spoken[m_heard]).remove(" -1 0");
        add("; ", std::exchange(boxes, {}).join("; "));
        return seen;
    }
    QLineEdit *entry() const { return window->centralWidget()->findChild<QLineEdit *>("Text1"); }

    QString textOf(const QString &name) const
    {
        return (u'.' + display(name)->toPlainText()).trimmed().mid(1); // blanks at the end are not seen
    }
    /// "7 12-15 33"
    static QString list(const QList<int> &numbers)
    {
        QString text;
        for (qsizetype i = 0, end = 0; i < numbers.size(); i = end) {
            for (end = i + 1; end < numbers.size() && numbers[end] == numbers[end - 1] + 1;)
                ++end;
            text += QString(i ? " %1" : "%1").arg(numbers[i]);
            if (end > i + 1)
                text += QString("-%1").arg(numbers[end - 1]);
        }
        return text;
    }
    QPoint placeOf(const QWidget *control, QPoint inside) const { return control->mapTo(window, inside); }
    /// The numbers of the large board whose every digit is red and nowhere black.
    QString redNumbers(const QImage &picture) const
    {
        static const QRegularExpression number("\\d+");
        QTextEdit *board = display("RTB2");
        QList<int> red;
        for (const auto &found : number.globalMatch(board->toPlainText())) {
            bool isRed = true;
            for (qsizetype at = found.capturedStart(); at < found.capturedEnd(); ++at) {
                QTextCursor cursor(board->document());
                cursor.setPosition(int(at) + 1);
                const QRect end = board->cursorRect(cursor);
                cursor.setPosition(int(at));
                const QRect digit(board->cursorRect(cursor).topLeft(), end.bottomLeft());
                const QImage cell = picture.copy(digit.translated(placeOf(board->viewport(), {})));
                isRed = isRed && has(cell, Qt::red) && !has(cell, Qt::black);
            }
            if (isRed)
                red += found.captured().toInt();
        }
        return list(red);
    }
    static bool has(const QImage &picture, const QColor &color)
    {
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixel(x, y) == color.rgb())
                    return true;
            }
        }
        return false;
    }
    QString greyNumbers(const QImage &picture) const
    {
        QList<int> grey;
        for (int n = 1; n <= 75; ++n) {
            if (picture.pixelColor(placeOf(find(QString("cButt(%1)").arg(n)), {4, 4})) == QColor("#A0A0A0"))
                grey += n;
        }
        return list(grey);
    }
    QString litCells(const QImage &picture) const
    {
        QString lit;
        for (int i = 1; i <= 25; ++i) {
            const QWidget *cell = find(QString("tDemo(%1)").arg(i));
            const QPoint corner = placeOf(cell, {cell->width() - 4, cell->height() - 4});
            if (picture.valid(corner) && picture.pixelColor(corner) == Qt::black)
                lit += QChar('a' + i - 1);
        }
        return lit;
    }

    FakeSpeech speech;
    QPointer<QMainWindow> window;
    QStringList boxes; ///< "title: text" of each since the last look

private:
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
        for (int i = 0; i < 5 && answer == "s"; ++i)
            tick(find<QTimer>("Timer2"));
        if (answer == "e")
            controls::reportError(window, {-2147221164, "No voice"});
        if (answer == "u")
            find<QAbstractButton>("chkAutoCall")->click();
        if (answer == "p")
            find<QPushButton>("cPause")->click();
        const Qt::Key key = answer == "Y"   ? Qt::Key_Y
                            : answer == "N" ? Qt::Key_N
                            : answer == "/" ? Qt::Key_Return
                                            : Qt::Key_Escape;
        hit(box->windowHandle(), key);
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
