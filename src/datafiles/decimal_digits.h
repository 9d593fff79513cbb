#pragma once

#include <cstddef>
#include <string_view>

/// Numbers as texts with up to 15 significant digits.
namespace nif {

/// The decimal digits of a number: d.ddd times ten to the exponent, without zeros at the end.
struct DecimalDigits {
    static constexpr int most = 15;

    char digits[most + 2];
    int count;
    int exponent;
    bool negative;
};

/// Rounds a number to 15 digits. False where that takes a decision which platforms take differently: for a number halfway
/// between two neighbours, and for what is no finite number.
bool round_to_digits(double number, DecimalDigits& result) noexcept;

/// The most bytes that `write` writes with a decimal point of one byte.
inline constexpr std::size_t longest_number = 24;

/// Writes the digits plainly for exponents from -4 to 14 (0.0001, 123456789012345), otherwise with an exponent of two digits
/// or more (1.5E-05, 1E+15). Gives the end of what was written.
char* write(const DecimalDigits& number, std::string_view point, char* to) noexcept;

} // namespace nif
