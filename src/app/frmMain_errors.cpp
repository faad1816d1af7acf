#include "board/frmMain.h"

#include "platform/message_box.h"

#include <utility>

/// Shows the pending error, after which none is pending.
void frmMain::ReportError()
{
    if (const std::optional<platform::Error> error = std::exchange(m_pendingError, std::nullopt))
        platform::reportError(this, *error);
}
