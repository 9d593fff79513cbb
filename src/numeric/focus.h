#pragma once

#include "automation/values.h"

namespace numeric {

/// What a spectrum's focus is computed from; see `focus`. All tables have one row for each spectrum but `factors`, which has
/// one for each column of `spectra`.
struct FocusData {
    const VARIANT& basis;
    const VARIANT& spectra;
    const VARIANT& factors;
    const VARIANT& coefficients; ///< a list, read from index 1 on
};

/// The spectra times the factors, smoothed if `mode` is not 0 (see `smoothed`), times the coefficients: a table of Doubles with
/// the column 1 and the rows of `spectra`.
///
/// With the basis the coefficients are applied twice, one set after the other, and the result is a table of Variants: before
/// column 1 stands, in column 0, what the basis has in its first column in the row of the same index. The basis is smoothed
/// like the spectra, also where it is not part of the result.
///
/// Raises what `multiplied` and `smoothed` raise; 9 for coefficients without index 1 or a row that the basis has not.
automation::Variant focus(const FocusData& data, bool with_basis, unsigned char mode, short width);

} // namespace numeric
