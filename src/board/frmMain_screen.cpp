#include "frmMain.h"

#include "screen_awake.h"

#include <QTimer>

/// Between two calls of a game the caller may talk for long without touching anything.
bool frmMain::needsScreen() const
{
    return Timer2->isActive() || m_afterCall->isActive();
}

void frmMain::keepScreenOn()
{
    os::keepScreenOn(needsScreen());
}
