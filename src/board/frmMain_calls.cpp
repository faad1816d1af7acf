#include "frmMain.h"

#include "appearance.h"
#include "draw.h"
#include "message_box.h"

#include <QCoreApplication>

void frmMain::cButt_Click(int Index)
{
    if (iCalled[Index])
        uncallNumber(Index);
    else
        callNumber(Index);
    focusAfterCall();
}

void frmMain::cRandNum_Click()
{
    if (const std::optional<int> n = game::pick(uncalledNumbers(), game::randomFraction())) {
        cButt_Click(*n);
    } else {
        controls::notice(this, QStringLiteral("Full Board...."));
        if (chkAutoCall->isChecked())
            chkAutoCall_Click();
    }
}

void frmMain::cmdClear_Click()
{
    if (Timer2->isActive())
        cPause_Click();
    if (controls::confirmed(this, QStringLiteral("Clearing board,\nAre you sure?"),
                            QStringLiteral("Clear Board")))
        clearBoard();
    returnToEntry();
}

std::vector<int> frmMain::uncalledNumbers() const
{
    std::vector<int> numbers;
    for (int n = 1; n <= game::numberCount; ++n) {
        if (!iCalled[n])
            numbers.push_back(n);
    }
    return numbers;
}

void frmMain::callNumber(int n)
{
    setCount(iCallCnt + 1);
    markNumber(n, true);
    EditBoard();
    editLastPress(n);
    // All that waits to be painted is painted now, before anything is spoken.
    QCoreApplication::sendPostedEvents(this, QEvent::UpdateRequest);
    m_afterCall->start();
    keepScreenOn();
    if (chkMakeVoiceCall->isChecked())
        Speak(m_announcement.begin(n));
    else
        m_reader->say(stateInWords());
}

void frmMain::uncallNumber(int n)
{
    if (!controls::confirmed(this, QStringLiteral("Clearing button,\nAre you sure?"),
                             QStringLiteral("Clear Board")))
        return;
    markNumber(n, false);
    EditBoard();
    m_reader->say(game::spokenLabel(n) + QStringLiteral(" not called"));
}

/// Starts a new game. The selected pattern stays, and casts its shadow anew.
void frmMain::clearBoard()
{
    for (controls::RichTextBox *display : {RTB1, RTB2, RTB3, RTB4})
        display->setText({});
    iLastCalls.fill(0);
    DrawBoards();
    setCount(0);
    selectPattern(iCurPattern);
    EditBoard();
    describeCalls();
    m_reader->say(QStringLiteral("Board cleared"));
}

void frmMain::markNumber(int n, bool called)
{
    iCalled[n] = called;
    cButt[n]->setBackColor(called ? controls::colors::buttonShadow : controls::colors::buttonFace);
    nameSoon();
}

void frmMain::setCount(int count)
{
    iCallCnt = count;
    controls::setCaption(lblCallCnt, QStringLiteral("Balls Called: %1").arg(iCallCnt));
}
