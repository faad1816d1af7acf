#pragma once

#include "sp_engine.h"

#include <QWinEventNotifier>

#include <windows.h>

#include <sapi.h>
#include <wrl/client.h>

#include <vector>

namespace speech {

/// Speech through Windows' own service, SAPI 5. It works on threads of its own and sets a Win32 event when
/// there is news, which the event loop hears. Its failures keep their HRESULT, and Windows' text where it has
/// one.
class SapiEngine : public SpEngine
{
    Q_OBJECT

public:
    /// Throws Error when SAPI is not installed. COM must be ready in this thread, as it is where Qt shows
    /// windows.
    SapiEngine();
    ~SapiEngine() override;

    void open() override;
    void speak(const SpText &text) override;
    /// The service works inside this program, so it always answers; but it may have failed.
    void ping() override;

private:
    void listen();
    QStringList listVoices();
    bool isWell();
    void takeEvents();

    Microsoft::WRL::ComPtr<ISpVoice> m_voice;
    std::vector<Microsoft::WRL::ComPtr<ISpObjectToken>> m_tokens; ///< the installed voices
    QWinEventNotifier m_news;
};

} // namespace speech
