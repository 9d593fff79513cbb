#include "numeric/focus.h"

#include "numeric/client_table.h"
#include "numeric/table_products.h"
#include "numeric/table_smoothing.h"
#include "numeric/variant_arithmetic.h"

#include <algorithm>

namespace numeric {
namespace {

using automation::Error;
using automation::Runtime;
using automation::Variant;

/// The coefficients from index 1 on as a column, `times` over.
Variant coefficient_column(const VARIANT& coefficients, long long times)
{
    const Elements list{coefficients};
    if (list.dimensions() != 1 || list.lower(1) > 1 || list.upper(1) < 1)
        throw Error{Runtime::SubscriptOutOfRange};
    const long long count = list.upper(1);
    Variant column = new_table(VT_R8, bounds(1, times * count), bounds(1, 1));
    const automation::LockedArray<double> cells{column.parray};
    for (long long i = 0; i < count; ++i)
        cells[static_cast<std::size_t>(i)] = to_double(list[static_cast<std::size_t>(1 - list.lower(1) + i)]);
    for (std::size_t end = static_cast<std::size_t>(count), i = end; i < cells.size(); ++i)
        cells[i] = cells[i - end];
    return column;
}

/// The sums with the first column of the basis before them, as column 0.
Variant with_basis_column(const VARIANT& basis, const VARIANT& weighted_sums)
{
    const ClientTable values{basis}, sums{weighted_sums};
    Variant result = new_table(VT_VARIANT, bounds_of(sums, 1), bounds(0, sums.upper(2)));
    const ClientTable cells{result};
    for (long long row = sums.lower(1); row <= sums.upper(1); ++row) {
        cells.replace(cells.at(row, 0), Variant{values[values.at(row, values.lower(2))]});
        for (long long column = sums.lower(2); column <= sums.upper(2); ++column)
            cells.replace(cells.at(row, column), Variant{sums[sums.at(row, column)]});
    }
    return result;
}

} // namespace

Variant focus(const FocusData& data, bool with_basis, unsigned char mode, short width)
{
    const Variant coefficients = coefficient_column(data.coefficients, with_basis ? 2 : 1);
    Variant spectra = multiplied(data.spectra, data.factors);
    Variant smooth_basis;
    if (mode != 0) {
        spectra = smoothed(spectra, mode, width);
        smooth_basis = smoothed(data.basis, mode, width);
    }
    Variant sums = multiplied(spectra, coefficients);
    if (!with_basis)
        return sums;
    return with_basis_column(mode != 0 ? smooth_basis : data.basis, sums);
}

} // namespace numeric
