#pragma once

#include "automation/values.h"
#include "numeric/exact_order.h"

#include <span>

/// The order of values: numbers by their size, texts by the alphabet of the user's locale whatever the case of their letters,
/// and numbers before texts. Everything else stands as the platform's comparison has it, which rounds Singles and Currency
/// beside numbers that have more digits.
namespace numeric {

/// Objects stand for their default value. Raises 13 for what can't be compared: arrays, error values next to others,
/// objects without a default value.
Order compare(const VARIANT& left, const VARIANT& right);

/// Whether a text comes before another.
bool text_less(BSTR left, BSTR right) noexcept;

/// Whether any two of these values stand in the same way however they are met, and none fails to compare.
bool is_consistent(std::span<const VARIANT> values) noexcept;

/// Whether a value of a consistent set is less than another one.
bool consistent_less(const VARIANT& left, const VARIANT& right) noexcept;

/// The value without its sign, as the platform gives it. Raises 13 for what is no number, 6 where its type has no room.
automation::Variant absolute(const VARIANT& value);

/// The same for numbers whose order needs no platform: whether all of these are such, and their size.
bool have_plain_magnitudes(std::span<const VARIANT> values) noexcept;
double plain_magnitude(const VARIANT& value) noexcept;

} // namespace numeric
