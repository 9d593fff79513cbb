#pragma once

#include "automation/border.h"
#include "files/path_buffer.h"
#include "files/path_combination.h"

#include <qvObjects_contract.h>

#include <shlwapi.h>

#include <concepts>

/// The members of qvFile that stand for the platform's functions of the same names.
class qvFile_paths {
    using Text = automation::Text;

public:
    Text qvPathAddBackslash(BSTR strPath) { return changed(strPath, PathAddBackslashW); }
    Text qvPathAddExtension(BSTR strPath, BSTR& strExtension);
    Text qvPathAppend(BSTR strPath, BSTR strMore);
    Text qvPathBuildRoot(long lDrive);
    Text qvPathCanonicalize(BSTR strPath);
    std::wstring qvPathCombine(BSTR strPath, BSTR strFile)
    {
        return files::combined(automation::view(strPath), automation::view(strFile));
    }
    Text qvPathCompactPath(long hDC, BSTR strPath, long dX);
    Text qvPathCompactPathEx(BSTR strSrc, long lngCharMax, qvPathSeparator dwflags);
    Text qvPathCommonPrefix(BSTR strPath1, BSTR strPath2);
    bool qvPathFileExists(BSTR strPath) { return test(PathFileExistsW, strPath); }
    std::wstring_view qvPathFindExtension(BSTR strPath) { return part(strPath, PathFindExtensionW); }
    /// Clients know it as another name of qvPathFindNextComponent.
    std::wstring_view qvPathFindFileName(BSTR strPath) { return qvPathFindNextComponent(strPath); }
    std::wstring_view qvPathFindNextComponent(BSTR strPath) { return part(strPath, PathFindNextComponentW); }
    std::wstring_view qvPathGetArgs(BSTR strPath) { return part(strPath, PathGetArgsW); }
    qvGetCharType qvPathGetCharType(BSTR*) { not_supported(); }
    long qvPathGetDriveNumber(BSTR strPath) { return PathGetDriveNumberW(characters(strPath)); }
    bool qvPathIsContentType(BSTR*, BSTR*) { not_supported(); }
    bool qvPathIsDirectory(BSTR strPath) { return test(PathIsDirectoryW, strPath); }
    bool qvPathIsFileSpec(BSTR strPath) { return test(PathIsFileSpecW, strPath); }
    bool qvPathIsPrefix(BSTR strPrefix, BSTR strPath) { return test(PathIsPrefixW, strPrefix, strPath); }
    bool qvPathIsRelative(BSTR strPath) { return test(PathIsRelativeW, strPath); }
    bool qvPathIsRoot(BSTR strPath) { return test(PathIsRootW, strPath); }
    bool qvPathIsSameRoot(BSTR strPath1, BSTR strPath2) { return test(PathIsSameRootW, strPath1, strPath2); }
    bool qvPathIsSystemFolder(BSTR*, long) { not_supported(); }
    bool qvPathIsSystemFolderRecurive(BSTR*, long) { not_supported(); }
    bool qvPathIsUNC(BSTR strPath) { return test(PathIsUNCW, strPath); }
    bool qvPathIsUNCServer(BSTR*) { not_supported(); }
    bool qvPathIsUNCServerShare(BSTR*) { not_supported(); }
    bool qvPathIsURL(BSTR strPath) { return test(PathIsURLW, strPath); }
    std::wstring qvPathMakePretty(BSTR strPath);
    bool qvPathMakeSystemFolder(BSTR*) { not_supported(); }
    /// The file is looked at only where the platform can take the patterns.
    bool qvPathMatchSpec(BSTR* strFile, BSTR strSpec);
    long qvPathParseIconLocation(BSTR strIconFile) { return strIconFile ? PathParseIconLocationW(strIconFile) : 0; }
    Text qvPathQuoteSpaces(BSTR strPath) { return changed(strPath, PathQuoteSpacesW); }
    /// The end of the way is looked at only where the platform can take its start.
    Text qvPathRelativePathTo(BSTR strFrom, BSTR* strTo, long dwAttrFrom, long dwAttrTo);
    Text qvPathRemoveArgs(BSTR strPath) { return changed(strPath, PathRemoveArgsW); }
    Text qvPathRemoveBackslash(BSTR strPath) { return changed(strPath, PathRemoveBackslashW); }
    Text qvPathRemoveBlanks(BSTR strPath) { return changed(strPath, PathRemoveBlanksW); }
    Text qvPathRemoveExtension(BSTR strPath) { return changed(strPath, PathRemoveExtensionW); }
    Text qvPathRemoveFileSpec(BSTR strPath) { return changed(strPath, PathRemoveFileSpecW); }
    Text qvPathRenameExtension(BSTR strPath, BSTR strExt) { return changed(strPath, PathRenameExtensionW, characters(strExt)); }
    /// The platform may fill a buffer for a path whatever it is told of its size: writes the outcome with a closing NUL into
    /// the client's text if it fits there, and otherwise nothing.
    bool qvPathSearchAndQualify(BSTR strPath, BSTR strFullyQualifiedPath);
    bool qvPathSetDlgItemPath(long hDlgWnd, long ID, BSTR strPath);
    Text qvPathSkipRoot(BSTR strPath);
    Text qvPathStripPath(BSTR strPath) { return changed(strPath, PathStripPathW); }
    bool qvPathStripToRoot(BSTR& strPath);
    bool qvPathUnmakeSystemFolder(BSTR*) { not_supported(); }
    Text qvPathUnquoteSpaces(BSTR strPath) { return changed(strPath, PathUnquoteSpacesW); }

private:
    /// The characters of an argument up to a closing NUL.
    static const wchar_t* characters(const wchar_t* argument) noexcept { return argument ? argument : L""; }

    /// The path as the platform function changes it. Raises 5 for more than 260 characters.
    template <class Function, class... More>
    static Text changed(BSTR path, Function function, More... more)
    {
        files::PathBuffer buffer{automation::view(path)};
        function(buffer.get(), more...);
        return Text{buffer.text()};
    }

    /// The part of the path that starts where the platform function points to; empty when it points nowhere.
    template <class Function>
    static std::wstring_view part(BSTR path, Function function)
    {
        const wchar_t* start = characters(path);
        const wchar_t* found = function(start);
        return found ? automation::view(path).substr(static_cast<std::size_t>(found - start)) : std::wstring_view{};
    }

    /// Whether the platform function says so of the texts.
    static bool test(auto function, std::same_as<BSTR> auto... texts) { return function(characters(texts)...) != FALSE; }

    [[noreturn]] static void not_supported();
};
