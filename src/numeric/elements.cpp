#include "numeric/elements.h"

#include <cstring>

namespace numeric {
using automation::Variant;

Elements::Elements(const VARIANT& value)
    : array_{&automation::readable_array(value)}, type_{automation::element_type(value)}, element_size_{array_->cbElements}, data_{array_}
{
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
