#pragma once

#include "files/file.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace files {

/// A file that is read and written at one position, from its start on. What is read in small parts is read ahead; large
/// parts go straight from the file to where they are wanted.
class BinaryFile {
public:
    /// Opens the file for reading and writing, or for reading only where it may not be written. A missing one is created
    /// empty.
    explicit BinaryFile(std::wstring_view path);

    /// Reads the next bytes. Raises 62 where there are not so many.
    void read(void* bytes, std::size_t size);
    void write(std::string_view bytes);
    /// How many bytes there are from the position to the end; 0 for a device, which has none.
    std::uint64_t left() const noexcept { return end_ - position_; }

private:
    std::size_t take_read_ahead(char* bytes, std::size_t size) noexcept;
    void drop_read_ahead();

    Handle file_;
    std::uint64_t position_ = 0;
    std::uint64_t end_ = 0;
    std::unique_ptr<char[]> ahead_; ///< bytes that are read already
    std::size_t ahead_next_ = 0, ahead_end_ = 0;
};

/// Deletes the file that has this path; does nothing where there is none.
void remove_file(std::wstring_view path);

/// Whether there is a file of this path that a search for normal files finds: no folder, not hidden, none of the system's.
bool is_normal_file(std::wstring_view path);

} // namespace files
