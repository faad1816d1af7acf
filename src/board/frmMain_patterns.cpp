#include "frmMain.h"

#include "buttons.h"
#include "frmMain_design.h"
#include "sp_voice.h"
#include "text_box.h"

#include <QAction>
#include <QTimer>

#include <limits>

using patterns::Pattern;
using patterns::pattern;

void frmMain::BuildDemo()
{
    auto *first = controls::control<controls::ColorBox>(m_client, "tDemo(1)");
    m_card = new patterns::Card(first, mainDesign::row("tDemo(1)"));
    connect(m_card, &patterns::Card::clicked, this, &frmMain::tDemo_Click);
    nameByState(std::numeric_limits<int>::max()); // the board is complete, and not shown yet
}

void frmMain::tDemo_Click(int Index)
{
    m_card->toggle(Index);
    nameSoon();
    Text1->setFocus();
}

void frmMain::cDemoButt_Click(int Index)
{
    m_card->show({});
    markAll(false);
    Timer1->stop();
    iCurPattern = Index == iCurPattern ? 0 : Index;
    if (iCurPattern != 0)
        showPattern(pattern(iCurPattern));
    Text1->setFocus();
}

/// Shows a static pattern and starts an animated one, and takes its shadow out of play.
void frmMain::showPattern(const Pattern &pattern)
{
    if (!pattern.animated())
        m_card->show(pattern.frames[1]);
    if (mnuShaddow->isChecked())
        applyShadow(pattern);
    if (pattern.animated()) {
        iPatternFrame = 1;
        Timer1->start(100);
    }
}

void frmMain::applyShadow(const Pattern &pattern)
{
    for (int n = 1; n <= game::numberCount; ++n) {
        if (pattern.shadows(n))
            markNumber(n, true);
    }
}

void frmMain::Timer1_Timer()
{
    if (speech::SpVoice::isWaiting())
        return;
    Timer1->setInterval(1500);
    if (iCurPattern == 0)
        return;
    const patterns::Frames &frames = pattern(iCurPattern).frames;
    const int frame = frames.wrapped(iPatternFrame);
    m_card->show(frames[frame]);
    iPatternFrame = frame + 1;
    nameSoon();
}
