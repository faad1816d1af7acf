#include "frmMain.h"

#include "catalogue.h"
#include "controls.h"
#include "numbers.h"
#include "sp_voice.h"

#include <QAction>
#include <QTimer>

void frmMain::cDemoButt_Click(int Index)
{
    paintCard({});
    markAll(false);
    Timer1->stop();
    const bool deselects = iCurPattern == Index;
    selectPattern(deselects ? 0 : Index);
    if (!deselects) {
        const patterns::Pattern &pattern = patterns::pattern(Index);
        if (!pattern.animated())
            paintCard(pattern.frames[1]);
        if (mnuShaddow->isChecked())
            applyShadow(pattern);
        if (pattern.animated()) {
            iPatternFrame = 1;
            Timer1->start(100);
        }
    }
    Text1->setFocus();
}

void frmMain::Timer1_Timer()
{
    if (speech::SpVoice::isWaiting())
        return;
    Timer1->setInterval(1500);
    if (iCurPattern == 0)
        return;
    const patterns::Frames &frames = patterns::pattern(iCurPattern).frames;
    if (iPatternFrame > frames.count())
        iPatternFrame = 1;
    paintCard(frames[iPatternFrame]);
    ++iPatternFrame;
}

/// Keeps the selected pattern, 0 for none, and tells screen readers of it.
void frmMain::selectPattern(int id)
{
    if (iCurPattern != 0)
        cDemoButt(iCurPattern)->setAccessibleDescription({});
    iCurPattern = id;
    if (iCurPattern != 0)
        cDemoButt(iCurPattern)->setAccessibleDescription(QStringLiteral("selected"));
}

void frmMain::applyShadow(const patterns::Pattern &pattern)
{
    for (int n = 1; n <= game::numberCount; ++n) {
        if (pattern.shadow.covers(game::columnLetter(game::columnOf(n))))
            markNumber(n, true);
    }
}
