#pragma once

#include <string_view>

/// Rules for texts.
namespace text {

/// The number at the start of a text, read alike in every locale; 0 where there is none.
///
/// A sign, digits with one decimal point or decimal comma among them, and a power of ten behind E or D. Blanks, tabs and
/// line feeds are skipped wherever they stand. Reading stops at the first character that does not fit: a second point, an
/// exponent without digits. The result is the Double nearest to what is written, and 0 for what is too small for one.
///
/// Whole numbers stand behind &H (hexadecimal) and &O (octal) as in Basic: up to 16 bits are a signed Integer (&HFFFF is
/// -1), up to 32 bits a signed Long, and so are fewer with an & behind them (&HFFFF& is 65535); more are positive.
///
/// Raises 6 for a number beyond the range of a Double, nothing for any other text: one that goes on behind such a number is 0.
double leading_number(std::string_view text);
double leading_number(std::wstring_view text);

} // namespace text
