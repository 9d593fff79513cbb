#include "ui/bitmap_header.h"

namespace bitmap {
namespace {

std::int32_t number_at(std::string_view bytes, std::size_t place) noexcept
{
    std::uint32_t number = 0;
    for (unsigned i = 0; i < 4 && place + i < bytes.size(); ++i)
        number |= std::uint32_t{static_cast<unsigned char>(bytes[place + i])} << (8 * i);
    return static_cast<std::int32_t>(number);
}

} // namespace

Size size_of(std::string_view start) noexcept
{
    return {number_at(start, 18), number_at(start, 22)};
}

} // namespace bitmap
