#pragma once

#include <emmintrin.h>

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>

/// Numbers as elements of a matrix, as the automation conversions make them.
namespace qvb {

/// Converts a number to the type of an element, whole numbers with halves going to the even neighbour. False for a number
/// beyond that type's range; then nothing is stored.
template <std::integral Target>
    requires(sizeof(Target) <= sizeof(std::int32_t))
bool convert(double number, Target& element) noexcept
{
    constexpr double lowest = std::numeric_limits<Target>::min(), highest = std::numeric_limits<Target>::max();
    // The lowest of each type is even and the highest odd, so a half beyond them goes in and out.
    if (!(number >= lowest - 0.5 && number < highest + 0.5))
        return false;
    element = static_cast<Target>(_mm_cvtsd_si32(_mm_set_sd(number)));
    return true;
}

template <std::integral Target>
    requires(sizeof(Target) <= sizeof(std::int32_t))
bool convert(std::int32_t number, Target& element) noexcept
{
    element = static_cast<Target>(number);
    return element == number;
}

/// Every whole number of 32 bits has a nearest neighbour in either type.
template <std::floating_point Target>
bool convert(std::int32_t number, Target& element) noexcept
{
    element = static_cast<Target>(number);
    return true;
}

inline bool convert(double number, double& element) noexcept
{
    element = number;
    return true;
}

inline bool convert(double number, float& element) noexcept
{
    if (std::abs(number) > std::numeric_limits<float>::max())
        return false;
    element = static_cast<float>(number);
    return true;
}

} // namespace qvb
