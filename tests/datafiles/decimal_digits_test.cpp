#include "datafiles/decimal_digits.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <random>
#include <string>

namespace {

std::optional<std::string> written(double number, std::string_view point = ".")
{
    nif::DecimalDigits digits;
    if (!nif::round_to_digits(number, digits))
        return std::nullopt;
    char text[nif::longest_number + 8];
    return std::string{text, nif::write(digits, point, text)};
}

std::string printed(double number)
{
    std::array<char, 32> text;
    const int length = std::snprintf(text.data(), text.size(), "%.15G", number + 0.0);
    return {text.data(), static_cast<std::size_t>(length)};
}

/// Counts the numbers that are left to the platform.
int check(double number)
{
    const auto text = written(number);
    if (!text)
        return 1;
    EXPECT_EQ(*text, printed(number)) << std::hexfloat << number;
    return 0;
}

} // namespace

TEST(DecimalDigits, Texts)
{
    EXPECT_EQ(written(-0.0), "0");
    EXPECT_EQ(written(1234.5, "::"), "1234::5");
    EXPECT_EQ(written(-0.0001, ","), "-0,0001");
    EXPECT_EQ(written(1.5e-5, ","), "1,5E-05");
    EXPECT_EQ(written(1e20), "1E+20");
    EXPECT_EQ(written(-1.7976931348623157e308), "-1.79769313486232E+308");
    EXPECT_EQ(written(5e-324), "4.94065645841247E-324");
    EXPECT_EQ(written(999999999999999.9), "1E+15") << "rounding carries into the next power";
    EXPECT_FALSE(written(100000000000000.5)) << "halfway";
    EXPECT_FALSE(written(HUGE_VAL));
    EXPECT_FALSE(written(std::nan("")));
}

TEST(DecimalDigits, AreThoseOfThePlainFormatting)
{
    std::mt19937_64 random{1};
    constexpr int rounds = 40'000;
    int left = 0;
    for (int i = 0; i < rounds; ++i) {
        left += check(std::bit_cast<double>(random() & ~(std::uint64_t{1} << 62) >> (i & 1)));
        left += check(std::ldexp(static_cast<double>(random()), -64)) + check(static_cast<double>(random() % 2'000'000) / 1000 - 1000);
        left += check(std::ldexp(static_cast<double>(random() >> 11), static_cast<int>(random() % 120) - 110));
        left += check(std::bit_cast<double>(random() >> 12)); // too small for full precision
    }
    EXPECT_LT(left, rounds / 10) << "the platform is asked too often";
    for (int exponent = -323; exponent <= 308; ++exponent) {
        const double power = std::pow(10, exponent);
        for (const double factor : {1.0, 5.0, 9.99999999999999, 9.999999999999995, 1.000000000000005, 0.9999999999999995})
            for (const double near : {power * factor, std::nextafter(power * factor, 0), std::nextafter(power * factor, HUGE_VAL)})
                check(near);
    }
    for (int places = 0; places < 18; ++places) // halves of the last digit, exact and nearly
        for (double number = 0.5 + std::pow(2, 53 - 3 * places); number < 3e15; number *= 1.37)
            check(number);
}
