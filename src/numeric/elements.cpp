#include "numeric/elements.h"

#include <cstring>

namespace numeric {
namespace {

using automation::Error;
using automation::Runtime;
using automation::Variant;

/// The size of an element in an array; 0 for types that are no values.
std::size_t size_of(VARTYPE type) noexcept
{
    switch (type) {
    case VT_I1:
    case VT_UI1:
        return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
        return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
        return 8;
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return sizeof(void*);
    case VT_DECIMAL:
    case VT_VARIANT:
        return 16;
    default:
        return 0;
    }
}

SAFEARRAY* dimensioned_array(const VARIANT& value)
{
    const auto array = automation::array_in(value);
    if (!array)
        throw Error{Runtime::TypeMismatch};
    if (!*array || (*array)->cDims == 0)
        throw Error{Runtime::SubscriptOutOfRange};
    const std::size_t size = size_of(automation::element_type(value));
    if (size == 0 || (*array)->cbElements != size)
        throw Error{Runtime::TypeMismatch};
    return *array;
}

std::size_t element_count(const SAFEARRAY& array)
{
    std::size_t count = 1;
    for (USHORT i = 0; i < array.cDims; ++i)
        if (__builtin_mul_overflow(count, array.rgsabound[i].cElements, &count))
            throw Error{Runtime::SubscriptOutOfRange};
    return count;
}

} // namespace

Elements::Elements(const VARIANT& value)
    : array_{dimensioned_array(value)}, type_{automation::element_type(value)}, element_size_{array_->cbElements},
      size_{element_count(*array_)}, data_{array_}
{
    if (size_ > 0 && !data_.begin())
        throw Error{Runtime::SubscriptOutOfRange};
}

VARIANT Elements::operator[](std::size_t index) const noexcept
{
    VARIANT element;
    const bool whole = type_ == VT_VARIANT || type_ == VT_DECIMAL;
    std::memcpy(whole ? static_cast<void*>(&element) : &element.lVal, place(index), element_size_);
    if (type_ != VT_VARIANT)
        element.vt = type_;
    return element;
}

void Elements::replace(std::size_t index, Variant value) const noexcept
{
    Variant former;
    static_cast<VARIANT&>(former) = (*this)[index];
    const bool whole = type_ == VT_VARIANT || type_ == VT_DECIMAL;
    std::memcpy(place(index), whole ? static_cast<void*>(&value) : &value.lVal, element_size_);
    value.release();
}

} // namespace numeric
