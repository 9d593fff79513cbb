#include "numeric/client_table.h"

#include "numeric/plain_number.h"

#include <algorithm>
#include <limits>

namespace numeric {
namespace {

using automation::Error;
using automation::Runtime;
using automation::Variant;

/// Copies the elements as Doubles, each type in its own loop.
void copy(const Elements& elements, double* target) noexcept
{
    switch (elements.type()) {
    case VT_UI1:
        std::ranges::copy(elements.as<BYTE>(), target);
        break;
    case VT_I2:
    case VT_BOOL:
        std::ranges::copy(elements.as<SHORT>(), target);
        break;
    case VT_I4:
        std::ranges::copy(elements.as<LONG>(), target);
        break;
    case VT_R4:
        std::ranges::copy(elements.as<float>(), target);
        break;
    default:
        std::ranges::transform(elements.as<VARIANT>(), target, plain_number);
    }
}

} // namespace

ClientTable::ClientTable(const VARIANT& value) : Elements{value}
{
    if (dimensions() != 2)
        throw Error{Runtime::SubscriptOutOfRange};
}

std::size_t ClientTable::at(long long row, long long column) const
{
    if (row < lower(1) || row > upper(1) || column < lower(2) || column > upper(2))
        throw Error{Runtime::SubscriptOutOfRange};
    return static_cast<std::size_t>(column - lower(2)) * rows() + static_cast<std::size_t>(row - lower(1));
}

SAFEARRAYBOUND bounds(long long lower, long long upper)
{
    if (upper < lower - 1)
        throw Error{Runtime::SubscriptOutOfRange};
    if (upper - lower >= std::numeric_limits<LONG>::max())
        throw Error{Runtime::OutOfMemory};
    return {static_cast<ULONG>(upper - lower + 1), static_cast<LONG>(lower)};
}

SAFEARRAYBOUND bounds_of(const Elements& elements, USHORT dimension) noexcept
{
    return {static_cast<ULONG>(elements.count(dimension)), static_cast<LONG>(elements.lower(dimension))};
}

Variant new_table(VARTYPE type, SAFEARRAYBOUND rows, SAFEARRAYBOUND columns)
{
    const SAFEARRAYBOUND dimensions[]{rows, columns};
    return automation::new_array(type, dimensions);
}

Kinds kind(VARTYPE type) noexcept
{
    switch (type) {
    case VT_UI1:
    case VT_I2:
    case VT_BOOL:
    case VT_EMPTY:
        return Small;
    case VT_I4:
        return Long;
    case VT_R4:
        return Single;
    case VT_R8:
        return Double;
    case VT_DATE:
        return Date;
    default:
        return Other;
    }
}

unsigned kinds(const Elements& elements) noexcept
{
    if (elements.type() != VT_VARIANT)
        return kind(elements.type());
    unsigned all = 0;
    for (const VARIANT& element : elements.as<VARIANT>())
        all |= kind(element.vt);
    return all;
}

Doubles::Doubles(const ClientTable& table)
{
    if (table.type() == VT_R8 || table.type() == VT_DATE) {
        view_ = table.view<const double>();
        return;
    }
    copy_.resize(table.size());
    copy(table, copy_.data());
    view_ = {copy_.data(), table.rows(), table.columns()};
}

} // namespace numeric
