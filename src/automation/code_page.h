#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Text in files, and on its way to and from the platform's A-functions, is in the system's code page.
namespace automation {

/// The text that these bytes are. Bytes that are none become what the platform makes of them.
std::wstring decode(std::string_view bytes);

/// The same into memory that has room for as many characters as there are bytes; gives how many there are.
std::size_t decode(std::string_view bytes, wchar_t* text);

/// How many of these bytes, the start of a longer text, are whole characters for sure; 0 when that can't be told.
std::size_t whole_characters(std::string_view bytes) noexcept;

/// These bytes, which begin with a character and were cut somewhere, without what a last character has lost its end of.
std::string_view without_cut_character(std::string_view bytes) noexcept;

/// Appends the bytes of a text. Characters outside the code page become its default character, never a similar one.
void append_encoded(std::string& bytes, std::wstring_view text);

} // namespace automation
