// Presses everything at any time, and checks what must always hold: a game of 600 events from a new seed, or
// from the one in MONKEY_SEED.

#include "support/room.h"

#include <random>

class Monkey : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plays()
    {
        const auto given = qEnvironmentVariable("MONKEY_SEED", QString::number(std::random_device()()));
        qWarning("MONKEY_SEED=%s", qPrintable(given));
        m_chance.seed(given.toUInt());
        for (m_left = 600; m_left > 0;) { // The end of a program begins another.
            Room room;
            m_calls.clear();
            next(room);
            QVERIFY2(QTest::qWaitFor([&] { return !room.window || m_left <= 0; }, 120'000), "stuck");
        }
    }

private:
    /// Every event is begun by a timer of its own, so that they go on while a box is open or a sample plays.
    void next(Room &room)
    {
        if (!room.window || m_left <= 0)
            return;
        QTimer::singleShot(0, &room, [&] { next(room); });
        if (m_isPlaying && !QApplication::activeModalWidget() && !speech::SpVoice::isWaiting())
            return; // A button is pressed, and not released yet.
        check(room);
        --m_left;
        const QScopedValueRollback playing(m_isPlaying, true);
        playOne(room);
    }

    QString oneOf(const QStringList &list) { return list[qsizetype(m_chance() % unsigned(list.size()))]; }

    void playOne(Room &room)
    {
        static const QString words =
            "cRandNum cmdClear cPause cPause chkAutoCall chkAutoCall cBingo mnuHelp mnuAbout mnuSpeak "
            "mnuShaddow s s s3 a a . . gone hush %0 %50 %99 'r 'p '7 '12/ 'n33/ '_4/ 'x/ '/ "
            "key=Esc key=Tab key=Space key=Down";
        QStringList controls;
        for (const auto *control : room.window->findChildren<QWidget *>(QRegularExpression("^[^q]")))
            controls += control->isVisible() ? QStringList(control->objectName()) : QStringList();
        const QString step = oneOf({oneOf(words.split(' ')), oneOf(words.split(' ')), oneOf(controls)});
        if (!QGuiApplication::focusWindow())
            return room.window->activateWindow();
        if (step == "." && m_chance() % 2)
            room.speech.speaksByItself = true;
        if (step.startsWith("mnu") && QApplication::activeModalWidget())
            return;
        m_last += ' ' + step;
        room.play(step + oneOf({":Y", ":N", "", ":s", ":p", ":e"}));
    }

    void check(const Room &room)
    {
        demand(!room.boxes.contains("a box over a box"), "a box covers a box");
        const int count = room.find<QLabel>("lblCallCnt")->text().section(' ', -1).toInt();
        const QString text = room.textOf("RTB3") + ' ' + room.textOf("RTB4");
        const QStringList shown = text.split(' ', Qt::SkipEmptyParts);
        if (count != m_calls.size() && room.find<QComboBox>("iFontSize")->currentText() == "33") {
            const QImage picture = room.window->grab().toImage();
            demand(room.redNumbers(picture) == room.greyNumbers(picture), "board and buttons differ");
        }
        if (count <= 5) // All that was called is shown.
            m_calls.clear();
        m_calls = shown.mid(0, count - m_calls.size()) + m_calls;
        demand(count == m_calls.size() && shown == m_calls.mid(0, 5), "the last numbers are wrong");

        const bool isOn = room.find<QAbstractButton>("chkAutoCall")->isChecked();
        const auto *pause = room.find<QPushButton>("cPause");
        const bool runs = isOn && pause->text() == "Pause";
        demand(room.find<QTimer>("Timer2")->isActive() == runs, "the countdown is not as its button says");
        demand(pause->isEnabled() == isOn, "the pause button is not enabled as it should be");
        demand(runs || room.find<QLabel>("lblAutoCall")->text() == (isOn ? "Paused" : ""),
               "the countdown's label is wrong");
    }

    void demand(bool holds, const char *otherwise) const
    {
        if (!holds)
            qFatal("%s, after %s", otherwise, qPrintable(m_last.right(200)));
    }

    std::mt19937 m_chance;
    int m_left = 0;
    bool m_isPlaying = false;
    QStringList m_calls; // the newest first
    QString m_last;
};

int main(int argc, char *argv[])
{
    return runInRoom<Monkey>(argc, argv);
}

#include "monkey.moc"
