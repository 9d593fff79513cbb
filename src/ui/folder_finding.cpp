#include "ui/folder_finding.h"

#include "files/folder_search.h"
#include "files/folders.h"

namespace ui {

Finding find_folder(const WholePath& path)
{
    DWORD failure = 0;
    const DWORD attributes = files::attributes_of(for_platform(path), failure);
    if (failure == 0)
        return attributes & FILE_ATTRIBUTE_DIRECTORY ? Finding::Folder : Finding::Unusable;
    if (path.is_root() || !files::is_folder(path.root()))
        return Finding::UnreadableRoot;
    return failure == ERROR_FILE_NOT_FOUND || failure == ERROR_PATH_NOT_FOUND ? Finding::Missing : Finding::Unusable;
}

void create_folder(const WholePath& path)
{
    const std::wstring whole = for_platform(path);
    files::create_folders(whole, whole.size() - path.text.size() + path.of_root);
}

} // namespace ui
