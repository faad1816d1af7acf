#include "frmMain.h"

#include "draw.h"
#include "message_box.h"
#include "numbers.h"

#include <vector>

void frmMain::cRandNum_Click()
{
    std::vector<int> pool;
    for (int n = 1; n <= game::numberCount; ++n) {
        if (!isCalled(n))
            pool.push_back(n);
    }
    if (const std::optional<int> n = board::pick(pool, board::randomFraction())) {
        cButt_Click(*n);
    } else {
        controls::notice(this, QStringLiteral("Full Board...."));
        if (chkAutoCall->isChecked())
            chkAutoCall_Click();
    }
}
