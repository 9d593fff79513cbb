#include "numeric/matrix.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <random>
#include <tuple>
#include <vector>

using numeric::Arithmetic;
using numeric::InstructionSet;
using numeric::Table;

// The plain loops say what is right.
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN(),
                 denormal = std::numeric_limits<double>::denorm_min(), huge = 1e308;

struct Matrix {
    std::vector<double> cells;
    std::size_t rows, columns;

    Matrix(std::size_t r, std::size_t c, double value = 7) : cells(r * c, value), rows{r}, columns{c} {}
    Table<double> table() { return {cells.data(), rows, columns}; }
    Table<const double> table() const { return {cells.data(), rows, columns}; }
};

bool is_beyond(double outcome, double a, double b)
{
    return !std::isfinite(outcome) && std::isfinite(a) && std::isfinite(b);
}

/// The product of two elements; none where it is beyond a Double.
std::optional<double> product(double a, double b, Arithmetic arithmetic)
{
    if (arithmetic == Arithmetic::Whole)
        return static_cast<double>(static_cast<std::int64_t>(a) * static_cast<std::int64_t>(b));
    if (arithmetic == Arithmetic::Single) {
        const auto x = static_cast<float>(a), y = static_cast<float>(b);
        if (const float single = x * y; !is_beyond(single, x, y))
            return single;
    }
    return is_beyond(a * b, a, b) ? std::nullopt : std::optional{a * b};
}

std::optional<Matrix> plain_product(const Matrix& left, const Matrix& right, Arithmetic arithmetic)
{
    Matrix result{left.rows, right.columns, 0};
    for (std::size_t i = 0; i < left.rows; ++i)
        for (std::size_t j = 0; j < right.columns; ++j)
            for (std::size_t k = 0; k < left.columns; ++k) {
                double& sum = result.table()(i, j);
                const auto step = product(right.table()(k, j), left.table()(i, k), arithmetic);
                if (!step || is_beyond(*step + sum, *step, sum))
                    return std::nullopt;
                sum = *step + sum;
            }
    return result;
}

/// The same to the last bit, as far as a NaN has bits to speak of.
void expect_same(const Matrix& one, const Matrix& other)
{
    const auto bits = [](double number) { return std::isnan(number) ? ~std::uint64_t{0} : std::bit_cast<std::uint64_t>(number); };
    std::size_t different = 0;
    for (std::size_t i = 0; i < one.cells.size(); ++i)
        different += bits(one.cells[i]) != bits(other.cells[i]);
    EXPECT_EQ(different, 0u) << "cells";
}

class Products : public testing::Test {
protected:
    Matrix random_matrix(std::size_t rows, std::size_t columns, const std::vector<double>& rare = {}, unsigned one_in = 1)
    {
        Matrix matrix{rows, columns};
        for (double& cell : matrix.cells)
            cell = !rare.empty() && random() % one_in == 0 ? rare[random() % rare.size()]
                                                           : static_cast<float>(std::uniform_real_distribution{-1., 1.}(random));
        return matrix;
    }

    /// Whether the product is in range; then it is the right one, with each kernel.
    bool agrees(const Matrix& left, const Matrix& right, Arithmetic arithmetic)
    {
        const auto expected = plain_product(left, right, arithmetic);
        for (int i = 0; i <= static_cast<int>(numeric::instruction_set()); ++i) {
            Matrix result{left.rows, right.columns};
            SCOPED_TRACE(testing::Message() << left.rows << "x" << left.columns << "x" << right.columns << " by " << i);
            EXPECT_EQ(multiply(left.table(), right.table(), result.table(), arithmetic, InstructionSet{i}), expected.has_value());
            if (expected)
                expect_same(result, *expected);
        }
        return expected.has_value();
    }

    std::mt19937 random{1};
};

TEST_F(Products, ofAnySizeAreThoseOfThePlainLoop)
{
    std::vector<std::tuple<std::size_t, std::size_t, std::size_t>> sizes{
        {70, 130, 90}, {145, 193, 13}, {143, 385, 12}, {1, 400, 1}, {300, 1, 30}, {0, 3, 3}, {3, 0, 3}, {3, 3, 0}};
    for (const std::size_t rows : {1, 2, 3, 4, 7, 8, 9, 16, 17})
        for (const std::size_t depth : {1, 2, 9})
            for (const std::size_t columns : {1, 2, 3, 4, 11, 12, 13})
                sizes.emplace_back(rows, depth, columns);
    for (const auto& [rows, depth, columns] : sizes)
        for (const Arithmetic arithmetic : {Arithmetic::Single, Arithmetic::Double})
            agrees(random_matrix(rows, depth), random_matrix(depth + rows % 2, columns), arithmetic);
}

TEST_F(Products, knowInfinitiesAndNansThatComeInFromNumbersThatGrewTooLarge)
{
    const std::vector<double> rare{infinity, -infinity, nan, huge, -huge, 1, 2, 0., -0., denormal, -denormal};
    int in_range = 0, beyond = 0;
    for (int round = 0; round < 500; ++round) {
        const std::size_t rows = 1 + random() % 20, depth = 1 + random() % 5, columns = 1 + random() % 7;
        const Matrix left = random_matrix(rows, depth, rare, 6), right = random_matrix(depth, columns, rare, 6);
        ++(agrees(left, right, Arithmetic::Double) ? in_range : beyond);
    }
    EXPECT_GT(in_range, 50);
    EXPECT_GT(beyond, 50);
}

TEST_F(Products, ofSinglesKeepTheirRange)
{
    constexpr double huge_single = std::numeric_limits<float>::max(), least_single = std::numeric_limits<float>::denorm_min();
    const std::vector<double> rare{infinity, -infinity, nan, huge_single, -huge_single, 2, least_single, 0., -0., 1e-30f};
    for (int round = 0; round < 100; ++round) {
        const std::size_t rows = 1 + random() % 20, depth = 1 + random() % 5, columns = 1 + random() % 7;
        EXPECT_TRUE(agrees(random_matrix(rows, depth, rare, 6), random_matrix(depth, columns, rare, 6), Arithmetic::Single));
    }
}

TEST_F(Products, ofATableAndANumber)
{
    const std::vector<double> whole{0, -1, 5, 2147483647, -2147483648.}, singles{0., -0., 3e38f, 1.1f, infinity, nan, 1e-40f};
    const std::vector<double> doubles{0., -0., huge, denormal, -1.8, infinity, -infinity, nan};
    int beyond = 0;
    for (const auto& [arithmetic, numbers] :
         {std::pair{Arithmetic::Whole, whole}, {Arithmetic::Single, singles}, {Arithmetic::Double, doubles}})
        for (const double number : numbers)
            for (const double element : numbers) {
                Matrix table{2, 1, element};
                const auto expected = product(number, element, arithmetic);
                EXPECT_EQ(multiply(table.table(), number, table.table(), arithmetic), expected.has_value());
                if (expected)
                    expect_same(table, Matrix{2, 1, *expected});
                beyond += !expected;
            }
    EXPECT_EQ(beyond, 3); // the square of the huge one, and it with -1.8 either way
}

template <class Element>
void expect_transposed(std::size_t rows, std::size_t columns)
{
    std::vector<Element> source(rows * columns), target(rows * columns);
    for (std::size_t i = 0; i < source.size(); ++i)
        source[i] = static_cast<Element>(i * 37);
    const Table<const Element> from{source.data(), rows, columns};
    const Table<Element> to{target.data(), columns, rows};
    transpose(from, to);
    std::size_t wrong = 0;
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t column = 0; column < columns; ++column)
            wrong += to(column, row) != from(row, column);
    EXPECT_EQ(wrong, 0u) << rows << "x" << columns;
}

TEST(Transposition, exchangesRowsAndColumns)
{
    for (const std::size_t rows : {0, 1, 2, 31, 32, 33, 70})
        for (const std::size_t columns : {0, 1, 3, 32, 65}) {
            expect_transposed<std::uint8_t>(rows, columns);
            expect_transposed<double>(rows, columns);
        }
}

} // namespace
