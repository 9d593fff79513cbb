#include "files/qvFile_paths.h"

#include "automation/handle.h"
#include "files/arguments.h"

#include <algorithm>
#include <ranges>

using automation::Text;
using automation::view;
using files::fits_platform;
using files::PathBuffer;

namespace {

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

} // namespace

void qvFile_paths::not_supported()
{
    throw automation::Error{10001, L"Function not supported"};
}

Text qvFile_paths::qvPathAddExtension(BSTR strPath, BSTR& strExtension)
{
    PathBuffer buffer{view(strPath)};
    std::wstring extension{view(strExtension)};
    if (!extension.empty() && extension.front() != L'.')
        extension.insert(0, 1, L'.');
    PathAddExtensionW(buffer.get(), extension.c_str());
    Text whole{buffer.text()};
    files::replace(strExtension, extension);
    return whole;
}

Text qvFile_paths::qvPathAppend(BSTR strPath, BSTR strMore)
{
    PathBuffer buffer{view(strPath)};
    if (!files::can_combine(view(strPath), view(strMore)))
        return Text{L""};
    PathAppendW(buffer.get(), characters(strMore));
    return Text{buffer.text()};
}

Text qvFile_paths::qvPathBuildRoot(long lDrive)
{
    PathBuffer root;
    PathBuildRootW(root.get(), lDrive);
    return Text{root.text()};
}

Text qvFile_paths::qvPathCanonicalize(BSTR strPath)
{
    PathBuffer path{view(strPath)};
    PathBuffer resolved;
    PathCanonicalizeW(resolved.get(), path.get());
    return Text{resolved.text()};
}

Text qvFile_paths::qvPathCompactPath(long hDC, BSTR strPath, long dX)
{
    const auto compact = [&](wchar_t* path) {
        const HDC context = automation::handle_from<HDC>(hDC);
        if (!context || measures_text(context)) // without one it is the screen's
            PathCompactPathW(context, path, static_cast<UINT>(dX));
    };
    return changed(strPath, compact);
}

Text qvFile_paths::qvPathCompactPathEx(BSTR strSrc, long lngCharMax, qvPathSeparator dwflags)
{
    PathBuffer compact;
    const UINT most = std::min<UINT>(static_cast<UINT>(lngCharMax), MAX_PATH);
    PathCompactPathExW(compact.get(), characters(strSrc), most, static_cast<DWORD>(dwflags));
    return Text{compact.text()};
}

Text qvFile_paths::qvPathCommonPrefix(BSTR strPath1, BSTR strPath2)
{
    PathBuffer prefix;
    if (PathCommonPrefixW(characters(strPath1), characters(strPath2), nullptr) < MAX_PATH)
        PathCommonPrefixW(characters(strPath1), characters(strPath2), prefix.get());
    return Text{prefix.text()};
}

std::wstring qvFile_paths::qvPathMakePretty(BSTR strPath)
{
    std::wstring path{view(strPath)};
    PathMakePrettyW(path.data());
    return path;
}

bool qvFile_paths::qvPathMatchSpec(BSTR* strFile, BSTR strSpec)
{
    return patterns_fit(view(strSpec)) && test(PathMatchSpecW, automation::referred(strFile), strSpec);
}

Text qvFile_paths::qvPathRelativePathTo(BSTR strFrom, BSTR* strTo, long dwAttrFrom, long dwAttrTo)
{
    PathBuffer path;
    if (fits_platform(view(strFrom)) && fits_platform(files::text_of(strTo))) {
        // In buffers of their own, for the platform may look behind the end of a path.
        PathBuffer from{view(strFrom)};
        PathBuffer to{view(*strTo)};
        PathRelativePathToW(path.get(), from.get(), static_cast<DWORD>(dwAttrFrom), to.get(), static_cast<DWORD>(dwAttrTo));
    }
    return Text{path.text()};
}

bool qvFile_paths::qvPathSearchAndQualify(BSTR strPath, BSTR strFullyQualifiedPath)
{
    constexpr std::size_t longest = 32767;
    std::wstring found(longest, L'\0');
    if (!PathSearchAndQualifyW(characters(strPath), found.data(), longest))
        return false;
    found.resize(found.find(L'\0'));
    if (found.empty() || found.size() >= SysStringLen(strFullyQualifiedPath))
        return false;
    *std::ranges::copy(found, strFullyQualifiedPath).out = L'\0';
    return true;
}

bool qvFile_paths::qvPathSetDlgItemPath(long hDlgWnd, long ID, BSTR strPath)
{
    const HWND dialog = automation::handle_from<HWND>(hDlgWnd);
    if (!fits_platform(view(strPath)) || !GetDlgItem(dialog, ID))
        return false;
    PathSetDlgItemPathW(dialog, ID, characters(strPath)); // which does not tell how it went
    return true;
}

Text qvFile_paths::qvPathSkipRoot(BSTR strPath)
{
    PathBuffer path{view(strPath)};
    const wchar_t* rest = PathSkipRootW(path.get());
    return Text{rest ? rest : L""};
}

bool qvFile_paths::qvPathStripToRoot(BSTR& strPath)
{
    PathBuffer path{view(strPath)};
    const bool stripped = PathStripToRootW(path.get()) != FALSE;
    files::replace(strPath, path.text());
    return stripped;
}
