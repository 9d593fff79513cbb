#include "numeric/decimal_cut.h"

#include "automation/error.h"

#include <gtest/gtest.h>

using numeric::cut_decimals;

TEST(DecimalCut, CountsFromTheSeparator)
{
    EXPECT_EQ(cut_decimals(L"-3.149", 2), L"-3.14");
    EXPECT_EQ(cut_decimals(L"1.234,56", 1), L"1.234,5") << "the comma goes before the point";
    EXPECT_EQ(cut_decimals(L"1,5", -2), L"");
    EXPECT_EQ(cut_decimals(L"1,5", INT32_MAX - 2), L"1,5");
    EXPECT_EQ(cut_decimals(L"1E+20", INT32_MIN), std::nullopt);
    for (const std::int32_t places : {INT32_MIN, INT32_MAX - 1})
        EXPECT_THROW(cut_decimals(L"1,5", places), automation::Error);
}
