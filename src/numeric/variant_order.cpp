#include "numeric/variant_order.h"

#include "automation/border.h"
#include "automation/client_object.h"
#include "numeric/exact_order.h"
#include "numeric/plain_number.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace numeric {
namespace {

using automation::Variant;

constexpr ULONG ignore_case = NORM_IGNORECASE;

/// Types that compare consistently with their own kind only, as they are rounded to another type beside others.
bool is_consistent_alone(VARTYPE type) noexcept
{
    return type == VT_I8 || type == VT_DECIMAL;
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
    const NumberKind left_kind = number_kind(left), right_kind = number_kind(right);
    if (compare_exactly(left_kind, right_kind) || (left.vt == VT_CY && right.vt == VT_I8) || (left.vt == VT_I8 && right.vt == VT_CY))
        return exact_order(left, right);
    if (left.vt == VT_BSTR && is_number(right.vt))
        return Order::Greater;
    if (right.vt == VT_BSTR && is_number(left.vt))
        return Order::Less;
    const HRESULT result = platform_order(left, right);
    const bool is_beside_currency = left_kind != NumberKind::None && right_kind != NumberKind::None
                                 && (left_kind == NumberKind::Currency || right_kind == NumberKind::Currency);
    if (result == DISP_E_OVERFLOW && is_beside_currency) // the platform may calculate to compare
        return exact_order(left, right);
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

/// What a value stands for: an object for its default value.
Variant resolved(Variant own)
{
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
    // Both are owned before an object is asked for its value: its code may take the other one from its place.
    Variant own_left{automation::followed(left)}, own_right{automation::followed(right)};
    own_left = resolved(std::move(own_left));
    return order_of_values(own_left, resolved(std::move(own_right)));
}

bool text_less(BSTR left, BSTR right) noexcept
{
    return VarBstrCmp(left, right, LOCALE_USER_DEFAULT, ignore_case) == VARCMP_LT;
}

bool is_consistent(std::span<const VARIANT> values) noexcept
{
    if (values.empty())
        return true;
    if (is_consistent_alone(values[0].vt))
        return std::ranges::all_of(values, [&](const VARIANT& value) { return value.vt == values[0].vt; });
    KindSet kinds;
    bool has_texts = false, has_empty = false;
    for (const VARIANT& value : values) {
        has_texts |= value.vt == VT_BSTR;
        has_empty |= value.vt == VT_EMPTY;
        const NumberKind kind = number_kind(value);
        if (value.vt != VT_BSTR && kind == NumberKind::None)
            return false;
        kinds.insert(kind);
    }
    return !(has_texts && has_empty) && kinds.compare_exactly(); // Empty equals an empty text as well as 0
}

bool consistent_less(const VARIANT& left, const VARIANT& right) noexcept
{
    if (left.vt == VT_BSTR || right.vt == VT_BSTR)
        return left.vt == right.vt ? text_less(left.bstrVal, right.bstrVal) : right.vt == VT_BSTR;
    if (is_consistent_alone(left.vt))
        return platform_order(left, right) == VARCMP_LT;
    return exact_order(left, right) == Order::Less;
}

Variant absolute(const VARIANT& value)
{
    if (stands_for_another(value))
        return absolute_value(resolved(Variant{automation::followed(value)}));
    return absolute_value(value);
}

bool have_plain_magnitudes(std::span<const VARIANT> values) noexcept
{
    return std::ranges::all_of(values, [](const VARIANT& value) {
        // The lowest of a whole type has no counterpart in it.
        const bool lowest = (value.vt == VT_I4 && value.lVal == std::numeric_limits<LONG>::min())
                         || ((value.vt == VT_I2 || value.vt == VT_BOOL) && value.iVal == std::numeric_limits<SHORT>::min());
        const NumberKind kind = number_kind(value);
        const bool is_plain = kind == NumberKind::Small || kind == NumberKind::Long || kind == NumberKind::Double || kind == NumberKind::Date;
        return is_plain && value.vt != VT_EMPTY && !lowest;
    });
}

double plain_magnitude(const VARIANT& value) noexcept
{
    return std::abs(plain_number(value));
}

} // namespace numeric
