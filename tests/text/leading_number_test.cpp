#include "text/leading_number.h"

#include "support/error_of.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>

namespace {

/// Both kinds of text read alike.
double number(std::string_view text)
{
    const double value = text::leading_number(text);
    EXPECT_EQ(text::leading_number(std::wstring{text.begin(), text.end()}), value) << text;
    return value;
}

struct Case {
    std::string_view text;
    double value;
};

void expect_numbers(std::initializer_list<Case> cases)
{
    for (const auto& [text, value] : cases)
        EXPECT_EQ(number(text), value) << text;
}

} // namespace

TEST(LeadingNumber, ReadsUpToTheFirstCharacterThatDoesNotFit)
{
    expect_numbers({{"1.5", 1.5}, {"-.5x", -.5}, {"+5.", 5}, {"24 and 57", 24}, {{"1\0002", 3}, 1}, {"7\r8", 7}});
    expect_numbers({{"1,5", 1.5}, {"1.234,5", 1.234}, {"1,234,5", 1.234}, {"1,,5", 1}, {",25", .25}, {"1.234.5", 1.234}});
    expect_numbers({{"1E3", 1000}, {"1.5d-3kg", 1.5e-3}, {"1.E2", 100}});
    expect_numbers({{"12345678901234567890D-25", 12345678901234567890e-25}, {"1234567890123456789E+", 1234567890123456789.0}});
    expect_numbers({{"7E", 7}, {"7D-", 7}, {"7E.5", 7}, {"7EE1", 7}});
    for (const char* text : {"", " ", "-", "+-1", ".", ",", ".E5", "E5", "&", "&H", "&O8", "&X1", "-&H1", "inf", "0x10", "$5"})
        EXPECT_EQ(number(text), 0) << text;
    EXPECT_FALSE(std::signbit(number("-0"))) << "it would be written with its sign";
    EXPECT_EQ(text::leading_number(L"1\x0662"), 1) << "a digit of another script";
}

TEST(LeadingNumber, SkipsBlanksTabsAndLineFeedsEverywhere)
{
    expect_numbers({{"    1615 198th Street N.E.", 1615198}, {" - 1 2 . 5\t0 E\n+ 0 1 ", -125}, {" & H F F", 255}});
    expect_numbers({{"\t1 2345678 9012345678.5", 123456789012345678.5}});
}

TEST(LeadingNumber, BeyondTheRangeOfADouble)
{
    const std::string nines(400, '9'), zeros(400, '0');
    for (const std::string& text : {std::string{"1.7976931348623159E308"}, std::string{"-1E309"}, std::string{"1E99999999999999999999"},
                                    nines, "." + zeros + "1E800", "&H" + std::string(257, 'F')})
        EXPECT_EQ(error_of([&] { number(text); }), 6) << text;
    for (const char* text : {"1e400x", "-1E400 ,", "1E400E", "1.5E999.5"})
        EXPECT_EQ(number(text), 0) << text;
    for (const std::string& text : {nines + "E", nines + " D- ", nines + "e x"})
        EXPECT_EQ(number(text), 0) << text;
    EXPECT_EQ(error_of([&] { number(" 1E40 0\t\n"); }), 6);
    EXPECT_EQ(number("&H" + std::string(257, 'F') + "G"), 0);
    expect_numbers({{"1.7976931348623157E308", std::numeric_limits<double>::max()}});
    expect_numbers({{"4.9406564584124654E-324", std::numeric_limits<double>::denorm_min()}});
    expect_numbers({{"1E-400", 0}, {"0E99999999999999999999", 0}, {"1E-99999999999999999999", 0}, {nines + "E-800", 0}});
    expect_numbers({{"1e400x", 0}, {"1E400 1E5", 0}, {nines + "E1,", 0}, {nines + "E+", 0}, {"&H" + nines + "&1", 0}});
    expect_numbers({{nines + "E-400", 1}, {"0." + zeros + "1E402", 10}});
}

TEST(LeadingNumber, HexadecimalAndOctalAreSigned)
{
    expect_numbers({{"&HFF", 255}, {"&H8000", -32768}, {"&HFFFF", -1}, {"&H0000FFFF", -1}, {"&HFFFF&", 65535}});
    expect_numbers({{"&H10000", 65536}, {"&HFFFFFFFF", -1}, {"&H80000000&", -2147483648.0}, {"&H100000000", 4294967296.0}});
    expect_numbers({{"&O10", 8}, {"&h7fffG", 32767}, {"&o177777", -1}, {"&O37777777777", -1}, {"&O189", 1}});
}

/// The C library's own reader is the oracle.
TEST(LeadingNumber, IsTheNearestDouble)
{
    std::mt19937_64 random{20};
    for (int i = 0; i < 50'000; ++i) {
        const auto value = std::bit_cast<double>(random());
        if (!std::isfinite(value) || std::abs(value) > 1e308)
            continue;
        char text[64];
        std::snprintf(text, sizeof text, "%.*e", static_cast<int>(random() % 25), value);
        ASSERT_EQ(number(text), std::strtod(text, nullptr)) << text;
    }
}
