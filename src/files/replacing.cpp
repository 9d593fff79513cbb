#include "files/replacing.h"

#include "automation/case_folding.h"

#include <cstdint>
#include <cwchar>

namespace files {
namespace {

constexpr DWORD longest_replacing = 2000, longest_use = 100, pause = 1; // milliseconds
constexpr int attempts_at_once = 3;
constexpr std::int64_t second = 10'000'000; // of file times
constexpr std::int64_t abandoned_after = 60 * second;
constexpr DWORD delete_pending = 303; // ERROR_DELETE_PENDING, which not every header has

std::wstring_view file_name(std::wstring_view path) noexcept
{
    return path.substr(path.find_last_of(L"\\/:") + 1);
}

/// The start of the names beside a file, its folder included: the same for all programs that replace it.
std::wstring stem_beside(std::wstring_view path)
{
    const std::wstring_view name = file_name(path);
    wchar_t stem[16];
    std::swprintf(stem, std::size(stem), L"~qv%08x", static_cast<unsigned>(automation::hash_folded(name)));
    return std::wstring{path.substr(0, path.size() - name.size())} + stem;
}

std::int64_t number_of(const FILETIME& time) noexcept
{
    return static_cast<std::int64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

/// A program that ended too early leaves its file beside: nobody waits for that one for ever.
bool is_abandoned(const WIN32_FIND_DATAW& file) noexcept
{
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    const std::int64_t age = number_of(now) - number_of(file.ftLastWriteTime);
    return age > abandoned_after || age < -abandoned_after;
}

bool is_in_use(DWORD failure) noexcept
{
    switch (failure) {
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_UNABLE_TO_REMOVE_REPLACED:
    case ERROR_UNABLE_TO_MOVE_REPLACEMENT:
    case ERROR_UNABLE_TO_MOVE_REPLACEMENT_2:
        return true;
    default:
        return false;
    }
}

/// Whether replacing shows in this way: a file that is being deleted is not to be accessed.
bool may_pass(DWORD failure) noexcept
{
    return is_in_use(failure) || failure == ERROR_FILE_NOT_FOUND || failure == ERROR_ACCESS_DENIED || failure == delete_pending
        || failure == ERROR_ALREADY_EXISTS || failure == ERROR_FILE_EXISTS;
}

} // namespace

std::wstring name_beside(std::wstring_view path, const wchar_t* purpose)
{
    static volatile LONG used = 0;
    const auto process = static_cast<unsigned>(GetCurrentProcessId());
    const auto number = static_cast<unsigned>(InterlockedIncrement(&used));
    wchar_t rest[24];
    std::swprintf(rest, std::size(rest), L"%08x%ls", number * 0x9E3779B9u ^ process << 16 ^ static_cast<unsigned>(GetTickCount()),
                  purpose);
    return stem_beside(path) + rest;
}

bool is_former(std::wstring_view path) noexcept
{
    return file_name(path).starts_with(L"~qv") && path.ends_with(former_content);
}

bool Patience::is_being_replaced() const
{
    WIN32_FIND_DATAW found;
    const automation::SearchHandle search{FindFirstFileW((stem_beside(path_) + L"*" + new_content).c_str(), &found)};
    for (bool more{search}; more; more = FindNextFileW(search.get(), &found))
        if (file_name(own_) != found.cFileName && !is_abandoned(found))
            return true;
    return false;
}

/// The file beside may have come and gone since the failure: then there is nothing to wait for, but to try again.
bool Patience::tries_again(DWORD failure)
{
    if (!may_pass(failure))
        return false;
    if (is_being_replaced())
        return waits(longest_replacing);
    if (is_in_use(failure))
        return waits(longest_use);
    return ++attempts_ < attempts_at_once;
}

bool Patience::waits(DWORD longest) noexcept
{
    const ULONGLONG now = GetTickCount64();
    if (start_ == 0)
        start_ = now;
    if (now - start_ >= longest)
        return false;
    Sleep(pause);
    return true;
}

Handle open_patiently(const std::wstring& path, DWORD access, DWORD sharing, DWORD disposition, DWORD flags)
{
    Patience patience{path};
    for (;;) {
        Handle file{CreateFileW(path.c_str(), access, sharing, nullptr, disposition, flags, nullptr)};
        const DWORD failure = GetLastError();
        if (file || !patience.tries_again(failure)) {
            SetLastError(failure);
            return file;
        }
    }
}

void remove_beside(const std::wstring& path) noexcept
try {
    Patience patience{path};
    while (!DeleteFileW(path.c_str()) && patience.tries_again(GetLastError())) {
    }
} catch (...) { // for want of memory; the one attempt was made
}

} // namespace files
