#include "ui/MWindowProcSubClassing.h"

#include "automation/handle.h"

#include <windows.h>

#include <objidl.h>

#include <algorithm>

using automation::or_default;
using automation::Ref;

namespace MWindowProcSubClassing {
namespace {

const automation::OwnedPerThread<WindowRegistry> registries;

/// Hears when a thread leaves automation, while the clients' objects can still be called. It is part of the module.
class LeavingThread final : public IInitializeSpy {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override
    {
        if (!object)
            return E_POINTER;
        *object = iid == IID_IUnknown || iid == IID_IInitializeSpy ? this : nullptr;
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return 2; }
    ULONG STDMETHODCALLTYPE Release() noexcept override { return 1; }
    HRESULT STDMETHODCALLTYPE PreInitialize(DWORD, DWORD) noexcept override { return S_OK; }
    HRESULT STDMETHODCALLTYPE PostInitialize(HRESULT result, DWORD, DWORD) noexcept override { return result; }
    HRESULT STDMETHODCALLTYPE PreUninitialize(DWORD entered) noexcept override
    {
        if (entered == 1)
            WindowRegistry::end();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE PostUninitialize(DWORD) noexcept override { return S_OK; }
};

constinit LeavingThread leaving_thread;

/// A message on its way to its window, as the handlers of the event leave it.
struct Message {
    long number, wParam, lParam;
    VARIANT_BOOL cancelled = VARIANT_FALSE;
};

/// Whether an item of the set is a message's number. It may be any value of the client's; what is no number is no message.
bool names(const VARIANT& item, long number) noexcept
{
    if (item.vt == VT_I4)
        return item.lVal == number;
    return or_default([&] { return automation::converted(item, VT_R8).dblVal == number; });
}

/// Every handler hears of it, whatever another one does.
void report(qvWindowProc& watcher, long hwnd, Message& message)
{
    const Ref<automation::Collection> messages = watcher.get_RegisteredMessages();
    if (messages->get_Count() == 0)
        return;
    const auto raise = [&] {
        or_default([&] { watcher.RaiseFormMessage(hwnd, message.number, message.wParam, message.lParam, message.cancelled); });
    };
    if (watcher.get_MonitorAll()) {
        raise();
        return;
    }
    messages->for_each([&](const VARIANT& item) {
        if (names(item, message.number))
            raise();
    });
}

LRESULT CALLBACK SubclassWindowProc(HWND hwnd, UINT uMsg, WPARAM wParam, LPARAM lParam) noexcept
{
    const auto window = static_cast<long>(reinterpret_cast<LONG_PTR>(hwnd));
    const Ref<qvWindowProc> watcher = WindowRegistry::watcher_of(window);
    if (!watcher)
        return 0;
    Message message{static_cast<long>(uMsg), static_cast<long>(wParam), lParam};
    automation::answer_callback(watcher, 0, [&] {
        report(*watcher, window, message);
        return 0;
    });
    const LONG original = watcher->get_OriginalWindowProc();
    // An object that hooked a hooked window would pass its messages to itself without end.
    if (message.cancelled != VARIANT_FALSE || original == 0 || original == procedure())
        return 0;
    return CallWindowProcA(automation::handle_from<WNDPROC>(original), hwnd, static_cast<UINT>(message.number),
                           static_cast<WPARAM>(message.wParam), message.lParam);
}

} // namespace

WindowRegistry::WindowRegistry()
{
    ULARGE_INTEGER cookie; // it stays as long as the thread
    automation::check(CoRegisterInitializeSpy(&leaving_thread, &cookie));
}

WindowRegistry::Entries::iterator WindowRegistry::place_of(long hwnd) noexcept
{
    return std::ranges::lower_bound(entries_, hwnd, {}, &Entry::hwnd);
}

Ref<qvWindowProc> WindowRegistry::watcher_of(long hwnd) noexcept
{
    WindowRegistry* const registry = registries.find();
    if (!registry)
        return nullptr;
    const auto place = registry->place_of(hwnd);
    return registry->has(place, hwnd) ? place->watcher : nullptr;
}

bool WindowRegistry::add(long hwnd, Ref<qvWindowProc> watcher) noexcept
{
    return or_default([&] {
        WindowRegistry& registry = registries.here();
        const auto place = registry.place_of(hwnd);
        if (!registry.has(place, hwnd))
            registry.entries_.insert(place, {hwnd, std::move(watcher)});
        return true;
    });
}

void WindowRegistry::remove(long hwnd) noexcept
{
    WindowRegistry* const registry = registries.find();
    if (!registry)
        return;
    const auto place = registry->place_of(hwnd);
    if (!registry->has(place, hwnd))
        return;
    const Ref<qvWindowProc> last = std::move(place->watcher); // letting go of it may run code that comes back here
    registry->entries_.erase(place);
}

void WindowRegistry::end() noexcept
{
    if (WindowRegistry* const registry = registries.find())
        registry->end_all();
}

/// A client may hold some of the objects for longer: their windows work on without them.
void WindowRegistry::end_all() noexcept
{
    const Entries last = std::move(entries_); // letting go of them may run code that comes back here
    for (const Entry& entry : last)
        entry.watcher->put_Enabled(false);
}

LONG procedure() noexcept
{
    return static_cast<LONG>(reinterpret_cast<LONG_PTR>(&SubclassWindowProc));
}

} // namespace MWindowProcSubClassing
