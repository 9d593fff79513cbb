#include "text/bits.h"

#include "automation/error.h"

namespace text {
namespace {

std::int32_t mask_of(unsigned bit)
{
    constexpr unsigned sign = 31;
    if (bit >= sign)
        throw automation::Error{automation::Runtime::Overflow};
    return std::int32_t{1} << bit;
}

} // namespace

std::int32_t with_bit(std::int32_t number, unsigned bit, bool set)
{
    const std::int32_t mask = mask_of(bit);
    return set ? number | mask : number & ~mask;
}

bool has_bit(std::int32_t number, unsigned bit)
{
    return (number & mask_of(bit)) != 0;
}

} // namespace text
