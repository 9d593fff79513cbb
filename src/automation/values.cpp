#include "automation/values.h"

#include "automation/border.h"
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

HRESULT change_type(VARIANT& target, const VARIANT& value, VARTYPE type) noexcept
{
    if (value.vt == (VT_VARIANT | VT_BYREF)) // what could not be followed
        return DISP_E_TYPEMISMATCH;
    auto* source = const_cast<VARIANT*>(&value); // which the platform reads only
    Variant held;                                // an object's code may take it from the place where it stands
    if (holds_object(value)) {
        if (const HRESULT result = VariantCopyInd(&held, source); FAILED(result))
            return result;
        source = &held;
    }
    return VariantChangeTypeEx(&target, source, LOCALE_USER_DEFAULT, VARIANT_LOCALBOOL, type);
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
