#pragma once

#include <string_view>

/// Paths taken apart as plain text. The file system is not asked, and every answer is a part of the path given.
namespace files {

/// What stands before the last backslash; empty without one, and when it is the first character.
std::wstring_view GetPath(std::wstring_view File) noexcept;

/// What stands behind the last backslash, or the whole text; with `NoExtension` only what stands before its last dot.
std::wstring_view GetFile(std::wstring_view File, bool NoExtension = false) noexcept;

/// What stands behind the last dot, also of one in a folder's name; the whole text without one.
std::wstring_view GetExtension(std::wstring_view sFile) noexcept;

/// What stands before the last dot, also of one in a folder's name; the whole text without one.
std::wstring_view RemoveExtension(std::wstring_view sFile) noexcept;

/// Whether a path starts with one backslash, as GetRelPath makes those below an application's folder. Network paths start
/// with two.
bool is_below_application(std::wstring_view path) noexcept;

} // namespace files
