#pragma once

#include <cstddef>
#include <string_view>

/// Folders as the members of qvFile treat them.
namespace files {

/// Creates a folder and those above it that are missing. One backslash at the start is dropped, so that even a network path
/// becomes one on the current drive; a part at the start that holds a drive is taken for granted. Raises 75 where a file is in
/// the way or the folder must not be created, 76 for a missing drive, 52 for what can't be a name.
void create_folders(std::wstring_view path);

/// The same for a path whose first folder begins at `start`, and that ends in no backslash. What stands before is taken for
/// granted.
void create_folders(std::wstring_view path, std::size_t start);

/// Makes the drive of the path, if it names one, and then the folder the current ones. Raises 76 for what is not there and
/// for a file; the drive has changed then if it exists.
void go_to_folder(std::wstring_view path);

/// Whether a folder holds neither normal files nor folders that are visible and whose names do not begin with a dot. The
/// first entry is taken for the folder itself, and not looked at: in a drive's root, which has no such entry, one subfolder
/// is overlooked. True for what is no folder.
bool is_empty_folder(std::wstring_view path);

} // namespace files
