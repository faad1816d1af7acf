#include "frmMain.h"

#include "appearance.h"
#include "design_table.h"
#include "frmMain_design.h"
#include "message_box.h"
#include "numbers.h"
#include "rich_text_box.h"
#include "screen_reader.h"

#include <QFontMetrics>
#include <QTextCursor>
#include <QTimer>

#include <algorithm>

namespace colors = controls::colors;

void frmMain::DrawBoards()
{
    m_fontSize = fontSize().value_or(m_fontSize);
    const QFont font = controls::displayFont(m_fontSize);
    RTB1->setBaseFont(font);
    drawLetters();
    RTB2->setBaseFont(font);
    RTB2->setText(game::boardText());
    drawButtonLetters();
}

/// The letters beside the large board. They are as high as its rows, and narrowed where the column has not
/// the width for them.
void frmMain::drawLetters()
{
    RTB1->setText(game::letterColumn(2));
    RTB1->setAlignment(RTB1->all(), Qt::AlignHCenter);
    RTB1->setColor(RTB1->all(), colors::blue);
    const int letter = QFontMetrics(RTB1->font(), RTB1).horizontalAdvance(u'B');
    if (letter > RTB1->contentsRect().width())
        RTB1->setLetterWidth(RTB1->all(), 100 * RTB1->contentsRect().width() / letter);
    RTB1->showStart();
}

/// The letters beside the number buttons, each as high as a row of buttons.
void frmMain::drawButtonLetters()
{
    const int pitch = mainDesign::row("cButt(1)").height + mainDesign::buttonGap;
    RTB5->setText(game::letterColumn(1));
    RTB5->setFontSize(RTB5->all(), 17.0);
    RTB5->setAlignment(RTB5->all(), Qt::AlignHCenter);
    RTB5->setColor(RTB5->all(), colors::blue);
    RTB5->setLineHeight(controls::pixels(pitch, logicalDpiY()));
}

void frmMain::EditBoard()
{
    QTextCursor edit(RTB2->document());
    edit.beginEditBlock();
    for (int n = 1; n <= game::numberCount; ++n) {
        const QRgb color = isCalled(n) ? colors::red : colors::black;
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
    RTB3->setText(game::currentLabel(iButt));
    RTB3->setAlignment(RTB3->all(), Qt::AlignHCenter);
    RTB3->setColor(RTB3->all(), colors::red);
    RTB3->showStart();

    std::copy_backward(iLastCalls.begin(), iLastCalls.end() - 1, iLastCalls.end());
    iLastCalls[1] = static_cast<std::int16_t>(iButt);

    QString past;
    for (int k = 2; k <= 5; ++k)
        past += game::pastEntry(iLastCalls[k]) + u' ';
    RTB4->setText(past);
    RTB4->setColor(RTB4->all(), colors::black);
    describeCalls();
}

void frmMain::cmdClear_Click()
{
    if (Timer2->isActive())
        cPause_Click();
    if (controls::confirmed(this, QStringLiteral("Clearing board,\r\nAre you sure?"),
                            QStringLiteral("Clear Board")))
        clearBoard();
    returnToEntry();
}

/// Starts a new game. The selected pattern stays: selecting it twice deselects it and selects it again.
void frmMain::clearBoard()
{
    for (controls::RichTextBox *display : {RTB1, RTB2, RTB3, RTB4})
        display->setText({});
    iLastCalls.fill(0);
    markAll(false);
    DrawBoards();
    iCallCnt = 0;
    showCount();
    const int pattern = iCurPattern;
    cDemoButt_Click(iCurPattern);
    cDemoButt_Click(pattern);
    EditBoard();
    describeCalls();
    m_announcer->say(QStringLiteral("Board cleared"));
}
