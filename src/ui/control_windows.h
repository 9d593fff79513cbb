#pragma once

#include <windows.h>

/// The windows behind a client's forms and controls. Nothing of this fails: what is no window stays as it is.
namespace control_windows {

/// The inner size of a window in pixels; 0 and 0 for what is none.
SIZE inner_size(HWND window);

/// Switches extended styles of a list view on or off, and leaves its other ones.
void change_list_view_style(HWND list_view, LPARAM style, bool on);
/// The same with the styles of the tool bar that is a child of `host`. False when there is none.
bool change_tool_bar_style(HWND host, LPARAM style, bool on);

/// Allows or forbids a window to draw itself, and has it drawn anew then if asked. Gives what the platform's last call gave.
long set_redraw(HWND window, bool allowed, bool draws_now);

} // namespace control_windows
