#include "files/file_deletion.h"

#include "automation/message_pump.h"
#include "files/file.h"
#include "files/folder_search.h"

#include <string>
#include <vector>

namespace files {
namespace {

constexpr int most_polls = 500;
constexpr DWORD pause = 1; // milliseconds

void delete_file(const std::wstring& path)
{
    if (!DeleteFileW(path.c_str()))
        raise_file_error(GetLastError());
}

/// All of them, before the first one is deleted.
std::vector<std::wstring> paths_that_fit(const std::wstring& pattern, std::size_t folder_length)
{
    std::vector<std::wstring> paths;
    FolderSearch search{pattern, NormalFiles};
    while (search.next())
        paths.push_back(pattern.substr(0, folder_length).append(search.name()));
    if (search.failed())
        raise_file_error(search.failure());
    return paths;
}

} // namespace

void delete_files(std::wstring_view given)
{
    const std::wstring pattern = checked(given);
    const std::size_t folder_length = pattern.find_last_of(L"\\/:") + 1;
    if (pattern.find_first_of(L"*?", folder_length) == pattern.npos)
        return delete_file(pattern);
    const auto paths = paths_that_fit(pattern, folder_length);
    if (paths.empty())
        raise_file_error(ERROR_FILE_NOT_FOUND);
    for (const std::wstring& path : paths)
        delete_file(path);
}

bool wait_until_gone(std::wstring_view pattern)
{
    automation::MessagePump messages;
    for (int polls = 0; finds(pattern, NormalFiles); ++polls) {
        if (polls == most_polls)
            return false;
        messages.handle();
        Sleep(pause);
    }
    return true;
}

} // namespace files
