#pragma once

#include "automation/connection_point.h"
#include "files/qvFile_folders.h"
#include "files/qvFile_names.h"
#include "files/qvFile_paths.h"
#include "files/qvFile_shell.h"

/// Paths, folders and files. Nothing is kept between calls, except by a walk whether it was cancelled.
class qvFile final : public automation::WithEvents<automation::Object<qvFile, faces::qvFile>, __qvFile>,
                     public qvFile_names,
                     public qvFile_folders,
                     public qvFile_shell,
                     public qvFile_paths {
public:
    void WalkDirTree(BSTR& sSrcDir, std::wstring_view sSearchItem, WalkDirConsts fFlags, long Attributes);

private:
    VARIANT_BOOL cancelled_ = VARIANT_FALSE; ///< the walk; handlers of its events set it
};
