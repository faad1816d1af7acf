#pragma once

#include "appearance.h"
#include "application.h"
#include "draw.h"
#include "fake_speech.h"
#include "modMain.h"
#include "rules.h"
#include "screen_awake.h"
#include "text_file.h"

#include <QtTest>
#include <QtWidgets>

#include <fstream>

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
    const bool isReadOut = widget && widget->hasFocus() && !widget->accessibleName().isEmpty();
    if ((event->type() == NameChanged && isReadOut) ||
        (event->type() == ObjectShow && source->role() == Notification))
        said += source->text(Name);
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    if (event->type() == Announcement)
        said += static_cast<QAccessibleAnnouncementEvent *>(event)->message();
#endif
}

/// The lines of a file; none where there is no file.
inline QStringList linesOf(const QString &path)
{
    return base::readTextFile(path).value_or("").split('\n', Qt::SkipEmptyParts);
}

/// Compares lines with those of a file, or writes them there.
inline void compare(const QStringList &seen, const QString &path)
{
    if (qEnvironmentVariableIsSet("WRITE"))
        std::ofstream(path.toStdString()) << seen.join('\n').toStdString() << '\n';
    QCOMPARE(seen, linesOf(path));
}

/// The whole program in this process, from its start-up to its end, with a fake speech service: a hand that
/// plays, and an eye that sees what the room sees. The program's own timers tick only when the hand says so.
class Room : public QObject
{
public:
    Room()
    {
        game::randomFraction = [this] { return m_fraction; };
        QFile::remove(modMain::SettingsPath);
        speech::SpVoice::setSystemEngine([] { return std::make_unique<FakeSpeech>(); });
        FakeSpeech::speaksByItself = true;
        qApp->installEventFilter(this);
        answer();
        window = modMain::Main();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        FakeSpeech::engine->open();
        said.clear();
    }
    /// Closes the main window, and with it the program.
    ~Room() override
    {
        QTimer::singleShot(0, window.get(), &QWidget::close);
        QCoreApplication::exec();
        window.reset();
        QVERIFY(!screenStaysOn && QFile::exists(modMain::SettingsPath));
    }

    /// The control that has the name, of the main window before others.
    template <class Control = QWidget>
    Control *find(const QString &name) const
    {
        return window->findChild<Control *>(name);
    }
    /// What a control shows: its text, and whether it is checked.
    static QString content(const QObject *control,
                           const QStringList &properties = {"plainText", "currentText", "text", "checked"})
    {
        QStringList found;
        for (const QString &name : properties)
            found += control->property(qPrintable(name)).toString().remove("false");
        return found.join(' ').simplified();
    }

    /// Plays a script, "enter 33, click cButt(33)", step by step by the rules where they are given.
    void play(const QString &script, Rules *rules = nullptr)
    {
        for (const QString &step : script.split(", ")) {
            const QString verb = step.section(' ', 0, 0), what = step.section(' ', 1);
            const QHash<QString, std::function<void()>> verbs{
                {"click", [&] { click(find(what)); }},
                {"type", [&] { type(what); }},
                {"enter", [&] { type(what + '\r'); }},
                {"key", [&] { key(what); }},
                {"size", [&] { click(find("iFontSize")), key("Ctrl+A"), type(what); }},
                {"choose", [&] { choose(find<QAction>(what)); }},
                {"close", [&] { find(what)->close(); }},
                {"voices", [&] { FakeSpeech::engine->open(); }},
                {"answers", [&] { m_answer = what; }},
                {"seconds", [&] { tick(find<QTimer>("Timer2"), what.toInt()); }},
                {"frames", [&] { tick(find<QTimer>("Timer1"), what.toInt()); }},
                {"halfhour", [&] { tick(find<QTimer>("afterCall")); }},
                {"draws", [&] { m_fraction = what.toDouble(); }},
                {"silence", [&] { FakeSpeech::speaksByItself = what == "over"; }},
                {"ends", [&] { FakeSpeech::spoken += "end", FakeSpeech::engine->ended(); }},
                {"failure", [&] { FakeSpeech::engine->failed(base::Error(-7, "it went away")); }},
                {"throws", [&] { QTimer::singleShot(0, this, [] { throw std::bad_alloc(); }); }},
                {"fails", [&] { QTimer::singleShot(0, this, [] { throw base::Error(-5, "no ink"); }); }},
                {"listen",
                 [&] {
                     QTimer::singleShot(0, this, [&] { play(what.split(" and ").join(", ")); });
                     find<QPushButton>("cListen")->click();
                 }},
                {"session", [&] { qApp->commitDataRequest(reinterpret_cast<QSessionManager &>(*this)); }},
            };
            verbs.value(verb, [&] { qFatal("no verb %s", qPrintable(step)); })();
            for (int i = 0; i < 50; ++i)
                keyboard();
            if (!rules)
                continue;
            rules->play(verb, what);
            const Facts seen = look(), expected = rules->facts();
            for (const QString &fact : expected.keys())
                QCOMPARE(step + ", " + fact + ": " + seen[fact], step + ", " + fact + ": " + expected[fact]);
        }
    }
    /// What the room sees now, what a screen reader finds, and what was heard since the last look.
    Facts look()
    {
        tick(find<QTimer>("naming"), 99);
        Facts seen;
        const QImage picture = window->grab().toImage();
        const QTextDocument *board = find<QTextEdit>("RTB2")->document();
        for (QWidget *control : window->findChildren<QWidget *>()) {
            if (control->window() != window.get())
                continue;
            auto *reader = QAccessible::queryAccessibleInterface(control);
            const QString name = reader->role() == QAccessible::StatusBar ? "state" : control->objectName();
            QString words =
                reader->text(control->inherits("QTextEdit") ? QAccessible::Description : QAccessible::Name);
            if (name.startsWith("cButt(") || name.startsWith("tDemo(")) {
                const auto number = board->find(content(control), 0, QTextDocument::FindWholeWords);
                words += ' ' + picture.pixelColor(control->mapTo(window.get(), QPoint(4, 4))).name();
                words += number.charFormat().foreground().color() == Qt::red ? " red" : "";
            }
            seen[name] = content(control);
            if (words != seen[name])
                seen[name + " in words"] = words;
        }
        for (const QWidget *top : QApplication::topLevelWidgets())
            seen[top->objectName()] = top->isVisible() ? "open" : "";
        for (const auto *timer : window->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly))
            seen[timer->objectName()] = timer->isActive() ? QString::number(timer->interval()) : "";
        seen.insert({
            {"points", QString::number(find("RTB2")->font().pointSizeF())},
            {"mnuShaddow", content(find<QObject>("mnuShaddow"))},
            {"focus", window->focusWidget()->objectName()},
            {"front", QApplication::activeWindow()->objectName()},
            {"screen", screenStaysOn ? "on" : ""},
            {"settings", linesOf(modMain::SettingsPath).join(' ').remove('\r')},
            {"spoken", std::exchange(FakeSpeech::spoken, {}).join(". ")},
            {"boxes", std::exchange(m_boxes, {}).join(". ")},
            {"said", std::exchange(said, {}).join(". ")},
        });
        return seen;
    }

    // ---- The hand
    /// The window that keys go to. Where a box was closed, a window manager gives it them.
    QWindow *keyboard()
    {
        for (qApp->processEvents(); !qApp->focusWindow(); qApp->processEvents())
            (m_front && m_front->isVisible() ? m_front.data() : window.get())->activateWindow();
        if (!QApplication::activeModalWidget())
            m_front = QApplication::activeWindow();
        return QGuiApplication::focusWindow();
    }
    void click(QWidget *control, QPoint place = {3, 3})
    {
        m_front = control->window();
        m_front->activateWindow();
        QTest::mouseClick(m_front->windowHandle(), Qt::LeftButton, {}, control->mapTo(m_front, place));
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
        QTest::keyClick(keyboard(), keys.key(), keys.keyboardModifiers());
    }
    /// Chooses from a menu.
    void choose(QAction *action)
    {
        auto *owner = action->associatedObjects().constFirst();
        auto *menu = qobject_cast<QMenu *>(owner);
        auto *bar = qobject_cast<QMenuBar *>(menu ? menu->parent() : owner);
        click(bar, bar->actionGeometry(menu ? menu->menuAction() : action).center());
        if (menu)
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
    }
    /// What happens when the time of a running timer is over.
    void tick(QTimer *timer, int times = 1)
    {
        for (; times > 0 && timer->isActive(); --times) {
            if (timer->isSingleShot())
                timer->stop();
            QMetaObject::invokeMethod(timer, "timeout");
        }
    }

    std::unique_ptr<QWidget> window;
    std::function<void(QWidget *)> onBox = [](QWidget *) {};

private:
    /// Answers each box that comes.
    void answer()
    {
        QTimer::singleShot(1, this, &Room::answer);
        auto *box = QApplication::activeModalWidget();
        if (!box || !QGuiApplication::focusWindow() || box == m_answered)
            return;
        m_answered = box;
        m_boxes += box->windowTitle() + ": " + box->property("text").toString().replace('\n', ' ');
        tick(find<QTimer>("Timer2"), 5); // The time stands still.
        onBox(box);
        const auto *notice = qobject_cast<QMessageBox *>(box);
        key(notice && notice->button(QMessageBox::Ok) ? "Escape" : m_answer);
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        return event->type() == QEvent::Timer && watched->inherits("QTimer") && watched->objectName() != "";
    }

    QPointer<QWidget> m_front, m_answered;
    QString m_answer = "Escape";
    QStringList m_boxes;
    double m_fraction = 0.5;
};

/// Runs the tests of an object in an application with a folder of its own, in which the program lies, too:
/// this program makes it, and starts itself in there.
inline int runInRoom(QObject &&test, int argc, char *argv[])
{
    app::Application application(argc, argv);
    const QString program = QCoreApplication::applicationFilePath();
    if (!program.endsWith("/Vellomir")) {
        const QTemporaryDir folder(program + "-XXXXXX");
        qputenv("AppData", folder.filePath("AppData").toLocal8Bit());
        QFile::copy(program, folder.filePath("Vellomir"));
        return QProcess::execute(folder.filePath("Vellomir"), QCoreApplication::arguments().mid(1));
    }
    QDir::setCurrent(QCoreApplication::applicationDirPath());
    std::ofstream("help.txt") << "Help";
    controls::applyAppearance(application);
    QApplication::setCursorFlashTime(0);
    return QTest::qExec(&test, argc, argv);
}

#define TEST_IN_ROOM(Test)                                                                                   \
    int main(int argc, char *argv[])                                                                         \
    {                                                                                                        \
        return runInRoom(Test(), argc, argv);                                                                \
    }
