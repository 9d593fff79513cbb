#pragma once

#include "automation/values.h"

namespace numeric {

/// The table with rows and columns exchanged, bounds and element type kept: element (row, column) is found at (column, row).
/// Texts and Variants are copied, objects in Variants shared. For arrays of Integer, Long, Single, Double, Currency, Date,
/// String, Boolean, Variant and Byte; any other value gives Empty. Raises 9 for one that has not two dimensions.
automation::Variant transposed(const VARIANT& value);

} // namespace numeric
