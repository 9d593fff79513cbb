#pragma once

#include "automation/values.h"

namespace numeric {

/// Which end of the order is looked for.
enum class End { Least, Greatest };

/// The least or the greatest element of an array with one or two dimensions, of equal ones the first, rows outermost. A
/// value that is no array, or one not dimensioned, is its own; more dimensions give Empty. Raises 9 for an array of no
/// elements, 13 where elements can't be compared.
automation::Variant extreme(const VARIANT& value, End end);

/// The same of the absolute values. Raises 6 as well, where the absolute value of an element has no room in its type.
automation::Variant absolute_extreme(const VARIANT& value, End end);

/// The least and the greatest element of each row of a table, or of each column: an array of Variant with row 0 for the
/// least and row 1 for the greatest ones, and a column from 0 for each row or column. Of equal elements the first.
/// Raises 13 for a value that is no array or elements that can't be compared, 9 for what is no table with elements.
automation::Variant min_max(const VARIANT& table, bool of_columns);

} // namespace numeric
