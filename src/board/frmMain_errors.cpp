#include "frmMain.h"

#include "message_box.h"

#include <utility>

/// Shows the pending error, after which none is pending.
void frmMain::ReportError()
{
    if (const std::optional<files::Error> error = std::exchange(m_pendingError, std::nullopt))
        controls::reportError(this, *error);
}
