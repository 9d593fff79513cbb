#include "files/qvFile_names.h"

#include "files/arguments.h"
#include "files/folder_search.h"
#include "files/path_combination.h"
#include "text/strings.h"

#include <string>

using automation::or_default;
using automation::referred;
using automation::to_text;
using files::text_of;

namespace {

/// The full path of a file, itself or seen from the application's folder, if a search that admits these attributes finds it.
std::wstring found(std::wstring_view file, std::wstring_view application, long admitted)
{
    std::wstring relative;
    if (files::is_below_application(file))
        file = relative.append(1, L'.').append(file);
    std::wstring path = files::combined(application, file);
    return files::finds(path, admitted) ? path : std::wstring{};
}

} // namespace

std::wstring_view qvFile_names::GetFile(BSTR* File, const VARIANT_BOOL* NoExtension) noexcept
{
    return or_default([&] { return files::GetFile(text_of(File), NoExtension && *NoExtension != VARIANT_FALSE); });
}

std::wstring qvFile_names::qvDir(BSTR* sFile, BSTR* sAppPath) noexcept
{
    return or_default([&] { return found(text_of(sFile), text_of(sAppPath), files::NormalFiles); });
}

std::wstring qvFile_names::qvDir2(BSTR* sFile, BSTR* sAppPath, long* A) noexcept
{
    return or_default([&] { return found(text_of(sFile), text_of(sAppPath), referred(A)); });
}

std::wstring qvFile_names::qvDirV(const VARIANT& vFile, VARIANT* vAppPath)
{
    const Text file = to_text(vFile);
    const Text application = to_text(referred(vAppPath));
    return or_default([&] { return found(file, application, files::NormalFiles); });
}

std::wstring qvFile_names::GetRelPath(BSTR* sFile, BSTR* sAppPath) noexcept
{
    return or_default([&] { return text::StringCut(text_of(sFile), text_of(sAppPath)); });
}

std::wstring qvFile_names::GetRelPathV(const VARIANT& vFile, VARIANT* vAppPath)
{
    const Text file = to_text(vFile);
    const Text application = to_text(referred(vAppPath));
    return or_default([&] { return text::StringCut(file, application); });
}

std::wstring_view qvFile_names::GetExtension(BSTR* sFile) noexcept
{
    return or_default([&] { return files::GetExtension(text_of(sFile)); });
}
