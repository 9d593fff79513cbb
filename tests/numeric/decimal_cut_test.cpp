#include "numeric/decimal_cut.h"

#include "automation/error.h"

#include <gtest/gtest.h>

#include <limits>

using numeric::cut_decimals;

TEST(DecimalCut, CountsFromTheSeparator)
{
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max(), least = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(cut_decimals(L"-3.149", 2), L"-3.14");
    EXPECT_EQ(cut_decimals(L"1.234,56", 1), L"1.234,5") << "the comma goes before the point";
    EXPECT_EQ(cut_decimals(L"1234,5", -2), L"123");
    EXPECT_EQ(cut_decimals(L"1,5", -2), L"");
    EXPECT_EQ(cut_decimals(L"1,5", largest - 2), L"1,5");
    EXPECT_EQ(cut_decimals(L"1E+20", least), std::nullopt);
    EXPECT_THROW(cut_decimals(L"1,5", least), automation::Error);
    EXPECT_THROW(cut_decimals(L"1,5", largest - 1), automation::Error);
}
