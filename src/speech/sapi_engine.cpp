#include "sp_engine.h"

#include <QWinEventNotifier>

#include <windows.h>

#include <sapi.h>
#include <sphelper.h>
#include <wrl/client.h>

#include <vector>

namespace speech {

using Microsoft::WRL::ComPtr;

constexpr char noLoudspeaker[] =
    "Windows has no loudspeaker to speak through. Plug one in, or choose one in its settings for sound.";
constexpr char voiceFailed[] = "The voice failed. Choose another one in Voice Options.";

/// Failures that Windows has no text for, or none that a caller would understand.
struct
{
    DWORD result;
    const char *words;
} constexpr failures[] = {
    {0x80040154, "The speech service of Windows is not installed."}, // REGDB_E_CLASSNOTREG
    {0x80045006, "Another program has the loudspeakers to itself. Close it, and call again."}, // ..._BUSY
    {0x80045007, noLoudspeaker}, // SPERR_DEVICE_NOT_SUPPORTED
    {0x80045008, noLoudspeaker}, // SPERR_DEVICE_NOT_ENABLED
    {0x80045009, noLoudspeaker}, // SPERR_NO_DRIVER
    {0x80045012, voiceFailed},   // SPERR_TTS_ENGINE_EXCEPTION
    {0x80045013, voiceFailed},   // SPERR_TTS_NLP_EXCEPTION
    {0x8004503A, "Windows finds no voice or no loudspeaker. Look at its settings for speech and for sound."},
    {0x8004503C, noLoudspeaker}, // SPERR_GENERIC_MMSYS_ERROR
    {0x88890004, noLoudspeaker}, // AUDCLNT_E_DEVICE_INVALIDATED
};

static QString wordsFor(HRESULT result)
{
    for (const auto &failure : failures) {
        if (failure.result == static_cast<DWORD>(result))
            return QString::fromLatin1(failure.words);
    }
    wchar_t text[512];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(result), 0, text, std::size(text), nullptr);
    return length > 0
               ? QString::fromWCharArray(text, static_cast<int>(length)).trimmed()
               : QStringLiteral("The speech service of Windows failed. Choose another voice, or look at "
                                "the settings for sound.");
}

static void requireOk(HRESULT result)
{
    if (FAILED(result))
        throw base::Error(result, wordsFor(result));
}

/// What Windows calls a voice; a voice without a description goes by its id.
static QString descriptionOf(ISpObjectToken *token)
{
    wchar_t *text = nullptr;
    if (FAILED(SpGetDescription(token, &text)))
        requireOk(token->GetId(&text));
    const QString description = QString::fromWCharArray(text);
    CoTaskMemFree(text);
    return description;
}

namespace {

/// Speech through Windows' own service, SAPI 5. It works on threads of its own and sets a Win32 event when
/// there is news, which the event loop hears. Its failures keep their HRESULT.
class SapiEngine : public SpEngine
{
public:
    /// Throws Error when SAPI is not installed. COM is ready in the thread in which Qt shows windows.
    SapiEngine()
    {
        requireOk(CoCreateInstance(CLSID_SpVoice, nullptr, CLSCTX_ALL, IID_PPV_ARGS(&m_voice)));
        connect(&m_news, &QWinEventNotifier::activated, this, &SapiEngine::takeEvents);
    }

    ~SapiEngine() override
    {
        m_news.setEnabled(false);
        m_voice->Speak(nullptr, SPF_ASYNC | SPF_PURGEBEFORESPEAK, nullptr);
    }

    void open() override
    try {
        const ULONGLONG events = SPFEI(SPEI_START_INPUT_STREAM) | SPFEI(SPEI_END_INPUT_STREAM);
        requireOk(m_voice->SetInterest(events, events));
        requireOk(m_voice->SetNotifyWin32Event());
        m_news.setHandle(m_voice->GetNotifyEventHandle());
        m_news.setEnabled(true);
        requireOk(m_voice->SetAlertBoundary(SPEI_PHONEME));
        Q_EMIT opened(listVoices());
    } catch (const base::Error &error) {
        Q_EMIT failed(error);
    }

    void speak(const SpText &text) override
    try {
        if (text.voice)
            requireOk(m_voice->SetVoice(m_tokens.at(static_cast<std::size_t>(*text.voice)).Get()));
        requireOk(m_voice->SetRate(text.rate));
        requireOk(m_voice->Speak(text.text.toStdWString().c_str(), SPF_ASYNC | SPF_IS_NOT_XML, nullptr));
    } catch (const base::Error &error) {
        Q_EMIT failed(error);
    }

    /// The service works inside this program, so it always answers; but it may have failed.
    void ping() override
    {
        if (isWell())
            Q_EMIT alive();
    }

private:
    QStringList listVoices()
    {
        ComPtr<IEnumSpObjectTokens> tokens;
        requireOk(SpEnumTokens(SPCAT_VOICES, nullptr, nullptr, &tokens));
        QStringList descriptions;
        ComPtr<ISpObjectToken> token;
        while (tokens->Next(1, token.ReleaseAndGetAddressOf(), nullptr) == S_OK) {
            descriptions.append(descriptionOf(token.Get()));
            m_tokens.push_back(token);
        }
        return descriptions;
    }

    /// Signals what failed during a text, as when the loudspeaker is unplugged: only the status has it.
    bool isWell()
    try {
        SPVOICESTATUS status;
        if (SUCCEEDED(m_voice->GetStatus(&status, nullptr)))
            requireOk(status.hrLastResult);
        return true;
    } catch (const base::Error &error) {
        Q_EMIT failed(error);
        return false;
    }

    void takeEvents()
    {
        SPEVENT event;
        while (m_voice->GetEvents(1, &event, nullptr) == S_OK) {
            if (event.eEventId == SPEI_START_INPUT_STREAM)
                Q_EMIT begun();
            else if (event.eEventId == SPEI_END_INPUT_STREAM && isWell())
                Q_EMIT ended();
        }
    }

    ComPtr<ISpVoice> m_voice;
    std::vector<ComPtr<ISpObjectToken>> m_tokens; ///< the installed voices
    QWinEventNotifier m_news;
};

} // namespace

std::unique_ptr<SpEngine> makeSystemEngine()
{
    return std::make_unique<SapiEngine>();
}

} // namespace speech
