#include "board/frmMain.h"

#include "platform/controls.h"

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
}

void frmMain::Timer2_Timer()
{
    // The operator is answering a question: nothing is drawn behind it, and the countdown stands still.
    if (QApplication::activeModalWidget())
        return;
    --iAutoCallLeft;
    if (iAutoCallLeft < 1) {
        iAutoCallLeft = cboSec->currentText().toInt();
        cRandNum_Click();
    }
    lblAutoCall->setCaption(QStringLiteral("Auto Call In : %1").arg(iAutoCallLeft));
    lblAutoCall->repaint();
}
