#pragma once

#include "automation/connection_point.h"

#include <qvObjects_contract.h>

/// Paths, folders and files. The members that take paths apart keep nothing between calls; a walk keeps whether it was
/// cancelled.
class qvFile final : public automation::WithEvents<automation::Object<qvFile, _qvFile>, __qvFile> {
public:
    // qvFile_names.cpp
    HRESULT STDMETHODCALLTYPE GetPath(BSTR* File, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE GetFile(BSTR* File, VARIANT_BOOL* NoExtension, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPathV(VARIANT* vFile, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE GetFileV(VARIANT* vFile, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvDir(BSTR* sFile, BSTR* sAppPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvDir2(BSTR* sFile, BSTR* sAppPath, long* A, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvDirV(VARIANT* vFile, VARIANT* vAppPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE GetRelPath(BSTR* sFile, BSTR* sAppPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE GetRelPathV(VARIANT* vFile, VARIANT* vAppPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE GetExtension(BSTR* sFile, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE RemoveExtension(BSTR* sFile, BSTR* result) noexcept override;

    // qvFile_folders.cpp
    HRESULT STDMETHODCALLTYPE WalkDirTree(BSTR* sSrcDir, BSTR sSearchItem, WalkDirConsts fFlags,
                                          long Attributes) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckFile(BSTR sFile, BSTR sCaption, VARIANT_BOOL fMsgBox,
                                        VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckPath(BSTR sPath, BSTR sCaption, VARIANT_BOOL fMsgBox,
                                        VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE CheckForWrite(BSTR sFile, BSTR sCaption, VARIANT_BOOL fMsgBox,
                                            VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE DelFile(BSTR sFile, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvKill(BSTR sFile) noexcept override;
    HRESULT STDMETHODCALLTYPE qvChDir(BSTR sDir) noexcept override;
    HRESULT STDMETHODCALLTYPE qvMkDirMulti(BSTR sPath) noexcept override;
    HRESULT STDMETHODCALLTYPE ClearFolder(BSTR strFolder, VARIANT_BOOL fIgnoreErrors, long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE PathIsEmpty(BSTR sPath, VARIANT_BOOL* result) noexcept override;

    // qvFile_shell.cpp
    HRESULT STDMETHODCALLTYPE SelectFolder95(long StartFolderID, IDispatch* Owner, BSTR stTitle, long Flags,
                                             BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvGetSpecialFolderPath(qvECSIDL nFolder, VARIANT_BOOL fBackSlashEnd,
                                                     BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvMoveToRecycle(BSTR sFile, VARIANT_BOOL fShowMessages, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE GetShortFileName(BSTR sLongFileName, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE GetLongFilename(BSTR sShortFileName, BSTR* result) noexcept override;

    // qvFile_paths.cpp
    HRESULT STDMETHODCALLTYPE qvPathAddBackslash(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathAddExtension(BSTR* strPath, BSTR* strExtension, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathAppend(BSTR* strPath, BSTR* strMore, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathBuildRoot(long lDrive, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathCanonicalize(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathCombine(BSTR* strPath, BSTR* strFile, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathCompactPath(long hDC, BSTR* strPath, long dX, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathCompactPathEx(BSTR* strSrc, long lngCharMax, qvPathSeparator dwflags,
                                                  BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathCommonPrefix(BSTR* strPath1, BSTR* strPath2, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathFileExists(BSTR* strPath, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathFindExtension(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathFindFileName(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathFindNextComponent(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathGetArgs(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathGetCharType(BSTR* strChar, qvGetCharType* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathGetDriveNumber(BSTR* strPath, long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathIsContentType(BSTR* strPath, BSTR* strContentType,
                                                  VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathIsDirectory(BSTR* strPath, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathIsFileSpec(BSTR* strPath, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathIsPrefix(BSTR* strPrefix, BSTR* strPath, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathIsRelative(BSTR* strPath, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathIsRoot(BSTR* strPath, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathIsSameRoot(BSTR* strPath1, BSTR* strPath2, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathIsSystemFolder(BSTR* strPath, long cAttrib, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathIsSystemFolderRecurive(BSTR* strPath, long cAttrib,
                                                           VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathIsUNC(BSTR* strPath, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathIsUNCServer(BSTR* strPath, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathIsUNCServerShare(BSTR* strPath, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathIsURL(BSTR* strPath, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathMakePretty(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathMakeSystemFolder(BSTR* strPath, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathMatchSpec(BSTR* strFile, BSTR* strSpec, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathParseIconLocation(BSTR* strIconFile, long* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathQuoteSpaces(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathRelativePathTo(BSTR* strFrom, BSTR* strTo, long dwAttrFrom, long dwAttrTo,
                                                   BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathRemoveArgs(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathRemoveBackslash(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathRemoveBlanks(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathRemoveExtension(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathRemoveFileSpec(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathRenameExtension(BSTR* strPath, BSTR strExt, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathSearchAndQualify(BSTR* strPath, BSTR* strFullyQualifiedPath,
                                                     VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathSetDlgItemPath(long hDlgWnd, long ID, BSTR* strPath,
                                                   VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathSkipRoot(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathStripPath(BSTR* strPath, BSTR* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathStripToRoot(BSTR* strPath, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathUnmakeSystemFolder(BSTR* strPath, VARIANT_BOOL* result) noexcept override;
    HRESULT STDMETHODCALLTYPE qvPathUnquoteSpaces(BSTR* strPath, BSTR* result) noexcept override;

private:
    VARIANT_BOOL cancelled_ = VARIANT_FALSE; ///< the walk; handlers of its events set it
};
