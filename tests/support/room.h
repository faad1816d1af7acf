#pragma once

#include "appearance.h"
#include "application.h"
#include "draw.h"
#include "error.h"
#include "modMain.h"
#include "screen_awake.h"
#include "support/fake_speech.h"
#include "support/rules.h"

#include <QtTest>
#include <QtWidgets>

#include <unistd.h>

inline bool screenStaysOn = false;
inline QStringList said; ///< to a screen reader

void os::keepScreenOn(bool on)
{
    screenStaysOn = on;
}

/// What the program tells screen readers comes here. Qt passes it on only where one runs.
void QAccessible::updateAccessibility(QAccessibleEvent *event)
{
    QAccessibleInterface *source = event->accessibleInterface();
    const auto *widget = qobject_cast<QWidget *>(event->object());
    const bool isNamed = widget && widget->hasFocus() && !widget->accessibleName().isEmpty();
    if (event->type() == ObjectShow && source->role() == Notification)
        said += source->text(Name);
    if (event->type() == NameChanged && isNamed)
        said += "its name: " + source->text(Name);
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    if (event->type() == Announcement)
        said += static_cast<QAccessibleAnnouncementEvent *>(event)->message();
#endif
}

inline void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

/// Where the pixels of a kind are in a place of a picture.
template <class Kind>
QRect ink(const QImage &picture, const QRect &place, const Kind &isMeant)
{
    QRect found;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x)
            found |= picture.valid(x, y) && isMeant(picture.pixelColor(x, y)) ? QRect(x, y, 1, 1) : QRect();
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
        game::randomFraction = [this] { return m_fraction; };
        if (!hasSettings && !modMain::SettingsPath.isEmpty())
            QFile::remove(modMain::SettingsPath);
        speech::SpVoice::setSystemEngine(speech.factory());
        qApp->installEventFilter(this);
        answer();
        m_program = modMain::Main();
        window = static_cast<QMainWindow *>(m_program.get());
        QVERIFY(QTest::qWaitForWindowActive(window));
        said.clear();
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
        QVERIFY(!screenStaysOn);
    }

    /// The control of the main window that has the name, or else of another.
    template <class Control = QWidget>
    Control *find(const QString &name) const
    {
        auto *found = window->centralWidget()->findChild<Control *>(name);
        found = found ? found : window->findChild<Control *>(name);
        return found ? found : (qFatal("no control %s", qPrintable(name)), nullptr);
    }
    QTextEdit *display(const QString &name) const { return find<QTextEdit>(name); }
    QPoint placeOf(const QWidget *control, QPoint inside) const { return control->mapTo(window, inside); }
    /// What a control shows: its text, and whether it is checked.
    static QString content(const QObject *control)
    {
        const char *texts[] = {"plainText", "currentText", "text"};
        QString text;
        for (const char *name : texts)
            text = control->property(name).isValid() ? control->property(name).toString() : text;
        const bool isCheckable = control->property("checkable").toBool();
        return isCheckable ? (control->property("checked").toBool() ? "on" : "off") : text.remove('&');
    }

    /// Plays a script, "enter 33, click cButt(33): Yes", step by step by the rules. Answers how what is seen
    /// differs from them, or nothing.
    QString play(const QString &script, Rules &rules)
    {
        for (const QString &step : script.split(", ")) {
            play(step);
            rules.play(Step(step));
            const Facts expected = rules.facts();
            (void)QTest::qWaitFor([&] { return speech.spoken.join(". ") == expected["spoken"]; });
            const Facts seen = look();
            QString differences;
            for (const QString &fact : expected.keys())
                differences += seen[fact] == expected[fact]
                                   ? ""
                                   : "\n  " + fact + " is " + seen[fact] + "\n  and not " + expected[fact];
            if (!differences.isEmpty())
                return "after " + step + differences;
        }
        return "";
    }
    void play(const QString &script);
    Facts look();
    bool isRed(const QImage &picture, int n) const;

    // ---- The hand
    /// The window that keys go to. Where a box was closed, a window manager gives it them.
    QWindow *keyboard()
    {
        QCoreApplication::processEvents();
        while (!QGuiApplication::focusWindow() && window) {
            (m_front && m_front->isVisible() ? m_front.data() : window.data())->activateWindow();
            QCoreApplication::processEvents();
        }
        if (!QApplication::activeModalWidget())
            m_front = QApplication::activeWindow();
        return QGuiApplication::focusWindow();
    }
    void click(QWidget *control, QPoint place, Qt::MouseButton button = Qt::LeftButton)
    {
        keyboard();
        m_front = control->window();
        m_front->activateWindow();
        QTest::mouseClick(m_front->windowHandle(), button, {}, control->mapTo(m_front, place));
    }
    void click(QWidget *control, Qt::MouseButton button = Qt::LeftButton)
    {
        const bool holdsText = control->inherits("QComboBox") || control->inherits("QLineEdit");
        click(control, holdsText ? control->rect().bottomRight() - QPoint(3, 3) : QPoint(3, 3), button);
    }
    /// Presses the mouse on a control, and releases it elsewhere.
    void slip(QWidget *control)
    {
        keyboard();
        QWindow *under = control->window()->windowHandle();
        QTest::mousePress(under, Qt::LeftButton, {}, control->mapTo(control->window(), QPoint(3, 3)));
        QTest::mouseRelease(under, Qt::LeftButton, {}, {1, under->height() - 2});
    }
    void type(const QString &text)
    {
        for (const QChar sign : text) {
            const auto code = sign == '\r' ? Qt::Key_Return : Qt::Key(sign.toUpper().unicode());
            QTest::sendKeyEvent(QTest::Click, keyboard(), code, sign, {});
            QThread::msleep(1); // else the program takes the next for a repeat of a held key
        }
    }
    /// Presses one key, with others held: "Alt+F4".
    void key(const QString &name)
    {
        const QKeyCombination keys = QKeySequence(name)[0];
        const bool isControl = keys.keyboardModifiers() & Qt::ControlModifier;
        const QString sign = keys.key() < 128 ? QChar(keys.key() & (isControl ? 31 : 127)) : QString();
        QTest::sendKeyEvent(QTest::Click, keyboard(), keys.key(), sign, keys.keyboardModifiers());
    }
    /// Chooses from a menu, a list that drops down, or a list, or sets a slider.
    void choose(const QString &name, const QString &value)
    {
        if (auto *action = window->findChild<QAction *>(name)) {
            auto *owner = action->associatedObjects().constFirst();
            auto *menu = qobject_cast<QMenu *>(owner);
            auto *bar = qobject_cast<QMenuBar *>(menu ? menu->parent() : owner);
            click(bar, bar->actionGeometry(menu ? menu->menuAction() : action).center());
            if (menu)
                QTest::mouseClick(menu->windowHandle(), Qt::LeftButton, {},
                                  menu->actionGeometry(action).center());
        } else if (auto *combo = qobject_cast<QComboBox *>(find(name))) {
            click(combo);
            combo->view()->setCurrentIndex(combo->model()->index(combo->findText(value), 0));
            QTest::keyClick(combo->view(), Qt::Key_Return);
        } else {
            const char *property = name == "List1" ? "currentRow" : "value";
            QVERIFY(QTest::qWaitFor([&] {
                return find(name)->setProperty(property, value) && find(name)->property(property) == value;
            }));
        }
        keyboard();
    }
    void clearFontSize()
    {
        click(find<QComboBox>("iFontSize")->lineEdit());
        key("Ctrl+A");
        key("Del");
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

    FakeSpeech speech;
    QPointer<QMainWindow> window;
    std::function<void(QWidget *)> onBox = [](QWidget *) {};

private:
    /// Answers each box that comes.
    void answer()
    {
        QTimer::singleShot(1, this, &Room::answer);
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        if (box != m_answered) {
            m_boxes +=
                m_answered && m_answered->isVisible() ? QStringList("a box over a box") : QStringList();
            m_answered = box;
            m_rounds = 0;
            QMap<int, QString> captions;
            for (auto *button : box->buttons())
                captions[button->x()] = content(button) + (button == box->defaultButton() ? "!" : "");
            const char *icon = QMetaEnum::fromType<QMessageBox::Icon>().valueToKey(box->icon());
            m_boxes += QString("%1: %2 (%3: %4)")
                           .arg(box->windowTitle(), box->text().replace('\n', ' '), icon,
                                QStringList(captions.values()).join(", "));
            tick(find<QTimer>("Timer2"), 5); // The time stands still.
            onBox(box);
        }
        const QMap<QString, Qt::Key> keys{{"Yes", Qt::Key_Y}, {"No", Qt::Key_N}, {"Enter", Qt::Key_Return}};
        if (m_rounds++ % 500 == 0) // The second of two keys of one time is lost.
            QTest::keyClick(box->windowHandle(),
                            keys.value(box->button(QMessageBox::Yes) ? m_answer : "", Qt::Key_Escape));
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        return event->type() == QEvent::Timer &&
               (watched->objectName().startsWith("Timer") || watched->objectName() == "naming") &&
               std::exchange(m_ticking, nullptr) != watched;
    }

    std::unique_ptr<QWidget> m_program;
    QPointer<QWidget> m_front;
    QPointer<QMessageBox> m_answered;
    QString m_answer;
    QStringList m_boxes;
    QObject *m_ticking = nullptr;
    double m_fraction = 0.5;
    int m_rounds = 0;
};

inline void Room::play(const QString &script)
{
    for (const QString &text : script.split(", ")) {
        const Step step(text);
        const auto control = [&] {
            return step.name == "frmBingo" ? find("frmBingo")->findChild<QTextEdit *>() : find(step.name);
        };
        m_answer = step.answer;
        const QHash<QString, std::function<void()>> verbs{
            {"click", [&] { click(control()); }},
            {"rightclick", [&] { click(control(), Qt::RightButton); }},
            {"slip", [&] { slip(control()); }},
            {"middleclick", [&] { click(control(), Qt::MiddleButton); }},
            {"type", [&] { type(step.what); }},
            {"enter", [&] { type(step.what + '\r'); }},
            {"key", [&] { key(step.what); }},
            {"font", [&] { clearFontSize(), type(step.what); }},
            {"choose", [&] { choose(step.name, step.value); }},
            {"close", [&] { control()->window()->close(); }},
            {"seconds", [&] { tick(find<QTimer>("Timer2"), step.what.toInt()); }},
            {"frames", [&] { tick(find<QTimer>("Timer1"), step.what.toInt()); }},
            {"halfhour", [&] { tick(find<QTimer>("afterCall")); }},
            {"draws", [&] { m_fraction = step.what.toDouble(); }},
            {"waits", [&] { speech.speaksByItself = false; }},
            {"ends", [&] { speech.engine->ended(); }},
            {"fails",
             [&] {
                 speech.engine->failed({-7, "it went away"});
             }},
        };
        verbs.value(step.verb == "service" ? step.what : step.verb,
                    [&] { qFatal("no verb %s", qPrintable(text)); })();
    }
}

/// Whether a number is red on the large board: what is seen of it, or the letters' colour where it is not.
inline bool Room::isRed(const QImage &picture, int n) const
{
    const QTextEdit *board = display("RTB2");
    QTextCursor cell(board->document());
    cell.setPosition(3 * (n - 1) + 2 * ((n - 1) / 15));
    const QRect start = board->cursorRect(cell);
    cell.movePosition(QTextCursor::Right, QTextCursor::KeepAnchor, n < 10 ? 1 : 2);
    const QRect place = start | board->cursorRect(cell).translated(-2, 0),
                seen = place.translated(placeOf(board->viewport(), {}));
    if (!board->viewport()->rect().contains(place))
        return cell.charFormat().foreground().color() == Qt::red;
    const bool isRed =
        ink(picture, seen, [](const QColor &c) { return c.red() > 230 && c.green() < 120; }).isValid();
    const bool isBlack = ink(picture, seen, [](const QColor &c) { return c.red() < 200; }).isValid();
    if (isRed == isBlack || cell.selectedText() != QString::number(n))
        qWarning("%d is neither red nor black", n);
    return isRed && !isBlack;
}

/// What the room sees now, what a screen reader finds, and what was heard since the last look.
inline Facts Room::look()
{
    for (int i = 0; i < 50; ++i)
        keyboard();
    tick(find<QTimer>("naming"), 99);
    Facts seen;
    const QImage picture = window->grab().toImage();
    const auto paint = [&](const QString &name, int i) {
        const QWidget *control = find(name.arg(i));
        return picture.pixelColor(placeOf(control, name[0] == 't' ? control->rect().center() : QPoint(4, 4)));
    };
    for (QWidget *control : window->findChildren<QWidget *>()) {
        if (control->window() != window)
            continue;
        auto *reader = QAccessible::queryAccessibleInterface(control);
        const bool isBar = reader->role() == QAccessible::StatusBar;
        const QString name = isBar ? "state" : control->objectName();
        const bool isDisplay = control->inherits("QTextEdit");
        seen[name + " in words"] = reader->text(isDisplay ? QAccessible::Description : QAccessible::Name);
        seen[name] = content(control);
    }
    seen["RTB4"] = ('.' + seen["RTB4"]).trimmed().mid(1); // blanks at the end are not seen
    const auto *animation = find<QTimer>("Timer1");
    QStringList open;
    for (const QWidget *top : QApplication::topLevelWidgets()) {
        if (top->isVisible() && top->objectName().startsWith("frm"))
            open += top->objectName() + (top->isActiveWindow() ? "*" : "");
    }
    open.sort();
    seen.insert({
        {"red", Rules::where([&](int n) { return isRed(picture, n); })},
        {"grey", Rules::where([&](int n) { return paint("cButt(%1)", n) == QColor("#A0A0A0"); })},
        {"black", Rules::where([&](int i) { return paint("tDemo(%1)", i) == Qt::black; }, 25)},
        {"next form", animation->isActive() ? QString::number(animation->interval()) : ""},
        {"countdown", find<QTimer>("Timer2")->isActive() ? "runs" : "stands"},
        {"points", QString::number(display("RTB2")->font().pointSizeF())},
        {"mnuShaddow", content(window->findChild<QAction *>("mnuShaddow"))},
        {"focus", window->focusWidget()->objectName()},
        {"screen", screenStaysOn ? "on" : ""},
        {"windows", open.join(' ')},
        {"boxes", std::exchange(m_boxes, {}).join(". ")},
        {"said", std::exchange(said, {}).join(". ")},
        {"spoken", std::exchange(speech.spoken, {}).join(". ")},
    });
    return seen;
}

/// Runs the tests of an object in an application with a folder of its own, in which the program lies, too:
/// first this program makes it, then the same one in there.
template <class Test>
int runInRoom(int argc, char *argv[])
{
    const QFileInfo program(argv[0]);
    QDir folder = program.absoluteDir();
    if (!folder.path().endsWith(".room")) {
        QTemporaryDir made(program.absoluteFilePath() + "-XXXXXX.room");
        made.setAutoRemove(false);
        QByteArray path = made.filePath(program.fileName()).toLocal8Bit();
        return link(std::exchange(argv[0], path.data()), path) == 0 ? execv(path, argv) : 1;
    }
    QDir::setCurrent(folder.path());
    writeFile("help.txt", "Help");
    qputenv("AppData", folder.filePath("AppData").toLocal8Bit());
    app::Application application(argc, argv);
    QApplication::setApplicationName("Vellomir");
    controls::applyAppearance(application);
    QApplication::setCursorFlashTime(0);
    Test test;
    const int failed = QTest::qExec(&test, argc, argv);
    folder.removeRecursively();
    return failed;
}
