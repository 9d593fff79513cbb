#include "files/binary_file.h"

#include "automation/error.h"

#include <algorithm>
#include <string>

namespace files {
namespace {

constexpr std::size_t read_ahead = 1 << 14;

HANDLE open(const std::wstring& path, DWORD access, DWORD disposition) noexcept
{
    constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE;
    constexpr DWORD kind = FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN;
    return CreateFileW(path.c_str(), access, shared, nullptr, disposition, kind, nullptr);
}

Handle open_for_both(const std::wstring& path)
{
    Handle file{open(path, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS)};
    if (file)
        return file;
    const DWORD code = GetLastError();
    if (code == ERROR_ACCESS_DENIED || code == ERROR_SHARING_VIOLATION || code == ERROR_WRITE_PROTECT)
        file = Handle{open(path, GENERIC_READ, OPEN_EXISTING)};
    if (!file)
        raise_file_error(code);
    return file;
}

} // namespace

BinaryFile::BinaryFile(std::wstring_view path) : file_{open_for_both(checked(path))}
{
    LARGE_INTEGER size{};
    if (GetFileType(file_.get()) == FILE_TYPE_DISK && !GetFileSizeEx(file_.get(), &size))
        raise_file_error(GetLastError());
    end_ = static_cast<std::uint64_t>(size.QuadPart);
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
{
    drop_read_ahead();
    files::write(file_, bytes);
    position_ += bytes.size();
    end_ = std::max(end_, position_);
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

void remove_file(std::wstring_view path)
{
    if (DeleteFileW(checked(path).c_str()))
        return;
    const DWORD code = GetLastError();
    const bool is_there = code == ERROR_ACCESS_DENIED || code == ERROR_SHARING_VIOLATION || code == ERROR_WRITE_PROTECT
                       || code == ERROR_USER_MAPPED_FILE;
    if (is_there)
        raise_file_error(code);
}

bool is_normal_file(std::wstring_view path)
{
    if (path.find(L'\0') != path.npos)
        return false;
    const DWORD attributes = GetFileAttributesW(std::wstring{path}.c_str());
    constexpr DWORD others = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & others);
}

} // namespace files
