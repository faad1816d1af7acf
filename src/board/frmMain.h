#pragma once

#include "error.h"

#include <QCheckBox>
#include <QMainWindow>
#include <QPointer>
#include <QPushButton>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

class QAction;
class QTimer;
class frmBingo;
class frmHelp;
class frmVoices;
struct VoiceChoice;

namespace patterns {
class Grid;
struct Pattern;
} // namespace patterns

namespace controls {
class ColorBox;
class ColorButton;
class ComboBox;
class Label;
class RichTextBox;
class TextBox;
} // namespace controls

namespace speech {
class SpVoice;
} // namespace speech

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
    explicit frmMain(VoiceChoice &voice, QWidget *parent = nullptr);
    ~frmMain() override;

private:
    void buildControls();
    void buildPatternButtons();
    void buildMenus();
    QTimer *buildTimer(const char *name, int milliseconds);
    void setDesignFonts();
    void setTabOrderOfDesign();
    QString controlName(const char *array, int index) const;

    QWidget *m_client = nullptr;
    controls::Label *lblCallCnt = nullptr;
    controls::Label *lblAutoCall = nullptr;
    controls::TextBox *Text1 = nullptr;
    controls::ComboBox *iFontSize = nullptr;
    controls::ComboBox *cboSec = nullptr;
    QPushButton *cmdClear = nullptr;
    QPushButton *cRandNum = nullptr;
    QPushButton *cPause = nullptr;
    QPushButton *cBingo = nullptr;
    QCheckBox *chkAutoCall = nullptr;
    QCheckBox *chkMakeVoiceCall = nullptr;
    QAction *mnuSpeak = nullptr;
    QAction *mnuShaddow = nullptr;
    QAction *mnuExit = nullptr;
    QAction *mnuHelp = nullptr;
    QAction *mnuAbout = nullptr;

    // ---- board/frmMain_wiring.cpp: every road into the window ------------------------------------
private:
    void wire();

    // ---- board/frmMain_lifecycle.cpp: load, unload, and the size of the large board --------------
public:
    /// The texts of the two settings, as they stand in `iFontSize` and `cboSec`.
    QString fontSizeText() const;
    QString intervalText() const;
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
    void iFontSize_Click();
    void iFontSize_KeyPress(int &KeyAscii);
    double drawnFontSize();

    double m_lastFontSize = 33.0;

    // ---- board/frmMain_layout.cpp: places that follow the window's size --------------------------
protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void placeOnScreen(QMargins frame);
    void Form_Resize();

    // ---- board/frmMain_buttons.cpp: the 75 number buttons and the called flags -------------------
public:
    void BuildButts();
    /// True when number `n`, 1 to 75, is called or shadowed.
    bool isCalled(int n) const { return iCalled.at(static_cast<std::size_t>(n)) != 0; }

private:
    /// The one writer of the called flag and the button's colour, which always agree.
    void markNumber(int n, bool called);
    void markAll(bool called);
    controls::ColorButton *cButt(int n) const { return m_cButt[static_cast<std::size_t>(n)]; }

    std::array<std::int16_t, 76> iCalled{}; // 1 to 75: 1 called or shadowed, 0 not
    std::array<controls::ColorButton *, 76> m_cButt{};

    // ---- board/frmMain_calls.cpp: calling and un-calling a number --------------------------------
public:
    /// Calls number Index (1 to 75), or, when it counts as called, un-calls it after a question.
    void cButt_Click(int Index);
    /// The calls since the last clear.
    int callCount() const { return iCallCnt; }

private:
    void callNumber(int n);
    void uncallNumber(int n);
    void showCount();
    bool autoCallRuns() const;
    void focusAfterCall();

    int iCallCnt = 0;

    // ---- board/frmMain_displays.cpp: the five displays -------------------------------------------
public:
    void DrawBoards();
    void EditBoard();
    void editLastPress(int iButt);
    /// The last calls, `k` from 1, the newest, to 5; 0 where there is none.
    int lastCall(int k) const { return iLastCalls.at(static_cast<std::size_t>(k)); }

private:
    void drawLetters();
    void drawButtonLetters();

    std::array<std::int16_t, 6> iLastCalls{}; // 1 to 5, the newest first; 0 an empty slot
    controls::RichTextBox *RTB1 = nullptr;
    controls::RichTextBox *RTB2 = nullptr;
    controls::RichTextBox *RTB3 = nullptr;
    controls::RichTextBox *RTB4 = nullptr;
    controls::RichTextBox *RTB5 = nullptr;

    // ---- board/frmMain_entry.cpp: numbers and commands typed into Text1 --------------------------
private:
    void Text1_KeyPress(int &KeyAscii);
    void callEntry();
    void returnToEntry();

    // ---- board/frmMain_draw.cpp: the random draw -------------------------------------------------
private:
    void cRandNum_Click();
    bool boardIsFull() const;

    // ---- board/frmMain_commands.cpp: clear, pause and play, Bingo --------------------------------
private:
    void cPause_Click();
    void cmdClear_Click();
    void clearBoard();
    void cBingo_Click();

    QPointer<frmBingo> m_frmBingo;

    // ---- board/frmMain_countdown.cpp: automatic calling ------------------------------------------
private:
    void chkAutoCall_Click();
    void Timer2_Timer();

    int iAutoCallLeft = 0; // ticks to the next automatic draw
    QTimer *Timer2 = nullptr;

    // ---- board/frmMain_speech.cpp: announcing a call, and the choice of a voice ------------------
private:
    void createVoice();
    void Speak(const QString &text);
    void V_EndStream(int StreamNumber, const QVariant &StreamPosition);
    void mnuSpeak_Click();

    VoiceChoice &m_voiceChoice;
    std::unique_ptr<speech::SpVoice> V; // null where no speech service is installed
    int iSayCount = 0;                  // 2 while a follow-up is being spoken, else 1
    QString sCallPhrase;                // what is being said of the current call
    QPointer<frmVoices> m_frmVoices;

    // ---- board/frmMain_errors.cpp: reporting a failure ---------------------------------------------
private:
    void ReportError();

    std::optional<files::Error> m_pendingError;

    // ---- board/frmMain_card.cpp: the pattern card ---------------------------------------------
public:
    void BuildDemo();

private:
    void tDemo_Click(int Index);
    void paintCell(int index, bool lit);
    void paintCard(const patterns::Grid &grid);
    controls::ColorBox *tDemo(int index) const { return m_tDemo[static_cast<std::size_t>(index)]; }

    std::array<controls::ColorBox *, 26> m_tDemo{}; // 1 to 25

    // ---- board/frmMain_patterns.cpp: selection, animation and shadow of a pattern -------------
private:
    /// Selects pattern Index (1 to 21), or deselects it when it is the selected one. 0 when none is.
    void cDemoButt_Click(int Index);
    void Timer1_Timer();
    void selectPattern(int id);
    void applyShadow(const patterns::Pattern &pattern);
    QPushButton *cDemoButt(int index) const { return m_cDemoButt[static_cast<std::size_t>(index)]; }

    int iCurPattern = 0;                         // 0 for none
    int iPatternFrame = 0;                       // what the next tick draws, from 1
    std::array<QPushButton *, 22> m_cDemoButt{}; // 1 to 21
    QTimer *Timer1 = nullptr;

    // ---- board/frmMain_windows.cpp: the windows beside this one --------------------------------
private:
    void mnuHelp_Click();
    void mnuAbout_Click();
    void closeWindows();

    QPointer<frmHelp> m_help; // null while closed
    QPointer<QWidget> m_about;
};
