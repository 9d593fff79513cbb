#pragma once

#include <windows.h>

#include <oaidl.h>

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace numeric {

/// The positions of values in ascending order, equal ones as they stand: what straight insertion makes of them. None where
/// that depends on which of them meet: where different numbers are equal to a third that they are rounded to, but not to each
/// other, where two can't be compared, and for values other than plain numbers, Currency and texts.
std::optional<std::vector<std::uint32_t>> consistent_order(std::span<const VARIANT> values);

} // namespace numeric
