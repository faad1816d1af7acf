#include "frmMain.h"

#include "screen_awake.h"

#include <QApplication>
#include <QScopedValueRollback>

void frmMain::chkAutoCall_Click()
{
    iAutoCallLeft = 2;
    setAutoCall(chkAutoCall->isChecked());
    focusByRule();
}

void frmMain::cPause_Click()
{
    setAutoCall(!Timer2->isActive());
}

void frmMain::setAutoCall(bool runs)
{
    const bool isOn = chkAutoCall->isChecked();
    if (runs)
        Timer2->start();
    else
        Timer2->stop();
    cPause->setEnabled(isOn);
    cPause->setText(runs ? QStringLiteral("Pause") : QStringLiteral("Play"));
    if (!runs) // else the next tick writes it
        controls::setCaption(lblAutoCall, isOn ? QStringLiteral("Paused") : QString());
    keepScreenOn();
    sayAutoCall();
}

void frmMain::Timer2_Timer()
{
    // The countdown stands still while the operator answers a question or hears a sample.
    if (QApplication::activeModalWidget() || speech::SpVoice::isWaiting())
        return;
    // The notice of a full board would take the keyboard from a menu.
    if (controls::MenuBar::isInUse() && uncalledNumbers().empty())
        return;
    const QScopedValueRollback ticking(m_isTick, true);
    --iAutoCallLeft;
    if (iAutoCallLeft < 1) {
        iAutoCallLeft = cboSec->currentText().toInt();
        cRandNum_Click();
    }
    if (!Timer2->isActive())
        return; // paused or switched off while a box of the draw was open
    controls::setCaption(lblAutoCall, QStringLiteral("Auto Call In : %1").arg(iAutoCallLeft));
}

/// Between two calls of a game the caller may talk for long without touching anything.
void frmMain::keepScreenOn()
{
    os::keepScreenOn(Timer2->isActive() || m_afterCall->isActive());
}
