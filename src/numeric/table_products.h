#pragma once

#include "automation/values.h"

namespace numeric {

/// The matrix product of two tables, a table times a number, or the product of two numbers, by the platform's arithmetic.
///
/// Of two tables: a table of Doubles with the rows of `left` and the columns of `right`, bounds included; the first column of
/// `left` goes with the first row of `right`. Each element is the sum of the products from the first to the last, begun with
/// 0 and kept as a Double. Where `left` has not as many columns as `right` has rows, the user is told first ("qvO102"); with
/// fewer the sums end there, with more the first row that is missing raises 9.
/// Of a table and a number: a table of Doubles with the table's bounds. Of two numbers: of the type that the platform gives.
///
/// Raises 6 when finite numbers give one beyond a Double, 7 for a result too large for memory, 9 for an array that has not
/// two dimensions, 13 for elements that are no numbers, 94 for Null in a table.
automation::Variant multiplied(const VARIANT& left, const VARIANT& right);

} // namespace numeric
