#include "numeric/insertion_sort.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <random>
#include <stdexcept>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity(), nan = std::numeric_limits<double>::quiet_NaN();
constexpr std::array values{1., 2., 3., 0., -0., infinity, nan, -nan};

std::vector<double> random_numbers(std::mt19937& random)
{
    std::vector<double> numbers(random() % 30);
    for (double& number : numbers)
        number = values[random() % values.size()];
    return numbers;
}

/// In which order two numbers stand is unknown where one is a NaN; then it counts as greater.
bool greater(double a, double b)
{
    return !(a <= b);
}

std::vector<double> by_insertion(std::vector<double> numbers, unsigned comparisons = ~0u)
try {
    numeric::insertion_sort(
        numbers.size(),
        [&](std::size_t a, std::size_t b) {
            return comparisons-- == 0 ? throw std::runtime_error{"no order"} : greater(numbers.at(a), numbers.at(b));
        },
        [&](std::size_t from, std::size_t to) { std::rotate(&numbers.at(to), &numbers.at(from), &numbers.at(from) + 1); });
    return numbers;
} catch (const std::runtime_error&) {
    return numbers;
}

std::vector<std::uint64_t> bits(const std::vector<double>& numbers)
{
    std::vector<std::uint64_t> bits;
    for (const double number : numbers)
        bits.push_back(std::bit_cast<std::uint64_t>(number));
    return bits;
}

} // namespace

TEST(InsertionSort, IsThatOfTheBookForAnyComparison)
{
    std::mt19937 random{1};
    for (int round = 0; round < 2000; ++round) {
        const auto numbers = random_numbers(random);
        auto expected = numbers, quick = numbers;
        for (std::size_t i = 1; i < expected.size(); ++i) {
            const double held = expected[i];
            std::size_t j = i;
            for (; j > 0 && greater(expected[j - 1], held); --j)
                expected[j] = expected[j - 1];
            expected[j] = held;
        }
        EXPECT_EQ(bits(by_insertion(numbers)), bits(expected));
        numeric::sort_with_nans(std::span{quick});
        EXPECT_EQ(bits(quick), bits(expected));
    }
}

TEST(InsertionSort, LosesNothingWhenAComparisonFails)
{
    std::mt19937 random{2};
    for (int round = 0; round < 500; ++round) {
        const auto numbers = random_numbers(random);
        auto before = bits(numbers), after = bits(by_insertion(numbers, random() % 100));
        std::ranges::sort(before);
        std::ranges::sort(after);
        EXPECT_EQ(after, before);
    }
}
