#include "sapi_engine.h"

#include <sphelper.h>

namespace speech {

using Microsoft::WRL::ComPtr;

namespace {

void requireOk(HRESULT result)
{
    if (FAILED(result))
        throw base::Error(result, qt_error_string(result));
}

/// What Windows calls a voice; a voice without a description goes by its id.
QString descriptionOf(ISpObjectToken *token)
{
    wchar_t *text = nullptr;
    if (FAILED(SpGetDescription(token, &text)))
        requireOk(token->GetId(&text));
    const QString description = QString::fromWCharArray(text);
    CoTaskMemFree(text);
    return description;
}

} // namespace

std::unique_ptr<SpEngine> makeSystemEngine()
{
    return std::make_unique<SapiEngine>();
}

SapiEngine::SapiEngine()
{
    requireOk(CoCreateInstance(CLSID_SpVoice, nullptr, CLSCTX_ALL, IID_PPV_ARGS(&m_voice)));
    connect(&m_news, &QWinEventNotifier::activated, this, &SapiEngine::takeEvents);
}

SapiEngine::~SapiEngine()
{
    m_news.setEnabled(false);
    m_voice->Speak(nullptr, SPF_ASYNC | SPF_PURGEBEFORESPEAK, nullptr);
}

void SapiEngine::open()
{
    QStringList voices;
    try {
        listen();
        requireOk(m_voice->SetAlertBoundary(SPEI_PHONEME));
        voices = listVoices();
    } catch (const base::Error &error) {
        Q_EMIT failed(error);
        return;
    }
    Q_EMIT opened(voices);
}

void SapiEngine::listen()
{
    const ULONGLONG events = SPFEI(SPEI_START_INPUT_STREAM) | SPFEI(SPEI_END_INPUT_STREAM);
    requireOk(m_voice->SetInterest(events, events));
    requireOk(m_voice->SetNotifyWin32Event());
    m_news.setHandle(m_voice->GetNotifyEventHandle());
    m_news.setEnabled(true);
}

QStringList SapiEngine::listVoices()
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

void SapiEngine::speak(const SpText &text)
try {
    if (text.voice)
        requireOk(m_voice->SetVoice(m_tokens.at(static_cast<std::size_t>(*text.voice)).Get()));
    requireOk(m_voice->SetRate(text.rate));
    requireOk(m_voice->Speak(text.text.toStdWString().c_str(), SPF_ASYNC | SPF_IS_NOT_XML, nullptr));
} catch (const base::Error &error) {
    Q_EMIT failed(error);
}

void SapiEngine::takeEvents()
{
    SPEVENT event;
    while (m_voice->GetEvents(1, &event, nullptr) == S_OK) {
        if (event.eEventId == SPEI_START_INPUT_STREAM)
            Q_EMIT begun();
        else if (event.eEventId == SPEI_END_INPUT_STREAM)
            Q_EMIT ended();
    }
}

} // namespace speech
