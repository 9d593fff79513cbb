#include "numeric/transposition.h"

#include "numeric/client_table.h"
#include "numeric/matrix.h"

#include <cstdint>

namespace numeric {
namespace {

using automation::Variant;

/// Exchanges rows and columns of elements that need no care.
template <class Element>
void copy_bits(const ClientTable& source, const ClientTable& target) noexcept
{
    transpose(source.view<const Element>(), target.view<Element>());
}

/// Whether an element may own something.
bool has_owners(const ClientTable& table) noexcept
{
    return table.type() == VT_BSTR || (table.type() == VT_VARIANT && (kinds(table) & Other) != 0);
}

/// Copies elements one by one; those that were copied when one fails go with the target.
void copy_values(const ClientTable& source, const ClientTable& target)
{
    std::size_t index = 0;
    for (std::size_t column = 0; column < source.columns(); ++column)
        for (std::size_t row = 0; row < source.rows(); ++row, ++index)
            target.replace(row * source.columns() + column, Variant{source[index]});
}

/// Whether a table with elements of this type is transposed.
bool is_transposed(VARTYPE type) noexcept
{
    switch (type) {
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BSTR:
    case VT_BOOL:
    case VT_VARIANT:
    case VT_UI1:
        return true;
    default:
        return false;
    }
}

void copy(const ClientTable& source, const ClientTable& target)
{
    if (has_owners(source))
        return copy_values(source, target);
    switch (source.element_size()) {
    case 1:
        return copy_bits<std::uint8_t>(source, target);
    case 2:
        return copy_bits<std::uint16_t>(source, target);
    case 4:
        return copy_bits<std::uint32_t>(source, target);
    case 8:
        return copy_bits<double>(source, target); // which moves any bits in one go
    default:
        return copy_bits<VARIANT>(source, target);
    }
}

} // namespace

Variant transposed(const VARIANT& value)
{
    if (!is_transposed(automation::element_type(value)))
        return {};
    const ClientTable source{value};
    Variant result = new_table(source.type(), bounds_of(source, 2), bounds_of(source, 1));
    copy(source, ClientTable{result});
    return result;
}

} // namespace numeric
