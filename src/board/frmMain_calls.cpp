#include "frmMain.h"

#include "controls.h"
#include "message_box.h"

#include <QCoreApplication>

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
}

void frmMain::showCount()
{
    lblCallCnt->setCaption(QStringLiteral("Balls Called: %1").arg(iCallCnt));
}

bool frmMain::autoCallRuns() const
{
    return cPause->isEnabled() && cPause->text() == QStringLiteral("Pause");
}

void frmMain::focusAfterCall()
{
    Text1->clear();
    if (chkAutoCall->isChecked() && cPause->text() == QStringLiteral("Pause"))
        cPause->setFocus();
    else
        Text1->setFocus();
}
