#pragma once

#include "automation/values.h"

namespace numeric {

/// The table with each column smoothed by a centred moving average (see moving_average.h), as a table of Doubles with the rows
/// 1 to the last one and the columns of `table`.
///
/// `mode` is a Widening and `width` its parameter. With a mode or a width of 0 the value comes back as it is, whatever it is.
/// Other modes give zeros. The modes 2 and 3 smooth the columns from 1 on, mode 1 all; what is not smoothed stays 0. Where the
/// half-width changes too much from one row to the next the user is told ("funAvgDyn: Error1", "funAvgDyn: Error2").
///
/// The arithmetic is the platform's. Raises 13 for a value that is no array or elements that are no numbers, 94 for Null, 9
/// for an array that has not two dimensions or lacks a row that is needed, 6 for a half-width beyond 16 bits or numbers beyond
/// a Double, 7 for a result too large for memory.
automation::Variant smoothed(const VARIANT& table, unsigned char mode, short width);

} // namespace numeric
