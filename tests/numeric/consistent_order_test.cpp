#include "numeric/consistent_order.h"
#include "numeric/random_arrays.h"
#include "numeric/variant_order.h"

#include <algorithm>
#include <numeric>
#include <optional>

using automation::Variant;
using numeric::Elements;
using numeric::Order;

namespace {

using Positions = std::vector<std::uint32_t>;

/// Numbers of all types that are near each other, so that rounding makes many of them equal.
class ConsistentOrder : public RandomArrays {
protected:
    Variant near_number(double place, VARTYPE type)
    {
        static constexpr double steps[]{0, 0, 1e-17, 1e-12, 1e-8, 1e-6, .00003, .0001, .0625, 1, 2};
        Variant value;
        const double number = place + steps[below(std::size(steps))] * (static_cast<int>(below(5)) - 2);
        if (FAILED(automation::change_type(value, Variant{number}, type))) // out of the type's range
            automation::check(automation::change_type(value, Variant{below(3) / 2.}, type));
        return value;
    }
    std::vector<Variant> any_values()
    {
        constexpr VARTYPE types[]{VT_EMPTY, VT_BOOL, VT_UI1, VT_I2, VT_I4, VT_R4, VT_R8, VT_DATE, VT_CY};
        constexpr double places[]{0,     .1,    .3,    1,     100,   16777216,          33554433.3,        2147483647,           9007199254.7,
                                  9e11,  -9e14, 1e-10, 1e300, -1e39, 900719925474.0993, 922337203685477.5, 3.4028234663852886e38, INFINITY};
        const double here = places[below(std::size(places))], there = below(3) ? here : places[below(std::size(places))];
        const Types among{types[below(std::size(types))], types[below(std::size(types))], types[below(std::size(types))]};
        std::vector<Variant> values;
        for (unsigned i = 2 + below(6); i > 0; --i) {
            const VARTYPE type = among[below(3)];
            values.push_back(type == VT_EMPTY ? Variant{} : near_number(below(2) ? here : there, type));
        }
        return values;
    }
};

std::vector<VARIANT> shared(const std::vector<Variant>& values)
{
    return {values.begin(), values.end()};
}

/// Whether all values stand in one order in which any two and any three of them agree.
bool compare_consistently(const std::vector<Variant>& values)
try {
    const auto order = [&](std::size_t a, std::size_t b) { return numeric::compare(values[a], values[b]); };
    const std::size_t count = values.size();
    for (std::size_t a = 0; a < count; ++a)
        for (std::size_t b = 0; b < count; ++b) {
            const Order forth = order(a, b), back = order(b, a);
            if (static_cast<int>(forth) - VARCMP_EQ != VARCMP_EQ - static_cast<int>(back))
                return false;
            for (std::size_t c = 0; c < count; ++c)
                if (forth != Order::Greater && order(b, c) != Order::Greater
                    && order(a, c) != std::min(forth, order(b, c), [](Order x, Order) { return x == Order::Less; }))
                    return false;
        }
    return true;
} catch (const automation::Error&) {
    return false;
}

Positions by_insertion(const std::vector<Variant>& values)
{
    Positions order(values.size());
    std::iota(order.begin(), order.end(), 0);
    for (std::size_t i = 1; i < order.size(); ++i)
        for (std::size_t j = i; j > 0 && numeric::compare(values[order[j - 1]], values[order[j]]) == Order::Greater; --j)
            std::swap(order[j - 1], order[j]);
    return order;
}

std::string told(const std::vector<Variant>& values)
{
    std::ostringstream all;
    all << std::setprecision(17);
    for (const Variant& value : values)
        all << value.vt << ':' << (value.vt == VT_CY ? static_cast<double>(value.cyVal.int64) : numeric::nearest_double(value)) << ' ';
    return all.str();
}

} // namespace

TEST_F(ConsistentOrder, IsFoundWhereverThereIsOneAndNowhereElse)
{
    int found = 0, grouped = 0, none = 0;
    for (int round = 0; round < 60'000; ++round) {
        const std::vector<Variant> values = any_values();
        const auto order = numeric::consistent_order(shared(values));
        ASSERT_EQ(order.has_value(), compare_consistently(values)) << told(values);
        if (!order) {
            ++none;
            continue;
        }
        ASSERT_EQ(*order, by_insertion(values)) << told(values);
        ++found;
        for (std::size_t i = 1; i < order->size(); ++i)
            if (const Variant &one = values[(*order)[i - 1]], &next = values[(*order)[i]];
                numeric::compare(one, next) == Order::Equal && numeric::exact_order(one, next) != Order::Equal) {
                ++grouped;
                break;
            }
    }
    EXPECT_GT(found, 10'000);
    EXPECT_GT(grouped, 1'000) << "different numbers that the platform takes for equal";
    EXPECT_GT(none, 500) << "Singles and Currency close to numbers with more digits";
}

TEST_F(ConsistentOrder, ExactOrderIsThatOfTheAmounts)
{
    const auto amount = [](std::int64_t parts) {
        Variant value;
        value.vt = VT_CY;
        value.cyVal.int64 = parts;
        return value;
    };
    // A sixteenth is 625 ten-thousandths: both types hold it.
    for (int round = 0; round < 100'000; ++round) {
        const std::int64_t sixteenths = static_cast<std::int64_t>(random() % (std::uint64_t{1} << (1 + below(48)))) * (below(2) ? 1 : -1);
        const double number = static_cast<double>(sixteenths) / 16;
        const std::int64_t parts = sixteenths * 625;
        ASSERT_EQ(numeric::exact_order(amount(parts), Variant{number}), Order::Equal) << number;
        ASSERT_EQ(numeric::nearest_double(amount(parts)), number);
        for (const int off : {-1, 1}) {
            const Order expected = off < 0 ? Order::Less : Order::Greater;
            ASSERT_EQ(numeric::exact_order(amount(parts + off), Variant{number}), expected) << number;
            ASSERT_EQ(numeric::exact_order(amount(parts), Variant{std::nextafter(number, -off * INFINITY)}), expected) << number;
            ASSERT_EQ(numeric::exact_order(Variant{number}, amount(parts - off)), expected) << number;
        }
    }
    for (const std::int64_t edge : {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()})
        for (const double beyond : {922337203685478., 1e300, double{INFINITY}}) {
            EXPECT_EQ(numeric::exact_order(amount(edge), Variant{beyond}), Order::Less);
            EXPECT_EQ(numeric::exact_order(amount(edge), Variant{-beyond}), Order::Greater);
        }
}
