#include "frmMain.h"

#include "frmMain_design.h"
#include "sp_voice.h"

using patterns::Pattern;
using patterns::pattern;

void frmMain::BuildDemo()
{
    auto *first = controls::control<controls::ColorBox>(m_client, "tDemo(1)");
    m_card = new patterns::Card(first);
    m_card->place(mainDesign::row("tDemo(1)"), m_scale);
    connect(m_card, &patterns::Card::clicked, this, &frmMain::tDemo_Click);
}

void frmMain::tDemo_Click(int Index)
{
    m_card->toggle(Index);
    m_reader->say(m_card->cellInWords(Index));
    nameSoon();
    focusOn(Text1);
}

void frmMain::cDemoButt_Click(int Index)
{
    selectPattern(Index == iCurPattern ? 0 : Index);
    sayPattern(Index);
    focusOn(Text1);
}

void frmMain::selectPattern(int id)
{
    m_card->show({});
    unmarkAll();
    Timer1->stop();
    iCurPattern = id;
    if (id != 0)
        showPattern(pattern(id));
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
    m_card->show(frames[iPatternFrame]);
    iPatternFrame = frames.after(iPatternFrame);
    nameSoon();
}
