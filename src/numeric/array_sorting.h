#pragma once

#include "automation/values.h"

namespace numeric {

/// Sorts a one-dimensional array in place, ascending and stable. Arrays in which any two elements compare without doubt (of
/// one type, or of numbers and texts) take n log n comparisons; all others go through straight insertion, which
/// answers for whatever their comparisons say. Raises 13 for a value that is no array or elements that can't be compared,
/// 9 for an array not dimensioned or of more dimensions. After an error each element is still there, in some order.
void sort(const VARIANT& array);

/// Sorts the rows of a table by the column `key`, or its columns by the row `key`, by straight insertion: a row is
/// converted to Longs and, if it has to move down, put into its place as these. Rows that others pass by keep their values.
/// Raises 9 for what is no table and for a key outside it, 6 for bounds beyond an Integer, and what a conversion fails
/// with. After an error the rows before the one that failed are sorted.
void sort_records(const VARIANT& table, long key, bool of_columns);

} // namespace numeric
