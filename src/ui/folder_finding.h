#pragma once

#include "ui/whole_path.h"

namespace ui {

/// What there is where a path leads to.
enum class Finding {
    Folder,
    Missing,        ///< nothing, but its drive or share can be read
    UnreadableRoot, ///< its drive or share can't be read
    Unusable,       ///< a file, a name that can't be one, what must not be looked at
};

/// Looks at the file system; a network that doesn't answer takes its time.
Finding find_folder(const WholePath& path);

/// Creates a folder and those above it that are missing. Raises the error of the file system that keeps it from being made.
void create_folder(const WholePath& path);

} // namespace ui
