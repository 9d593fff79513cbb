#include "numeric/digit_enumeration.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

using Digits = std::vector<std::int32_t>;

/// Counting as one does with a pencil: the last digit goes up, and those that were the greatest start again.
void count_up(Digits& digits, std::int32_t base)
{
    for (std::size_t i = digits.size(); i-- > 0;) {
        if (digits[i] != base - 1) {
            ++digits[i];
            return;
        }
        digits[i] = 0;
    }
}

std::int32_t as_decimal(const Digits& digits)
{
    std::string text;
    for (const std::int32_t digit : digits)
        text += std::to_string(digit)[0];
    return std::stoi(text);
}

} // namespace

TEST(DigitEnumeration, CountsInAnyBase)
{
    struct {
        std::int32_t base, digits;
        std::size_t rows;
    } const cases[]{{2, 1, 2},    {2, 13, 8192}, {3, 8, 6561},  {10, 4, 10000},   {11, 3, 1331}, {200, 2, 40000},
                    {70000, 1, 70000}, {1, 5, 1},     {-1, 2, 1}, {-2, 2, 4}, {-13, 2, 169}};
    for (const auto& [base, count, rows] : cases) {
        SCOPED_TRACE(testing::Message() << count << " digits in the base " << base);
        ASSERT_EQ(numeric::last_place(base, count), static_cast<double>(rows) - 1);
        std::vector<std::int32_t> cells(rows * static_cast<std::size_t>(count), -1), numbers(rows, -1);
        const numeric::Table<std::int32_t> table{cells.data(), rows, static_cast<std::size_t>(count)};
        numeric::enumerate_digits(table, base);
        const bool fit = numeric::fit_long(base, count);
        EXPECT_EQ(fit, count < 10);
        if (fit)
            numeric::enumerate_numbers(numbers, base);
        Digits expected(table.columns);
        for (std::size_t row = 0; row < rows; ++row, count_up(expected, base)) {
            for (std::size_t column = 0; column < table.columns; ++column)
                ASSERT_EQ(table(row, column), expected[column]) << "row " << row << ", column " << column;
            if (fit) {
                ASSERT_EQ(numbers[row], as_decimal(expected)) << "row " << row;
            }
        }
    }
}

TEST(DigitEnumeration, KnowsHowFarItGoes)
{
    constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max(), least = std::numeric_limits<std::int32_t>::min();
    EXPECT_EQ(numeric::last_place(2, 31), largest);
    EXPECT_EQ(numeric::last_place(3, 19), 1162261466);
    EXPECT_EQ(numeric::last_place(0, 7), -1);
    EXPECT_EQ(numeric::last_place(-1, largest), -2);
    EXPECT_GT(numeric::last_place(largest, largest), 1e308);
    EXPECT_LT(numeric::last_place(least, largest), -1e308);

    for (const auto& [base, digits] : {std::pair{2, 10}, {3, 9}, {99, 9}, {1, largest}, {least, 2}})
        EXPECT_TRUE(numeric::fit_long(base, digits)) << digits << " digits in the base " << base;
    for (const auto& [base, digits] : {std::pair{2, 11}, {3, 10}, {99, 10}, {2, largest}})
        EXPECT_FALSE(numeric::fit_long(base, digits)) << digits << " digits in the base " << base;
}
