#include "board/frmMain.h"

#include "platform/controls.h"

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
}
