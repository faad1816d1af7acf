#pragma once

#include "sp_engine.h"

#include <QWinEventNotifier>

#include <windows.h>

#include <sapi.h>
#include <wrl/client.h>

#include <vector>

namespace speech {

/// Speech through Windows' own service, SAPI 5. It works on threads of its own and sets a Win32 event when
/// there is news, which the event loop hears. Its failures keep their HRESULT and Windows' text for it.
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
    /// The service works inside this program: there is nobody who could fail to answer.
    void ping() override { Q_EMIT alive(); }

private:
    void listen();
    QStringList listVoices();
    void takeEvents();

    Microsoft::WRL::ComPtr<ISpVoice> m_voice;
    std::vector<Microsoft::WRL::ComPtr<ISpObjectToken>> m_tokens; ///< the installed voices
    QWinEventNotifier m_news;
};

} // namespace speech
