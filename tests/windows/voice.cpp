// A speech service for the test, in SAPI's place: writes each text into said.txt, as "VOICE RATE BOUNDARY
// FLAGS TEXT", and reports its begin at once and its end a little later. It refuses "Gee, 48", and any text
// before the end of the last one.

#define CINTERFACE // tables of functions in place of classes: most of them do nothing
#include <windows.h>

#include <sapi.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <thread>

static wchar_t *s_voice = wcsdup(L"default");
static long s_rate = 0;
static int s_boundary = 0;
static HANDLE s_news = CreateEventW(nullptr, FALSE, FALSE, nullptr);
static std::atomic<int> s_reported = 0; ///< begins and ends, by turns

static HRESULT speak(ISpVoice *, const wchar_t *text, DWORD flags, ULONG *)
{
    if (!text)
        return S_OK;
    if (s_reported % 2 == 1 || wcscmp(text, L"Gee, 48") == 0)
        return HRESULT_FROM_WIN32(ERROR_DEVICE_NOT_CONNECTED);
    std::wofstream said("said.txt", std::ios::app);
    said << s_voice << ' ' << s_rate << ' ' << s_boundary << ' ' << flags << ' ' << text << '\n';
    const auto report = [] { ++s_reported, SetEvent(s_news); };
    report();
    std::thread([=] { Sleep(300), report(); }).detach();
    return S_OK;
}

static HRESULT getEvents(ISpVoice *, ULONG, SPEVENT *event, ULONG *)
{
    static int taken = 0;
    if (taken == s_reported)
        return S_FALSE;
    event->eEventId = taken++ % 2 == 0 ? SPEI_START_INPUT_STREAM : SPEI_END_INPUT_STREAM;
    return S_OK;
}

static HRESULT makeVoice(IClassFactory *, IUnknown *, REFIID, void **made)
{
    static ISpVoiceVtbl table;
    std::fill_n(reinterpret_cast<HRESULT (**)()>(&table), sizeof table / sizeof(void *), [] { return S_OK; });
    table.GetNotifyEventHandle = [](ISpVoice *) { return s_news; };
    table.GetEvents = getEvents;
    table.SetVoice = [](ISpVoice *, ISpObjectToken *token) { return token->lpVtbl->GetId(token, &s_voice); };
    table.SetRate = [](ISpVoice *, long rate) { return s_rate = rate, S_OK; };
    table.SetAlertBoundary = [](ISpVoice *, SPEVENTENUM at) { return s_boundary = at, S_OK; };
    table.Speak = speak;
    static ISpVoice voice{&table};
    *made = &voice;
    return S_OK;
}

extern "C" __declspec(dllexport) HRESULT DllGetClassObject(REFCLSID, REFIID, void **made)
{
    static IClassFactoryVtbl table{.Release = [](IClassFactory *) -> ULONG { return 1; },
                                   .CreateInstance = makeVoice};
    static IClassFactory factory{&table};
    *made = &factory;
    return S_OK;
}
