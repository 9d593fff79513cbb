#include "automation/values.h"

#include "automation/border.h"
#include "automation/client_object.h"
#include "automation/safe_array.h"

namespace automation {

Variant::Variant(const VARIANT& other) : Variant{}
{
    const VARIANT& inner = followed(other);
    if (inner.vt == (VT_VARIANT | VT_BYREF))
        throw Error{Runtime::TypeMismatch};
    if (const auto array = array_in(inner)) {
        if (!*array || (*array)->cDims == 0) { // still to be dimensioned
            vt = static_cast<VARTYPE>(VT_ARRAY | element_type(inner));
            parray = nullptr;
            return;
        }
        element_count(**array); // the platform copies whatever the bounds say
    }
    check(VariantCopyInd(this, const_cast<VARIANT*>(&inner))); // reads it only
}

namespace {

/// Converts what an object stands for. The object is asked here, not by the platform: its code runs in its own program's
/// floating-point modes. A default value may be an object in turn.
HRESULT change_object_type(VARIANT& target, const VARIANT& object, VARTYPE type) noexcept
{
    constexpr int most_objects = 16; // in a circle there is no end
    Variant value;
    IUnknown* asked = object.vt & VT_BYREF ? *object.ppunkVal : object.punkVal;
    for (int i = 0; i < most_objects; ++i) {
        Variant next;
        if (const HRESULT result = ask_default_value(asked, next); FAILED(result))
            return result;
        value = std::move(next);
        if (!holds_object(value))
            return change_type(target, value, type);
        asked = value.vt & VT_BYREF ? *value.ppunkVal : value.punkVal;
    }
    return DISP_E_TYPEMISMATCH;
}

} // namespace

HRESULT change_type(VARIANT& target, const VARIANT& value, VARTYPE type) noexcept
{
    if (value.vt == (VT_VARIANT | VT_BYREF)) // what could not be followed
        return DISP_E_TYPEMISMATCH;
    if (holds_object(value) && type != VT_DISPATCH && type != VT_UNKNOWN)
        return change_object_type(target, value, type);
    auto* source = const_cast<VARIANT*>(&value); // which the platform reads only
    return VariantChangeTypeEx(&target, source, LOCALE_USER_DEFAULT, VARIANT_LOCALBOOL, type);
}

bool converts(VARIANT& target, const VARIANT& value, VARTYPE type)
{
    const HRESULT result = change_type(target, value, type);
    if (result == E_OUTOFMEMORY)
        throw std::bad_alloc{};
    return SUCCEEDED(result);
}

bool is_missing(const VARIANT& value) noexcept
{
    const VARIANT& inner = followed(value);
    return inner.vt == VT_ERROR && inner.scode == DISP_E_PARAMNOTFOUND;
}

Text to_text(const VARIANT& value)
{
    Variant text = converted(value, VT_BSTR);
    return Text::adopt(text.release().bstrVal);
}

Variant converted(const VARIANT& value, VARTYPE type)
{
    const VARIANT& inner = followed(value);
    if (inner.vt == VT_NULL)
        throw Error{Runtime::InvalidNull};
    Variant result;
    check(change_type(result, inner, type));
    return result;
}

} // namespace automation
