#include "frmMain.h"

#include "catalogue.h"
#include "combo_box.h"
#include "menu_bar.h"
#include "rich_text_box.h"
#include "text_box.h"

#include <QAction>
#include <QTimer>

using controls::ComboBox;
using controls::TextBox;

/// The number buttons and the cells are wired where they are made, in BuildButts and BuildDemo.
/// The check mark of mnuShaddow is its own.
void frmMain::wire()
{
    connect(Text1, &TextBox::keyPress, this, &frmMain::Text1_KeyPress);
    connect(cRandNum, &QPushButton::clicked, this, &frmMain::cRandNum_Click);

    connect(cPause, &QPushButton::clicked, this, &frmMain::cPause_Click);
    connect(chkAutoCall, &QCheckBox::clicked, this, &frmMain::chkAutoCall_Click);
    connect(Timer2, &QTimer::timeout, this, &frmMain::Timer2_Timer);
    connect(m_afterCall, &QTimer::timeout, this, &frmMain::keepScreenOn);

    connect(cmdClear, &QPushButton::clicked, this, &frmMain::cmdClear_Click);
    connect(cBingo, &QPushButton::clicked, this, &frmMain::cBingo_Click);

    for (int i = 1; i <= patterns::patternCount; ++i)
        connect(cDemoButt[i], &QPushButton::clicked, this, [this, i] { cDemoButt_Click(i); });
    connect(Timer1, &QTimer::timeout, this, &frmMain::Timer1_Timer);

    connect(cboSec, &ComboBox::chosenFromList, this, [this] { focusOn(Text1); });
    connect(chkMakeVoiceCall, &QCheckBox::clicked, this, &frmMain::chkMakeVoiceCall_Click);

    connect(iFontSize, &ComboBox::activated, this, &frmMain::iFontSize_Click);
    connect(static_cast<TextBox *>(iFontSize->lineEdit()), &TextBox::keyPress, this,
            &frmMain::iFontSize_KeyPress);

    connect(cboSec, &ComboBox::currentTextChanged, this, &frmMain::nameSoon);
    connect(cboSec, &ComboBox::activated, this, &frmMain::sayInterval);
    connect(m_menuBar, &controls::MenuBar::left, this, &frmMain::menuBar_Left);
    connect(mnuShaddow, &QAction::toggled, this,
            [this](bool checked) { sayChecked(mnuShaddow->text(), checked); });
    connect(m_naming, &QTimer::timeout, this, [this] { nameByState(10); });
    connect(mnuSpeak, &QAction::triggered, this, &frmMain::mnuSpeak_Click);
    connect(mnuExit, &QAction::triggered, this, &frmMain::unloading);
    connect(mnuHelp, &QAction::triggered, this, &frmMain::mnuHelp_Click);
    connect(mnuAbout, &QAction::triggered, this, &frmMain::mnuAbout_Click);

    connect(&m_announcement, &voice::Announcement::EndStream, this, &frmMain::V_EndStream);
    connect(&m_announcement, &voice::Announcement::Failed, this, &frmMain::ReportError);

    m_client->installEventFilter(this); // its size: Form_Resize
}
