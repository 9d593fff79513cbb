#include "numeric/moving_average.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

using automation::Error;
using numeric::HalfWidths;
using numeric::NumberColumn;
using numeric::Part;
using numeric::Row;
using numeric::Widening;

namespace {

struct Smoothed {
    std::vector<double> averages;
    std::vector<Part> reports;
};

/// A column whose first element is that of row `first`.
template <class Number>
Smoothed smoothed(Widening widening, int width, const std::vector<Number>& numbers, Row first = 1)
{
    const Row rows = static_cast<Row>(numbers.size()) + first - 1;
    Smoothed result{std::vector<double>(static_cast<std::size_t>(rows)), {}};
    numeric::smooth(NumberColumn<Number>{numbers, first}, HalfWidths{widening, width, rows}, result.averages.data(),
                    [&](Part part) { result.reports.push_back(part); });
    return result;
}

void expect_averages(Widening widening, int width, const std::vector<double>& numbers, const std::vector<double>& expected)
{
    SCOPED_TRACE(testing::Message() << "widening " << static_cast<int>(widening) << ", width " << width);
    const Smoothed result = smoothed(widening, width, numbers);
    ASSERT_EQ(result.averages.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(result.averages[i], expected[i], 1e-12) << "in row " << i + 1;
    EXPECT_TRUE(result.reports.empty());
}

template <class Action>
std::int32_t error_of(const Action& action)
try {
    action();
    return 0;
} catch (const Error& error) {
    return error.number();
}

std::int32_t error_of_smoothing(Widening widening, int width, std::vector<double> numbers, Row first = 1)
{
    return error_of([&] { smoothed(widening, width, numbers, first); });
}

std::vector<int> half_widths(Widening widening, int width, Row rows)
{
    const HalfWidths all{widening, width, rows};
    std::vector<int> list;
    for (Row row = 1; row <= rows; ++row)
        list.push_back(all(row));
    return list;
}

} // namespace

TEST(MovingAverage, HalfWidthsAreRoundedHalvesToTheEvenOne)
{
    EXPECT_EQ(half_widths(Widening::Logarithmic, 3, 8), (std::vector{0, 1, 1, 1, 2, 2, 2, 2}));
    EXPECT_EQ(half_widths(Widening::Logarithmic, -2, 4), (std::vector{0, 0, -1, -1}));
    EXPECT_EQ(half_widths(Widening::Constant, 4, 2), (std::vector{4, 4}));
    EXPECT_EQ(half_widths(Widening::Linear, 2, 8), (std::vector{0, 1, 2, 2, 2, 3, 4, 4}));
    const HalfWidths linear{Widening::Linear, 7, 2000}, logarithmic{Widening::Logarithmic, -50, 2000};
    for (Row row = 1; row <= 2000; ++row) {
        EXPECT_EQ(linear(row), std::lrint(static_cast<double>(row) / 7)) << row;
        EXPECT_EQ(logarithmic(row), std::lrint(-50 / std::log(20.) * std::log(static_cast<double>(row)))) << row;
    }
    EXPECT_EQ(error_of([] { HalfWidths{Widening::Linear, 1, 32767}; }), 0);
    EXPECT_EQ(error_of([] { HalfWidths{Widening::Linear, 1, 32768}; }), 6);
    EXPECT_EQ(error_of([] { HalfWidths{Widening::Logarithmic, 32767, 21}; }), 6);
}

TEST(MovingAverage, ColumnsComputedByHand)
{
    expect_averages(Widening::Logarithmic, 3, {1, 2, 4, 8, 16, 32}, {1, 7 / 3., 14 / 3., 28 / 3., 76 / 5., 16});
    expect_averages(Widening::Linear, 2, {6, 3, 9, 3, 6, 12}, {6, 6, 27 / 5., 33 / 5., 36 / 5., 48 / 7.});
    expect_averages(Widening::Constant, 1, {1, 2, 4, 8}, {1, 7 / 3., 14 / 3., 16 / 3.});
    expect_averages(Widening::Constant, 2, {1, 2, 4, 8, 16}, {1, 15 / 4., 31 / 5., 38 / 5., 40 / 5.});
    expect_averages(Widening::Constant, 2, {1, 2, 4, 8}, {1, 15 / 4., 15 / 4., 14 / 3.});
    expect_averages(Widening::Constant, 9, {1, 2, 6}, {1, 3, 3});
    expect_averages(Widening::Constant, 1, {1, 2}, {1, 1.5});
    expect_averages(Widening::Constant, -1, {1, 2, 6}, {1, 2, 6});
    for (const Widening any : {Widening::Logarithmic, Widening::Constant, Widening::Linear})
        expect_averages(any, 5, {7}, {7});
}

// Spans that begin in row 1 or below it and widen by one row at a time: every average is the mean of its span.
TEST(MovingAverage, EachAverageIsTheMeanOfItsSpan)
{
    std::mt19937 random{1};
    for (int round = 0; round < 1000; ++round) {
        const auto widening = static_cast<Widening>(1 + round % 3);
        const int width = static_cast<int>(random() % 5) + 2;
        const Row rows = static_cast<Row>(20 + random() % 200);
        std::vector<float> numbers(static_cast<std::size_t>(rows));
        std::ranges::generate(numbers, [&] { return std::uniform_real_distribution<float>{-1, 1}(random); });
        const HalfWidths half_widths{widening, width, rows};
        const Smoothed doubles = smoothed(widening, width, std::vector<double>(numbers.begin(), numbers.end()));
        const Smoothed singles = smoothed(widening, width, numbers);
        for (Row row = 1; row <= rows; ++row) {
            const Row half_width = row == 1 ? 0 : half_widths(row);
            const Row first = std::max<Row>(row - half_width, 1), last = row + half_width;
            double sum = 0;
            for (Row i = first; i <= last; ++i)
                sum += double{numbers[static_cast<std::size_t>((i <= rows ? i : 2 * rows - i) - 1)]};
            const double mean = sum / static_cast<double>(last - first + 1);
            ASSERT_NEAR(doubles.averages[static_cast<std::size_t>(row - 1)], mean, 1e-12) << row << " of " << rows;
            ASSERT_NEAR(singles.averages[static_cast<std::size_t>(row - 1)], mean, 2e-5) << row << " of " << rows;
        }
        ASSERT_TRUE(doubles.reports.empty());
    }
}

TEST(MovingAverage, StepsOtherThanZeroAndOneAreReported)
{
    // Half-widths 0, 2, 3, 3, 4, 4, 5, 5: the row before row 1 leaves the span of row 4.
    const Smoothed body = smoothed(Widening::Logarithmic, 7, std::vector<double>{70, 1, 2, 3, 4, 5, 6, 7, 8}, 0);
    EXPECT_EQ(body.reports, std::vector{Part::Body});
    EXPECT_EQ((std::vector<double>{body.averages.begin(), body.averages.begin() + 4}),
              (std::vector<double>{1, 0, 11 / 7., 11 / 7. + (7 - 70) / 7.}));
    EXPECT_EQ(smoothed(Widening::Logarithmic, 7, std::vector<double>(7), 0).reports, std::vector{Part::Tail});
    const Smoothed narrowing = smoothed(Widening::Linear, -3, std::vector<double>{5, 6, 7});
    EXPECT_EQ(narrowing.reports, std::vector{Part::Body});
    EXPECT_EQ(narrowing.averages, (std::vector<double>{5, 0, 1}));
}

TEST(MovingAverage, MissingRowsAndOverflowRaise)
{
    const std::vector<double> eight{1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(error_of_smoothing(Widening::Logarithmic, 1, eight, 2), 9);
    EXPECT_EQ(error_of_smoothing(Widening::Logarithmic, 7, eight), 9);
    EXPECT_EQ(error_of_smoothing(Widening::Linear, 1, eight), 9);
    EXPECT_EQ(error_of_smoothing(Widening::Linear, -1, eight), 9);
    for (const int width : {-2, -3, -8, -32768}) {
        EXPECT_EQ(error_of_smoothing(Widening::Constant, width, eight), 9);
        EXPECT_EQ(error_of_smoothing(Widening::Constant, width, std::vector<double>(30), -20), 9);
    }

    constexpr double huge = std::numeric_limits<double>::max(), infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(error_of_smoothing(Widening::Constant, 1, {1, 2, 3, 4, -huge, 5, 6, huge}), 6);
    EXPECT_EQ(error_of_smoothing(Widening::Constant, 1, {huge, huge, 1}), 6);
    EXPECT_EQ(error_of_smoothing(Widening::Linear, 2, {huge, huge, huge, 1, 2, 3}), 6);
    const Smoothed infinities = smoothed(Widening::Constant, 1, std::vector<double>{1, 2, 3, infinite, 5, 6});
    EXPECT_EQ(infinities.averages[2], infinite);
    EXPECT_TRUE(std::isnan(infinities.averages[5]));

    constexpr float large = std::numeric_limits<float>::max();
    const Smoothed singles = smoothed(Widening::Constant, 1, std::vector<float>{-large, 0, 0, large});
    EXPECT_EQ(singles.averages[2], -double{large} / 3 + 2 * double{large} / 3);
}
