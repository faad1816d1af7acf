#pragma once

#include <QWidget>

class QTimer;

namespace controls {
class RichTextBox;
class TextBox;
} // namespace controls

/// The announcement that is laid over the main window when a player claims BINGO: the word in very large
/// letters that pulse and change their colour until the window is clicked. It has no border and knows nothing
/// of the game. A size of its letters is in points; letters that are too wide for the window are narrowed.
///
/// White and a colour take turns every 250 ms, two flashes a second: never faster, for the sake of people
/// whom quicker flashes can make ill.
class frmBingo : public QWidget
{
    Q_OBJECT

public:
    explicit frmBingo(QWidget *owner);
    /// Starts the flashing.
    void Form_Load();
    /// Lays the window over `area` of the screen and puts the word in, as it stands until the next tick.
    void fill(const QRect &area);

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setWord(double points);
    void Form_Resize();
    void Timer1_Timer();
    void RTB1_Click();

    bool bFlash = false; // the next tick shows white
    int iFlashStep = 0;  // 0 to 6
    double m_points = 0.0;
    controls::RichTextBox *RTB1 = nullptr;
    controls::TextBox *Text1 = nullptr;
    QTimer *Timer1 = nullptr;
};
