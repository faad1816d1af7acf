// A speech service for the test, in SAPI's place: writes each text into said.txt, as "VOICE RATE BOUNDARY
// FLAGS TEXT", and reports its begin at once and its end a little later. It refuses no text, and any text
// before the end of the last one, and answers "Gee, 48" with an error. While it says "Gee, 49" the
// loudspeaker is unplugged.

#define CINTERFACE // tables of functions in place of classes: most of them do nothing
#include <windows.h>

#include <sapi.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <thread>

struct Voice : ISpVoice
{
    wchar_t *name = wcsdup(L"default");
    long rate = 0;
    int boundary = 0;
    HANDLE news = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    std::atomic<int> reported = 0; ///< begins and ends, by turns
    int taken = 0;
    HRESULT last = S_OK;
};

static Voice &self(ISpVoice *voice)
{
    return static_cast<Voice &>(*voice);
}

static HRESULT makeVoice(IClassFactory *, IUnknown *, REFIID, void **made)
{
    static ISpVoiceVtbl table;
    std::fill_n(reinterpret_cast<HRESULT (**)()>(&table), sizeof table / sizeof(void *), [] { return S_OK; });
    table.GetNotifyEventHandle = [](ISpVoice *voice) { return self(voice).news; };
    table.GetEvents = [](ISpVoice *voice, ULONG, SPEVENT *event, ULONG *) {
        if (self(voice).taken == self(voice).reported)
            return S_FALSE;
        event->eEventId = self(voice).taken++ % 2 == 0 ? SPEI_START_INPUT_STREAM : SPEI_END_INPUT_STREAM;
        return S_OK;
    };
    table.GetStatus = [](auto *voice, auto *status, auto) {
        return status->hrLastResult = self(voice).last, S_OK;
    };
    table.SetVoice = [](auto *voice, auto *token) { return token->lpVtbl->GetId(token, &self(voice).name); };
    table.SetRate = [](ISpVoice *voice, long rate) { return self(voice).rate = rate, S_OK; };
    table.SetAlertBoundary = [](ISpVoice *voice, SPEVENTENUM at) { return self(voice).boundary = at, S_OK; };
    table.Speak = [](ISpVoice *voice, const wchar_t *text, DWORD flags, ULONG *) {
        Voice &it = self(voice);
        if (!text || it.reported % 2 == 1)
            return E_ABORT;
        std::wofstream said("said.txt", std::ios::app);
        said << it.name << ' ' << it.rate << ' ' << it.boundary << ' ' << flags << ' ' << text << '\n';
        it.last = wcscmp(text, L"Gee, 49") == 0 ? 0x8004503C : S_OK;
        const auto report = [&it] { ++it.reported, SetEvent(it.news); };
        report();
        std::thread([=] { Sleep(300), report(); }).detach();
        return wcscmp(text, L"Gee, 48") == 0 ? E_FAIL : S_OK;
    };
    *made = new Voice{{&table}};
    return S_OK;
}

extern "C" __declspec(dllexport) HRESULT DllGetClassObject(REFCLSID, REFIID, void **made)
{
    static IClassFactoryVtbl table{.Release = [](auto *) { return 1UL; }, .CreateInstance = makeVoice};
    *made = new IClassFactory{&table};
    return S_OK;
}
