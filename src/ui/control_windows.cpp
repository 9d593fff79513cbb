#include "ui/control_windows.h"

#include "automation/floating_control.h"

#include <commctrl.h>

namespace control_windows {
namespace {

/// A window's procedure is code of the client.
LRESULT send(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    const automation::CalculatesAsClient as_client;
    return SendMessageA(window, message, wparam, lparam);
}

RECT inner_area(HWND window)
{
    RECT area{};
    GetClientRect(window, &area);
    return area;
}

LPARAM changed(LPARAM styles, LPARAM style, bool on) noexcept
{
    return on ? styles | style : styles & ~style;
}

} // namespace

SIZE inner_size(HWND window)
{
    const RECT area = inner_area(window);
    return {area.right, area.bottom};
}

void change_list_view_style(HWND list_view, LPARAM style, bool on)
{
    const LPARAM former = send(list_view, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0);
    send(list_view, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, changed(former, style, on));
}

bool change_tool_bar_style(HWND host, LPARAM style, bool on)
{
    // No host would mean the desktop, where tool bars of other programs may lie.
    const HWND tool_bar = host ? FindWindowExA(host, nullptr, "ToolbarWindow32", nullptr) : nullptr;
    if (!tool_bar)
        return false;
    const LPARAM former = send(tool_bar, TB_GETSTYLE, 0, 0);
    send(tool_bar, TB_SETSTYLE, 0, changed(former, style, on));
    return true;
}

long set_redraw(HWND window, bool allowed, bool draws_now)
{
    const auto answer = static_cast<long>(send(window, WM_SETREDRAW, allowed ? static_cast<WPARAM>(-1) : 0, 0));
    if (!allowed || !draws_now)
        return answer;
    const RECT area = inner_area(window); // an empty one for what is no window, as none would mean the desktop
    const automation::CalculatesAsClient as_client;
    return RedrawWindow(window, &area, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
}

} // namespace control_windows
