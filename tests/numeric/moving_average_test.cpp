#include "numeric/moving_average.h"

#include "support/error_of.h"

#include <gtest/gtest.h>

#include <limits>

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
Smoothed smoothed(Widening widening, int width, const std::vector<double>& numbers, Row first = 1)
{
    const Row rows = static_cast<Row>(numbers.size()) + first - 1;
    Smoothed result{std::vector<double>(static_cast<std::size_t>(rows)), {}};
    numeric::smooth(NumberColumn<double>{numbers, first}, HalfWidths{widening, width, rows}, result.averages.data(),
                    [&](Part part) { result.reports.push_back(part); });
    return result;
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
    constexpr auto logarithmic = Widening::Logarithmic, constant = Widening::Constant, linear = Widening::Linear;
    const struct {
        Widening widening;
        int width;
        std::vector<double> numbers, averages;
    } cases[]{{logarithmic, 3, {1, 2, 4, 8, 16, 32}, {1, 7 / 3., 14 / 3., 28 / 3., 76 / 5., 16}},
              {linear, 2, {6, 3, 9, 3, 6, 12}, {6, 6, 27 / 5., 33 / 5., 36 / 5., 48 / 7.}},
              {constant, 1, {1, 2, 4, 8}, {1, 7 / 3., 14 / 3., 16 / 3.}},
              {constant, 2, {1, 2, 4, 8, 16}, {1, 15 / 4., 31 / 5., 38 / 5., 40 / 5.}},
              {constant, 2, {1, 2, 4, 8}, {1, 15 / 4., 15 / 4., 14 / 3.}},
              {constant, 9, {1, 2, 6}, {1, 3, 3}},
              {constant, 1, {1, 2}, {1, 1.5}},
              {constant, -1, {1, 2, 6}, {1, 2, 6}},
              {logarithmic, 5, {7}, {7}}, {constant, 5, {7}, {7}}, {linear, 5, {7}, {7}}};
    for (const auto& [widening, width, numbers, averages] : cases) {
        SCOPED_TRACE(testing::Message() << "widening " << static_cast<int>(widening) << ", width " << width);
        const Smoothed result = smoothed(widening, width, numbers);
        ASSERT_EQ(result.averages.size(), averages.size());
        for (std::size_t i = 0; i < averages.size(); ++i)
            EXPECT_NEAR(result.averages[i], averages[i], 1e-12) << "in row " << i + 1;
        EXPECT_TRUE(result.reports.empty());
    }
}

TEST(MovingAverage, StepsOtherThanZeroAndOneAreReported)
{
    // Half-widths 0, 2, 3, 3, 4, 4, 5, 5: the row before row 1 leaves the span of row 4.
    const Smoothed body = smoothed(Widening::Logarithmic, 7, {70, 1, 2, 3, 4, 5, 6, 7, 8}, 0);
    EXPECT_EQ(body.reports, std::vector{Part::Body});
    EXPECT_EQ((std::vector<double>{body.averages.begin(), body.averages.begin() + 4}),
              (std::vector<double>{1, 0, 11 / 7., 11 / 7. + (7 - 70) / 7.}));
    EXPECT_EQ(smoothed(Widening::Logarithmic, 7, std::vector<double>(7), 0).reports, std::vector{Part::Tail});
    const Smoothed narrowing = smoothed(Widening::Linear, -3, {5, 6, 7});
    EXPECT_EQ(narrowing.reports, std::vector{Part::Body});
    EXPECT_EQ(narrowing.averages, (std::vector<double>{5, 0, 1}));
}

TEST(MovingAverage, MissingRowsAndOverflowRaise)
{
    constexpr double huge = std::numeric_limits<double>::max(), infinite = std::numeric_limits<double>::infinity();
    const std::vector<double> eight{1, 2, 3, 4, 5, 6, 7, 8}, thirty(30);
    const struct {
        Widening widening;
        int width;
        std::vector<double> numbers;
        Row first;
        std::int32_t error;
    } cases[]{{Widening::Logarithmic, 1, eight, 2, 9},
              {Widening::Logarithmic, 7, eight, 1, 9},
              {Widening::Linear, 1, eight, 1, 9},
              {Widening::Linear, -1, eight, 1, 9},
              {Widening::Constant, -2, eight, 1, 9},
              {Widening::Constant, -8, eight, 1, 9},
              {Widening::Constant, -2, thirty, -20, 9},
              {Widening::Constant, -32768, thirty, -20, 9},
              {Widening::Constant, 1, {1, 2, 3, 4, -huge, 5, 6, huge}, 1, 6},
              {Widening::Constant, 1, {huge, huge, 1}, 1, 6},
              {Widening::Linear, 2, {huge, huge, huge, 1, 2, 3}, 1, 6}};
    for (const auto& [widening, width, numbers, first, error] : cases)
        EXPECT_EQ(error_of([&] { smoothed(widening, width, numbers, first); }), error) << "width " << width << " from " << first;
    const Smoothed infinities = smoothed(Widening::Constant, 1, {1, 2, 3, infinite, 5, 6});
    EXPECT_EQ(infinities.averages[2], infinite);
    EXPECT_TRUE(std::isnan(infinities.averages[5]));
}
