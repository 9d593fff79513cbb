#include "files/folder_search.h"

#include <utility>

namespace files {
namespace {

/// While this lives the system does not ask the user for a disk: an empty drive holds nothing.
class NoDiskRequests {
public:
    NoDiskRequests() noexcept { SetThreadErrorMode(SEM_FAILCRITICALERRORS, &former_); }
    ~NoDiskRequests() { SetThreadErrorMode(former_, nullptr); }
    NoDiskRequests(const NoDiskRequests&) = delete;
    NoDiskRequests& operator=(const NoDiskRequests&) = delete;

private:
    DWORD former_ = 0;
};

bool means_nothing_found(DWORD code) noexcept
{
    return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND || code == ERROR_NO_MORE_FILES;
}

} // namespace

bool admits(long admitted, DWORD attributes) noexcept
{
    return (attributes & DWORD{EveryEntry} & ~static_cast<DWORD>(admitted)) == 0;
}

FolderSearch::FolderSearch(std::wstring_view pattern, long admitted) : admitted_{admitted}
{
    if (pattern.find(L'\0') != pattern.npos)
        failure_ = ERROR_INVALID_NAME;
    if (failed() || pattern.empty())
        return;
    std::wstring path{pattern};
    if (path.back() == L'\\')
        path += L"*.*";
    const NoDiskRequests quiet;
    search_ = automation::SearchHandle{FindFirstFileW(path.c_str(), &found_)};
    if (!search_)
        end();
}

bool FolderSearch::next() noexcept
{
    if (!search_)
        return false;
    while (std::exchange(at_first_, false) || FindNextFileW(search_.get(), &found_))
        if (admits(admitted_, found_.dwFileAttributes))
            return true;
    end();
    return false;
}

void FolderSearch::end() noexcept
{
    const DWORD reason = GetLastError();
    if (!means_nothing_found(reason))
        failure_ = reason;
}

bool finds(std::wstring_view pattern, long admitted)
{
    return FolderSearch{pattern, admitted}.next();
}

DWORD attributes_of(const std::wstring& path, DWORD& failure) noexcept
{
    const NoDiskRequests quiet;
    const DWORD attributes = GetFileAttributesW(path.c_str());
    failure = attributes == INVALID_FILE_ATTRIBUTES ? GetLastError() : ERROR_SUCCESS;
    return attributes;
}

bool is_folder(const std::wstring& path) noexcept
{
    DWORD failure = 0;
    const DWORD attributes = attributes_of(path, failure);
    return failure == ERROR_SUCCESS && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

} // namespace files
