#pragma once

#include "automation/handle.h"

#include <windows.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

/// The one place where the library reads and writes files. Paths are taken as they are: wildcards have no meaning.
namespace files {

/// Raises the runtime's file error that a platform code of a failed file operation stands for: 53 for a missing file, 76 for
/// a missing folder, 52 for a bad name, 70 for a locked file, 75 for one that must not be accessed so, 61 for a full disk,
/// 57 for a device that fails, 7 for too little memory.
[[noreturn]] void raise_file_error(DWORD code);

using Handle = automation::FileHandle;

/// The path as the platform takes it. Raises 52 for one that holds a NUL.
std::wstring checked(std::wstring_view path);

/// The path seen from the current folder as an absolute one; empty for what can't be a path.
std::wstring whole_path(const std::wstring& given);
/// The same for a list of paths with a NUL between them, each followed by a NUL. What can't be a path stays as it is.
std::wstring whole_paths(std::wstring_view given);

/// Reads from where the file stands; less than `size` bytes only at its end.
std::size_t read(const Handle& file, char* bytes, std::size_t size);

/// Writes all bytes where the file stands, or raises why it can't.
void write(const Handle& file, std::string_view bytes);

/// A file that is read from its start on. Raises 7 for one that is too large for this process.
class Input {
public:
    explicit Input(std::wstring_view path);

    /// Reads the next bytes: `room` of them, less at the end only.
    std::size_t read(char* bytes, std::size_t room);
    /// Its size when it was opened; 0 for a device, which has none.
    std::size_t size() const noexcept { return size_; }

private:
    Handle file_;
    std::size_t size_ = 0;
};

/// The new content of a file, which becomes that when it is committed. Until then, and whenever an error is raised, the file
/// is as it was.
///
/// It is written beside the old file and swapped in, which keeps the file's attributes. Only where that can't be done (a
/// device, a folder that allows no new files) it is gathered in memory and written over the old one; the same becomes of a
/// file that someone else keeps open in a way that it can't be moved. Several programs may write and read a file at the same
/// time: a reader gets one of the contents as a whole.
class Output {
public:
    /// Raises at once when the file may not be written.
    explicit Output(std::wstring_view path);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    ~Output();

    void write(std::string_view bytes);
    void commit();

private:
    void create_beside(DWORD attributes, void* rights);
    bool swap_in();
    DWORD replace();
    void put_back(const std::wstring& former);
    DWORD move_in() noexcept;

    std::wstring path_;
    bool is_there_ = false;
    bool is_device_ = false;
    Handle beside_;
    std::wstring name_beside_; ///< empty when there is no file beside
    std::string gathered_;
};

/// All bytes of a file.
std::string read_whole(std::wstring_view path);

/// Gives a file this content, creating it if there is none.
void write_whole(std::wstring_view path, std::string_view bytes);

} // namespace files
