#include "frmMain.h"

#include "catalogue.h"

using controls::ComboBox;
using controls::TextBox;

/// The number buttons and the cells are wired where they are made, in BuildButts and BuildDemo.
/// The check mark of mnuShaddow is its own.
void frmMain::wire()
{
    wireGame();
    wireMenus();
    wireScreenReader();
    connect(&m_announcement, &voice::Announcement::EndStream, this, &frmMain::V_EndStream);
    connect(&m_announcement, &voice::Announcement::Failed, this, &frmMain::ReportError);
    m_client->installEventFilter(this); // its size: Form_Resize
    cPause->installEventFilter(this);   // what is typed there: typedAtPause
}

void frmMain::wireGame()
{
    connect(Text1, &TextBox::keyPress, this, &frmMain::Text1_KeyPress);
    connect(cRandNum, &QPushButton::clicked, this, &frmMain::cRandNum_Click);
    connect(cmdClear, &QPushButton::clicked, this, &frmMain::cmdClear_Click);
    connect(cBingo, &QPushButton::clicked, this, &frmMain::cBingo_Click);

    connect(cPause, &QPushButton::clicked, this, &frmMain::cPause_Click);
    connect(chkAutoCall, &QCheckBox::clicked, this, &frmMain::chkAutoCall_Click);
    connect(Timer2, &QTimer::timeout, this, &frmMain::Timer2_Timer);
    connect(m_afterCall, &QTimer::timeout, this, &frmMain::keepScreenOn);
    for (const ComboBox *list : {cboSec, iFontSize})
        connect(list, &ComboBox::listClosed, this, [this] { focusOn(Text1); });
    connect(chkMakeVoiceCall, &QCheckBox::clicked, this, &frmMain::chkMakeVoiceCall_Click);

    connect(iFontSize, &ComboBox::activated, this, &frmMain::iFontSize_Click);
    connect(static_cast<TextBox *>(iFontSize->lineEdit()), &TextBox::keyPress, this,
            &frmMain::iFontSize_KeyPress);

    for (int i = 1; i <= patterns::patternCount; ++i)
        connect(cDemoButt[i], &QPushButton::clicked, this, [this, i] { cDemoButt_Click(i); });
    connect(Timer1, &QTimer::timeout, this, &frmMain::Timer1_Timer);
}

void frmMain::wireMenus()
{
    connect(mnuSpeak, &QAction::triggered, this, &frmMain::mnuSpeak_Click);
    connect(mnuExit, &QAction::triggered, this, &frmMain::unloading);
    connect(mnuHelp, &QAction::triggered, this, &frmMain::mnuHelp_Click);
    connect(mnuAbout, &QAction::triggered, this, &frmMain::mnuAbout_Click);
    connect(m_menuBar, &controls::MenuBar::left, this, &frmMain::menuBar_Left);
}

void frmMain::wireScreenReader()
{
    connect(m_naming, &QTimer::timeout, this, [this] { nameByState(10); });
    connect(cboSec, &ComboBox::currentTextChanged, this, &frmMain::nameSoon);
    connect(cboSec, &ComboBox::activated, this, &frmMain::sayInterval);
    connect(mnuShaddow, &QAction::toggled, this,
            [this](bool checked) { sayChecked(mnuShaddow->text(), checked); });
}
