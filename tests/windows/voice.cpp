// A speech service for the test, in SAPI's place: writes each text into the file that $VELLOMIR_SAID names,
// as "VOICE RATE BOUNDARY FLAGS TEXT", and reports its begin at once and its end a little later. It refuses
// "Gee, 48".

#define CINTERFACE // tables of functions in place of classes: most of them do nothing
#include <windows.h>

#include <sapi.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <string>
#include <thread>

struct Voice : ISpVoice
{
    std::wstring name = L"default";
    long rate = 0;
    int boundary = 0;
    HANDLE news = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    std::atomic<int> begun = 0;
    std::atomic<int> ended = 0;
};

static Voice &self(ISpVoice *voice)
{
    return static_cast<Voice &>(*voice);
}

static HRESULT doNothing()
{
    return S_OK;
}

template <typename Table>
static Table tableOfNothing()
{
    Table table;
    void **functions = reinterpret_cast<void **>(&table);
    std::fill_n(functions, sizeof table / sizeof *functions, reinterpret_cast<void *>(doNothing));
    return table;
}

static HRESULT speak(ISpVoice *voice, const wchar_t *text, DWORD flags, ULONG *)
{
    if (!text)
        return S_OK;
    if (std::wstring(text) == L"Gee, 48")
        return HRESULT_FROM_WIN32(ERROR_DEVICE_NOT_CONNECTED);
    FILE *said = _wfopen(_wgetenv(L"VELLOMIR_SAID"), L"a");
    std::fprintf(said, "%ls %ld %d %lu %ls\n", self(voice).name.c_str(), self(voice).rate,
                 self(voice).boundary, flags, text);
    std::fclose(said);
    const auto report = [voice](std::atomic<int> &kind) { ++kind, SetEvent(self(voice).news); };
    report(self(voice).begun);
    std::thread([=] { Sleep(300), report(self(voice).ended); }).detach();
    return S_OK;
}

static HRESULT getEvents(ISpVoice *voice, ULONG, SPEVENT *event, ULONG *)
{
    const bool isBegin = self(voice).begun > 0;
    std::atomic<int> &kind = isBegin ? self(voice).begun : self(voice).ended;
    event->eEventId = isBegin ? SPEI_START_INPUT_STREAM : SPEI_END_INPUT_STREAM;
    return kind > 0 ? --kind, S_OK : S_FALSE;
}

static HRESULT setVoice(ISpVoice *voice, ISpObjectToken *token)
{
    wchar_t *id = nullptr;
    token->lpVtbl->GetId(token, &id);
    self(voice).name = std::wstring(id).substr(std::wstring(id).rfind(L'\\') + 1);
    return S_OK;
}

static HRESULT makeVoice(IClassFactory *, IUnknown *, REFIID, void **made)
{
    static ISpVoiceVtbl table = tableOfNothing<ISpVoiceVtbl>();
    table.GetNotifyEventHandle = [](ISpVoice *voice) { return self(voice).news; };
    table.GetEvents = getEvents;
    table.SetVoice = setVoice;
    table.SetRate = [](ISpVoice *voice, long rate) { return self(voice).rate = rate, S_OK; };
    table.SetAlertBoundary = [](ISpVoice *voice, SPEVENTENUM at) { return self(voice).boundary = at, S_OK; };
    table.Speak = speak;
    auto *voice = new Voice;
    voice->lpVtbl = &table;
    *made = voice;
    return S_OK;
}

extern "C" __declspec(dllexport) HRESULT DllGetClassObject(REFCLSID, REFIID, void **made)
{
    static IClassFactoryVtbl table = tableOfNothing<IClassFactoryVtbl>();
    table.CreateInstance = makeVoice;
    static IClassFactory factory{&table};
    *made = &factory;
    return S_OK;
}
