#include "numeric/matrix.h"

#include <gtest/gtest.h>

#include <algorithm>
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
bool same(double one, double other)
{
    return (std::isnan(one) && std::isnan(other)) || std::bit_cast<std::uint64_t>(one) == std::bit_cast<std::uint64_t>(other);
}

class Products : public testing::Test {
protected:
    /// Singles below 1, and one of six of the rare ones.
    Matrix random_matrix(std::size_t rows, std::size_t columns, const std::vector<double>& rare = {})
    {
        Matrix matrix{rows, columns};
        for (double& cell : matrix.cells)
            cell = !rare.empty() && random() % 6 == 0 ? rare[random() % rare.size()]
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
            EXPECT_TRUE(!expected || std::ranges::equal(result.cells, expected->cells, same));
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
    constexpr double huge_single = std::numeric_limits<float>::max(), least_single = std::numeric_limits<float>::denorm_min();
    const std::vector<double> doubles{infinity, -infinity, nan, huge, -huge, 1, 2, 0., -0., denormal, -denormal},
        singles{infinity, -infinity, nan, huge_single, -huge_single, 2, least_single, 0., -0., 1e-30f};
    for (const auto& [arithmetic, rare] : {std::pair{Arithmetic::Double, doubles}, {Arithmetic::Single, singles}}) {
        int in_range = 0, beyond = 0;
        for (int round = 0; round < 500; ++round) {
            const std::size_t rows = 1 + random() % 20, depth = 1 + random() % 5, columns = 1 + random() % 7;
            ++(agrees(random_matrix(rows, depth, rare), random_matrix(depth, columns, rare), arithmetic) ? in_range : beyond);
        }
        EXPECT_GT(in_range, 50);
        EXPECT_TRUE(arithmetic == Arithmetic::Double ? beyond > 50 : beyond == 0) << "products of Singles are always in range";
    }
}

TEST(Transposition, exchangesRowsAndColumns)
{
    for (const std::size_t rows : {0, 1, 33, 70})
        for (const std::size_t columns : {0, 1, 31, 65}) {
            std::vector<short> cells(rows * columns), exchanged(cells.size());
            std::ranges::generate(cells, [number = short{0}]() mutable { return number++; });
            const Table<const short> source{cells.data(), rows, columns};
            const Table<short> target{exchanged.data(), columns, rows};
            numeric::transpose(source, target);
            for (std::size_t i = 0; i < cells.size(); ++i)
                EXPECT_EQ(target(i / rows, i % rows), source(i % rows, i / rows));
        }
}

} // namespace
