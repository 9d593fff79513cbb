#include "numeric/exact_order.h"

#include "numeric/plain_number.h"

#include <cmath>
#include <cstdint>

namespace numeric {
namespace {

constexpr std::int64_t currency_unit = 10'000;

Order order_of(auto left, auto right) noexcept
{
    return left < right ? Order::Less : left > right ? Order::Greater : Order::Equal;
}

/// How an amount, in ten-thousandths, stands to a whole number.
Order order_of_currency(std::int64_t amount, std::int64_t whole) noexcept
{
    const std::int64_t units = amount / currency_unit;
    return units != whole ? order_of(units, whole) : order_of(amount % currency_unit, std::int64_t{0});
}

/// The same for any number.
Order order_of_currency(std::int64_t amount, double number) noexcept
{
    constexpr double beyond_all_amounts = 922337203685478;
    if (std::abs(number) >= beyond_all_amounts)
        return number > 0 ? Order::Less : Order::Greater;
    const auto whole = static_cast<std::int64_t>(number);
    if (amount / currency_unit != whole)
        return order_of(amount / currency_unit, whole);
    // The rest of the number in two parts, so that each is multiplied without rounding.
    const double rest = number - static_cast<double>(whole), high = static_cast<float>(rest), low = rest - high;
    const auto parts = static_cast<double>(amount % currency_unit);
    return order_of(parts - high * currency_unit, low * currency_unit);
}

} // namespace

NumberKind number_kind(const VARIANT& value) noexcept
{
    switch (value.vt) {
    case VT_EMPTY:
    case VT_BOOL:
    case VT_UI1:
    case VT_I2:
        return NumberKind::Small;
    case VT_I4:
        return NumberKind::Long;
    case VT_R4:
        return std::isnan(value.fltVal) ? NumberKind::None : NumberKind::Single;
    case VT_R8:
        return std::isnan(value.dblVal) ? NumberKind::None : NumberKind::Double;
    case VT_DATE:
        return std::isnan(value.dblVal) ? NumberKind::None : NumberKind::Date;
    case VT_CY:
        return NumberKind::Currency;
    default:
        return NumberKind::None;
    }
}

bool KindSet::compare_exactly() const noexcept
{
    for (unsigned i = 1; i < number_kinds; ++i)
        for (unsigned j = i; j < number_kinds; ++j) {
            const auto one = static_cast<NumberKind>(i), other = static_cast<NumberKind>(j);
            if (contains(one) && contains(other) && !numeric::compare_exactly(one, other))
                return false;
        }
    return true;
}

Order exact_order(const VARIANT& left, const VARIANT& right) noexcept
{
    if (left.vt == VT_CY && right.vt == VT_CY)
        return order_of(left.cyVal.int64, right.cyVal.int64);
    if (left.vt == VT_CY && right.vt == VT_I8)
        return order_of_currency(left.cyVal.int64, right.llVal);
    if (left.vt == VT_CY)
        return order_of_currency(left.cyVal.int64, plain_number(right));
    if (right.vt == VT_CY)
        return order_of(0, static_cast<int>(exact_order(right, left)) - VARCMP_EQ);
    return order_of(plain_number(left), plain_number(right));
}

double nearest_double(const VARIANT& number) noexcept
{
    if (number.vt != VT_CY)
        return plain_number(number);
    const std::int64_t amount = number.cyVal.int64;
    constexpr std::int64_t largest_exact = std::int64_t{1} << 53;
    if (amount >= -largest_exact && amount <= largest_exact)
        return static_cast<double>(amount) / currency_unit;
    // A sum of whole units and a rest whose own rounding is too small to matter.
    return static_cast<double>(amount / currency_unit) + static_cast<double>(amount % currency_unit) / currency_unit;
}

} // namespace numeric
