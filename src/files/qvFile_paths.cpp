#include "files/qvFile.h"

#include "files/arguments.h"
#include "files/path_buffer.h"
#include "files/path_combination.h"

#include <shlwapi.h>

#include <algorithm>
#include <ranges>

using automation::answer;
using automation::Error;
using automation::Text;
using files::fits_platform;
using files::PathBuffer;
using automation::referred;
using files::text_of;

namespace {

/// The characters of an argument up to a closing NUL.
const wchar_t* characters(const BSTR* argument)
{
    const BSTR text = referred(argument);
    return text ? text : L"";
}

// ---- What most members do: one platform function each -----------------------------------------------------------------

/// The path as the platform function changes it. Raises 5 for more than 260 characters.
template <class Function, class... More>
HRESULT changed(BSTR* result, const BSTR* path, Function function, More... more) noexcept
{
    return answer(result, [&] {
        PathBuffer buffer{text_of(path)};
        function(buffer.get(), more...);
        return Text{buffer.text()};
    });
}

/// The part of the path that starts where the platform function points to; empty when it points nowhere.
template <class Function>
HRESULT part(BSTR* result, const BSTR* path, Function function) noexcept
{
    return answer(result, [&] {
        const wchar_t* start = characters(path);
        const wchar_t* found = function(start);
        return found ? text_of(path).substr(static_cast<std::size_t>(found - start)) : std::wstring_view{};
    });
}

/// Whether the platform function says so of the texts.
template <class Function, class... Texts>
HRESULT test(VARIANT_BOOL* result, Function function, Texts... texts) noexcept
{
    return answer(result, [&] { return function(characters(texts)...) != FALSE; });
}

template <class Result>
HRESULT not_supported(Result* result) noexcept
{
    return answer(result, []() -> Result { throw Error{10001, L"Function not supported"}; });
}

// ---- What some of them need ---------------------------------------------------------------------------------------------

/// Whether the widths of texts can be had. Without them PathCompactPath may look for a shorter path without end.
bool measures_text(HDC context) noexcept
{
    SIZE size;
    return GetTextExtentPoint32W(context, L".", 1, &size) != FALSE;
}

/// Whether PathMatchSpec can take a list of patterns. It calls itself for every asterisk of a pattern.
bool patterns_fit(std::wstring_view list) noexcept
{
    return std::ranges::all_of(list | std::views::split(L';'),
                               [](auto pattern) { return fits_platform({pattern.begin(), pattern.end()}); });
}

/// Searches and qualifies a path like the platform's function, which may fill a buffer for a path whatever it is told of its
/// size. Writes the outcome with a closing NUL into `room` if it fits there, and otherwise nothing.
bool search_and_qualify(const wchar_t* path, BSTR room)
{
    constexpr std::size_t longest = 32767;
    std::wstring found(longest, L'\0');
    if (!PathSearchAndQualifyW(path, found.data(), longest))
        return false;
    found.resize(found.find(L'\0'));
    if (found.empty() || found.size() >= SysStringLen(room))
        return false;
    *std::ranges::copy(found, room).out = L'\0';
    return true;
}

template <class Handle>
Handle handle(long number) noexcept
{
    return reinterpret_cast<Handle>(static_cast<LONG_PTR>(number));
}

} // namespace

HRESULT qvFile::qvPathAddBackslash(BSTR* strPath, BSTR* result) noexcept
{
    return changed(result, strPath, PathAddBackslashW);
}

HRESULT qvFile::qvPathAddExtension(BSTR* strPath, BSTR* strExtension, BSTR* result) noexcept
{
    return answer(result, [&] {
        PathBuffer buffer{text_of(strPath)};
        std::wstring extension{text_of(strExtension)};
        if (!extension.empty() && extension.front() != L'.')
            extension.insert(0, 1, L'.');
        PathAddExtensionW(buffer.get(), extension.c_str());
        Text whole{buffer.text()};
        files::replace(*strExtension, extension);
        return whole;
    });
}

HRESULT qvFile::qvPathAppend(BSTR* strPath, BSTR* strMore, BSTR* result) noexcept
{
    return answer(result, [&] {
        PathBuffer buffer{text_of(strPath)};
        if (!files::can_combine(text_of(strPath), text_of(strMore)))
            return Text{L""};
        PathAppendW(buffer.get(), characters(strMore));
        return Text{buffer.text()};
    });
}

HRESULT qvFile::qvPathBuildRoot(long lDrive, BSTR* result) noexcept
{
    return answer(result, [&] {
        PathBuffer root;
        PathBuildRootW(root.get(), lDrive);
        return Text{root.text()};
    });
}

HRESULT qvFile::qvPathCanonicalize(BSTR* strPath, BSTR* result) noexcept
{
    return answer(result, [&] {
        PathBuffer path{text_of(strPath)};
        PathBuffer resolved;
        PathCanonicalizeW(resolved.get(), path.get());
        return Text{resolved.text()};
    });
}

HRESULT qvFile::qvPathCombine(BSTR* strPath, BSTR* strFile, BSTR* result) noexcept
{
    return answer(result, [&] { return files::combined(text_of(strPath), text_of(strFile)); });
}

HRESULT qvFile::qvPathCompactPath(long hDC, BSTR* strPath, long dX, BSTR* result) noexcept
{
    const auto compact = [&](wchar_t* path) {
        const HDC context = handle<HDC>(hDC);
        if (!context || measures_text(context)) // without one it is the screen's
            PathCompactPathW(context, path, static_cast<UINT>(dX));
    };
    return changed(result, strPath, compact);
}

HRESULT qvFile::qvPathCompactPathEx(BSTR* strSrc, long lngCharMax, qvPathSeparator dwflags, BSTR* result) noexcept
{
    return answer(result, [&] {
        PathBuffer compact;
        const UINT most = std::min<UINT>(static_cast<UINT>(lngCharMax), MAX_PATH);
        PathCompactPathExW(compact.get(), characters(strSrc), most, static_cast<DWORD>(dwflags));
        return Text{compact.text()};
    });
}

HRESULT qvFile::qvPathCommonPrefix(BSTR* strPath1, BSTR* strPath2, BSTR* result) noexcept
{
    return answer(result, [&] {
        PathBuffer prefix;
        if (PathCommonPrefixW(characters(strPath1), characters(strPath2), nullptr) < MAX_PATH)
            PathCommonPrefixW(characters(strPath1), characters(strPath2), prefix.get());
        return Text{prefix.text()};
    });
}

HRESULT qvFile::qvPathFileExists(BSTR* strPath, VARIANT_BOOL* result) noexcept
{
    return test(result, PathFileExistsW, strPath);
}

HRESULT qvFile::qvPathFindExtension(BSTR* strPath, BSTR* result) noexcept
{
    return part(result, strPath, PathFindExtensionW);
}

HRESULT qvFile::qvPathFindFileName(BSTR* strPath, BSTR* result) noexcept
{
    // Clients know it as another name of qvPathFindNextComponent.
    return part(result, strPath, PathFindNextComponentW);
}

HRESULT qvFile::qvPathFindNextComponent(BSTR* strPath, BSTR* result) noexcept
{
    return part(result, strPath, PathFindNextComponentW);
}

HRESULT qvFile::qvPathGetArgs(BSTR* strPath, BSTR* result) noexcept
{
    return part(result, strPath, PathGetArgsW);
}

HRESULT qvFile::qvPathGetCharType(BSTR*, qvGetCharType* result) noexcept
{
    return not_supported(result);
}

HRESULT qvFile::qvPathGetDriveNumber(BSTR* strPath, long* result) noexcept
{
    return answer(result, [&] { return PathGetDriveNumberW(characters(strPath)); });
}

HRESULT qvFile::qvPathIsContentType(BSTR*, BSTR*, VARIANT_BOOL* result) noexcept
{
    return not_supported(result);
}

HRESULT qvFile::qvPathIsDirectory(BSTR* strPath, VARIANT_BOOL* result) noexcept
{
    return test(result, PathIsDirectoryW, strPath);
}

HRESULT qvFile::qvPathIsFileSpec(BSTR* strPath, VARIANT_BOOL* result) noexcept
{
    return test(result, PathIsFileSpecW, strPath);
}

HRESULT qvFile::qvPathIsPrefix(BSTR* strPrefix, BSTR* strPath, VARIANT_BOOL* result) noexcept
{
    return test(result, PathIsPrefixW, strPrefix, strPath);
}

HRESULT qvFile::qvPathIsRelative(BSTR* strPath, VARIANT_BOOL* result) noexcept
{
    return test(result, PathIsRelativeW, strPath);
}

HRESULT qvFile::qvPathIsRoot(BSTR* strPath, VARIANT_BOOL* result) noexcept
{
    return test(result, PathIsRootW, strPath);
}

HRESULT qvFile::qvPathIsSameRoot(BSTR* strPath1, BSTR* strPath2, VARIANT_BOOL* result) noexcept
{
    return test(result, PathIsSameRootW, strPath1, strPath2);
}

HRESULT qvFile::qvPathIsSystemFolder(BSTR*, long, VARIANT_BOOL* result) noexcept
{
    return not_supported(result);
}

HRESULT qvFile::qvPathIsSystemFolderRecurive(BSTR*, long, VARIANT_BOOL* result) noexcept
{
    return not_supported(result);
}

HRESULT qvFile::qvPathIsUNC(BSTR* strPath, VARIANT_BOOL* result) noexcept
{
    return test(result, PathIsUNCW, strPath);
}

HRESULT qvFile::qvPathIsUNCServer(BSTR*, VARIANT_BOOL* result) noexcept
{
    return not_supported(result);
}

HRESULT qvFile::qvPathIsUNCServerShare(BSTR*, VARIANT_BOOL* result) noexcept
{
    return not_supported(result);
}

HRESULT qvFile::qvPathIsURL(BSTR* strPath, VARIANT_BOOL* result) noexcept
{
    return test(result, PathIsURLW, strPath);
}

HRESULT qvFile::qvPathMakePretty(BSTR* strPath, BSTR* result) noexcept
{
    return answer(result, [&] {
        std::wstring path{text_of(strPath)};
        PathMakePrettyW(path.data());
        return path;
    });
}

HRESULT qvFile::qvPathMakeSystemFolder(BSTR*, VARIANT_BOOL* result) noexcept
{
    return not_supported(result);
}

HRESULT qvFile::qvPathMatchSpec(BSTR* strFile, BSTR* strSpec, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] {
        return patterns_fit(text_of(strSpec)) && PathMatchSpecW(characters(strFile), characters(strSpec)) != FALSE;
    });
}

HRESULT qvFile::qvPathParseIconLocation(BSTR* strIconFile, long* result) noexcept
{
    return answer(result, [&] { return referred(strIconFile) ? PathParseIconLocationW(*strIconFile) : 0; });
}

HRESULT qvFile::qvPathQuoteSpaces(BSTR* strPath, BSTR* result) noexcept
{
    return changed(result, strPath, PathQuoteSpacesW);
}

HRESULT qvFile::qvPathRelativePathTo(BSTR* strFrom, BSTR* strTo, long dwAttrFrom, long dwAttrTo, BSTR* result) noexcept
{
    return answer(result, [&] {
        PathBuffer path;
        if (fits_platform(text_of(strFrom)) && fits_platform(text_of(strTo))) {
            // In buffers of their own, for the platform may look behind the end of a path.
            PathBuffer from{text_of(strFrom)};
            PathBuffer to{text_of(strTo)};
            PathRelativePathToW(path.get(), from.get(), static_cast<DWORD>(dwAttrFrom), to.get(), static_cast<DWORD>(dwAttrTo));
        }
        return Text{path.text()};
    });
}

HRESULT qvFile::qvPathRemoveArgs(BSTR* strPath, BSTR* result) noexcept
{
    return changed(result, strPath, PathRemoveArgsW);
}

HRESULT qvFile::qvPathRemoveBackslash(BSTR* strPath, BSTR* result) noexcept
{
    return changed(result, strPath, PathRemoveBackslashW);
}

HRESULT qvFile::qvPathRemoveBlanks(BSTR* strPath, BSTR* result) noexcept
{
    return changed(result, strPath, PathRemoveBlanksW);
}

HRESULT qvFile::qvPathRemoveExtension(BSTR* strPath, BSTR* result) noexcept
{
    return changed(result, strPath, PathRemoveExtensionW);
}

HRESULT qvFile::qvPathRemoveFileSpec(BSTR* strPath, BSTR* result) noexcept
{
    return changed(result, strPath, PathRemoveFileSpecW);
}

HRESULT qvFile::qvPathRenameExtension(BSTR* strPath, BSTR strExt, BSTR* result) noexcept
{
    return changed(result, strPath, PathRenameExtensionW, strExt ? strExt : L"");
}

HRESULT qvFile::qvPathSearchAndQualify(BSTR* strPath, BSTR* strFullyQualifiedPath, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] { return search_and_qualify(characters(strPath), referred(strFullyQualifiedPath)); });
}

HRESULT qvFile::qvPathSetDlgItemPath(long hDlgWnd, long ID, BSTR* strPath, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] {
        const HWND dialog = handle<HWND>(hDlgWnd);
        if (!fits_platform(text_of(strPath)) || !GetDlgItem(dialog, ID))
            return false;
        PathSetDlgItemPathW(dialog, ID, characters(strPath)); // which does not tell how it went
        return true;
    });
}

HRESULT qvFile::qvPathSkipRoot(BSTR* strPath, BSTR* result) noexcept
{
    return answer(result, [&] {
        PathBuffer path{text_of(strPath)};
        const wchar_t* rest = PathSkipRootW(path.get());
        return Text{rest ? rest : L""};
    });
}

HRESULT qvFile::qvPathStripPath(BSTR* strPath, BSTR* result) noexcept
{
    return changed(result, strPath, PathStripPathW);
}

HRESULT qvFile::qvPathStripToRoot(BSTR* strPath, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] {
        PathBuffer path{text_of(strPath)};
        const bool stripped = PathStripToRootW(path.get()) != FALSE;
        files::replace(*strPath, path.text());
        return stripped;
    });
}

HRESULT qvFile::qvPathUnmakeSystemFolder(BSTR*, VARIANT_BOOL* result) noexcept
{
    return not_supported(result);
}

HRESULT qvFile::qvPathUnquoteSpaces(BSTR* strPath, BSTR* result) noexcept
{
    return changed(result, strPath, PathUnquoteSpacesW);
}
