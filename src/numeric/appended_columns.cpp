#include "numeric/appended_columns.h"

#include "automation/safe_array.h"
#include "numeric/client_table.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace numeric {
namespace {

using automation::Variant;

constexpr long long largest_long = std::numeric_limits<LONG>::max();

/// The array in a value if it has at least so many dimensions; null for anything else.
SAFEARRAY* array_of(const VARIANT& value, USHORT least_dimensions) noexcept
{
    const auto array = automation::array_in(value);
    return array && *array && (*array)->cDims >= least_dimensions ? *array : nullptr;
}

/// The columns are the last dimension, whose bounds the platform keeps first.
SAFEARRAYBOUND& columns_of(SAFEARRAY& table) noexcept
{
    return table.rgsabound[0];
}

/// Whether the table has got so many more columns.
bool grow(SAFEARRAY& table, ULONG more) noexcept
{
    if (table.fFeatures & (FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE))
        return false;
    SAFEARRAYBOUND columns = columns_of(table);
    const long long count = static_cast<long long>(columns.cElements) + more;
    const long long column_size = static_cast<long long>(table.rgsabound[1].cElements) * table.cbElements;
    if (columns.lLbound + count - 1 > largest_long || (column_size > 0 && count > largest_long / column_size))
        return false;
    columns.cElements = static_cast<ULONG>(count);
    return SUCCEEDED(SafeArrayRedim(&table, &columns));
}

/// Whether a value is nothing but its bits.
bool is_plain(const VARIANT& value) noexcept
{
    return value.vt <= VT_DATE || value.vt == VT_BOOL || value.vt == VT_UI1;
}

/// Gives an element the value of another one in its own type, if it has one there.
void copy_element(const ClientTable& target, std::size_t to, const ClientTable& source, std::size_t from) noexcept
{
    VARIANT element = source[from];
    if (target.type() == VT_VARIANT && is_plain(element) && is_plain(target[to])) {
        target.as<VARIANT>()[to] = element;
        return;
    }
    Variant value;
    if (FAILED(VariantCopyInd(&value, &element)))
        return;
    if (target.type() != VT_VARIANT && target.type() != value.vt) {
        Variant converted;
        if (FAILED(automation::change_type(converted, value, target.type())))
            return;
        value = std::move(converted);
    }
    target.replace(to, std::move(value));
}

/// Fills the last columns of a table from the columns of another one from this index on.
void fill_last_columns(const ClientTable& target, std::size_t count, const ClientTable& source, long long index) noexcept
{
    const std::size_t rows = std::min(target.rows(), source.rows());
    for (std::size_t i = target.columns() - count; i < target.columns(); ++i, ++index) {
        if (index < source.lower(2) || index > source.upper(2))
            continue;
        const std::size_t to = i * target.rows(), from = static_cast<std::size_t>(index - source.lower(2)) * source.rows();
        for (std::size_t row = 0; row < rows; ++row)
            copy_element(target, to + row, source, from + row);
    }
}

} // namespace

void append_columns(const VARIANT& table, const VARIANT& addition) noexcept
try {
    SAFEARRAY* const target = &automation::readable_array(table);
    if (target->cDims != 2)
        return;
    // Kept by itself: the variable that holds the array may be a cell of the table, which moves when that grows.
    VARIANT source;
    source.vt = static_cast<VARTYPE>(VT_ARRAY | automation::element_type(addition));
    source.parray = array_of(addition, 2);
    const Variant copy = source.parray == target ? Variant{source} : Variant{};
    if (source.parray == target)
        source.parray = copy.parray;

    const ULONG more = source.parray ? source.parray->rgsabound[source.parray->cDims - 2].cElements : 1;
    if (!grow(*target, more) || !source.parray || source.parray->cDims != 2)
        return;
    const ClientTable target_cells{table}, source_cells{source};
    const long long offset = target_cells.lower(1) - source_cells.lower(1);
    fill_last_columns(target_cells, more, source_cells, 1 - offset);
} catch (const std::exception&) {
    return; // no memory for the copy: nothing has happened; elements that are no values: the new columns stay empty
}

} // namespace numeric
