#include "files/qvFile.h"

#include "files/arguments.h"
#include "files/file_deletion.h"
#include "files/folder_removal.h"
#include "files/folder_search.h"
#include "files/folder_walk.h"
#include "files/folders.h"
#include "frame/MErrors.h"
#include "text/message_template.h"
#include "text/strings.h"

using automation::answer;
using automation::Ref;
using automation::Text;
using automation::view;

namespace {

/// Raises ItemFound for what a walk finds. The folder's text is made once for all that it holds.
class ItemFoundEvents final : public files::WalkVisitor {
public:
    ItemFoundEvents(const automation::ConnectionPoint& events, VARIANT_BOOL& cancelled)
        : events_{events}, cancelled_{cancelled}
    {
    }

    bool listens() const noexcept override { return events_.has_sinks(); }

    bool found(const std::wstring& folder, const files::FolderSearch& entry) override
    {
        constexpr DISPID item_found = 1;
        if (std::wstring_view{folder_} != folder)
            folder_ = Text{folder};
        const Text name{entry.name()};
        events_.fire(item_found, {argument(folder_), argument(name), cancel_argument()});
        return cancelled_ == VARIANT_FALSE;
    }

private:
    static VARIANT argument(const Text& text) noexcept
    {
        VARIANT value{};
        value.vt = VT_BSTR;
        value.bstrVal = text.get();
        return value;
    }
    VARIANT cancel_argument() const noexcept
    {
        VARIANT value{};
        value.vt = VT_BYREF | VT_BOOL;
        value.pboolVal = &cancelled_;
        return value;
    }

    const automation::ConnectionPoint& events_;
    VARIANT_BOOL& cancelled_;
    Text folder_;
};

bool is_dots(std::wstring_view name) noexcept
{
    return name == L"." || name == L"..";
}

bool path_exists(std::wstring_view path)
{
    files::FolderSearch search{path, files::Folders};
    while (search.next())
        if (!is_dots(search.name()))
            return true;
    return false;
}

void tell(const std::wstring& message, BSTR caption, VARIANT_BOOL wanted)
{
    if (wanted)
        MErrors::ShowMessage(message, view(caption), MB_ICONERROR);
}

/// Whether it exists; tells the user so with this message if he wants to hear of it.
bool checked(bool exists, std::int32_t message, BSTR path, BSTR caption, VARIANT_BOOL wanted)
{
    if (!exists)
        tell(text::expand(MErrors::LangStr(message), {view(path)}), caption, wanted);
    return exists;
}

/// What does not exist may be written, but not what can't be looked for.
bool may_be_written(const std::wstring& path, BSTR caption, VARIANT_BOOL wanted)
{
    constexpr DWORD volume_label = 8;
    files::FolderSearch search{path, files::EveryEntry};
    if (!search.next())
        return !search.failed();
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return false;
    const std::wstring name = text::in_quotation_marks(path);
    if (attributes & (FILE_ATTRIBUTE_DIRECTORY | volume_label)) {
        tell(name + MErrors::LangStr(10008), caption, wanted);
        return false;
    }
    if (attributes & FILE_ATTRIBUTE_READONLY) {
        tell(MErrors::LangStr(10009) + name + MErrors::LangStr(10010), caption, wanted);
        return false;
    }
    return true;
}

/// What can't be deleted stays.
void delete_if_possible(std::wstring_view pattern) noexcept
try {
    if (files::finds(pattern, files::NormalFiles))
        files::delete_files(pattern);
} catch (...) {
}

} // namespace

HRESULT qvFile::WalkDirTree(BSTR* sSrcDir, BSTR sSearchItem, WalkDirConsts fFlags, long Attributes) noexcept
{
    return answer([&] {
        if (!files::text_of(sSrcDir).ends_with(L'\\'))
            files::replace(*sSrcDir, std::wstring{view(*sSrcDir)} + L'\\');
        const Ref<qvFile> kept{this}; // a handler may let go of the last reference
        cancelled_ = VARIANT_FALSE;
        const std::wstring folder{view(*sSrcDir)}, pattern{view(sSearchItem)};
        const files::WalkRules rules{
            .pattern = pattern,
            .admitted = Attributes,
            .folders_only = (fFlags & dwDirectoriesOnly) != 0,
            .this_folder_only = (fFlags & dwWalkCurDirOnly) != 0,
        };
        ItemFoundEvents raised{events(), cancelled_};
        files::walk(folder, rules, raised);
    });
}

HRESULT qvFile::CheckFile(BSTR sFile, BSTR sCaption, VARIANT_BOOL fMsgBox, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] {
        return checked(files::finds(view(sFile), files::NormalFiles), 10006, sFile, sCaption, fMsgBox);
    });
}

HRESULT qvFile::CheckPath(BSTR sPath, BSTR sCaption, VARIANT_BOOL fMsgBox, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] { return checked(path_exists(view(sPath)), 10007, sPath, sCaption, fMsgBox); });
}

HRESULT qvFile::CheckForWrite(BSTR sFile, BSTR sCaption, VARIANT_BOOL fMsgBox, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] { return may_be_written(std::wstring{view(sFile)}, sCaption, fMsgBox); });
}

HRESULT qvFile::DelFile(BSTR sFile, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] {
        const Ref<qvFile> kept{this}; // the messages that are handled meanwhile may let go of the last reference
        const std::wstring file{view(sFile)};
        files::delete_files(file);
        return files::wait_until_gone(file);
    });
}

HRESULT qvFile::qvKill(BSTR sFile) noexcept
{
    delete_if_possible(view(sFile));
    return S_OK;
}

HRESULT qvFile::qvChDir(BSTR sDir) noexcept
{
    return answer([&] { files::go_to_folder(view(sDir)); });
}

HRESULT qvFile::qvMkDirMulti(BSTR sPath) noexcept
{
    return answer([&] { files::create_folders(view(sPath)); });
}

HRESULT qvFile::ClearFolder(BSTR strFolder, VARIANT_BOOL fIgnoreErrors, long* result) noexcept
{
    return answer(result, [&] { return files::clear_folder(view(strFolder), fIgnoreErrors != VARIANT_FALSE); });
}

HRESULT qvFile::PathIsEmpty(BSTR sPath, VARIANT_BOOL* result) noexcept
{
    return answer(result, [&] { return files::is_empty_folder(view(sPath)); });
}
