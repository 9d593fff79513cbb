#pragma once

#include "files/folder_removal.h"
#include "files/folders.h"

/// The members of qvFile that look at, create and delete files and folders.
class qvFile_folders {
public:
    bool CheckFile(std::wstring_view sFile, std::wstring_view sCaption, bool fMsgBox);
    bool CheckPath(std::wstring_view sPath, std::wstring_view sCaption, bool fMsgBox);
    bool CheckForWrite(std::wstring_view sFile, std::wstring_view sCaption, bool fMsgBox);
    bool DelFile(std::wstring_view sFile);
    /// What can't be deleted stays.
    void qvKill(std::wstring_view sFile) noexcept;
    void qvChDir(std::wstring_view sDir) { files::go_to_folder(sDir); }
    void qvMkDirMulti(std::wstring_view sPath) { files::create_folders(sPath); }
    long ClearFolder(std::wstring_view strFolder, bool fIgnoreErrors) { return files::clear_folder(strFolder, fIgnoreErrors); }
    bool PathIsEmpty(std::wstring_view sPath) { return files::is_empty_folder(sPath); }
};
