#pragma once

#include <string_view>

namespace text {

/// Whether a text is a number in the user's locale: signs, separators, a currency symbol, an exponent, &H and &O, and
/// blanks around it.
bool is_numeric(std::wstring_view text);

/// Whether a single character is a number.
bool is_digit(wchar_t character);

} // namespace text
