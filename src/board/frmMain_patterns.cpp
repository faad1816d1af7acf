#include "frmMain.h"

#include "frmMain_design.h"

using patterns::Pattern;
using patterns::pattern;

void frmMain::BuildDemo()
{
    m_card = new patterns::Card(controls::control<controls::ColorButton>(m_client, "tDemo(1)"));
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
    const Pattern *chosen = id == 0 ? nullptr : &pattern(id);
    const bool isAnimated = chosen && chosen->animated();
    iCurPattern = id;
    iPatternFrame = 1;
    for (int n = 1; n <= game::numberCount; ++n)
        markNumber(n, chosen && mnuShaddow->isChecked() && chosen->shadows(n));
    m_card->show(chosen && !isAnimated ? chosen->frames[0] : QString());
    Timer1->stop();
    if (isAnimated)
        Timer1->start(100);
}

void frmMain::Timer1_Timer()
{
    if (speech::SpVoice::isWaiting())
        return;
    Timer1->setInterval(1500);
    const QStringList &frames = pattern(iCurPattern).frames;
    m_card->show(frames[iPatternFrame - 1]);
    iPatternFrame = iPatternFrame % static_cast<int>(frames.size()) + 1;
    nameSoon();
}
