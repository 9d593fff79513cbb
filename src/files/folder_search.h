#pragma once

#include "automation/handle.h"

#include <windows.h>

#include <string>
#include <string_view>

/// Searches a folder for names that fit a pattern.
namespace files {

/// What a search admits beside normal files; those that are read-only or to be archived are normal. The other flags that
/// clients may pass (1 read-only, 8 volume label) admit nothing further.
enum Admitted : long {
    NormalFiles = 0,
    Hidden = FILE_ATTRIBUTE_HIDDEN,
    System = FILE_ATTRIBUTE_SYSTEM,
    Folders = FILE_ATTRIBUTE_DIRECTORY,
    EveryEntry = Hidden | System | Folders,
};

/// Whether a search that admits this reports an entry with these attributes.
bool admits(long admitted, DWORD attributes) noexcept;

/// Goes through the entries that fit a pattern, in the platform's order:
///
///     for (FolderSearch search{pattern, Folders}; search.next();) ... search.name() ...
///
/// A pattern that ends in a backslash stands for all that the folder holds. "." and ".." are reported as the platform does
/// if folders are admitted. What can't be searched holds nothing.
class FolderSearch {
public:
    FolderSearch(std::wstring_view pattern, long admitted);
    FolderSearch(const FolderSearch&) = delete;
    FolderSearch& operator=(const FolderSearch&) = delete;

    /// Goes to the first or the next entry; false when there is none.
    bool next() noexcept;
    /// Whether the search itself failed, at its start or before its end: a name that can't be one, a folder that must not be
    /// read, a device that isn't ready. A missing folder is no failure, it holds nothing.
    bool failed() const noexcept { return failure_ != 0; }
    /// Why it failed, in the platform's code; 0 where it did not.
    DWORD failure() const noexcept { return failure_; }

    std::wstring_view name() const noexcept { return found_.cFileName; }
    DWORD attributes() const noexcept { return found_.dwFileAttributes; }
    bool is_folder() const noexcept { return found_.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY; }
    /// Whether it is a junction or a symbolic link, whose content lies elsewhere.
    bool is_link() const noexcept { return found_.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT; }

private:
    void end() noexcept;

    long admitted_;
    WIN32_FIND_DATAW found_;
    automation::SearchHandle search_;
    DWORD failure_ = 0;
    bool at_first_ = true;
};

/// Whether a search finds anything.
bool finds(std::wstring_view pattern, long admitted);

/// The attributes of a file or folder, without asking the user for a disk. Where there are none to be had, `failure` becomes
/// the platform's code for the reason, and 0 otherwise.
DWORD attributes_of(const std::wstring& path, DWORD& failure) noexcept;

/// Whether the path is that of a folder. What does not exist or can't be reached is none.
bool is_folder(const std::wstring& path) noexcept;

} // namespace files
