#pragma once

#include "files/file.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace files {

/// A file that is read and written at one position, from its start on. What is read in small parts is read ahead; large
/// parts go straight from the file to where they are wanted.
class BinaryFile {
public:
    enum class Opening {
        /// For reading and writing, or for reading only where the file may not be written. A missing one is created empty.
        Existing,
        /// For writing a new file, which nobody else can open meanwhile. The one that was there lies beside. It comes back
        /// when the new one is closed without being kept, or when writing to it has failed. A link goes, what it leads to
        /// stays. Raises 75 for a read-only file and a folder, 70 where someone keeps the file so that it can't be deleted.
        Replacing,
    };
    explicit BinaryFile(std::wstring_view path, Opening opening = Opening::Existing);
    BinaryFile(const BinaryFile&) = delete;
    BinaryFile& operator=(const BinaryFile&) = delete;
    ~BinaryFile();

    /// Reads the next bytes. Raises 62 where there are not so many.
    void read(void* bytes, std::size_t size);
    void write(std::string_view bytes);
    /// The new file is to stay.
    void keep() noexcept { kept_ = true; }
    /// How many bytes there are from the position to the end; 0 for a device, which has none.
    std::uint64_t left() const noexcept { return end_ - position_; }

private:
    std::size_t take_read_ahead(char* bytes, std::size_t size) noexcept;
    void drop_read_ahead();
    void replace();
    void move_former_away();
    void put_former_back() noexcept;

    std::wstring path_;
    Handle file_;
    std::wstring name_of_new_; ///< where the new file has been beside; empty when nothing is replaced
    std::wstring name_of_former_; ///< empty when there was none
    bool kept_ = false, failed_ = false;
    std::uint64_t position_ = 0;
    std::uint64_t end_ = 0;
    std::unique_ptr<char[]> ahead_; ///< bytes that are read already
    std::size_t ahead_next_ = 0, ahead_end_ = 0;
};

/// Whether there is a file of this path that a search for normal files finds: no folder, not hidden, none of the system's.
bool is_normal_file(std::wstring_view path);

} // namespace files
