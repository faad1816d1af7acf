#include "frmMain.h"

#include "appearance.h"
#include "frmMain_design.h"
#include "numeric.h"

#include <algorithm>

constexpr double leastFontSize = 5.0; // in points
constexpr double greatestFontSize = 100.0;

void frmMain::DrawBoards()
{
    m_fontSize = fontSize().value_or(m_fontSize);
    setDisplayFonts();
    RTB2->setText(game::boardText());
}

/// Gives the displays their fonts: those of the design and, for the large board, the size that is drawn.
void frmMain::setDisplayFonts()
{
    const std::pair<controls::RichTextBox *, double> sizes[] = {
        {RTB1, m_fontSize}, {RTB2, m_fontSize}, {RTB3, 95.25}, {RTB4, 39.75}, {RTB5, 17.0}}; // in points
    for (const auto &[display, points] : sizes)
        display->setFont(controls::displayFont(points * m_scale));
    RTB2->showNeededBars();
    drawLetters();
    drawButtonLetters();
}

/// The letters beside the large board, as high as its rows, and narrowed where their column is too narrow.
void frmMain::drawLetters()
{
    RTB1->setText(game::letterColumn(2), Qt::blue, Qt::AlignHCenter);
    const int letter = QFontMetrics(RTB1->font(), RTB1).horizontalAdvance(u'B');
    if (letter > RTB1->contentsRect().width())
        RTB1->setLetterWidth(RTB1->all(), 100 * RTB1->contentsRect().width() / letter);
    RTB1->showStart();
}

/// The letters beside the number buttons, each as high as a row of buttons.
void frmMain::drawButtonLetters()
{
    const int pitch = mainDesign::row("cButt(1)").height + mainDesign::buttonGap;
    RTB5->setText(game::letterColumn(1), Qt::blue, Qt::AlignHCenter);
    RTB5->setLineHeight(controls::pixels(pitch, m_scale));
}

void frmMain::EditBoard()
{
    QTextCursor edit(RTB2->document());
    edit.beginEditBlock();
    for (int n = 1; n <= game::numberCount; ++n) {
        const QColor color = iCalled[n] ? Qt::red : Qt::black;
        const int cell = game::cellOffset(n);
        if (RTB2->colorAt(cell) != color)
            RTB2->setColor({cell, game::cellWidth}, color);
    }
    edit.endEditBlock();
    describeBoard();
    RTB1->showStart();
    RTB2->showStart();
}

void frmMain::editLastPress(int iButt)
{
    RTB3->setText(game::currentLabel(iButt), Qt::red, Qt::AlignHCenter);

    std::copy_backward(iLastCalls.begin(), iLastCalls.end() - 1, iLastCalls.end());
    iLastCalls[1] = iButt;

    QString past;
    for (int k = 2; k <= 5; ++k)
        past += game::pastEntry(iLastCalls[k]) + u' ';
    RTB4->setText(past, Qt::black);
    describeCalls();
}

void frmMain::iFontSize_Click()
{
    redrawBoard();
    returnToEntry();
}

void frmMain::iFontSize_KeyPress(int &KeyAscii)
{
    if (KeyAscii != controls::enter)
        return;
    KeyAscii = 0;
    iFontSize->lineEdit()->setModified(false); // entered, also where it is no number
    if (const std::optional<double> size = fontSize()) {
        if (size != base::parseNumber(iFontSize->currentText()))
            iFontSize->setEditText(QString::number(*size));
        redrawBoard();
    }
    returnToEntry();
}

/// The size in `iFontSize`, in points and within its bounds; nothing when the text is no number.
std::optional<double> frmMain::fontSize() const
{
    const std::optional<double> size = base::parseNumber(iFontSize->currentText());
    return size ? std::optional(std::clamp(*size, leastFontSize, greatestFontSize)) : std::nullopt;
}

void frmMain::redrawBoard()
{
    DrawBoards();
    EditBoard();
    m_reader->say(QStringLiteral("Font size %1").arg(m_fontSize));
}
