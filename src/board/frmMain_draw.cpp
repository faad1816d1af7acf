#include "board/frmMain.h"

#include "board/draw.h"
#include "board/numbers.h"
#include "platform/colors.h"
#include "platform/controls.h"
#include "platform/message_box.h"

#include <vector>

void frmMain::cRandNum_Click()
{
    if (boardIsFull()) {
        platform::notice(this, QStringLiteral("Full Board...."));
        if (chkAutoCall->isChecked())
            chkAutoCall_Click();
        return;
    }
    std::vector<int> pool;
    for (int n = 1; n <= board::numberCount; ++n) {
        if (iCalled[static_cast<std::size_t>(n)] == 0)
            pool.push_back(n);
    }
    if (const std::optional<int> n = board::drawFrom(pool))
        cButt_Click(*n);
}

bool frmMain::boardIsFull() const
{
    for (int n = 1; n <= board::numberCount; ++n) {
        if (cButt(n)->backColor() == platform::colors::buttonFace)
            return false;
    }
    return true;
}
