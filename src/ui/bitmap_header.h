#pragma once

#include <cstdint>
#include <string_view>

namespace bitmap {

struct Size {
    std::int32_t width, height; ///< the height is negative where the rows run from the top down

    bool operator==(const Size&) const = default;
};

/// How many bytes a file has up to the end of the plainest header with these fields: the file's own header, 14, and 40.
inline constexpr std::size_t headers_size = 14 + 40;

/// The size that the header of a bitmap file gives, from the first bytes of the file. Whatever the file is, the same fields
/// count; those that it does not have are zero.
Size size_of(std::string_view start) noexcept;

} // namespace bitmap
