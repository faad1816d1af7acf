#include "frmMain.h"

#include "frmBingo.h"

#include <QCloseEvent>
#include <QStyle>

void frmMain::Form_Load()
{
    try {
        // An estimate, until the frame is known. Desktops do not scale it with the program.
        const double caption = style()->pixelMetric(QStyle::PM_TitleBarHeight) / devicePixelRatioF();
        placeOnScreen({1, qRound(caption), 1, 1});
        cboSec->setCurrentText(QStringLiteral("10"));
        m_announcement.createVoice();
    } catch (const base::Error &error) {
        ReportError(error);
    }
}

void frmMain::closeEvent(QCloseEvent *event)
{
    if (event->spontaneous() && m_bingo && !m_bingo->isWindow()) { // BINGO lies in front: that is meant
        m_bingo->close();
        event->ignore();
        return;
    }
    Form_Unload();
    event->accept();
}

void frmMain::Form_Unload()
{
    closeWindows();
    Q_EMIT unloading();
}

void frmMain::applySettings(const QString &fontSize, const QString &interval)
{
    iFontSize->setEditText(fontSize);
    cboSec->setCurrentText(interval);
}

void frmMain::clearDisplays()
{
    controls::setCaption(lblAutoCall, {});
    for (controls::RichTextBox *display : {RTB1, RTB2, RTB3, RTB4, RTB5})
        display->setText({});
    describeBoard();
    describeCalls();
}
