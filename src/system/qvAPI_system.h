#pragma once

#include "automation/values.h"

#include <string>
#include <string_view>

/// The members of qvAPI that ask the system about folders, windows and the display. Texts go to it and come from it in its code
/// page, and its failures are not told: nothing, 0 or False is what they give.
class qvAPI_system {
public:
    std::wstring GetTempPath();
    std::wstring GetSystemDirectory();
    std::wstring GetWindowsDirectory();
    std::wstring GetTempFileName();
    short GetWindowText(long hwnd, BSTR& sCaption);
    long GetSysColor(long nIndex);
    long FindWindowAll(std::wstring_view sClassName, std::wstring_view sWindowText, IDispatch* hWnds, bool fClearCollection);
    std::wstring qvGetComputerName();
    bool SetDisplayResolution(long& x, long& y, long& bpp, long& freq);
};
