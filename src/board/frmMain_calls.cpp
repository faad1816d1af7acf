#include "frmMain.h"

#include "controls.h"
#include "message_box.h"
#include "phrases.h"

#include <QCoreApplication>

void frmMain::cButt_Click(int Index)
{
    if (iCalled[static_cast<std::size_t>(Index)] != 0)
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
    if (chkMakeVoiceCall->isChecked()) {
        sCallPhrase = voice::firstPhrase(n);
        Speak(sCallPhrase);
    }
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
