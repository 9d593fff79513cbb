#include "files/qvFile.h"

#include "automation/client_object.h"
#include "automation/floating_control.h"
#include "files/file.h"
#include "files/folder_search.h"
#include "frame/MErrors.h"

#include <shellapi.h>
#include <shlobj.h>

#include <memory>

using automation::answer;
using automation::view;

namespace {

struct FreeTaskMemory {
    void operator()(void* memory) const noexcept { CoTaskMemFree(memory); }
};
using ItemList = std::unique_ptr<ITEMIDLIST, FreeTaskMemory>;

/// The path of what an item list stands for; empty when that is no folder of the file system.
std::wstring path_of(const ITEMIDLIST& list)
{
    wchar_t path[MAX_PATH] = L"";
    return SHGetPathFromIDListW(&list, path) ? path : L"";
}

HWND window_of(IDispatch* owner)
{
    const auto number = automation::converted(automation::get(owner, L"hwnd"), VT_I4).lVal;
    return reinterpret_cast<HWND>(static_cast<LONG_PTR>(number));
}

std::wstring picked_folder(HWND owner, const ITEMIDLIST* start, const std::wstring& title, long flags)
{
    wchar_t name[MAX_PATH];
    BROWSEINFOW browse{owner, start, name, title.c_str(), static_cast<UINT>(flags), nullptr, 0, 0};
    const automation::CalculatesAsClient as_client; // the client's windows get their messages meanwhile
    const ItemList picked{SHBrowseForFolderW(&browse)};
    return picked ? path_of(*picked) : L"";
}

std::wstring special_folder(int folder)
{
    LPITEMIDLIST found = nullptr;
    automation::check(SHGetSpecialFolderLocation(nullptr, folder, &found));
    const ItemList list{found};
    return list ? path_of(*list) : L"";
}

/// `given` may be several, with a NUL between them.
bool move_to_recycle_bin(std::wstring_view given, bool tells_user)
{
    const std::wstring files = files::whole_paths(given);
    SHFILEOPSTRUCTW operation{};
    operation.wFunc = FO_DELETE;
    operation.pFrom = files.c_str();
    operation.fFlags = FOF_ALLOWUNDO;
    const int failure = [&] {
        const automation::CalculatesAsClient as_client;
        return SHFileOperationW(&operation);
    }();
    if (failure == 0 && !operation.fAnyOperationsAborted)
        return true;
    if (tells_user)
        MErrors::ShowMessage(failure ? std::to_wstring(failure) : L"Operation Failed");
    return false;
}

std::wstring short_path(const std::wstring& path)
{
    std::wstring result(GetShortPathNameW(path.c_str(), nullptr, 0), L'\0');
    result.resize(GetShortPathNameW(path.c_str(), result.data(), static_cast<DWORD>(result.size())));
    return result;
}

/// The path with every part behind the drive as the folder above it has it; empty when one of them is missing.
std::wstring long_path(std::wstring path)
{
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

} // namespace

HRESULT qvFile::SelectFolder95(long StartFolderID, IDispatch* Owner, BSTR stTitle, long Flags, BSTR* result) noexcept
{
    return answer(result, [&] {
        const auto start = reinterpret_cast<const ITEMIDLIST*>(static_cast<LONG_PTR>(StartFolderID));
        return picked_folder(window_of(Owner), start, std::wstring{view(stTitle)}, Flags);
    });
}

HRESULT qvFile::qvGetSpecialFolderPath(qvECSIDL nFolder, VARIANT_BOOL fBackSlashEnd, BSTR* result) noexcept
{
    return answer(result, [&] { return special_folder(nFolder) + (fBackSlashEnd ? L"\\" : L""); });
}

HRESULT qvFile::qvMoveToRecycle(BSTR sFile, VARIANT_BOOL fShowMessages, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] {
        return SysStringLen(sFile) > 0 && move_to_recycle_bin(view(sFile), fShowMessages != VARIANT_FALSE);
    });
}

HRESULT qvFile::GetShortFileName(BSTR sLongFileName, BSTR* result) noexcept
{
    return answer(result, [&] { return short_path(std::wstring{view(sLongFileName)}); });
}

HRESULT qvFile::GetLongFilename(BSTR sShortFileName, BSTR* result) noexcept
{
    return answer(result, [&] { return long_path(std::wstring{view(sShortFileName)}); });
}
