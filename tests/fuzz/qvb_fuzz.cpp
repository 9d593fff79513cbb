// Any bytes as a QVB file: what is read is within the file, and is written again as it was.
#include "fuzz/driver.h"

#include "datafiles/memory_source.h"
#include "datafiles/qvb_format.h"

#include <optional>

namespace {

template <class Action>
bool succeeds(const Action& action)
{
    return fuzz_succeeds({5, 6, 9, 62}, action);
}

/// Where a file has been read up to.
std::string_view taken(std::string_view bytes, const qvb::MemorySource& source)
{
    return bytes.substr(0, bytes.size() - source.left());
}

bool check_information(qvb::MemorySource& source, std::string_view bytes)
{
    qvb::InformationHeader header{7, "before", {{"key", "value"}}};
    if (!succeeds([&] { qvb::read(source, header); })) {
        fuzz_require(header.entries.size() == 1, "a header that can't be read has changed the entries");
        return false;
    }
    fuzz_require(qvb::bytes_of(header) == taken(bytes, source), "the information header is written in another way");
    return true;
}

void check_size(const qvb::MemorySource& source, const qvb::MatrixHeader& header, std::int32_t lower)
{
    for (const std::size_t width : {1u, 2u, 4u, 8u}) {
        std::optional<qvb::Size> size;
        if (!succeeds([&] { size = qvb::size_of_data(source, header, width, lower, -lower); }))
            continue;
        const auto rows = static_cast<std::uint64_t>(size->rows), columns = static_cast<std::uint64_t>(size->columns);
        fuzz_require(size->rows > 0 && size->columns > 0, "a matrix without elements");
        fuzz_require(rows * columns * width <= source.left(), "more elements than the file has");
        fuzz_require(std::int64_t{header.x} * header.y * header.planes == size->columns, "the columns are not the product");
    }
}

void check_fit(qvb::MatrixHeader header, std::int32_t rows, std::int32_t columns)
{
    const qvb::MatrixHeader before = header;
    if (rows < 0 || columns < 0 || !succeeds([&] { qvb::fit(header, rows, columns); }))
        return;
    fuzz_require(header.objects == rows && header.y >= 1 && std::int64_t{header.x} * header.y == columns, "the header does not fit the table");
    fuzz_require(before.y < 1 || columns % before.y != 0 || header.y == before.y, "a height that divides the columns is lost");
}

void check_names(qvb::MemorySource source)
{
    const std::uint64_t size = source.left();
    std::vector<std::string> names;
    if (!succeeds([&] { names = qvb::read_names(source); }))
        return;
    fuzz_require(!names.empty() && names.size() * 4 <= size, "more names than the file has");
    const std::string again = qvb::bytes_of(names);
    qvb::MemorySource second{again};
    fuzz_require(qvb::read_names(second) == names && second.left() == 0, "the names are written in another way");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    // The first byte makes a lower bound.
    const std::string_view bytes{reinterpret_cast<const char*>(data) + 1, size - 1};
    const auto lower = static_cast<std::int32_t>(data[0] * 0x01010101u);
    qvb::MemorySource source{bytes};
    if (!check_information(source, bytes))
        source = qvb::MemorySource{bytes};

    const std::uint64_t before = source.left();
    qvb::MatrixHeader header;
    if (!succeeds([&] { qvb::read(source, header); }))
        return 0;
    fuzz_require(before - source.left() == 30, "the matrix header takes 30 bytes");
    const std::string again = qvb::bytes_of(header);
    qvb::MemorySource second{again};
    qvb::MatrixHeader header_again;
    qvb::read(second, header_again);
    fuzz_require(header_again == header, "the matrix header is written in another way");
    check_size(source, header, lower);
    check_fit(header, header.objects, header.extended_header);
    check_fit(header, lower & 0xFF, header.x);
    check_names(source);
    return 0;
}

std::vector<std::string> fuzz_seeds()
{
    using namespace std::string_literals;
    const std::string information = "\1\0\0\0\3\0\0\0abc\1\0\0\0\1\0\0\0k\0\0\0\0"s;
    const auto header = [](char rows, char x, char y, char planes) {
        return std::string{rows, 0, 0, 0, x, 0, 0, 0, y, 0, 0, 0, planes, 0, 0, 0, 4, 0, 0, 0, 0, 0, -1, -1, 0, 0, 6, 0, 0, 0};
    };
    return {"\0"s + information + header(1, 2, 1, 1) + std::string(16, 'd'),
            "\x7F"s + information + header(2, 3, 2, 1) + "\2\0\0\0\3\0\0\0 n \1\0\0\0x"s,
            "\1"s + header(1, 1, 4, 2) + "\1\0\0\0\0\0\0\0"s,
            "\0"s + information,
            "\xFF\xFF\xFF\xFF"s, "\xFF\xFF\xFF\x7F"s, "\0\0\0\x80"s, "\0\0\1\0"s, "\0\0\0\0"s, "\1\0\0\0"s, "\2\0\0\0  "s, "\0\x80\0\0"s};
}
