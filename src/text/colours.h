#pragma once

#include <cstdint>

/// The channels of a colour, with red in its lowest byte, then green and blue. A colour of the system, whose highest bit is set,
/// is no mixture of channels.
namespace text {

/// What is left of the colour divided by 256. Raises 6 when that is negative.
std::uint8_t red(std::int32_t colour);

/// These divide, and round a half to the even number: the channel below may add one, and 256 is 0. They raise 6 where the
/// quotient is negative.
std::uint8_t green(std::int32_t colour);
std::uint8_t blue(std::int32_t colour);

} // namespace text
