#include "frmMain.h"

#include "label.h"
#include "message_box.h"
#include "rich_text_box.h"
#include "screen_reader.h"
#include "text_box.h"

#include <QTimer>

void frmMain::cPause_Click()
{
    if (Timer2->isActive()) {
        lblAutoCall->setCaption(QStringLiteral("Paused"));
        cPause->setText(QStringLiteral("Play"));
        Timer2->stop();
    } else {
        cPause->setText(QStringLiteral("Pause"));
        Timer2->start();
    }
    sayAutoCall();
}

void frmMain::cmdClear_Click()
{
    if (Timer2->isActive())
        cPause_Click();
    if (controls::confirmed(this, QStringLiteral("Clearing board,\r\nAre you sure?"),
                            QStringLiteral("Clear Board")))
        clearBoard();
    returnToEntry();
}

/// Starts a new game. The selected pattern stays: selecting it twice deselects it and selects it again.
void frmMain::clearBoard()
{
    for (controls::RichTextBox *display : {RTB1, RTB2, RTB3, RTB4})
        display->setText({});
    iLastCalls.fill(0);
    markAll(false);
    DrawBoards();
    iCallCnt = 0;
    showCount();
    const int pattern = iCurPattern;
    cDemoButt_Click(iCurPattern);
    cDemoButt_Click(pattern);
    EditBoard();
    describeCalls();
    m_announcer->say(QStringLiteral("Board cleared"));
}
