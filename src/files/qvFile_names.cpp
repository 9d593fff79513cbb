#include "files/qvFile.h"

#include "files/arguments.h"
#include "files/folder_search.h"
#include "files/path_combination.h"
#include "files/path_names.h"
#include "text/strings.h"

using automation::answer;
using automation::Text;
using automation::to_text;
using automation::referred;
using files::text_of;

namespace {

/// For the members that never raise: what `rule` gives, or an empty text.
template <class Rule>
auto or_empty(Rule&& rule) noexcept -> decltype(rule())
try {
    return rule();
} catch (...) {
    return {};
}

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

HRESULT qvFile::GetPath(BSTR* File, BSTR* result) noexcept
{
    return answer(result, [&] { return files::GetPath(text_of(File)); });
}

HRESULT qvFile::GetFile(BSTR* File, VARIANT_BOOL* NoExtension, BSTR* result) noexcept
{
    return answer(result, [&] {
        return or_empty([&] { return files::GetFile(text_of(File), NoExtension && *NoExtension != VARIANT_FALSE); });
    });
}

HRESULT qvFile::GetPathV(VARIANT* vFile, BSTR* result) noexcept
{
    return answer(result, [&] {
        Text file = to_text(referred(vFile));
        return Text{files::GetPath(file)};
    });
}

HRESULT qvFile::GetFileV(VARIANT* vFile, BSTR* result) noexcept
{
    return answer(result, [&] {
        Text file = to_text(referred(vFile));
        return Text{files::GetFile(file)};
    });
}

HRESULT qvFile::qvDir(BSTR* sFile, BSTR* sAppPath, BSTR* result) noexcept
{
    return answer(result, [&] {
        return or_empty([&] { return found(text_of(sFile), text_of(sAppPath), files::NormalFiles); });
    });
}

HRESULT qvFile::qvDir2(BSTR* sFile, BSTR* sAppPath, long* A, BSTR* result) noexcept
{
    return answer(result, [&] { return or_empty([&] { return found(text_of(sFile), text_of(sAppPath), referred(A)); }); });
}

HRESULT qvFile::qvDirV(VARIANT* vFile, VARIANT* vAppPath, BSTR* result) noexcept
{
    return answer(result, [&] {
        const Text file = to_text(referred(vFile));
        const Text application = to_text(referred(vAppPath));
        return or_empty([&] { return found(file, application, files::NormalFiles); });
    });
}

HRESULT qvFile::GetRelPath(BSTR* sFile, BSTR* sAppPath, BSTR* result) noexcept
{
    return answer(result, [&] { return or_empty([&] { return text::StringCut(text_of(sFile), text_of(sAppPath)); }); });
}

HRESULT qvFile::GetRelPathV(VARIANT* vFile, VARIANT* vAppPath, BSTR* result) noexcept
{
    return answer(result, [&] {
        const Text file = to_text(referred(vFile));
        const Text application = to_text(referred(vAppPath));
        return or_empty([&] { return text::StringCut(file, application); });
    });
}

HRESULT qvFile::GetExtension(BSTR* sFile, BSTR* result) noexcept
{
    return answer(result, [&] { return or_empty([&] { return files::GetExtension(text_of(sFile)); }); });
}

HRESULT qvFile::RemoveExtension(BSTR* sFile, BSTR* result) noexcept
{
    return answer(result, [&] { return files::RemoveExtension(text_of(sFile)); });
}
