#include "frmMain.h"

#include "controls.h"
#include "frmVoices.h"
#include "numeric.h"
#include "rich_text_box.h"
#include "sp_voice.h"

#include <QCloseEvent>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace {

constexpr double leastFontSize = 5.0;
constexpr double greatestFontSize = 100.0;
constexpr int enter = 13;

} // namespace

void frmMain::Form_Load()
{
    try {
        const QRect area = screen()->availableGeometry();
        const QPoint centred = area.center() - QPoint(width() / 2, height() / 2);
        move(std::max(centred.x(), area.x()), std::max(centred.y(), area.y()));
        cboSec->setCurrentText(QStringLiteral("10"));
        m_announcement.createVoice();
    } catch (const files::Error &error) {
        ReportError(error);
    }
}

void frmMain::closeEvent(QCloseEvent *event)
{
    Form_Unload();
    event->accept();
}

void frmMain::Form_Unload()
{
    closeWindows();
    Q_EMIT unloading();
}

QString frmMain::fontSizeText() const
{
    return iFontSize->currentText();
}

QString frmMain::intervalText() const
{
    return cboSec->currentText();
}

void frmMain::applySettings(const QString &fontSize, const QString &interval)
{
    iFontSize->setEditText(fontSize);
    const int entry = cboSec->findText(interval, Qt::MatchFixedString | Qt::MatchCaseSensitive);
    if (entry >= 0)
        cboSec->setCurrentIndex(entry);
}

void frmMain::clearDisplays()
{
    lblAutoCall->setCaption({});
    for (controls::RichTextBox *display : {RTB1, RTB2, RTB3, RTB4, RTB5})
        display->setText({});
}

void frmMain::iFontSize_Click()
{
    DrawBoards();
    EditBoard();
    returnToEntry();
}

void frmMain::iFontSize_KeyPress(int &KeyAscii)
{
    if (KeyAscii != enter)
        return;
    KeyAscii = 0;
    if (const std::optional<double> size = files::parseNumber(iFontSize->currentText())) {
        if (*size < leastFontSize)
            iFontSize->setEditText(QString::number(leastFontSize));
        else if (*size > greatestFontSize)
            iFontSize->setEditText(QString::number(greatestFontSize));
        DrawBoards();
        EditBoard();
    }
    returnToEntry();
}

/// The size in `iFontSize`, in points and within its bounds; the last one when the text is no number.
double frmMain::drawnFontSize()
{
    if (const std::optional<double> size = files::parseNumber(iFontSize->currentText()))
        m_lastFontSize = std::clamp(*size, leastFontSize, greatestFontSize);
    return m_lastFontSize;
}
