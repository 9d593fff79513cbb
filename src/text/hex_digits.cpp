#include "text/hex_digits.h"

#include "automation/error.h"

#include <cstddef>

namespace text {
namespace {

int digit_value(wchar_t digit, AnsiCode code)
{
    const bool is_decimal = digit >= L'0' && digit <= L'9';
    return is_decimal ? digit - L'0' : code(digit) - 55;
}

} // namespace

int hex_value(std::wstring_view digits, AnsiCode code)
{
    int value = 0;
    for (const wchar_t digit : digits)
        value = value * 16 + digit_value(digit, code);
    return value;
}

std::array<std::wstring_view, 16> guid_digits(std::wstring_view text)
{
    constexpr std::array<std::size_t, 16> places{6, 4, 2, 0, 11, 9, 16, 14, 19, 21, 24, 26, 28, 30, 32, 34};
    constexpr std::size_t length = 36;
    const std::size_t start = text.starts_with(L'{') ? 1 : 0;
    if (text.size() < start + length)
        throw automation::Error{automation::Runtime::InvalidCall};
    std::array<std::wstring_view, 16> digits;
    for (std::size_t i = 0; i < places.size(); ++i)
        digits[i] = text.substr(start + places[i], 2);
    return digits;
}

} // namespace text
