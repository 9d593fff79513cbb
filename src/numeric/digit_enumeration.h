#pragma once

#include "numeric/table.h"

#include <cstdint>
#include <span>

/// The numbers of a fixed count of digits in a base, in counting order from 0. One of them is the row of a table, its most
/// significant digit first, or a decimal number that shows its digits.
///
/// A digit counts up to the base less one and then starts again from 0. One in a negative base never gets there: the last
/// digit alone counts, on and on.
namespace numeric {

/// Where the last of all stands when they count from 0: base to the power of digits, less one. Infinite beyond a Double.
double last_place(std::int32_t base, std::int32_t digits) noexcept;

/// Fills a table of as many rows as there are numbers and as many columns as they have digits.
void enumerate_digits(Table<std::int32_t> table, std::int32_t base) noexcept;

/// Whether all of them, shown as decimal numbers, are within a Long.
bool fit_long(std::int32_t base, std::int32_t digits) noexcept;

/// Shows the digits of each as those of a decimal number: 101 for 5 in the base 2. Of a digit of two figures or more the
/// first one stands there: 1 for 12. For those that fit a Long.
void enumerate_numbers(std::span<std::int32_t> numbers, std::int32_t base) noexcept;

} // namespace numeric
