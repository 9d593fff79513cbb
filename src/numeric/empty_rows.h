#pragma once

#include "automation/values.h"

namespace numeric {

/// Removes the rows that hold nothing from a table of texts and, where there is one, from a table of objects that goes with
/// it. A row is kept when one of its cells is no empty text, or else one of the objects with the same row index is
/// something: no Nothing, and none whose default value is an empty text. Gives the number of rows kept.
///
/// Both tables are replaced by new ones with rows and columns from 0: texts as the cells convert to, and objects. Where the
/// caller has a typed array that stays of its type. When no row is kept, the last one stays behind as the only row.
///
/// Raises 13 for what is no array, cells that have no text or are no objects; 9 for what is no table, rows without columns,
/// and a row that the table of objects has not; 94 for Null; 10 for an array that is fixed or locked. Then neither table
/// has changed.
long remove_empty_rows(VARIANT& texts, VARIANT* objects);

} // namespace numeric
