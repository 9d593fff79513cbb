#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace numeric {

/// The text of a number up to `places` characters behind its decimal separator, which is the first comma, or the first
/// point where there is no comma. A negative count cuts the separator off and characters before it. Nothing for a text
/// without a separator. Raises 5 where the cut would be before the text, 6 where its place is beyond a Long.
std::optional<std::wstring_view> cut_decimals(std::wstring_view number, std::int32_t places);

} // namespace numeric
