#include "files/file.h"

#include "automation/error.h"
#include "files/replacing.h"

#include <sddl.h>

#include <algorithm>
#include <cwchar>
#include <memory>
#include <utility>

namespace files {
namespace {

using automation::Error;
using automation::Runtime;

constexpr std::size_t largest_transfer = 1 << 28;
constexpr DWORD disk_quota_exceeded = 1295; // ERROR_DISK_QUOTA_EXCEEDED, which not every header has

[[noreturn]] void raise_last_error()
{
    raise_file_error(GetLastError());
}

void require(bool done)
{
    if (!done)
        raise_last_error();
}

/// Others may go on reading and writing the file.
Handle open(const std::wstring& path, DWORD access, DWORD disposition)
{
    constexpr DWORD all = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    return open_patiently(path, access, all, disposition, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN);
}

bool is_on_disk(const Handle& file) noexcept
{
    return GetFileType(file.get()) == FILE_TYPE_DISK;
}

std::size_t size_of(const Handle& file)
{
    LARGE_INTEGER size;
    require(GetFileSizeEx(file.get(), &size));
    if (size.QuadPart > 0x7FFFFFFF)
        throw Error{Runtime::OutOfMemory};
    return static_cast<std::size_t>(size.QuadPart);
}

bool go_to(const Handle& file, std::size_t position) noexcept
{
    LARGE_INTEGER distance;
    distance.QuadPart = static_cast<LONGLONG>(position);
    return SetFilePointerEx(file.get(), distance, nullptr, FILE_BEGIN);
}

bool set_size(const Handle& file, std::size_t size) noexcept
{
    return go_to(file, size) && SetEndOfFile(file.get());
}

DWORD attributes_of(const Handle& file)
{
    BY_HANDLE_FILE_INFORMATION information;
    require(GetFileInformationByHandle(file.get(), &information));
    return information.dwFileAttributes;
}

/// Whether it is a link, as far as can be seen; in doubt it is.
bool may_be_link(const std::wstring& path) noexcept
{
    return GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_REPARSE_POINT; // all are set in INVALID_FILE_ATTRIBUTES
}

using Local = automation::Handle<automation::NullMeansNone<HLOCAL, &LocalFree>>;

/// Nobody runs what is being written. Wine has everybody who may read a file run it, and would keep it so.
void forbid_running(PSECURITY_DESCRIPTOR rights)
{
    BOOL is_there = FALSE, is_default = FALSE;
    ACL* entries = nullptr;
    if (!GetSecurityDescriptorDacl(rights, &is_there, &entries, &is_default) || !entries)
        return;
    void* entry = nullptr;
    for (DWORD i = 0; GetAce(entries, i, &entry); ++i)
        if (static_cast<ACE_HEADER*>(entry)->AceType == ACCESS_ALLOWED_ACE_TYPE)
            static_cast<ACCESS_ALLOWED_ACE*>(entry)->Mask &= ~static_cast<DWORD>(FILE_EXECUTE);
}

/// A security descriptor that gives whoever creates a file with it every right, and others those that they have to `file`. None
/// where the system does not tell these.
Local rights_like(const Handle& file)
{
    constexpr wchar_t owner_rights[] = L"D:P(A;;FA;;;S-1-3-4)";
    DWORD size = 0;
    GetKernelObjectSecurity(file.get(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    const auto former = std::make_unique<char[]>(size);
    wchar_t* text = nullptr;
    if (!GetKernelObjectSecurity(file.get(), DACL_SECURITY_INFORMATION, former.get(), size, &size)
        || !ConvertSecurityDescriptorToStringSecurityDescriptorW(former.get(), SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &text,
                                                                 nullptr))
        return Local{};
    const Local text_owner{text};
    const wchar_t* const entries = std::wcschr(text, L'(');
    Local rights;
    ConvertStringSecurityDescriptorToSecurityDescriptorW((owner_rights + std::wstring{entries ? entries : L""}).c_str(),
                                                         SDDL_REVISION_1, rights.put(), nullptr);
    if (rights)
        forbid_running(rights.get());
    return rights;
}

/// The path of the file itself, where `path` may be a link to it.
std::wstring target_of(const Handle& file, const std::wstring& path)
{
    std::wstring target(0x8000, L'\0');
    const DWORD length = GetFinalPathNameByHandleW(file.get(), target.data(), static_cast<DWORD>(target.size()), 0);
    if (length == 0 || length >= target.size())
        return path;
    target.resize(length);
    if (is_former(target)) // someone has just replaced it
        raise_file_error(ERROR_SHARING_VIOLATION);
    return target;
}

/// Takes the space first, so that a full disk is noticed before anything is lost; puts the old content back if it must.
void write_over(const std::wstring& path, std::string_view bytes)
{
    Handle file = open(path, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS);
    const bool is_new = file && GetLastError() != ERROR_ALREADY_EXISTS;
    require(static_cast<bool>(file));
    std::string former(size_of(file), '\0');
    former.resize(read(file, former.data(), former.size()));
    try {
        require(set_size(file, std::max(bytes.size(), former.size())) && go_to(file, 0));
        write(file, bytes);
        require(set_size(file, bytes.size()));
    } catch (...) {
        DWORD written = 0;
        if (go_to(file, 0))
            WriteFile(file.get(), former.data(), static_cast<DWORD>(former.size()), &written, nullptr);
        set_size(file, former.size());
        file.close();
        if (is_new)
            DeleteFileW(path.c_str());
        throw;
    }
}

} // namespace

std::wstring checked(std::wstring_view path)
{
    if (path.find(L'\0') != path.npos)
        throw Error{Runtime::BadFileNumber};
    return std::wstring{path};
}

std::wstring whole_path(const std::wstring& given)
{
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const auto room = static_cast<DWORD>(path.size());
        const DWORD length = GetFullPathNameW(given.c_str(), room, path.data(), nullptr);
        path.resize(length);
        if (length == 0 && GetLastError() == ERROR_NOT_ENOUGH_MEMORY)
            raise_last_error();
        if (length < room)
            return path;
    }
}

std::wstring whole_paths(std::wstring_view given)
{
    std::wstring all;
    while (!given.empty()) {
        const std::wstring one{given.substr(0, given.find(L'\0'))};
        given.remove_prefix(std::min(one.size() + 1, given.size()));
        const std::wstring whole = whole_path(one);
        all.append(whole.empty() ? one : whole).append(1, L'\0');
    }
    return all;
}

std::size_t read(const Handle& file, char* bytes, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        DWORD got = 0;
        const auto part = static_cast<DWORD>(std::min(size - done, largest_transfer));
        // A pipe ends by breaking.
        require(ReadFile(file.get(), bytes + done, part, &got, nullptr) || GetLastError() == ERROR_BROKEN_PIPE);
        if (got == 0)
            break;
        done += got;
    }
    return done;
}

void write(const Handle& file, std::string_view bytes)
{
    while (!bytes.empty()) {
        DWORD written = 0;
        require(WriteFile(file.get(), bytes.data(), static_cast<DWORD>(std::min(bytes.size(), largest_transfer)), &written, nullptr));
        if (written == 0)
            raise_file_error(ERROR_DISK_FULL);
        bytes.remove_prefix(written);
    }
}

void raise_file_error(DWORD code)
{
    switch (code) {
    case ERROR_FILE_NOT_FOUND:
        throw Error{Runtime::FileNotFound};
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_DIRECTORY:
        throw Error{Runtime::PathNotFound};
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_FILENAME_EXCED_RANGE:
        throw Error{Runtime::BadFileNumber};
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
    case ERROR_WRITE_PROTECT:
        throw Error{Runtime::PermissionDenied};
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
    case disk_quota_exceeded:
        throw Error{Runtime::DiskFull};
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
        throw Error{Runtime::FileAlreadyExists};
    case ERROR_NOT_READY:
    case ERROR_CRC:
    case ERROR_WRITE_FAULT:
    case ERROR_READ_FAULT:
    case ERROR_GEN_FAILURE:
    case ERROR_IO_DEVICE:
        throw Error{Runtime::DeviceIo};
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
    case ERROR_NO_SYSTEM_RESOURCES:
        throw Error{Runtime::OutOfMemory};
    case ERROR_HANDLE_EOF:
        throw Error{Runtime::InputPastEnd};
    default:
        throw Error{Runtime::PathFileAccess};
    }
}

Input::Input(std::wstring_view path) : file_{open(checked(path), GENERIC_READ, OPEN_EXISTING)}
{
    if (!file_)
        raise_last_error();
    if (is_on_disk(file_))
        size_ = size_of(file_);
}

std::size_t Input::read(char* bytes, std::size_t room)
{
    return files::read(file_, bytes, room);
}

Output::Output(std::wstring_view path) : path_{checked(path)}
{
    // Whether this file may be written is asked of the file itself, before its folder comes into it.
    const Handle present = open(path_, GENERIC_WRITE, OPEN_EXISTING);
    if (!present && GetLastError() != ERROR_FILE_NOT_FOUND)
        raise_last_error();
    is_there_ = static_cast<bool>(present);
    is_device_ = is_there_ && !is_on_disk(present);
    if (is_device_)
        return;
    DWORD attributes = FILE_ATTRIBUTE_NORMAL;
    Local rights;
    if (is_there_) {
        attributes = attributes_of(present);
        rights = rights_like(present);
        if (may_be_link(path_))
            path_ = target_of(present, path_);
        // Where the user may do anything, this attribute alone does not keep him from it.
        if (attributes & FILE_ATTRIBUTE_READONLY)
            raise_file_error(ERROR_ACCESS_DENIED);
    }
    create_beside(attributes, rights.get());
}

Output::~Output()
{
    beside_.close();
    if (!name_beside_.empty())
        remove_beside(name_beside_);
}

/// Leaves no name where the folder allows no new file. With these rights nobody reads the new content who may not read the file
/// itself. What someone else has put under the new name is neither opened nor followed.
void Output::create_beside(DWORD attributes, void* rights)
{
    constexpr DWORD kept = FILE_ATTRIBUTE_NORMAL | FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    SECURITY_ATTRIBUTES security{sizeof security, rights, FALSE};
    for (int attempts = 0; attempts < 100; ++attempts) {
        std::wstring name = name_beside(path_, new_content);
        beside_ = Handle{CreateFileW(name.c_str(), GENERIC_WRITE, 0, &security, CREATE_NEW,
                                     (attributes & kept) | FILE_FLAG_OPEN_REPARSE_POINT, nullptr)};
        if (beside_) {
            name_beside_ = std::move(name);
            return;
        }
        const DWORD code = GetLastError();
        if (code == ERROR_DISK_FULL || code == ERROR_HANDLE_DISK_FULL)
            raise_file_error(code);
        if (code != ERROR_FILE_EXISTS && code != ERROR_ALREADY_EXISTS)
            return;
    }
}

void Output::write(std::string_view bytes)
{
    if (name_beside_.empty())
        gathered_ += bytes;
    else
        files::write(beside_, bytes);
}

void Output::commit()
{
    if (is_device_) {
        const Handle device = open(path_, GENERIC_WRITE, OPEN_EXISTING);
        require(static_cast<bool>(device));
        return files::write(device, gathered_);
    }
    if (name_beside_.empty())
        return write_over(path_, gathered_);
    require(FlushFileBuffers(beside_.get()));
    beside_.close();
    if (!swap_in())
        write_over(path_, read_whole(name_beside_));
}

/// False where someone keeps the file in a way that it can only be written over.
bool Output::swap_in()
{
    Patience patience{path_, name_beside_};
    for (;;) {
        DWORD failure = is_there_ ? replace() : move_in();
        if (failure == ERROR_FILE_NOT_FOUND && is_there_ && !patience.is_being_replaced())
            failure = move_in();
        if (failure == ERROR_ALREADY_EXISTS || failure == ERROR_FILE_EXISTS)
            is_there_ = true;
        if (failure == 0 || !patience.tries_again(failure))
            return failure == 0;
    }
}

/// Gives why it failed, 0 where it did not; a file with the old content is in its place again then.
DWORD Output::replace()
{
    const std::wstring former = name_beside(path_, former_content);
    if (ReplaceFileW(path_.c_str(), name_beside_.c_str(), former.c_str(), 0, nullptr, nullptr)) {
        name_beside_.clear();
        remove_beside(former);
        return 0;
    }
    const DWORD failure = GetLastError();
    if (failure == ERROR_UNABLE_TO_MOVE_REPLACEMENT_2)
        put_back(former);
    return failure;
}

/// Unless someone else's new one has taken its place meanwhile.
void Output::put_back(const std::wstring& former)
{
    if (MoveFileExW(former.c_str(), path_.c_str(), 0))
        return;
    const DWORD failure = GetLastError();
    if (failure == ERROR_ALREADY_EXISTS || failure == ERROR_FILE_EXISTS)
        remove_beside(former);
}

/// For a file that is not there. Gives why it failed, 0 where it did not.
DWORD Output::move_in() noexcept
{
    if (!MoveFileExW(name_beside_.c_str(), path_.c_str(), 0))
        return GetLastError();
    name_beside_.clear();
    return 0;
}

std::string read_whole(std::wstring_view path)
{
    constexpr std::size_t step = 1 << 16;
    Input file{path};
    std::string bytes(std::max(file.size(), step), '\0');
    std::size_t size = 0;
    for (;;) {
        size += file.read(bytes.data() + size, bytes.size() - size);
        if (size < bytes.size() || size == file.size())
            break;
        bytes.resize(size + step);
    }
    bytes.resize(size);
    return bytes;
}

void write_whole(std::wstring_view path, std::string_view bytes)
{
    Output file{path};
    file.write(bytes);
    file.commit();
}

} // namespace files
