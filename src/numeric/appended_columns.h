#pragma once

#include "automation/values.h"

namespace numeric {

/// Appends to the right of a table as many columns as `addition` has; one for what is no array of two dimensions or more.
/// The table grows in place. Its new cells get what stands in the same row of `addition`, counted from the first one, from
/// the column with the index 1 - (first row of the table - first row of `addition`) on. A cell stays empty where there is
/// no such row or column, where `addition` has not two dimensions, or where the element does not convert to the type of
/// the table's elements.
///
/// Raises nothing: what is no table, or can't grow because it is fixed, locked or too large, stays as it is.
void append_columns(const VARIANT& table, const VARIANT& addition) noexcept;

} // namespace numeric
