#include "ui/qvBitmap.h"

#include "files/binary_file.h"
#include "ui/bitmap_header.h"

#include <algorithm>
#include <array>

namespace {

bitmap::Size size_of_file(std::wstring_view path)
{
    files::BinaryFile file{path};
    std::array<char, bitmap::headers_size> start;
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(file.left(), start.size()));
    file.read(start.data(), size);
    return bitmap::size_of({start.data(), size});
}

} // namespace

bool qvBitmap::GetBitmapSizeS(std::wstring_view sBitmapFile, long& dX, long& dY)
{
    return automation::or_default([&] {
        const bitmap::Size size = size_of_file(sBitmapFile);
        dX = size.width;
        dY = size.height;
        return true;
    });
}
