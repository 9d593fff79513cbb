#pragma once

#include "files/file.h"

#include <string>
#include <string_view>

/// Files that several programs read and replace at the same time. What is to take a file's place lies beside it first, under a
/// name that tells the others which file is about to be replaced: the platform's replacing leaves a moment in which the file
/// is not there, or not to be had.
namespace files {

/// What a name beside a file is for.
inline constexpr const wchar_t *new_content = L".new", *former_content = L".old";

/// A name in the folder of `path` that no file has, most likely.
std::wstring name_beside(std::wstring_view path, const wchar_t* purpose);
/// Whether the file was moved out of the way of a new one.
bool is_former(std::wstring_view path) noexcept;

/// Decides whether something that failed with a file is tried again, and waits meanwhile: two seconds in all while a file
/// lies beside it that someone is about to put in its place, a tenth of a second where it is merely in use. Any other failure,
/// and the absence of a file that nobody replaces, is told at once.
class Patience {
public:
    /// `own` is the caller's file beside it, which does not count. Both must stay.
    explicit Patience(const std::wstring& path, std::wstring_view own = {}) noexcept : path_{path}, own_{own} {}

    bool tries_again(DWORD failure);
    /// Whether someone else is about to replace the file, as far as its folder shows.
    bool is_being_replaced() const;

private:
    bool waits(DWORD longest) noexcept;

    const std::wstring& path_;
    std::wstring_view own_;
    ULONGLONG start_ = 0;
    int attempts_ = 0; ///< without a reason to wait
};

/// CreateFileW, patiently. Sets the last error if it gives no file.
Handle open_patiently(const std::wstring& path, DWORD access, DWORD sharing, DWORD disposition, DWORD flags);

/// Deletes a file that lies beside another, unless someone keeps it for good.
void remove_beside(const std::wstring& path) noexcept;

} // namespace files
