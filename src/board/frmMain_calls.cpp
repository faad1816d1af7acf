#include "frmMain.h"

#include "draw.h"
#include "label.h"
#include "message_box.h"
#include "numbers.h"
#include "screen_reader.h"
#include "text_box.h"

#include <QCoreApplication>
#include <QTimer>

#include <vector>

void frmMain::cButt_Click(int Index)
{
    if (isCalled(Index))
        uncallNumber(Index);
    else
        callNumber(Index);
    focusAfterCall();
}

void frmMain::uncallNumber(int n)
{
    if (!controls::confirmed(this, QStringLiteral("Clearing button,\r\nAre you sure?"),
                             QStringLiteral("Clear Board")))
        return;
    markNumber(n, false);
    EditBoard();
    m_announcer->say(game::spokenLabel(n) + QStringLiteral(" not called"));
}

void frmMain::callNumber(int n)
{
    ++iCallCnt;
    showCount();
    lblCallCnt->repaint();
    markNumber(n, true);
    EditBoard();
    editLastPress(n);
    // All that waits to be painted is painted now, before anything is spoken.
    QCoreApplication::sendPostedEvents(this, QEvent::UpdateRequest);
    if (chkMakeVoiceCall->isChecked())
        Speak(m_announcement.firstPhrase(n));
    else
        m_announcer->say(stateInWords());
}

void frmMain::showCount()
{
    lblCallCnt->setCaption(QStringLiteral("Balls Called: %1").arg(iCallCnt));
}

void frmMain::focusAfterCall()
{
    Text1->clear();
    if (Timer2->isActive())
        cPause->setFocus();
    else
        Text1->setFocus();
}

void frmMain::cRandNum_Click()
{
    std::vector<int> pool;
    for (int n = 1; n <= game::numberCount; ++n) {
        if (!isCalled(n))
            pool.push_back(n);
    }
    if (const std::optional<int> n = board::pick(pool, board::randomFraction())) {
        cButt_Click(*n);
    } else {
        controls::notice(this, QStringLiteral("Full Board...."));
        if (chkAutoCall->isChecked())
            chkAutoCall_Click();
    }
}
