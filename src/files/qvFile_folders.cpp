#include "files/qvFile_folders.h"

#include "files/file_deletion.h"
#include "files/folder_search.h"
#include "messages/MErrors.h"
#include "text/message_template.h"
#include "text/strings.h"

#include <windows.h>

#include <string>

namespace {

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

void tell(const std::wstring& message, std::wstring_view caption, bool wanted)
{
    if (wanted)
        MErrors::ShowMessage(message, caption, MB_ICONERROR);
}

/// Whether it exists; tells the user so with this message if he wants to hear of it.
bool checked(bool exists, std::int32_t message, std::wstring_view path, std::wstring_view caption, bool wanted)
{
    if (!exists)
        tell(text::expand(MErrors::LangStr(message), {path}), caption, wanted);
    return exists;
}

} // namespace

bool qvFile_folders::CheckFile(std::wstring_view sFile, std::wstring_view sCaption, bool fMsgBox)
{
    return checked(files::finds(sFile, files::NormalFiles), 10006, sFile, sCaption, fMsgBox);
}

bool qvFile_folders::CheckPath(std::wstring_view sPath, std::wstring_view sCaption, bool fMsgBox)
{
    return checked(path_exists(sPath), 10007, sPath, sCaption, fMsgBox);
}

/// What does not exist may be written, but not what can't be looked for.
bool qvFile_folders::CheckForWrite(std::wstring_view sFile, std::wstring_view sCaption, bool fMsgBox)
{
    constexpr DWORD volume_label = 8;
    const std::wstring path{sFile};
    files::FolderSearch search{path, files::EveryEntry};
    if (!search.next())
        return !search.failed();
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return false;
    const std::wstring name = text::in_quotation_marks(path);
    if (attributes & (FILE_ATTRIBUTE_DIRECTORY | volume_label)) {
        tell(name + MErrors::LangStr(10008), sCaption, fMsgBox);
        return false;
    }
    if (attributes & FILE_ATTRIBUTE_READONLY) {
        tell(MErrors::LangStr(10009) + name + MErrors::LangStr(10010), sCaption, fMsgBox);
        return false;
    }
    return true;
}

bool qvFile_folders::DelFile(std::wstring_view sFile)
{
    const std::wstring file{sFile}; // which the client may let go of while messages are handled
    files::delete_files(file);
    return files::wait_until_gone(file);
}

void qvFile_folders::qvKill(std::wstring_view sFile) noexcept
try {
    if (files::finds(sFile, files::NormalFiles))
        files::delete_files(sFile);
} catch (...) {
}
