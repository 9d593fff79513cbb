#include "files/folders.h"

#include "files/file.h"
#include "files/folder_search.h"

#include <direct.h>
#include <stdlib.h>

namespace files {
namespace {

/// As for files, but what is not found is a folder, and what exists already is in the way.
[[noreturn]] void raise_folder_error(DWORD code)
{
    if (code == ERROR_FILE_NOT_FOUND)
        code = ERROR_PATH_NOT_FOUND;
    if (code == ERROR_ALREADY_EXISTS || code == ERROR_FILE_EXISTS)
        code = ERROR_ACCESS_DENIED;
    raise_file_error(code);
}

/// Someone else may have created it meanwhile, and what is hidden may exist without being found.
void create_folder(const std::wstring& path)
{
    if (CreateDirectoryW(path.c_str(), nullptr))
        return;
    const DWORD code = GetLastError();
    if (code != ERROR_ALREADY_EXISTS || !is_folder(path))
        raise_folder_error(code);
}

/// The runtime library's function also keeps each drive's own current folder, which the platform's does not.
void change_folder(const std::wstring& path)
{
    if (_wchdir(path.c_str()) != 0)
        raise_folder_error(_doserrno);
}

/// Its own current folder may have gone: then to its root.
void change_drive(wchar_t letter)
{
    const std::wstring drive{letter, L':'};
    if (_wchdir(drive.c_str()) != 0)
        change_folder(drive + L'\\');
}

} // namespace

void create_folders(std::wstring_view given)
{
    const std::wstring whole = checked(given);
    std::wstring_view path{whole};
    if (path.ends_with(L'\\'))
        path.remove_suffix(1);
    if (path.starts_with(L'\\'))
        path.remove_prefix(1);
    if (path.empty())
        return;
    const bool has_drive = path.find(L':') != path.npos;
    if (!has_drive)
        create_folders(path, 0);
    else if (const std::size_t end_of_drive = path.find(L'\\'); end_of_drive != path.npos)
        create_folders(path, end_of_drive + 1);
}

void create_folders(std::wstring_view path, std::size_t start)
{
    for (std::size_t end = start; end != path.npos; start = end + 1) {
        end = path.find(L'\\', start);
        const std::wstring folder = std::wstring{path.substr(0, end)} + L'\\';
        if (!finds(folder, Folders))
            create_folder(folder);
    }
}

void go_to_folder(std::wstring_view given)
{
    const std::wstring path = checked(given);
    if (path.size() > 1 && path[1] == L':')
        change_drive(path[0]);
    change_folder(path);
}

bool is_empty_folder(std::wstring_view path)
{
    std::wstring all{path};
    if (!all.ends_with(L'\\'))
        all += L'\\';
    if (finds(all, NormalFiles))
        return false;
    FolderSearch search{all, Folders};
    search.next();
    while (search.next())
        if (!search.name().starts_with(L'.'))
            return false;
    return true;
}

} // namespace files
