#pragma once

#include <QWidget>

class QTimer;

namespace controls {
class RichTextBox;
class TextBox;
} // namespace controls

/// The word BINGO in very large letters, laid over the main window, that pulse and change their colour until
/// the window is clicked. Sizes of letters are in points; letters too wide for the window are narrowed.
/// White and a colour take turns every 250 ms: never faster, since quicker flashes can make people ill.
class frmBingo : public QWidget
{
    Q_OBJECT

public:
    explicit frmBingo(QWidget *owner);
    /// Starts the flashing.
    void Form_Load();
    /// Lays it over all of the owner, its frame too. On Wayland, where no window can say where it wants to
    /// be, it is a part of the owner and leaves the frame free.
    void cover();
    /// Shows the word as it looks until the first tick.
    void fill();

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool focusNextPrevChild(bool) override { return true; } // the focus stays, also in a part of the owner
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setWord(double points);
    void Form_Resize();
    void Timer1_Timer();
    void RTB1_Click() { close(); }

    bool bFlash = false; // the word is white
    int iFlashStep = 0;  // 0 to 6
    double m_points = 0.0;
    controls::RichTextBox *RTB1 = nullptr;
    controls::TextBox *Text1 = nullptr;
    QTimer *Timer1 = nullptr;
};
