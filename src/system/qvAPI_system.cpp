#include "system/qvAPI_system.h"

#include "automation/ansi_call.h"
#include "automation/border.h"
#include "automation/client_object.h"
#include "automation/floating_control.h"
#include "automation/handle.h"
#include "automation/module.h"
#include "system/temporary_prefix.h"

#include <algorithm>
#include <utility>
#include <vector>

using automation::AnsiText;
using automation::CalculatesAsClient;
using automation::Variant;

namespace {

constexpr std::size_t room = 255;

std::wstring up_to_nul(std::string_view bytes)
{
    return automation::decode(bytes.substr(0, bytes.find('\0')));
}

/// A folder as a function writes it whose arguments come in this order.
std::wstring folder_from(UINT(WINAPI* write)(char*, UINT))
{
    return automation::ansi_result<room>([&](char* buffer, DWORD size) { return write(buffer, size); });
}

/// Windows of this process are asked by messages: code of the client answers.
std::string window_text(HWND window, std::size_t size)
{
    const CalculatesAsClient as_client;
    std::string text(size, ' ');
    const auto length = static_cast<std::size_t>(GetWindowTextA(window, text.data(), static_cast<int>(size)));
    text.resize(std::min(length, size)); // a window may say anything
    return text;
}

std::size_t text_length(HWND window)
{
    const CalculatesAsClient as_client;
    return static_cast<std::size_t>(GetWindowTextLengthA(window));
}

/// The top-level windows that fit, each condition unless it is empty.
class WindowSearch {
public:
    WindowSearch(std::wstring_view class_name, std::wstring_view text) : class_{class_name}, text_{text} {}

    std::vector<HWND> run()
    {
        EnumWindows(see, reinterpret_cast<LPARAM>(this));
        return std::move(found_);
    }

private:
    static BOOL CALLBACK see(HWND window, LPARAM search)
    {
        const auto self = reinterpret_cast<WindowSearch*>(search);
        return automation::answer_callback(automation::Ref<IUnknown>{}, TRUE, [&] {
            if (self->fits(window))
                self->found_.push_back(window);
            return TRUE;
        });
    }
    /// A window whose handle is no positive Long fits nothing.
    bool fits(HWND window) const
    {
        if (reinterpret_cast<LONG_PTR>(window) <= 0)
            return false;
        if (!class_.empty()) {
            char name[room] = "";
            GetClassNameA(window, name, static_cast<int>(room));
            if (automation::decode(name) != class_)
                return false;
        }
        return text_.empty() || up_to_nul(window_text(window, text_length(window) + 1)) == text_;
    }

    const std::wstring class_, text_;
    std::vector<HWND> found_;
};

} // namespace

std::wstring qvAPI_system::GetTempPath()
{
    return automation::ansi_result<room>([](char* buffer, DWORD size) { return GetTempPathA(size, buffer); });
}

std::wstring qvAPI_system::GetSystemDirectory()
{
    return folder_from(GetSystemDirectoryA);
}

std::wstring qvAPI_system::GetWindowsDirectory()
{
    return folder_from(GetWindowsDirectoryA);
}

std::wstring qvAPI_system::GetTempFileName()
{
    const AnsiText folder{GetTempPath()}, prefix{processes::temporary_prefix(automation::module::name())};
    char path[MAX_PATH] = ""; // as much as the system may write
    return GetTempFileNameA(folder, prefix, 0, path) ? automation::decode(path) : std::wstring{};
}

short qvAPI_system::GetWindowText(long hwnd, BSTR& sCaption)
{
    const HWND window = automation::handle_from<HWND>(hwnd);
    const std::string bytes = IsWindow(window) ? window_text(window, room) : std::string{}; // Wine finds a text for what is none
    const bool may_be_cut = bytes.size() + 1 >= room;
    const std::wstring text = automation::decode(may_be_cut ? automation::without_cut_character(bytes) : bytes);
    automation::replace(sCaption, text);
    return static_cast<short>(text.size());
}

long qvAPI_system::GetSysColor(long nIndex)
{
    return static_cast<long>(::GetSysColor(static_cast<int>(nIndex)));
}

long qvAPI_system::FindWindowAll(std::wstring_view sClassName, std::wstring_view sWindowText, IDispatch* hWnds,
                                bool fClearCollection)
{
    WindowSearch search{sClassName, sWindowText}; // has texts of its own: the collection's code may change the client's
    const automation::Ref held{hWnds};
    if (fClearCollection)
        automation::remove_all(hWnds);
    for (const HWND window : search.run())
        automation::or_default([&] {
            automation::call(hWnds, L"Add", {Variant{static_cast<long>(reinterpret_cast<LONG_PTR>(window))}});
        });
    return automation::count(hWnds);
}

std::wstring qvAPI_system::qvGetComputerName()
{
    char name[MAX_COMPUTERNAME_LENGTH + 1] = "";
    DWORD size = sizeof name;
    GetComputerNameA(name, &size);
    return up_to_nul({name, sizeof name});
}

bool qvAPI_system::SetDisplayResolution(long& x, long& y, long& bpp, long& freq)
{
    DEVMODEA mode{};
    mode.dmSize = sizeof mode;
    for (DWORD i = 0; EnumDisplaySettingsA(nullptr, i, &mode); ++i) {
        if (mode.dmPelsWidth != static_cast<DWORD>(x) || mode.dmPelsHeight != static_cast<DWORD>(y) ||
            mode.dmBitsPerPel != static_cast<DWORD>(bpp) || mode.dmDisplayFrequency != static_cast<DWORD>(freq))
            continue;
        mode.dmFields = DM_PELSWIDTH | DM_PELSHEIGHT | DM_BITSPERPEL | DM_DISPLAYFREQUENCY;
        const CalculatesAsClient as_client; // windows are told
        return ChangeDisplaySettingsA(&mode, CDS_UPDATEREGISTRY) == DISP_CHANGE_SUCCESSFUL;
    }
    return false;
}
