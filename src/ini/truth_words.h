#pragma once

#include <optional>
#include <string_view>

/// How a stored text says yes or no. The words count wherever they stand in the text, in any case, and an earlier one of the
/// list counts before a later one. Both languages are read whatever the user's is: settings move between machines.
namespace settings {

/// By the words True, False, Wahr, Falsch; none when the text has none of them.
std::optional<bool> truth_in_words(std::wstring_view text) noexcept;

/// By these and then 1, -1 and 0: "10" is true.
std::optional<bool> truth_in_words_or_digits(std::wstring_view text) noexcept;

} // namespace settings
