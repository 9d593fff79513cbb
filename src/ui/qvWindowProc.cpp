#include "ui/qvWindowProc.h"

#include "automation/handle.h"
#include "ui/MWindowProcSubClassing.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>

using automation::Ref;
using automation::Variant;

namespace {

bool is_writable(const std::byte* place) noexcept
{
    constexpr DWORD writable = PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    MEMORY_BASIC_INFORMATION region{};
    return VirtualQuery(place, &region, sizeof region) != 0 && region.State == MEM_COMMIT && (region.Protect & writable) != 0
        && (region.Protect & PAGE_GUARD) == 0;
}

} // namespace

void qvWindowProc::RaiseFormMessage(long hwnd, long& wMsg, long& wParam, long& lParam, VARIANT_BOOL& Cancel)
{
    using automation::by_reference;
    constexpr DISPID message = 1;
    if (!limits_sizes_) {
        events().fire(message, {automation::argument(hwnd), by_reference(wMsg), by_reference(wParam), by_reference(lParam),
                                by_reference(Cancel)});
        return;
    }
    if (wMsg != WM_GETMINMAXINFO)
        return;
    limit(lParam);
    Cancel = VARIANT_TRUE;
}

/// Writes the limits into the record at an address. Anyone may send the message with any address: one where no record can be is
/// left alone.
void qvWindowProc::limit(long min_max_info) const noexcept
{
    MinMaxFields fields;
    auto* const record = automation::handle_from<std::byte*>(min_max_info);
    if (!is_writable(record) || !is_writable(record + sizeof fields - 1)) // it lies in two pages at most
        return;
    std::memcpy(&fields, record, sizeof fields);
    std::ranges::transform(limits_, fields, fields.begin(), [](long limit, long field) { return limit != 0 ? limit : field; });
    std::memcpy(record, &fields, sizeof fields);
}

void qvWindowProc::AddMsg(long Msg) noexcept
try {
    get_RegisteredMessages()->add(Variant{Msg}, std::to_wstring(Msg));
} catch (...) {
}

void qvWindowProc::RemoveMsg(long Msg) noexcept
try {
    get_RegisteredMessages()->Remove(Variant{std::to_wstring(Msg)});
} catch (...) {
}

void qvWindowProc::ClearAllMsgs()
{
    const Ref<automation::Collection> messages = get_RegisteredMessages();
    for (long left = messages->get_Count(); left > 0; --left)
        messages->Remove(Variant{1L});
}

Ref<automation::Collection> qvWindowProc::get_RegisteredMessages()
{
    if (!messages_)
        messages_ = automation::make<automation::Collection>();
    return messages_;
}

void qvWindowProc::put_hwnd(long value) noexcept
{
    using MWindowProcSubClassing::WindowRegistry;
    HookWindow(false);
    if (original_ != 0)
        return;
    WindowRegistry::remove(hwnd_);
    // A window that is hooked, but whose messages find no object, would be dead.
    hwnd_ = WindowRegistry::add(value, Ref{this}) ? value : 0;
    HookWindow(enabled_);
}

void qvWindowProc::put_Enabled(bool value) noexcept
{
    if (value == enabled_)
        return;
    enabled_ = value;
    HookWindow(value);
}

/// Does nothing where the window can't be hooked: it may be gone, or another program's.
void qvWindowProc::HookWindow(bool enable) noexcept
try {
    const auto window = automation::handle_from<HWND>(hwnd_);
    if (enable && original_ == 0) {
        original_ = SetWindowLongA(window, GWL_WNDPROC, MWindowProcSubClassing::procedure());
    } else if (!enable && original_ != 0) {
        // While it keeps our procedure, it needs the object that knows its own.
        if (SetWindowLongA(window, GWL_WNDPROC, original_) || !IsWindow(window))
            original_ = 0;
    }
} catch (...) {
}

bool qvWindowProc::SetMinMaxInfo(const long* MinTrackSizeX, const long* MinTrackSizeY, const long* MaxTrackSizeX,
                                 const long* MaxTrackSizeY, const long* MaxSizeX, const long* MaxSizeY, const long* MaxPositionX,
                                 const long* MaxPositionY, const long*, const long*) noexcept
{
    const auto given = [](const long* limit) { return limit ? *limit : 0; };
    limits_ = {0, 0,
               given(MaxSizeX), given(MaxSizeY),
               given(MaxPositionX), given(MaxPositionY),
               given(MinTrackSizeX), given(MinTrackSizeY),
               given(MaxTrackSizeX), given(MaxTrackSizeY)};
    limits_sizes_ = limits_ != MinMaxFields{};
    limits_sizes_ ? AddMsg(WM_GETMINMAXINFO) : RemoveMsg(WM_GETMINMAXINFO);
    return false;
}
