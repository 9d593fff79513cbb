#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace ui {

/// What the path dialog asks.
struct PathQuestion {
    std::wstring caption;
    std::wstring prompt;
    std::wstring path;       ///< where it starts; of a text with a NUL what stands before
    bool may_create = false; ///< whether a folder that is missing may be created
};

/// Lets the user type or choose a folder, and waits until it can be taken: its path, which ends in a backslash only as a
/// drive's root. None when the user cancelled. `owner` is disabled meanwhile; a window that is gone counts as none. The
/// client's windows get their messages. Raises 7, and the system's error where it shows no windows.
std::optional<std::wstring> ask_for_folder(HWND owner, const PathQuestion& question);

} // namespace ui
