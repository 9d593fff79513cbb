#pragma once

#include <string_view>

namespace files {

/// Deletes the file of this path, or all normal files that fit the pattern if its last part holds * or ?. Raises 53 where
/// there is none, 76 for a missing folder, 75 for a read-only file and for a folder, 70 for a locked file, 52 for what can't
/// be a path; of several files those before the one that raised it are gone then.
void delete_files(std::wstring_view given);

/// Waits until a search for normal files finds none, while the thread handles its messages: a file that someone else still
/// holds open stays for a while. Whether none is left; gives up after 500 polls.
bool wait_until_gone(std::wstring_view pattern);

} // namespace files
