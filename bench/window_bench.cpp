// What a message costs on its way through a watched window: 100,000 of them sent to a window that is watched with nothing
// registered, and with one message registered of which a client in C++ hears, against a window that is subclassed by a bare
// procedure. Every ratio is of times taken in this run, the typical one of several.
#include "stopwatch.h"

#include "ui/qvWindowProc.h"

#include <cstdio>

namespace {

constexpr int rounds = 15;
constexpr int messages = 100'000;
constexpr UINT sent = WM_USER;

LRESULT CALLBACK plain_procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return message == sent ? 1 : DefWindowProcA(window, message, wParam, lParam);
}

HWND make_window()
{
    WNDCLASSA of_window{};
    of_window.lpfnWndProc = plain_procedure;
    of_window.lpszClassName = "qvObjects benchmark";
    RegisterClassA(&of_window); // unless it is already
    return CreateWindowA(of_window.lpszClassName, "", WS_POPUP, 0, 0, 100, 100, nullptr, nullptr, nullptr, nullptr);
}

WNDPROC former;

LRESULT CALLBACK bare_procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return CallWindowProcA(former, window, message, wParam, lParam);
}

/// A client that counts. It lives where it is declared.
class Counter final : public IDispatch {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override
    {
        *object = this;
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        ++count;
        return S_OK;
    }

    int count = 0;
};

void listen(qvWindowProc& watcher, Counter& counter)
{
    const auto container = automation::query<IConnectionPointContainer>(watcher.unknown());
    automation::Ref<IConnectionPoint> point;
    DWORD cookie = 0;
    container->FindConnectionPoint(__uuidof(__qvWindowProc), point.put());
    point->Advise(&counter, &cookie);
}

automation::Ref<qvWindowProc> watch(HWND window)
{
    auto watcher = automation::make<qvWindowProc>();
    watcher->put_hwnd(static_cast<long>(reinterpret_cast<LONG_PTR>(window)));
    watcher->put_Enabled(true);
    return watcher;
}

int answered = 0;

void send(HWND window)
{
    for (int i = 0; i < messages; ++i)
        answered += SendMessageA(window, sent, 1, 2) == 1;
}

} // namespace

int main()
{
    Counter counter;
    const HWND subclassed = make_window(), silent = make_window(), reporting = make_window();
    former = reinterpret_cast<WNDPROC>(SetWindowLongA(subclassed, GWL_WNDPROC, reinterpret_cast<LONG>(&bare_procedure)));
    const auto unheard = watch(silent), heard = watch(reporting);
    heard->AddMsg(sent);
    listen(*heard, counter);
    Typical bare, watched, reported;
    for (int round = 0; round < rounds; ++round) {
        bare.take([&] { send(subclassed); });
        watched.take([&] { send(silent); });
        reported.take([&] { send(reporting); });
    }
    std::printf("%d messages to a window that is subclassed by a bare procedure: %.0f ms\n", messages, 1000 * bare.seconds());
    std::printf("  %.2f times that when it is watched and nothing is registered (bar 3)\n", watched.seconds() / bare.seconds());
    std::printf("  %.2f times that when a client in C++ hears of each (bar 10)\n", reported.seconds() / bare.seconds());
    return counter.count == rounds * messages && answered == 3 * rounds * messages ? 0 : 1;
}
