#pragma once

#include "files/folder_search.h"

#include <string>
#include <string_view>

/// Goes through a folder and all those below it.
namespace files {

/// What happens with what a walk finds.
class WalkVisitor {
public:
    /// Whether anyone wants to hear of it. Who does may change the folders meanwhile.
    virtual bool listens() const noexcept { return true; }

    /// An entry of the folder with this path, which ends in a backslash. False ends the whole walk.
    virtual bool found(const std::wstring& folder, const FolderSearch& entry) = 0;

    /// The folder with this path could not be searched, or not to its end.
    virtual void unreadable(const std::wstring& folder) { static_cast<void>(folder); }

protected:
    ~WalkVisitor() = default;
};

struct WalkRules {
    std::wstring_view pattern;
    long admitted = NormalFiles;   ///< what the search for the pattern admits
    bool folders_only = false;     ///< finds folders instead, neither hidden ones nor the system's
    bool this_folder_only = false; ///< does not go into subfolders
    bool through_links = true;     ///< goes into junctions and symbolic links as into other folders
};

/// Finds what fits the pattern in a folder, then in each of its subfolders, in the platform's order. It neither finds folders
/// whose names begin with a dot nor goes into them, nor into hidden folders and the system's. It does not go into a link that
/// leads back to a folder on its way, and behind a link into each folder only once by further links. What can't be searched
/// holds nothing. `folder` ends in a backslash. Raises 6 where a folder has more than 32767 subfolders.
void walk(std::wstring_view folder, const WalkRules& rules, WalkVisitor& visitor);

} // namespace files
