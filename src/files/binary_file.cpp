#include "files/binary_file.h"

#include "automation/error.h"
#include "files/replacing.h"

#include <algorithm>
#include <new>
#include <utility>

namespace files {
namespace {

constexpr std::size_t read_ahead = 1 << 14;

constexpr DWORD share_all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
constexpr DWORD kind = FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN;

/// Who reads a file does not keep others from replacing it.
Handle open(const std::wstring& path, DWORD access, DWORD disposition) noexcept
{
    return Handle{CreateFileW(path.c_str(), access, share_all, nullptr, disposition, kind, nullptr)};
}

bool may_be_readable(DWORD failure) noexcept
{
    return failure == ERROR_ACCESS_DENIED || failure == ERROR_SHARING_VIOLATION || failure == ERROR_WRITE_PROTECT;
}

/// A file that someone is about to replace is not missing.
Handle open_for_both(const std::wstring& path)
{
    constexpr DWORD both = GENERIC_READ | GENERIC_WRITE;
    Patience patience{path};
    for (;;) {
        Handle file = open(path, both, OPEN_EXISTING);
        const DWORD failure = GetLastError();
        if (!file && may_be_readable(failure))
            file = open(path, GENERIC_READ, OPEN_EXISTING);
        if (!file && patience.tries_again(failure))
            continue;
        if (!file && failure == ERROR_FILE_NOT_FOUND)
            file = open(path, both, OPEN_ALWAYS);
        if (!file)
            raise_file_error(failure == ERROR_FILE_NOT_FOUND ? GetLastError() : failure);
        return file;
    }
}

bool is_device(const std::wstring& path)
{
    const Handle opened{CreateFileW(path.c_str(), 0, share_all, nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr)};
    return opened && GetFileType(opened.get()) != FILE_TYPE_DISK;
}

bool set_deletion(const Handle& file, bool deletes) noexcept
{
    FILE_DISPOSITION_INFO deletion{deletes};
    return SetFileInformationByHandle(file.get(), FileDispositionInfo, &deletion, sizeof deletion);
}

/// Moves an open file within its folder, also one that nobody else can open.
bool move(const Handle& file, const std::wstring& target, bool replaces) noexcept
{
    const std::size_t size = sizeof(FILE_RENAME_INFO) + target.size() * sizeof(wchar_t);
    const std::unique_ptr<char[]> memory{new (std::nothrow) char[size]()};
    if (!memory) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return false;
    }
    auto* const information = reinterpret_cast<FILE_RENAME_INFO*>(memory.get());
    information->ReplaceIfExists = replaces;
    information->FileNameLength = static_cast<DWORD>(target.size() * sizeof(wchar_t));
    target.copy(information->FileName, target.size());
    return SetFileInformationByHandle(file.get(), FileRenameInfo, information, static_cast<DWORD>(size));
}

/// Why a file could not be moved to this place: another program that was quicker may be writing a file of its own there, which
/// the system tells like a missing right.
DWORD why_not_moved_to(const std::wstring& path) noexcept
{
    const DWORD failure = GetLastError();
    if (failure != ERROR_ACCESS_DENIED)
        return failure;
    const Handle there = open(path, GENERIC_READ, OPEN_EXISTING);
    return !there && GetLastError() == ERROR_SHARING_VIOLATION ? ERROR_SHARING_VIOLATION : failure;
}

/// Gives why it failed, 0 where it did not. A file that could not be deleted afterwards stays where it is.
DWORD move_away(const std::wstring& path, const std::wstring& name) noexcept
{
    const Handle file{CreateFileW(path.c_str(), DELETE, share_all, nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr)};
    BY_HANDLE_FILE_INFORMATION information;
    if (!file || !GetFileInformationByHandle(file.get(), &information))
        return GetLastError();
    if (information.dwFileAttributes & FILE_ATTRIBUTE_READONLY)
        return ERROR_ACCESS_DENIED;
    const bool done = set_deletion(file, true) && set_deletion(file, false) && move(file, name, false);
    return done ? 0 : GetLastError();
}

} // namespace

BinaryFile::BinaryFile(std::wstring_view path, Opening opening) : path_{checked(path)}
{
    if (opening == Opening::Replacing && !is_device(path_)) {
        replace();
        return;
    }
    file_ = open_for_both(path_);
    LARGE_INTEGER size{};
    if (GetFileType(file_.get()) == FILE_TYPE_DISK && !GetFileSizeEx(file_.get(), &size))
        raise_file_error(GetLastError());
    end_ = static_cast<std::uint64_t>(size.QuadPart);
}

BinaryFile::~BinaryFile()
{
    if (name_of_new_.empty())
        return;
    if (failed_ || !kept_) {
        put_former_back();
        return;
    }
    file_.close();
    if (!name_of_former_.empty())
        remove_beside(name_of_former_);
}

/// The new file is made beside the former one, so that nothing has happened where that fails, and then moved to its place.
void BinaryFile::replace()
{
    path_ = whole_path(path_); // renaming needs it so
    if (path_.empty())
        raise_file_error(ERROR_PATH_NOT_FOUND);
    std::wstring name = name_beside(path_, new_content);
    // Not to where a link leads that someone may have put there.
    file_ = Handle{CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                               kind | FILE_FLAG_OPEN_REPARSE_POINT, nullptr)};
    if (!file_)
        raise_file_error(GetLastError());
    name_of_new_ = std::move(name);
    try {
        move_former_away();
        Patience patience{path_, name_of_new_};
        while (!move(file_, path_, true))
            if (const DWORD failure = why_not_moved_to(path_); !patience.tries_again(failure))
                raise_file_error(failure);
    } catch (...) {
        put_former_back();
        throw;
    }
}

void BinaryFile::move_former_away()
{
    Patience patience{path_, name_of_new_};
    std::wstring name = name_beside(path_, former_content);
    for (;;) {
        const DWORD failure = move_away(path_, name);
        if (failure == 0)
            name_of_former_ = std::move(name);
        else if (patience.tries_again(failure))
            continue;
        else if (failure != ERROR_FILE_NOT_FOUND)
            raise_file_error(failure);
        return;
    }
}

/// The new one steps aside before it is deleted: someone who looks at its attributes would keep its name in use.
void BinaryFile::put_former_back() noexcept
{
    const bool is_aside = move(file_, name_of_new_, false);
    set_deletion(file_, true);
    if (!is_aside) // for want of memory: then its name is free when it is gone
        file_.close();
    if (!name_of_former_.empty())
        MoveFileExW(name_of_former_.c_str(), path_.c_str(), 0);
    file_.close();
    name_of_new_.clear();
}

void BinaryFile::read(void* bytes, std::size_t size)
{
    if (size > left())
        throw automation::Error{automation::Runtime::InputPastEnd};
    auto* next = static_cast<char*>(bytes);
    std::size_t missing = size - take_read_ahead(next, size);
    next += size - missing;
    if (missing >= read_ahead) {
        missing -= files::read(file_, next, missing);
    } else if (missing > 0) {
        if (!ahead_)
            ahead_ = std::make_unique_for_overwrite<char[]>(read_ahead);
        ahead_next_ = ahead_end_ = 0;
        ahead_end_ = files::read(file_, ahead_.get(), read_ahead);
        missing -= take_read_ahead(next, missing);
    }
    if (missing > 0) // someone else has cut the file meanwhile
        throw automation::Error{automation::Runtime::InputPastEnd};
    position_ += size;
}

void BinaryFile::write(std::string_view bytes)
try {
    drop_read_ahead();
    files::write(file_, bytes);
    position_ += bytes.size();
    end_ = std::max(end_, position_);
} catch (...) {
    failed_ = true;
    throw;
}

std::size_t BinaryFile::take_read_ahead(char* bytes, std::size_t size) noexcept
{
    const std::size_t taken = std::min(size, ahead_end_ - ahead_next_);
    std::copy_n(ahead_.get() + ahead_next_, taken, bytes);
    ahead_next_ += taken;
    return taken;
}

/// The file itself then stands at the position.
void BinaryFile::drop_read_ahead()
{
    if (ahead_next_ == ahead_end_)
        return;
    LARGE_INTEGER place;
    place.QuadPart = static_cast<LONGLONG>(position_);
    if (!SetFilePointerEx(file_.get(), place, nullptr, FILE_BEGIN))
        raise_file_error(GetLastError());
    ahead_next_ = ahead_end_ = 0;
}

bool is_normal_file(std::wstring_view path)
{
    if (path.find(L'\0') != path.npos)
        return false;
    constexpr DWORD others = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    const std::wstring name{path};
    Patience patience{name};
    for (;;) {
        const DWORD attributes = GetFileAttributesW(name.c_str());
        if (attributes != INVALID_FILE_ATTRIBUTES)
            return !(attributes & others);
        if (!patience.tries_again(GetLastError()))
            return false;
    }
}

} // namespace files
