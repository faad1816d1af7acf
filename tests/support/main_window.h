#pragma once

#include "appearance.h"
#include "buttons.h"
#include "combo_box.h"
#include "frmMain.h"
#include "label.h"
#include "numbers.h"
#include "rich_text_box.h"
#include "sp_voice.h"
#include "support/fake_sp_engine.h"
#include "text_box.h"

#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

/// A main window as start-up makes it, whose voices speak through `speech`, and the questions that tests ask
/// of its controls.
class MainWindow
{
public:
    MainWindow()
    {
        window.clearDisplays();
        window.BuildButts();
        window.DrawBoards();
        window.BuildDemo();
        window.resize(1282, 674 + window.menuBar()->sizeHint().height()); // more than the test's screen has
        window.show();
        QApplication::setActiveWindow(&window);
        [[maybe_unused]] const bool exposed = QTest::qWaitForWindowExposed(&window);
    }

    template <class Control = QWidget>
    Control *find(const QString &name) const
    {
        auto *found = window.findChild<Control *>(name);
        if (!found)
            qFatal("no control %s", qPrintable(name));
        return found;
    }
    auto *number(int n) const { return find<controls::ColorButton>(QString("cButt(%1)").arg(n)); }
    auto *cell(int i) const { return find<controls::ColorBox>(QString("tDemo(%1)").arg(i)); }
    auto *display(const QString &name) const { return find<controls::RichTextBox>(name); }
    auto *entry() const { return find<controls::TextBox>("Text1"); }
    auto *button(const QString &name) const { return find<QPushButton>(name); }
    auto *timer(const QString &name) const { return find<QTimer>(name); }
    QString caption(const QString &name) const { return find<QLabel>(name)->text(); }
    /// The window's focus is in the entry box, whether or not the window is the active one.
    bool entryHasFocus() const { return window.focusWidget() == entry(); }

    static void click(QWidget *control) { QTest::mouseClick(control, Qt::LeftButton, {}, QPoint(6, 6)); }
    void press(int n) const { click(number(n)); }
    void press(const QString &name) const { click(find(name)); }
    void choose(const QString &command) const { find<QAction>(command)->trigger(); }
    void enter(const QString &text) const
    {
        entry()->setText(text);
        QTest::keyClick(entry(), Qt::Key_Return);
    }
    /// What happens when the time of a timer is over, so many times.
    void tick(const QString &name, int times = 1) const
    {
        for (int i = 0; i < times; ++i)
            fire(timer(name));
    }
    static void fire(QTimer *timer)
    {
        QTimerEvent over(timer->timerId());
        QCoreApplication::sendEvent(timer, &over);
    }

    /// The numbers whose buttons have the called colour.
    QString called() const
    {
        return numbersWhere(
            [this](int n) { return number(n)->backColor() == controls::colors::buttonShadow; });
    }
    /// The numbers that are red on the large board, every character of their cells.
    QString red() const
    {
        const auto isRed = [this](int at) { return display("RTB2")->colorAt(at) == controls::colors::red; };
        return numbersWhere([&](int n) {
            const int at = game::cellOffset(n);
            return isRed(at) && isRed(at + 1) && isRed(at + 2);
        });
    }
    /// All that the audience sees of the calls: "count|current|past|red numbers".
    QString seen() const
    {
        return caption("lblCallCnt").remove("Balls Called: ") + '|' + display("RTB3")->text() + '|' +
               display("RTB4")->text() + '|' + red();
    }

    FakeSpeech speech;
    voice::VoiceChoice voice;
    frmMain window{(speech::SpVoice::setSystemEngine(speech.factory()), voice), nullptr};

private:
    template <class Condition>
    static QString numbersWhere(Condition holds)
    {
        QStringList found;
        for (int n = 1; n <= game::numberCount; ++n) {
            if (holds(n))
                found += QString::number(n);
        }
        return found.join(' ');
    }
};

/// Answers every message box with `answer`; `said` keeps "title|text" of each.
class Answer
{
public:
    explicit Answer(QMessageBox::StandardButton answer)
    {
        m_timer.callOnTimeout([this, answer] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                said += box->windowTitle() + '|' + box->text();
                owner =
                    box->parentWidget() && box->parentWidget()->isVisible() ? box->parentWidget() : nullptr;
                MainWindow::click(box->button(answer));
            }
        });
        m_timer.start(1);
    }

    QStringList said;
    QPointer<QWidget> owner; ///< of the last one, when it is on screen

private:
    QTimer m_timer;
};
