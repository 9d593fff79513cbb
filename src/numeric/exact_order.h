#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstddef>

/// The order of numbers by what they are, not by what they are rounded to.
namespace numeric {

/// How one value stands to another; unordered where one of them is Null.
enum class Order { Less = VARCMP_LT, Equal = VARCMP_EQ, Greater = VARCMP_GT, Unordered = VARCMP_NULL };

/// Numbers as far as their types make a difference when they are compared.
enum class NumberKind : unsigned char {
    None,     ///< no number, a NaN, or a number of another type
    Small,    ///< Empty, Boolean, Byte, Integer: every other kind holds them exactly
    Long,
    Single,
    Double,
    Date,
    Currency,
};
constexpr std::size_t number_kinds = 7;

NumberKind number_kind(const VARIANT& value) noexcept;

/// Whether numbers of these kinds compare by their exact size. Others the platform rounds to one of the two types, and
/// different numbers may be equal then.
constexpr bool compare_exactly(NumberKind one, NumberKind other) noexcept
{
    using enum NumberKind;
    if (one == None || other == None)
        return false;
    if (one == other || one == Small || other == Small)
        return true;
    if (one == Single || other == Single)
        return false;
    const bool with_currency = one == Currency || other == Currency;
    return !with_currency || one == Long || other == Long;
}

/// A set of kinds.
class KindSet {
public:
    void insert(NumberKind kind) noexcept { bits_ |= 1u << static_cast<unsigned>(kind); }
    bool contains(NumberKind kind) const noexcept { return (bits_ >> static_cast<unsigned>(kind)) & 1; }
    /// Whether numbers of any two of the kinds compare by their exact size.
    bool compare_exactly() const noexcept;

private:
    unsigned bits_ = 0;
};

/// How one number of any kind stands to another one, or Currency to a whole number of 64 bits. Never unordered.
Order exact_order(const VARIANT& left, const VARIANT& right) noexcept;

/// The Double nearest to a number of any kind.
double nearest_double(const VARIANT& number) noexcept;

} // namespace numeric
