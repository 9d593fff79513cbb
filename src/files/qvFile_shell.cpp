#include "files/qvFile_shell.h"

#include "automation/client_object.h"
#include "automation/floating_control.h"
#include "automation/handle.h"
#include "files/file.h"
#include "files/folder_search.h"
#include "files/item_list.h"
#include "messages/MErrors.h"

#include <shellapi.h>

#include <string>

namespace {

HWND window_of(IDispatch* owner)
{
    const auto number = automation::converted(automation::get(owner, L"hwnd"), VT_I4).lVal;
    return automation::handle_from<HWND>(number);
}

/// Whether the shell takes these paths, each with a NUL at its end. It may write longer ones over the stack.
bool fit_shell(std::wstring_view paths)
{
    for (std::size_t end; (end = paths.find(L'\0')) != paths.npos; paths.remove_prefix(end + 1))
        if (end >= MAX_PATH)
            return false;
    return true;
}

} // namespace

std::wstring qvFile_shell::SelectFolder95(long StartFolderID, IDispatch* Owner, std::wstring_view stTitle, long Flags)
{
    const std::wstring title{stTitle}; // which the owner's own code may let go of
    const HWND owner = window_of(Owner);
    const auto start = automation::handle_from<const ITEMIDLIST*>(StartFolderID);
    wchar_t name[MAX_PATH];
    BROWSEINFOW browse{owner, start, name, title.c_str(), static_cast<UINT>(Flags), nullptr, 0, 0};
    const automation::CalculatesAsClient as_client; // the client's windows get their messages meanwhile
    const files::ItemList picked{SHBrowseForFolderW(&browse)};
    return picked ? files::path_of(*picked) : L"";
}

std::wstring qvFile_shell::qvGetSpecialFolderPath(qvECSIDL nFolder, bool fBackSlashEnd)
{
    LPITEMIDLIST found = nullptr;
    automation::check(SHGetSpecialFolderLocation(nullptr, nFolder, &found));
    const files::ItemList list{found};
    return (list ? files::path_of(*list) : L"") + (fBackSlashEnd ? L"\\" : L"");
}

bool qvFile_shell::qvMoveToRecycle(std::wstring_view sFile, bool fShowMessages)
{
    if (sFile.empty())
        return false;
    const std::wstring files = files::whole_paths(sFile);
    SHFILEOPSTRUCTW operation{};
    operation.wFunc = FO_DELETE;
    operation.pFrom = files.c_str();
    operation.fFlags = FOF_ALLOWUNDO;
    constexpr int too_long = 0x79; // the shell's own number
    const int failure = [&] {
        const automation::CalculatesAsClient as_client;
        return fit_shell(files) ? SHFileOperationW(&operation) : too_long;
    }();
    if (failure == 0 && !operation.fAnyOperationsAborted)
        return true;
    if (fShowMessages)
        MErrors::ShowMessage(failure ? std::to_wstring(failure) : L"Operation Failed");
    return false;
}

std::wstring qvFile_shell::GetShortFileName(std::wstring_view sLongFileName)
{
    const std::wstring path{sLongFileName};
    std::wstring result(GetShortPathNameW(path.c_str(), nullptr, 0), L'\0');
    result.resize(GetShortPathNameW(path.c_str(), result.data(), static_cast<DWORD>(result.size())));
    return result;
}

std::wstring qvFile_shell::GetLongFilename(std::wstring_view sShortFileName)
{
    std::wstring path{sShortFileName};
    const bool is_closed = path.ends_with(L'\\');
    if (!is_closed)
        path += L'\\';
    std::wstring result = path.substr(0, 2);
    constexpr std::size_t behind_root = 3;
    for (std::size_t end = path.find(L'\\', behind_root); end != path.npos; end = path.find(L'\\', end + 1)) {
        files::FolderSearch search{std::wstring_view{path}.substr(0, end), files::Folders | files::Hidden | files::System};
        if (!search.next())
            return {};
        result.append(1, L'\\').append(search.name());
    }
    if (is_closed)
        result += L'\\';
    return result;
}
