#pragma once

#include <oaidl.h>

/// List boxes of a client, which are driven by the names of their members. Rows and columns count from 0. All raise what the
/// list box raises.
namespace list_box {

/// Whether an entry is selected. Raises 6 when none of the first 32768 is and there are more, or no more.
bool has_selection(IDispatch* box);

/// Appends the entries of one list box that are selected, or all, to another one, with as many columns as both have. Those
/// whose first column the other one has already, in any case, are left out. Gives how many it took.
long copy(IDispatch* from, IDispatch* to, bool all);
/// The same, and then removes them from the first one. When it fails, all entries are still there.
long move(IDispatch* from, IDispatch* to, bool all);

/// Sorts the entries by the text of a column, in any case and by the user's alphabet; entries that are equal stay in their
/// order. False when there is no such column. When it fails, the entries are put back as they were.
bool sort(IDispatch* box, long column);

/// Removes the selected entries, and makes the one that followed the last of them the current one. Gives how many they were.
long remove_selected(IDispatch* box);

} // namespace list_box
