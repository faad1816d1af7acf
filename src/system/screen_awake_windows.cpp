#include "screen_awake.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>

#include <windows.h>

namespace os {

namespace {

/// Refuses the screen saver, for which Windows asks the window in front.
class NoScreenSaver : public QAbstractNativeEventFilter
{
public:
    bool nativeEventFilter(const QByteArray &, void *message, qintptr *) override
    {
        constexpr WPARAM commandBits = 0xFFF0; // the others are for Windows' own use
        const MSG &sent = *static_cast<MSG *>(message);
        return sent.message == WM_SYSCOMMAND && (sent.wParam & commandBits) == SC_SCREENSAVE;
    }
};

NoScreenSaver noScreenSaver;

} // namespace

void keepScreenOn(bool on)
{
    SetThreadExecutionState(on ? ES_CONTINUOUS | ES_DISPLAY_REQUIRED | ES_SYSTEM_REQUIRED : ES_CONTINUOUS);
    if (on)
        qApp->installNativeEventFilter(&noScreenSaver);
    else
        qApp->removeNativeEventFilter(&noScreenSaver);
}

} // namespace os
