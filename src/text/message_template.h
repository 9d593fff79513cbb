#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace text {

/// A message made from its template: |a becomes a quotation mark, |t a tab, |r a carriage return, |n a carriage return and
/// a line feed, all in any case; then |1 becomes the first value everywhere, |2 the second, and so on, one after another.
///
/// As each value is put in before the next one is looked for, |2 in the first value becomes the second value, and with ten
/// values |10 is the first value and a 0. |a, |t, |r and |n in a value stay as they are.
///
/// Throws std::bad_alloc for a message longer than any text may be.
std::wstring expand(std::wstring_view message, std::span<const std::wstring_view> values);
std::wstring expand(std::wstring_view message, std::initializer_list<std::wstring_view> values = {});

} // namespace text
