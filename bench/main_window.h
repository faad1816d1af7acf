#pragma once

#include "modMain.h"
#include "rich_text_box.h"
#include "support/fake_speech.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

/// The program's main window, made by its start-up, whose voices speak through FakeSpeech.
class MainWindow
{
public:
    MainWindow()
    {
        speech::SpVoice::setSystemEngine([] { return std::make_unique<FakeSpeech>(); });
        m_program = modMain::Main();
        window = m_program.get();
        if (!QTest::qWaitForWindowExposed(window))
            qFatal("no main window");
    }

    template <class Control = QWidget>
    Control *find(const QString &name) const
    {
        auto *found = window->findChild<Control *>(name);
        if (!found)
            qFatal("no control %s", qPrintable(name));
        return found;
    }
    auto *number(int n) const { return find<QPushButton>(QString("cButt(%1)").arg(n)); }
    auto *display(const QString &name) const { return find<controls::RichTextBox>(name); }
    auto *button(const QString &name) const { return find<QPushButton>(name); }
    void press(int n) const { number(n)->click(); }
    void press(const QString &name) const { find<QAbstractButton>(name)->click(); }
    /// What happens when the time of a timer is over.
    static void fire(QTimer *timer)
    {
        QTimerEvent over(timer->timerId());
        QCoreApplication::sendEvent(timer, &over);
    }

    QWidget *window = nullptr;

private:
    std::unique_ptr<QWidget> m_program;
};
