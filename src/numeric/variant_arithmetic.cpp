#include "numeric/variant_arithmetic.h"

#include "automation/border.h"
#include "automation/client_object.h"
#include "numeric/client_table.h"
#include "numeric/plain_number.h"

#include <cmath>
#include <limits>
#include <utility>

namespace numeric {
namespace {

using automation::check;
using automation::Error;
using automation::Runtime;
using automation::Variant;

using Operation = HRESULT(WINAPI*)(VARIANT*, VARIANT*, VARIANT*);

/// The type in which the platform calculates with integers that scripts don't have: compilers give small ones the narrowest type,
/// and not every platform's arithmetic knows it.
VARTYPE calculating_type(VARTYPE type) noexcept
{
    switch (type) {
    case VT_I1:
        return VT_I2;
    case VT_UI2:
    case VT_INT:
        return VT_I4;
    case VT_UI4:
    case VT_UINT:
        return VT_R8;
    case VT_UI8:
        return VT_DECIMAL;
    default:
        return type;
    }
}

/// An operand: an object stands for its default value.
Variant operand(Variant own)
{
    if (own.vt == VT_DISPATCH)
        own = automation::default_value(own.pdispVal);
    const VARTYPE type = calculating_type(own.vt);
    return type == own.vt ? std::move(own) : automation::converted(own, type);
}

Variant operand(const VARIANT& value)
{
    return operand(Variant{automation::followed(value)});
}

bool is_finite(const VARIANT& value) noexcept
{
    switch (value.vt) {
    case VT_R4:
        return std::isfinite(value.fltVal);
    case VT_R8:
    case VT_DATE:
        return std::isfinite(value.dblVal);
    default:
        return true;
    }
}

Variant calculate_values(Operation operation, Variant left, Variant right)
{
    Variant result;
    check(operation(&left, &right, &result));
    if (is_finite(result) || !is_finite(left) || !is_finite(right))
        return result;
    if (result.vt == VT_R4) // Singles whose result is none: not every platform goes on with Doubles
        return calculate_values(operation, automation::converted(left, VT_R8), automation::converted(right, VT_R8));
    throw Error{Runtime::Overflow}; // not every platform looks
}

Variant calculate(Operation operation, const VARIANT& left, const VARIANT& right)
{
    // Both are owned before an object is asked for its value: its code may take the other one from its place.
    Variant own_left{automation::followed(left)}, own_right{automation::followed(right)};
    own_left = operand(std::move(own_left));
    return calculate_values(operation, std::move(own_left), operand(std::move(own_right)));
}

/// Whether the values are whole numbers of 32 bits at most.
bool are_whole(const VARIANT& left, const VARIANT& right) noexcept
{
    return ((kind(left.vt) | kind(right.vt)) & ~(Small | Long)) == 0;
}

} // namespace

Variant product(const VARIANT& left, const VARIANT& right)
{
    return calculate(VarMul, left, right);
}

Variant sum(const VARIANT& left, const VARIANT& right)
{
    return calculate(VarAdd, left, right);
}

Variant difference(const VARIANT& left, const VARIANT& right)
{
    if (!are_whole(left, right))
        return calculate(VarSub, left, right);
    const double exact = plain_number(left) - plain_number(right); // where Wine's wraps around instead of widening
    const bool is_long = std::abs(exact) <= std::numeric_limits<long>::max();
    return is_long ? Variant{static_cast<long>(exact)} : Variant{exact};
}

Variant quotient(const VARIANT& left, const VARIANT& right)
{
    return calculate(VarDiv, left, right);
}

double to_double(const VARIANT& value)
{
    return automation::converted(operand(value), VT_R8).dblVal;
}

} // namespace numeric
