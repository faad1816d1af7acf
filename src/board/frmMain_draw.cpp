#include "frmMain.h"

#include "colors.h"
#include "controls.h"
#include "draw.h"
#include "message_box.h"
#include "numbers.h"

#include <vector>

void frmMain::cRandNum_Click()
{
    if (boardIsFull()) {
        controls::notice(this, QStringLiteral("Full Board...."));
        if (chkAutoCall->isChecked())
            chkAutoCall_Click();
        return;
    }
    std::vector<int> pool;
    for (int n = 1; n <= game::numberCount; ++n) {
        if (!isCalled(n))
            pool.push_back(n);
    }
    if (const std::optional<int> n = board::drawFrom(pool))
        cButt_Click(*n);
}

bool frmMain::boardIsFull() const
{
    for (int n = 1; n <= game::numberCount; ++n) {
        if (cButt[n]->backColor() == controls::colors::buttonFace)
            return false;
    }
    return true;
}
