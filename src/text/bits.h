#pragma once

#include <cstdint>

namespace text {

/// The number with one bit set or cleared; bit 0 is the lowest. Raises 6 for bit 31 and above: a number with that bit alone is no
/// positive Long.
std::int32_t with_bit(std::int32_t number, unsigned bit, bool set);

/// Whether a bit of the number is set. Raises as above.
bool has_bit(std::int32_t number, unsigned bit);

} // namespace text
