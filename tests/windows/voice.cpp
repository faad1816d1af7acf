// A speech service for the test, in SAPI's place: writes each text into the file that $VELLOMIR_SAID names,
// as "VOICE RATE BOUNDARY FLAGS TEXT", and reports its begin at once and its end a little later. It refuses
// "Gee, 48".

#define CINTERFACE // tables of functions in place of classes: most of their places take one and the same
#include <windows.h>

#include <sapi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <mutex>
#include <string>

namespace {

HRESULT STDMETHODCALLTYPE refuse(void *)
{
    return E_NOTIMPL;
}

ULONG STDMETHODCALLTYPE keep(void *)
{
    return 1;
}

template <typename Table>
Table tableThatRefuses()
{
    Table table;
    std::fill_n(reinterpret_cast<void **>(&table), sizeof table / sizeof(void *),
                reinterpret_cast<void *>(refuse));
    table.AddRef = reinterpret_cast<decltype(table.AddRef)>(keep);
    table.Release = reinterpret_cast<decltype(table.Release)>(keep);
    return table;
}

struct Voice : ISpVoice
{
    std::wstring name = L"default";
    long rate = 0;
    int boundary = 0;
    HANDLE news = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    std::mutex mutex;
    std::deque<SPEVENTENUM> events;

    void tell(SPEVENTENUM event)
    {
        const std::lock_guard lock(mutex);
        events.push_back(event);
        SetEvent(news);
    }
};

Voice *self(ISpVoice *voice)
{
    return static_cast<Voice *>(voice);
}

HRESULT STDMETHODCALLTYPE speak(ISpVoice *voice, const wchar_t *text, DWORD flags, ULONG *)
{
    if (!text)
        return S_OK;
    if (std::wstring(text) == L"Gee, 48")
        return HRESULT_FROM_WIN32(ERROR_DEVICE_NOT_CONNECTED);
    FILE *said = _wfopen(_wgetenv(L"VELLOMIR_SAID"), L"a");
    std::fprintf(said, "%ls %ld %d %lu %ls\n", self(voice)->name.c_str(), self(voice)->rate,
                 self(voice)->boundary, flags, text);
    std::fclose(said);
    self(voice)->tell(SPEI_START_INPUT_STREAM);
    HANDLE timer = nullptr;
    const auto end = [](void *of, BOOLEAN) { static_cast<Voice *>(of)->tell(SPEI_END_INPUT_STREAM); };
    CreateTimerQueueTimer(&timer, nullptr, end, self(voice), 300, 0, WT_EXECUTEONLYONCE);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE getEvents(ISpVoice *voice, ULONG, SPEVENT *event, ULONG *)
{
    const std::lock_guard lock(self(voice)->mutex);
    if (self(voice)->events.empty())
        return S_FALSE;
    event->eEventId = self(voice)->events.front();
    self(voice)->events.pop_front();
    return S_OK;
}

HRESULT STDMETHODCALLTYPE setVoice(ISpVoice *voice, ISpObjectToken *token)
{
    wchar_t *id = nullptr;
    token->lpVtbl->GetId(token, &id);
    self(voice)->name = std::wstring(id).substr(std::wstring(id).rfind(L'\\') + 1);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE make(IClassFactory *, IUnknown *, REFIID, void **made)
{
    static ISpVoiceVtbl table = tableThatRefuses<ISpVoiceVtbl>();
    table.SetInterest = [](ISpVoice *, ULONGLONG, ULONGLONG) -> HRESULT { return S_OK; };
    table.SetNotifyWin32Event = [](ISpVoice *) -> HRESULT { return S_OK; };
    table.GetNotifyEventHandle = [](ISpVoice *voice) { return self(voice)->news; };
    table.GetEvents = getEvents;
    table.SetVoice = setVoice;
    table.SetRate = [](ISpVoice *voice, long rate) -> HRESULT { return self(voice)->rate = rate, S_OK; };
    table.SetAlertBoundary = [](ISpVoice *voice, SPEVENTENUM boundary) -> HRESULT {
        return self(voice)->boundary = boundary, S_OK;
    };
    table.Speak = speak;
    auto *voice = new Voice;
    voice->lpVtbl = &table;
    *made = voice;
    return S_OK;
}

} // namespace

extern "C" __declspec(dllexport) HRESULT WINAPI DllGetClassObject(REFCLSID, REFIID, void **made)
{
    static IClassFactoryVtbl table = tableThatRefuses<IClassFactoryVtbl>();
    table.CreateInstance = make;
    static IClassFactory factory{&table};
    *made = &factory;
    return S_OK;
}
