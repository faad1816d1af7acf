#include "frmMain.h"

#include "combo_box.h"
#include "label.h"
#include "sp_voice.h"
#include "text_box.h"

#include <QApplication>
#include <QTimer>

void frmMain::chkAutoCall_Click()
{
    if (chkAutoCall->isChecked()) {
        iAutoCallLeft = 2;
        Timer2->start();
        cPause->setEnabled(true);
        cPause->setText(QStringLiteral("Pause"));
        cPause->setFocus();
    } else {
        Timer2->stop();
        cPause->setEnabled(false);
        cPause->setText(QStringLiteral("Play"));
        lblAutoCall->setCaption({});
        lblAutoCall->repaint();
        Text1->setFocus();
    }
    sayAutoCall();
}

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

void frmMain::Timer2_Timer()
{
    // While the operator answers a question or hears a sample nothing is drawn, and the countdown stands
    // still.
    if (QApplication::activeModalWidget() || speech::SpVoice::isWaiting())
        return;
    --iAutoCallLeft;
    if (iAutoCallLeft < 1) {
        iAutoCallLeft = cboSec->currentText().toInt();
        cRandNum_Click();
    }
    if (!Timer2->isActive())
        return; // paused or switched off while a box of the draw was open
    lblAutoCall->setCaption(QStringLiteral("Auto Call In : %1").arg(iAutoCallLeft));
    lblAutoCall->repaint();
}
