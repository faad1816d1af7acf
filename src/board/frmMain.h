#pragma once

#include "announcement.h"
#include "buttons.h"
#include "card.h"
#include "combo_box.h"
#include "design_table.h"
#include "menu_bar.h"
#include "rich_text_box.h"
#include "screen_reader.h"
#include "text_box.h"

#include <QCheckBox>
#include <QLabel>
#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <optional>
#include <vector>

class frmBingo;

/// The caller's board: the record of the game and the window that shows it. Everything that changes the game
/// is a member of this class; the sections below are named after the files that hold their members.
///
/// Numbers run from 1 to 75, and so do the indexes of what belongs to a number. Places are twips in the
/// design and pixels in the window.
class frmMain : public QMainWindow
{
    Q_OBJECT

    // ---- board/frmMain.cpp: making the window ----------------------------------------------------
public:
    /// `voice` is what the voice options window chooses; it must outlive the window.
    explicit frmMain(voice::VoiceChoice &voice);
    ~frmMain() override;
    void BuildButts();

private:
    QWidget *buildClient();
    void buildPatternButtons();
    void setUpControls();
    void nameControls();
    void buildMenus();
    QTimer *buildTimer(const char *name, int milliseconds);
    void setTabOrderOfDesign();

    controls::ScreenReader *m_reader = new controls::ScreenReader(this);
    controls::MenuBar *m_menuBar = new controls::MenuBar(this);
    QWidget *m_client = buildClient();
    QLabel *lblCallCnt = controls::control<QLabel>(m_client, "lblCallCnt");
    QLabel *lblAutoCall = controls::control<QLabel>(m_client, "lblAutoCall");
    controls::TextBox *Text1 = controls::control<controls::TextBox>(m_client, "Text1");
    controls::ComboBox *iFontSize = controls::control<controls::ComboBox>(m_client, "iFontSize");
    controls::ComboBox *cboSec = controls::control<controls::ComboBox>(m_client, "cboSec");
    QPushButton *cmdClear = controls::control<QPushButton>(m_client, "cmdClear");
    QPushButton *cRandNum = controls::control<QPushButton>(m_client, "cRandNum");
    QPushButton *cPause = controls::control<QPushButton>(m_client, "cPause");
    QPushButton *cBingo = controls::control<QPushButton>(m_client, "cBingo");
    QCheckBox *chkAutoCall = controls::control<QCheckBox>(m_client, "chkAutoCall");
    QCheckBox *chkMakeVoiceCall = controls::control<QCheckBox>(m_client, "chkMakeVoiceCall");
    QAction *mnuSpeak = nullptr;
    QAction *mnuShaddow = nullptr;
    QAction *mnuExit = nullptr;
    QAction *mnuHelp = nullptr;
    QAction *mnuAbout = nullptr;

    // ---- board/frmMain_wiring.cpp: every road into the window ------------------------------------
    void wire();
    void wireGame();
    void wireMenus();
    void wireScreenReader();

    // ---- board/frmMain_lifecycle.cpp: load and unload, and what start-up puts into the window ----
public:
    /// The texts of the two settings, as they stand in `iFontSize` and `cboSec`.
    QString fontSizeText() const { return iFontSize->currentText(); }
    QString intervalText() const { return cboSec->currentText(); }
    /// Puts stored settings into the two boxes. An interval that is no entry of `cboSec` changes nothing.
    void applySettings(const QString &fontSize, const QString &interval);
    /// Empties the five displays and the countdown's label of what the design shows in them.
    void clearDisplays();

Q_SIGNALS:
    /// The window is being closed: save what is to be kept and end the program.
    void unloading();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void Form_Load();
    void Form_Unload();

    // ---- board/frmMain_layout.cpp: places that follow the window's size --------------------------
protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void placeOnScreen(QMargins frame);
    void watchScreens();
    void followScreen();
    void fit(QMargins frame);
    void layOut();
    QSize designSize() const;
    void rememberSize();
    void Form_Resize();

    double m_scale = 1.0;                 // of the design; below 1 where it would not fit into the work area
    double m_ratio = devicePixelRatioF(); // of the screen, when the window was last fitted to it
    QSize m_area;                         // the work area then
    QSize m_ownSize; // of the client area, where the user has given it another one than the design's
    bool m_isRefitDue = false; // the screen changed while the window was maximized or minimized
    bool m_isPlaced = false;   // the window was shown and put in its first place

    // ---- board/frmMain_calls.cpp: the record of the game: calls, un-calls, draws and clears ------
public:
    /// Calls number Index (1 to 75), or, when it counts as called, un-calls it after a question.
    void cButt_Click(int Index);

private:
    void cRandNum_Click();
    void cmdClear_Click();
    void callNumber(int n);
    void uncallNumber(int n);
    void clearBoard();
    std::vector<int> uncalledNumbers() const;
    /// The one writer of the called flag and the button's colour, which always agree.
    void markNumber(int n, bool called);
    void setCount(int count);

    game::FromOne<controls::ColorButton *, game::numberCount> cButt{};
    game::FromOne<bool, game::numberCount> iCalled{}; // called, or shadowed by the pattern
    game::FromOne<int, 5> iLastCalls{};               // the newest first; 0 an empty slot
    int iCallCnt = 0;                                 // the calls since the last clear

    // ---- board/frmMain_displays.cpp: the five displays, and the size of the large board ----------
public:
    void DrawBoards();
    void EditBoard();
    void editLastPress(int iButt);

private:
    void setDisplayFonts();
    void drawLetters();
    void drawButtonLetters();
    void iFontSize_Click();
    void iFontSize_KeyPress(int &KeyAscii);
    std::optional<double> fontSize() const;
    void redrawBoard();

    double m_fontSize = 33.0; // in points, of what is drawn
    controls::RichTextBox *RTB1 = controls::control<controls::RichTextBox>(m_client, "RTB1");
    controls::RichTextBox *RTB2 = controls::control<controls::RichTextBox>(m_client, "RTB2");
    controls::RichTextBox *RTB3 = controls::control<controls::RichTextBox>(m_client, "RTB3");
    controls::RichTextBox *RTB4 = controls::control<controls::RichTextBox>(m_client, "RTB4");
    controls::RichTextBox *RTB5 = controls::control<controls::RichTextBox>(m_client, "RTB5");

    // ---- board/frmMain_entry.cpp: numbers and commands typed into Text1 --------------------------
    void Text1_KeyPress(int &KeyAscii);
    void callEntry();

    // ---- board/frmMain_focus.cpp: where the next key goes ----------------------------------------
    void returnToEntry();
    void focusAfterCall();
    /// Moves the focus to the pause button while numbers are called automatically, else to the entry box.
    void focusByRule();
    void menuBar_Left();
    /// Moves the focus. A font size that was typed but not entered gives way to the one that is drawn.
    void focusOn(QWidget *control);
    /// Takes a key from the pause button where it is not for that: P pauses and plays as in the entry box,
    /// and what is typed while calls are paused goes there. True when the key has been used.
    bool typedAtPause(QKeyEvent &key);

    bool m_isTick = false;     // a tick of the countdown is running, and no action of the user
    bool m_focusIsDue = false; // for focusByRule, when the keyboard leaves the menu bar

    // ---- board/frmMain_countdown.cpp: automatic calling, pause and play; the screen stays on -----
    void chkAutoCall_Click();
    void cPause_Click();
    void Timer2_Timer();
    /// The one writer of the timer, the pause button and its caption, which always agree. Where it does not
    /// run, automatic calling is paused or off, as chkAutoCall says.
    void setAutoCall(bool runs);
    /// Keeps the screen on while numbers are called automatically, and for 30 minutes after each call.
    void keepScreenOn();

    int iAutoCallLeft = 0;                       // ticks to the next automatic draw
    QTimer *Timer2 = buildTimer("Timer2", 1000); // runs while numbers are called automatically and not paused
    QTimer *m_afterCall = buildTimer("afterCall", 30 * 60 * 1000); // runs from each call

    // ---- board/frmMain_speech.cpp: announcing a call, and reporting a failure --------------------
    void chkMakeVoiceCall_Click(bool checked);
    void Speak(const QString &text);
    void V_EndStream(int StreamNumber, const QVariant &StreamPosition);
    void ReportError(const base::Error &error);

    voice::Announcement m_announcement;

    // ---- board/frmMain_reader.cpp: what screen readers say by themselves, and what they find -------
    QString stateInWords() const;
    void sayAutoCall();
    void sayPattern(int id);
    void sayInterval();
    void sayChecked(const QString &caption, bool checked);
    void describeBoard();
    void describeCalls();
    void nameSoon();
    void nameByState(int left);

    QTimer *m_naming = buildTimer("naming", 100);

    // ---- board/frmMain_patterns.cpp: the pattern card; selection, animation, shadow of a pattern -
public:
    void BuildDemo();

private:
    void tDemo_Click(int Index);
    /// Selects pattern Index (1 to 21), or deselects it when it is the selected one.
    void cDemoButt_Click(int Index);
    /// Shows pattern `id` from its beginning, 0 for none. The numbers that it shadows count as called, no
    /// others.
    void selectPattern(int id);
    void Timer1_Timer();

    patterns::Card *m_card = nullptr;
    int iCurPattern = 0;   // 0 for none
    int iPatternFrame = 1; // what the next tick draws
    game::FromOne<QPushButton *, patterns::patternCount> cDemoButt{};
    QTimer *Timer1 = buildTimer("Timer1", 100);

    // ---- board/frmMain_windows.cpp: the windows beside this one ----------------------------------
    void mnuSpeak_Click();
    void mnuHelp_Click();
    void mnuAbout_Click();
    void cBingo_Click();
    void setReachable(bool isReachable);
    void closeWindows();

    voice::VoiceChoice &m_voiceChoice;
    QPointer<frmBingo> m_bingo; // null while closed
};
