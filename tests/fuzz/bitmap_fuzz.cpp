// Any bytes as the start of a bitmap file: the size is that of the same fields in a file that zeros go on.
#include "fuzz/driver.h"

#include "ui/bitmap_header.h"

#include <array>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::array<std::uint8_t, bitmap::headers_size> file{};
    std::copy_n(data, std::min(size, file.size()), file.begin());
    bitmap::Size expected;
    std::memcpy(&expected.width, &file[18], 4); // this machine keeps its numbers as such files do
    std::memcpy(&expected.height, &file[22], 4);
    const std::vector<char> own(data, data + size); // whose end is watched
    fuzz_require(bitmap::size_of({own.data(), own.size()}) == expected, "the plain reader reads another size");
    return 0;
}

std::vector<std::string> fuzz_seeds()
{
    using namespace std::string_literals;
    return {"BM\x36\x10\x0E\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x80\2\0\0\xE0\1\0\0\1\0\x18\0"s, "\xFF\xFF\xFF\xFF"s, "\0\0\0\x80"s};
}
