#pragma once

#include <array>
#include <string_view>

/// Hexadecimal digits, read as the library always did.
namespace text {

/// The code of a character in the system's code page.
using AnsiCode = int (*)(wchar_t character);

/// The number that up to two digits stand for; 0 for none. A character that is no decimal digit counts as its code less 55: "A"
/// to "F" are 10 to 15, and any other is what it comes to, which may be no byte.
int hex_value(std::wstring_view digits, AnsiCode code);

/// The two digits of each byte of a GUID, in the order in which its binary form holds them, in its text with or without braces.
/// What stands between them is not looked at, nor what follows. Raises 5 for a text that is too short.
std::array<std::wstring_view, 16> guid_digits(std::wstring_view text);

} // namespace text
