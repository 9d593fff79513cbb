#include "text/leading_number.h"

#include "automation/error.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace text {
namespace {

/// The powers of ten that are exact as a Double.
constexpr std::array exact_powers{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                  1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr auto largest_exact_power = static_cast<std::int64_t>(exact_powers.size()) - 1;
constexpr std::int64_t largest_exact_mantissa = std::int64_t{1} << 53;

/// The first digits are kept as two numbers of so many digits each, as 64 bits take their time on a 32-bit processor.
constexpr int part_digits = 9;
constexpr int most_mantissa_digits = 2 * part_digits;
constexpr std::array<std::uint32_t, part_digits + 1> part_powers{1,       10,        100,        1'000,       10'000,
                                                                100'000, 1'000'000, 10'000'000, 100'000'000, 1'000'000'000};
constexpr int most_exponent = 1'000'000'000;

template <class Char>
constexpr bool is_skipped(Char character) noexcept
{
    return character == ' ' || character == '\t' || character == '\n';
}

/// The value of a decimal digit; 10 or more for any other character.
template <class Char>
constexpr std::uint32_t digit_value(Char character) noexcept
{
    return static_cast<std::uint32_t>(character) - '0';
}

/// The value of a hexadecimal digit; 16 for any other character.
template <class Char>
constexpr std::uint32_t radix_digit_value(Char character) noexcept
{
    if (digit_value(character) < 10)
        return digit_value(character);
    const std::uint32_t letter = (static_cast<std::uint32_t>(character) | 0x20) - 'a';
    return letter < 6 ? letter + 10 : 16;
}

template <class Char>
class Reader {
public:
    explicit Reader(std::basic_string_view<Char> text) noexcept : next_{text.data()}, end_{text.data() + text.size()} {}

    double read()
    {
        if (take('&'))
            return radix_number();
        const bool negative = take('-');
        if (!negative)
            take('+');
        const double size = decimal_number();
        return negative && size != 0 ? -size : size;
    }

private:
    /// The next character that counts, still to be taken; 0 at the end.
    Char next() noexcept
    {
        while (next_ != end_ && is_skipped(*next_))
            ++next_;
        return next_ == end_ ? Char{} : *next_;
    }

    bool take(char wanted) noexcept
    {
        if (next() != static_cast<Char>(wanted))
            return false;
        ++next_;
        return true;
    }

    /// Takes a letter in either case.
    bool take_letter(char wanted) noexcept { return take(wanted) || take(static_cast<char>(wanted | 0x20)); }

    double decimal_number()
    {
        next();
        start_ = next_;
        read_digits<false>();
        if (take('.') || take(','))
            read_digits<true>();
        if (high_ == 0)
            return 0;
        const std::int64_t power = std::int64_t{scale_} + exponent();
        const std::int64_t mantissa = this->mantissa();
        if (significant_ <= most_mantissa_digits && mantissa <= largest_exact_mantissa && std::abs(power) <= largest_exact_power)
            return scaled_exactly(mantissa, power);
        return rounded(power);
    }

    /// Adds digits to the mantissa as long as it has room, and keeps the power of ten of its last digit.
    template <bool behind_point>
    void read_digits() noexcept
    {
        const Char* place = next_; // in registers
        std::uint32_t high = high_, low = low_;
        int significant = significant_;
        for (; place != end_; ++place) {
            const std::uint32_t digit = digit_value(*place);
            if (digit < 10) {
                if (significant < part_digits)
                    high = high * 10 + digit;
                else if (significant < most_mantissa_digits)
                    low = low * 10 + digit;
                scale_ += (significant >= most_mantissa_digits) - behind_point;
                significant += high != 0;
            } else if (!is_skipped(*place)) {
                break;
            }
        }
        next_ = place;
        high_ = high;
        low_ = low;
        significant_ = significant;
    }

    std::int64_t mantissa() const noexcept
    {
        const int low_digits = std::clamp(significant_ - part_digits, 0, part_digits);
        return std::int64_t{high_} * part_powers[static_cast<std::size_t>(low_digits)] + low_;
    }

    /// The power of ten behind E or D; 0 without digits, and then the letter is no part of the number.
    int exponent() noexcept
    {
        const Char* const start = next_;
        if (!take_letter('E') && !take_letter('D'))
            return 0;
        const bool negative = take('-');
        if (!negative)
            take('+');
        if (digit_value(next()) >= 10) {
            next_ = start;
            return 0;
        }
        int size = 0;
        for (; digit_value(next()) < 10; ++next_)
            if (size < most_exponent / 10)
                size = size * 10 + static_cast<int>(digit_value(*next_));
            else
                size = most_exponent;
        return negative ? -size : size;
    }

    /// Rounds once only, as both operands are exact.
    static double scaled_exactly(std::int64_t mantissa, std::int64_t power) noexcept
    {
        const auto size = static_cast<double>(mantissa);
        const double factor = exact_powers[static_cast<std::size_t>(std::abs(power))];
        return power < 0 ? size / factor : size * factor;
    }

    /// The nearest Double to the number of any length at start_, which ends at next_.
    double rounded(std::int64_t power)
    {
        std::array<char, 64> few;
        std::unique_ptr<char[]> many;
        const auto length = static_cast<std::size_t>(next_ - start_);
        if (length > few.size())
            many = std::make_unique_for_overwrite<char[]>(length);
        char* const plain = many ? many.get() : few.data();

        const char* const plain_end = write_plainly(plain);
        double value = 0;
        const std::errc outcome = std::from_chars(plain, plain_end, value).ec;
        if (outcome == std::errc{} && std::isfinite(value))
            return value;
        const bool large = power + std::min(significant_, most_mantissa_digits) > 0;
        return large ? too_large() : 0;
    }

    /// Only a text that is a number as a whole can be too large; any other one is none.
    double too_large()
    {
        next();
        if (next_ == end_)
            throw automation::Error{automation::Runtime::Overflow};
        return 0;
    }

    /// Writes the number as every reader knows it, without blanks. Gives the end of what was written.
    char* write_plainly(char* target) const noexcept
    {
        for (const Char* place = start_; place != next_; ++place) {
            if (is_skipped(*place))
                continue;
            const auto letter = static_cast<char>(*place);
            *target++ = letter == ',' ? '.' : letter == 'D' || letter == 'd' ? 'E' : letter;
        }
        return target;
    }

    double radix_number()
    {
        if (take_letter('H'))
            return radix_number(16);
        if (take_letter('O'))
            return radix_number(8);
        return 0;
    }

    double radix_number(std::uint32_t radix)
    {
        double value = 0;
        for (;; ++next_) {
            const std::uint32_t digit = radix_digit_value(next());
            if (digit >= radix)
                break;
            value = value * radix + digit;
        }
        if (std::isinf(value)) {
            take('&');
            return too_large();
        }
        if (value > 0xFFFFFFFFu)
            return value;
        const auto bits = static_cast<std::uint32_t>(value);
        if (bits > 0xFFFF || take('&'))
            return static_cast<std::int32_t>(bits);
        return static_cast<std::int16_t>(bits);
    }

    const Char* next_;
    const Char* end_;
    const Char* start_ = nullptr;
    std::uint32_t high_ = 0, low_ = 0; ///< the first and the second part of the mantissa, leading zeros not counted
    int significant_ = 0;              ///< how many digits there are from the first that is not zero
    int scale_ = 0;                    ///< the power of ten of the mantissa's last digit
};

} // namespace

double leading_number(std::string_view text)
{
    return Reader{text}.read();
}

double leading_number(std::wstring_view text)
{
    return Reader{text}.read();
}

} // namespace text
