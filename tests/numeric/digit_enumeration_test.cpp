#include "numeric/digit_enumeration.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

TEST(DigitEnumeration, CountsInAnyBase)
{
    struct {
        std::int32_t base, digits;
        std::size_t rows;
    } const cases[]{{2, 1, 2},         {2, 13, 8192}, {3, 8, 6561}, {10, 4, 10000}, {11, 3, 1331}, {200, 2, 40000},
                    {70000, 1, 70000}, {1, 5, 1},     {-1, 2, 1},   {-2, 2, 4},     {-13, 2, 169}};
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
        const std::size_t values = base > 0 ? static_cast<std::size_t>(base) : rows; // of a digit
        for (std::size_t row = 0; row < rows; ++row) {
            std::size_t rest = row;
            std::string figures; // the first one of each digit
            for (std::size_t column = table.columns; column-- > 0; rest /= values) {
                ASSERT_EQ(table(row, column), rest % values) << "row " << row << ", column " << column;
                figures.insert(figures.begin(), std::to_string(rest % values)[0]);
            }
            ASSERT_EQ(numbers[row], fit ? std::stoi(figures) : -1) << "row " << row;
        }
    }
}

TEST(DigitEnumeration, KnowsHowFarItGoes)
{
    EXPECT_EQ(numeric::last_place(2, 31), INT32_MAX);
    EXPECT_EQ(numeric::last_place(3, 19), 1162261466);
    EXPECT_EQ(numeric::last_place(0, 7), -1);
    EXPECT_EQ(numeric::last_place(-1, INT32_MAX), -2);
    EXPECT_GT(numeric::last_place(INT32_MAX, INT32_MAX), 1e308);
    EXPECT_LT(numeric::last_place(INT32_MIN, INT32_MAX), -1e308);

    for (const auto& [base, digits] : {std::pair{2, 10}, {3, 9}, {99, 9}, {1, INT32_MAX}, {INT32_MIN, 2}})
        EXPECT_TRUE(numeric::fit_long(base, digits)) << digits << " digits in the base " << base;
    for (const auto& [base, digits] : {std::pair{2, 11}, {3, 10}, {99, 10}, {2, INT32_MAX}})
        EXPECT_FALSE(numeric::fit_long(base, digits)) << digits << " digits in the base " << base;
}
