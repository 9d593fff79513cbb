#include "datafiles/decimal_digits.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace nif {
namespace {

constexpr int lowest_plain_exponent = -4, highest_plain_exponent = DecimalDigits::most - 1;

/// Takes apart "d.ddde+xx".
void take_apart(const char* text, const char* end, DecimalDigits& result) noexcept
{
    const char* place = text;
    result.digits[0] = *place++;
    result.count = 1;
    if (*place == '.')
        for (++place; *place != 'e'; ++place)
            result.digits[result.count++] = *place;
    ++place;
    const bool negative = *place++ == '-';
    int exponent = 0;
    for (; place != end; ++place)
        exponent = exponent * 10 + (*place - '0');
    result.exponent = negative ? -exponent : exponent;
}

void drop_zeros(DecimalDigits& number) noexcept
{
    while (number.count > 1 && number.digits[number.count - 1] == '0')
        --number.count;
}

void round_up(DecimalDigits& number) noexcept
{
    while (number.count > 0 && number.digits[number.count - 1] == '9')
        --number.count;
    if (number.count > 0) {
        ++number.digits[number.count - 1];
        return;
    }
    number.digits[0] = '1';
    number.count = 1;
    ++number.exponent;
}

/// Whether a number may be exactly what these digits say, which have places behind the point.
bool may_be_exact(double size, const DecimalDigits& number) noexcept
{
    const int places = number.count - 1 - number.exponent;
    const double scaled = std::ldexp(size, std::max(places, 0));
    return scaled == std::trunc(scaled);
}

} // namespace

bool round_to_digits(double number, DecimalDigits& result) noexcept
{
    if (!std::isfinite(number))
        return false;
    const double size = std::abs(number);
    result.negative = number < 0;
    if (size == 0) {
        result.digits[0] = '0';
        result.count = 1;
        result.exponent = 0;
        return true;
    }
    char text[40];
    const char* end = nullptr;
    if (size >= std::numeric_limits<double>::min()) {
        // The fewest digits that tell the number from its neighbours: where these are up to 15, no other 15 digits are nearer.
        // Otherwise they round as the number itself does, unless they are halfway.
        end = std::to_chars(text, std::end(text), size, std::chars_format::scientific).ptr;
        take_apart(text, end, result);
        if (result.count <= DecimalDigits::most)
            return true;
        const char next = result.digits[DecimalDigits::most];
        const bool halfway = result.count == DecimalDigits::most + 1 && next == '5';
        if (!halfway) {
            result.count = DecimalDigits::most;
            next >= '5' ? round_up(result) : drop_zeros(result);
            return true;
        }
        if (may_be_exact(size, result))
            return false;
    }
    end = std::to_chars(text, std::end(text), size, std::chars_format::scientific, DecimalDigits::most - 1).ptr;
    take_apart(text, end, result);
    drop_zeros(result);
    return true;
}

char* write(const DecimalDigits& number, std::string_view point, char* to) noexcept
{
    const char* const digits = number.digits;
    const char* const end = digits + number.count;
    if (number.negative)
        *to++ = '-';
    const auto write_point = [&] { to = std::copy(point.begin(), point.end(), to); };
    if (number.exponent >= lowest_plain_exponent && number.exponent < 0) {
        *to++ = '0';
        write_point();
        to = std::fill_n(to, -1 - number.exponent, '0');
        return std::copy(digits, end, to);
    }
    const bool plain = number.exponent >= 0 && number.exponent <= highest_plain_exponent;
    const int before_point = plain ? number.exponent + 1 : 1;
    to = std::copy_n(digits, std::min(before_point, number.count), to);
    if (before_point < number.count) {
        write_point();
        to = std::copy(digits + before_point, end, to);
    } else {
        to = std::fill_n(to, before_point - number.count, '0');
    }
    if (plain)
        return to;
    *to++ = 'E';
    *to++ = number.exponent < 0 ? '-' : '+';
    const int size = std::abs(number.exponent);
    if (size < 10)
        *to++ = '0';
    return std::to_chars(to, to + 3, size).ptr;
}

} // namespace nif
