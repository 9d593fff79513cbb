#pragma once

#include "automation/values.h"

/// All numbers with a fixed count of digits in a base, in counting order from 0, as tables of Long whose rows count from 0.
/// They are base to the power of digits. Each raises 9 for a count of digits below 1 and for a base in which there are no
/// numbers, 6 for more numbers than a Long counts, 7 for a table too large for memory.
namespace numeric {

/// Their digits in columns from 0, the most significant one first.
automation::Variant digits_of_all(long base, long digits);

/// Decimal numbers that show their digits, in the column 1. Raises 6 as well where they don't fit a Long.
automation::Variant numbers_of_all(long base, long digits);

} // namespace numeric
