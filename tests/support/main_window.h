#pragma once

#include "board/frmMain.h"
#include "board/numbers.h"
#include "platform/colors.h"
#include "platform/controls.h"
#include "platform/rich_text_box.h"
#include "platform/sp_voice.h"
#include "support/fake_sp_engine.h"
#include "voice/voice_choice.h"

#include <QApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <functional>
#include <vector>

/// A main window as start-up makes it, and the questions that tests ask of its controls.
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

    template <class Control>
    Control *find(const QString &name) const
    {
        auto *found = window.findChild<Control *>(name);
        if (!found)
            qFatal("no control %s", qPrintable(name));
        return found;
    }
    platform::ColorButton *number(int n) const
    {
        return find<platform::ColorButton>(QStringLiteral("cButt(%1)").arg(n));
    }
    platform::RichTextBox *display(const char *name) const
    {
        return find<platform::RichTextBox>(QString::fromLatin1(name));
    }
    platform::TextBox *entry() const { return find<platform::TextBox>(QStringLiteral("Text1")); }
    /// The window's focus is in the entry box, whether or not the window is the active one.
    bool entryHasFocus() const { return window.focusWidget() == entry(); }
    QPushButton *button(const char *name) const { return find<QPushButton>(QString::fromLatin1(name)); }
    QString caption(const char *name) const { return find<QLabel>(QString::fromLatin1(name))->text(); }

    void press(int n) const { QTest::mouseClick(number(n), Qt::LeftButton); }
    void press(const char *name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    void type(const QString &text) const { QTest::keyClicks(entry(), text); }
    void enter(const QString &text) const
    {
        entry()->setText(text);
        QTest::keyClick(entry(), Qt::Key_Return);
    }

    /// The numbers whose buttons have the called colour.
    std::vector<int> calledButtons() const
    {
        return numbersWhere(
            [this](int n) { return number(n)->backColor() == platform::colors::buttonShadow; });
    }
    /// The numbers that are red on the large board, every character of their cells.
    std::vector<int> redNumbers() const
    {
        const platform::RichTextBox *board = display("RTB2");
        return numbersWhere([board](int n) {
            bool red = true;
            for (int i = 0; i < board::cellWidth; ++i)
                red = red && board->colorAt(board::cellOffset(n) + i) == platform::colors::red;
            return red;
        });
    }

    /// What happens when the time of a running timer is over.
    static void fire(QTimer *timer)
    {
        QTimerEvent over(timer->timerId());
        QCoreApplication::sendEvent(timer, &over);
    }

    FakeSpeech speech;
    VoiceChoice voice;
    frmMain window{withSpeech(), nullptr};

private:
    /// The window's voices speak through the stand-in for the speech service.
    VoiceChoice &withSpeech()
    {
        platform::SpVoice::setSystemEngine(speech.factory());
        return voice;
    }

    static std::vector<int> numbersWhere(const std::function<bool(int)> &holds)
    {
        std::vector<int> found;
        for (int n = 1; n <= board::numberCount; ++n) {
            if (holds(n))
                found.push_back(n);
        }
        return found;
    }
};

/// Answers the next message box with `answer` and keeps what it said.
class Answer
{
public:
    explicit Answer(QMessageBox::StandardButton answer)
    {
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this, answer] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box)
                return;
            ++shown;
            text = box->text();
            title = box->windowTitle();
            owner = box->parentWidget();
            buttons = box->standardButtons();
            QTest::mouseClick(box->button(answer), Qt::LeftButton);
        });
        m_timer.start();
    }

    int shown = 0;
    QString text;
    QString title;
    QPointer<QWidget> owner;
    QMessageBox::StandardButtons buttons;

private:
    QTimer m_timer;
};
