#include "automation/values.h"

#include "automation/border.h"

namespace automation {

Variant::Variant(const VARIANT& other) : Variant{}
{
    check(VariantCopyInd(this, const_cast<VARIANT*>(&other))); // reads it only
}

const VARIANT& followed(const VARIANT& value) noexcept
{
    const VARIANT* inner = &value;
    while (inner->vt == (VT_VARIANT | VT_BYREF) && inner->pvarVal)
        inner = inner->pvarVal;
    return *inner;
}

HRESULT change_type(VARIANT& target, const VARIANT& value, VARTYPE type) noexcept
{
    auto* source = const_cast<VARIANT*>(&value); // which the platform reads only
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
