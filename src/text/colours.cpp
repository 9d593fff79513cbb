#include "text/colours.h"

#include "automation/error.h"

namespace text {
namespace {

constexpr std::int32_t channel = 0xFF;

/// A number divided by a power of two, a half rounded to the even number.
std::int32_t rounded_quotient(std::int32_t number, unsigned bits)
{
    const std::int32_t below = number >> bits;
    const std::int32_t rest = number & ((1 << bits) - 1), half = 1 << (bits - 1);
    return rest > half || (rest == half && (below & 1)) ? below + 1 : below;
}

/// The lowest byte of a number that must not be negative.
std::uint8_t lowest_byte(std::int32_t number)
{
    if (number < 0)
        throw automation::Error{automation::Runtime::Overflow};
    return static_cast<std::uint8_t>(number & channel);
}

} // namespace

std::uint8_t red(std::int32_t colour)
{
    return lowest_byte(colour % (channel + 1));
}

std::uint8_t green(std::int32_t colour)
{
    return lowest_byte(rounded_quotient(colour, 8));
}

std::uint8_t blue(std::int32_t colour)
{
    return lowest_byte(rounded_quotient(colour, 16));
}

} // namespace text
