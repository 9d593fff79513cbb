#include "files/content_watch.h"

#include "files/file.h"

#include <iterator>
#include <string_view>

namespace files {
namespace {

constexpr ULONGLONG second = 10'000'000; // in the platform's units
constexpr ULONGLONG too_young = 3 * second;

ULONGLONG number(const FILETIME& time) noexcept
{
    return ULONGLONG{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

/// 0 when it is not known.
ULONGLONG last_change(const std::wstring& folder) noexcept
{
    WIN32_FILE_ATTRIBUTE_DATA data;
    return GetFileAttributesExW(folder.c_str(), GetFileExInfoStandard, &data) ? number(data.ftLastWriteTime) : 0;
}

ULONGLONG now() noexcept
{
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    return number(time);
}

} // namespace

ContentWatch::ContentWatch(const std::wstring& folder) : folder_{folder}, changed_before_{last_change(folder)}
{
    if (changed_before_ + too_young > now())
        changed_before_ = 0;
}

bool ContentWatch::may_have_changed() const noexcept
{
    return changed_before_ == 0 || last_change(folder_) != changed_before_;
}

bool keeps_folder_times(const std::wstring& folder) noexcept
{
    constexpr DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const Handle opened{CreateFileW(folder.c_str(), FILE_READ_ATTRIBUTES, sharing, nullptr, OPEN_EXISTING,
                                    FILE_FLAG_BACKUP_SEMANTICS, nullptr)};
    wchar_t system[16];
    if (!opened || !GetVolumeInformationByHandleW(opened.get(), nullptr, 0, nullptr, nullptr, nullptr, system, std::size(system)))
        return false;
    const std::wstring_view name{system};
    return name == L"NTFS" || name == L"ReFS";
}

} // namespace files
