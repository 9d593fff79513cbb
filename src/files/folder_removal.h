#pragma once

#include <string>
#include <string_view>

namespace files {

/// The folder that a client means: its whole path with a backslash at the end, in the platform's form (\\?\) in which every
/// name counts as it is. Empty for an empty or blank text. Raises 52 for a drive without a backslash, which may mean the
/// drive's root as well as the folder that is the current one there.
std::wstring folder_to_clear(std::wstring_view given);

/// Deletes the files in a folder and below it, then its subfolders with all they hold. Its own hidden files, subfolders that
/// are hidden and those whose names begin with a dot stay, and so does the folder itself.
///
/// Nothing outside the folder is ever deleted: a junction or a symbolic link in it goes, what it leads to stays.
///
/// How many files and folders could not be deleted, and one more where the folder itself could not be read to its end; at
/// the first failure it stops if failures are not ignored. An empty or blank name, a missing folder and one with wildcards
/// hold nothing. Raises what `folder_to_clear` does.
long clear_folder(std::wstring_view folder, bool ignore_failures);

} // namespace files
