#include "ui/MToolTipCallBack.h"

#include "automation/handle.h"
#include "ui/qvToolTip.h"

#include <commctrl.h>

#include <algorithm>
#include <optional>

namespace MToolTipCallBack {
namespace {

using automation::answer_callback;
using automation::Ref;

constexpr char former_procedure[] = "OLDPROC"; ///< what a hooked window's messages go on to
constexpr char object_of_window[] = "cTTOBJ";  ///< who hears of tooltips that are nobody's; not a reference

/// The tooltips of all threads: objects may go on any thread, however wrong that is.
constinit SRWLOCK list_lock = SRWLOCK_INIT;
constinit TooltipWindow* first = nullptr;

class ListLocked {
public:
    ListLocked() noexcept { AcquireSRWLockExclusive(&list_lock); }
    ~ListLocked() { ReleaseSRWLockExclusive(&list_lock); }
    ListLocked(const ListLocked&) = delete;
    ListLocked& operator=(const ListLocked&) = delete;
};

/// Which thread a window belongs to; 0 when there is no such window.
DWORD thread_of(HWND window) noexcept
{
    return GetWindowThreadProcessId(window, nullptr);
}

/// Where the messages of a window go on to. One that has us without being hooked had its procedure replaced by somebody who kept
/// ours and brought it back: it behaves as its class does.
WNDPROC next_procedure(HWND window, WNDPROC own) noexcept
{
    if (const HANDLE former = GetPropA(window, former_procedure))
        return reinterpret_cast<WNDPROC>(former);
    const auto of_class = reinterpret_cast<WNDPROC>(static_cast<ULONG_PTR>(GetClassLongA(window, GCL_WNDPROC)));
    return of_class && of_class != own ? of_class : &DefWindowProcA;
}

/// What all notifications begin with. None where there is no memory to read: anyone may send anything.
std::optional<NMHDR> header_at(LPARAM address) noexcept
{
    NMHDR header;
    if (!ReadProcessMemory(GetCurrentProcess(), reinterpret_cast<const void*>(address), &header, sizeof header, nullptr))
        return std::nullopt;
    return header;
}

void give_text(LPARAM record, const char* text) noexcept
{
    const auto place = reinterpret_cast<void*>(record + static_cast<LPARAM>(offsetof(NMTTDISPINFOA, lpszText)));
    WriteProcessMemory(GetCurrentProcess(), place, &text, sizeof text, nullptr);
}

} // namespace

TooltipWindow::~TooltipWindow()
{
    leave(); // while the window goes nobody may find the object, which has no reference any more
    if (tooltip_)
        DestroyWindow(tooltip_);
    for (const HWND parent : parents_)
        unhook(parent);
}

void TooltipWindow::create(long style)
{
    if (tooltip_)
        return;
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_BAR_CLASSES};
    if (!InitCommonControlsEx(&controls))
        return;
    tooltip_ = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, "", static_cast<DWORD>(style), CW_USEDEFAULT, CW_USEDEFAULT,
                               CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, automation::module::handle(), nullptr);
    if (tooltip_)
        enter();
}

void TooltipWindow::hook(HWND parent)
{
    if (thread_of(parent) != GetCurrentThreadId())
        return;
    // A window that is gone took its properties along; another one may have its handle.
    const bool is_hooked = GetPropA(parent, former_procedure) && find_hooked(parent);
    if (is_hooked && is_parent(parent))
        return;
    parents_.reserve(parents_.size() + 1);
    if (!is_hooked && !install(parent))
        return;
    name_as_listener(parent);
    if (!is_parent(parent))
        parents_.push_back(parent);
}

/// Puts our procedure in front of a window's own, or of what brought ours back.
bool TooltipWindow::install(HWND parent) noexcept
{
    const LONG former = GetWindowLongA(parent, GWL_WNDPROC);
    const auto ours = reinterpret_cast<LONG>(&procedure);
    RemovePropA(parent, former_procedure);
    const LONG next = former == ours ? reinterpret_cast<LONG>(next_procedure(parent, &procedure)) : former;
    if (!next || !SetPropA(parent, former_procedure, automation::handle_from<HANDLE>(next)))
        return false;
    if (SetWindowLongA(parent, GWL_WNDPROC, ours))
        return true;
    RemovePropA(parent, former_procedure);
    return false;
}

/// Gives a window its procedure back, unless another object needs ours. What others have put in front of ours goes, too.
void TooltipWindow::unhook(HWND parent) const noexcept
{
    const HANDLE former = GetPropA(parent, former_procedure);
    if (!former || thread_of(parent) != thread_) // the window is gone, or another one has its handle
        return;
    if (const TooltipWindow* const other = find_hooked(parent, this)) {
        other->name_as_listener(parent);
        return;
    }
    RemovePropA(parent, former_procedure);
    RemovePropA(parent, object_of_window);
    SetWindowLongA(parent, GWL_WNDPROC, static_cast<LONG>(reinterpret_cast<LONG_PTR>(former)));
}

void TooltipWindow::name_as_listener(HWND parent) const noexcept
{
    SetPropA(parent, object_of_window, owner_.unknown());
}

bool TooltipWindow::is_parent(HWND window) const noexcept
{
    return std::ranges::find(parents_, window) != parents_.end();
}

void TooltipWindow::enter() noexcept
{
    const ListLocked locked;
    thread_ = GetCurrentThreadId();
    next_ = first;
    first = this;
}

void TooltipWindow::leave() noexcept
{
    const ListLocked locked;
    for (TooltipWindow** place = &first; *place; place = &(*place)->next_)
        if (*place == this) {
            *place = next_;
            return;
        }
}

/// A tooltip for which a window is hooked; null for none.
TooltipWindow* TooltipWindow::find_hooked(HWND parent, const TooltipWindow* other_than) noexcept
{
    const ListLocked locked;
    for (TooltipWindow* one = first; one; one = one->next_)
        if (one != other_than && one->thread_ == thread_of(parent) && one->is_parent(parent))
            return one;
    return nullptr;
}

/// Who hears of a notification: the object whose tooltip sent it, or else the one that the window names, provided that it is an
/// object of this thread.
Ref<qvToolTip> TooltipWindow::listener(HWND parent, HWND sender) noexcept
{
    const HANDLE named = GetPropA(parent, object_of_window);
    qvToolTip* found = nullptr;
    const ListLocked locked;
    for (TooltipWindow* one = first; one; one = one->next_) {
        if (one->is_retired_ || one->thread_ != GetCurrentThreadId())
            continue;
        if (one->tooltip_ == sender)
            return Ref{&one->owner_};
        if (one->owner_.unknown() == named)
            found = &one->owner_;
    }
    return Ref{found};
}

/// Takes what is the library's of a WM_NOTIFY. False when it goes on to the window's own procedure.
bool TooltipWindow::hears(HWND parent, WPARAM wParam, LPARAM lParam, LRESULT& reply)
{
    const auto header = header_at(lParam);
    const UINT code = header ? header->code : 0;
    if (code != TTN_NEEDTEXTA && code != TTN_SHOW && code != TTN_POP)
        return false;
    Ref<qvToolTip> object = listener(parent, header->hwndFrom);
    if (!object)
        return false;
    const auto tool = static_cast<long>(wParam);
    switch (code) {
    case TTN_NEEDTEXTA:
        if (const char* const text = answer_callback(object, static_cast<const char*>(nullptr), [&] {
                return object->text_on_demand(static_cast<long>(header->idFrom));
            }))
            give_text(lParam, text);
        break;
    case TTN_SHOW:
        reply = answer_callback(object, 0L, [&] { return object->shows(tool); });
        break;
    default:
        answer_callback(object, 0L, [&] {
            object->pops(tool);
            return 0L;
        });
        break;
    }
    let_go(std::move(object));
    return code != TTN_NEEDTEXTA;
}

LRESULT CALLBACK TooltipWindow::procedure(HWND parent, UINT message, WPARAM wParam, LPARAM lParam)
{
    const WNDPROC next = next_procedure(parent, &procedure); // which a handler may make us forget
    if (message == WM_NOTIFY) {
        LRESULT reply = 0;
        if (hears(parent, wParam, lParam, reply))
            return reply;
        if (!IsWindow(parent))
            return 0;
    }
    return CallWindowProcA(next, parent, message, wParam, lParam);
}

/// A handler may give up the object's last reference while its tooltip waits for the answer, which it then still reads: the
/// tooltip goes when the thread comes back to its messages.
void TooltipWindow::let_go(Ref<qvToolTip> object) noexcept
{
    object->AddRef();
    const bool is_last = object->Release() == 1;
    if (!is_last || !SetTimer(nullptr, 0, USER_TIMER_MINIMUM, &let_go_of_retired))
        return;
    const ListLocked locked;
    object.release()->window().is_retired_ = true;
}

void CALLBACK TooltipWindow::let_go_of_retired(HWND, UINT, UINT_PTR timer, DWORD)
{
    KillTimer(nullptr, timer);
    const auto next_retired = [] {
        const ListLocked locked;
        for (TooltipWindow* one = first; one; one = one->next_)
            if (one->is_retired_ && one->thread_ == GetCurrentThreadId()) {
                one->is_retired_ = false;
                return Ref<qvToolTip>::adopt(&one->owner_);
            }
        return Ref<qvToolTip>{};
    };
    while (next_retired()) {
    }
}

} // namespace MToolTipCallBack
