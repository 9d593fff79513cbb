#pragma once

#include "datafiles/qvb_format.h"
#include "files/binary_file.h"

#include <cstdint>
#include <string_view>

/// A binary data file. While it is open it has a number, the lowest from 1 that is free in its thread, by which the header
/// objects find it.
class DataFile final : public qvb::Source {
public:
    using Opening = files::BinaryFile::Opening;

    explicit DataFile(std::wstring_view path, Opening opening = Opening::Existing);
    ~DataFile();
    DataFile(const DataFile&) = delete;
    DataFile& operator=(const DataFile&) = delete;

    /// The open file with this number. Raises 52 for a number that no open file of this thread has.
    static DataFile& with_number(std::int32_t number);
    std::int32_t number() const noexcept { return number_; }

    void read(void* bytes, std::size_t size) override { file_.read(bytes, size); }
    std::uint64_t left() const noexcept override { return file_.left(); }
    void write(std::string_view bytes) { file_.write(bytes); }
    void keep() noexcept { file_.keep(); }

private:
    files::BinaryFile file_;
    std::int32_t number_ = 1;
    DataFile* next_; ///< the thread's open file with the next higher number
};
