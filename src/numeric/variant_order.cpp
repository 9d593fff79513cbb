#include "numeric/variant_order.h"

#include "automation/border.h"
#include "automation/client_object.h"
#include "numeric/plain_number.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace numeric {
namespace {

using automation::Variant;

constexpr ULONG ignore_case = NORM_IGNORECASE;

/// Types whose values all compare as Doubles that hold them exactly.
bool is_plain_number(const VARIANT& value) noexcept
{
    switch (value.vt) {
    case VT_UI1:
    case VT_I2:
    case VT_I4:
    case VT_BOOL:
        return true;
    case VT_R8:
    case VT_DATE:
        return !std::isnan(value.dblVal);
    default:
        return false;
    }
}

/// Types that compare consistently with their own kind only: among others they are rounded to another type, now and then.
bool is_consistent_alone(const VARIANT& value) noexcept
{
    switch (value.vt) {
    case VT_R4:
        return !std::isnan(value.fltVal);
    case VT_CY:
    case VT_I8:
    case VT_DECIMAL:
        return true;
    default:
        return false;
    }
}

bool is_number(VARTYPE type) noexcept
{
    switch (type) {
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_I8:
    case VT_UI8:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_DECIMAL:
    case VT_BOOL:
        return true;
    default:
        return false;
    }
}

HRESULT platform_order(const VARIANT& left, const VARIANT& right) noexcept
{
    // which reads them only
    return VarCmp(const_cast<VARIANT*>(&left), const_cast<VARIANT*>(&right), LOCALE_USER_DEFAULT, ignore_case);
}

Order order_of_values(const VARIANT& left, const VARIANT& right)
{
    if (is_plain_number(left) && is_plain_number(right)) {
        const double a = plain_number(left), b = plain_number(right);
        return a < b ? Order::Less : a > b ? Order::Greater : Order::Equal;
    }
    if (left.vt == VT_BSTR && is_number(right.vt))
        return Order::Greater;
    if (right.vt == VT_BSTR && is_number(left.vt))
        return Order::Less;
    const HRESULT result = platform_order(left, right);
    automation::check(result);
    return static_cast<Order>(result);
}

bool is_object(const VARIANT& value) noexcept
{
    return value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
}

bool stands_for_another(const VARIANT& value) noexcept
{
    return (value.vt & VT_BYREF) || is_object(value);
}

/// The value behind references and objects.
Variant resolved(const VARIANT& value)
{
    Variant own{automation::followed(value)};
    return is_object(own) ? automation::default_value(own.punkVal) : own;
}

Variant absolute_value(const VARIANT& value)
{
    if (value.vt == VT_BSTR) // not every platform's function knows texts
        return absolute_value(automation::converted(value, VT_R8));
    VARIANT result;
    VariantInit(&result);
    // The platform only reads the value. What a failed call leaves in the result belongs to the value.
    automation::check(VarAbs(const_cast<VARIANT*>(&value), &result));
    Variant own;
    static_cast<VARIANT&>(own) = result;
    return own;
}

} // namespace

Order compare(const VARIANT& left, const VARIANT& right)
{
    if (!stands_for_another(left) && !stands_for_another(right))
        return order_of_values(left, right);
    return order_of_values(resolved(left), resolved(right));
}

bool text_less(BSTR left, BSTR right) noexcept
{
    return VarBstrCmp(left, right, LOCALE_USER_DEFAULT, ignore_case) == VARCMP_LT;
}

bool is_consistent(std::span<const VARIANT> values) noexcept
{
    if (values.empty())
        return true;
    if (is_consistent_alone(values[0]))
        return std::ranges::all_of(
            values, [&](const VARIANT& value) { return value.vt == values[0].vt && is_consistent_alone(value); });
    return std::ranges::all_of(values, [](const VARIANT& value) { return value.vt == VT_BSTR || is_plain_number(value); });
}

bool consistent_less(const VARIANT& left, const VARIANT& right) noexcept
{
    if (left.vt == VT_BSTR || right.vt == VT_BSTR)
        return left.vt == right.vt ? text_less(left.bstrVal, right.bstrVal) : right.vt == VT_BSTR;
    if (is_consistent_alone(left))
        return platform_order(left, right) == VARCMP_LT;
    return plain_number(left) < plain_number(right);
}

Variant absolute(const VARIANT& value)
{
    if (stands_for_another(value))
        return absolute_value(resolved(value));
    return absolute_value(value);
}

bool have_plain_magnitudes(std::span<const VARIANT> values) noexcept
{
    return std::ranges::all_of(values, [](const VARIANT& value) {
        // The lowest of a whole type has no counterpart in it.
        const bool lowest = (value.vt == VT_I4 && value.lVal == std::numeric_limits<LONG>::min())
                         || ((value.vt == VT_I2 || value.vt == VT_BOOL) && value.iVal == std::numeric_limits<SHORT>::min());
        return is_plain_number(value) && !lowest;
    });
}

double plain_magnitude(const VARIANT& value) noexcept
{
    return std::abs(plain_number(value));
}

} // namespace numeric
