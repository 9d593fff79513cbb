#include "numeric/client_table.h"
#include "numeric/random_arrays.h"
#include "numeric/table_smoothing.h"

#include <algorithm>

using automation::Variant;
using numeric::ClientTable;

// The plain loop with the platform's own VarMul, VarAdd, VarSub and VarDiv says what is right.
namespace {

double as_double(const VARIANT& value)
{
    return automation::converted(value, VT_R8).dblVal;
}

Variant difference(const Variant& left, const Variant& right)
{
    const auto is_whole = [](const VARIANT& value) {
        return value.vt == VT_EMPTY || value.vt == VT_UI1 || value.vt == VT_I2 || value.vt == VT_BOOL || value.vt == VT_I4;
    };
    if (is_whole(left) && is_whole(right)) // those of Wine wrap around
        return Variant{as_double(left) - as_double(right)};
    return calculated(VarSub, left, right);
}

Variant whole(long number)
{
    return automation::converted(Variant{number}, VT_I2);
}

/// The averages of one column by its own indexes, in the way that the rule is written, row after row.
std::vector<double> plain_averages(const ClientTable& table, long column, int mode, int width)
{
    const long rows = static_cast<long>(table.upper(1));
    const auto cell = [&](long row) { return Variant{table[table.at(row <= rows ? row : 2 * rows - row, column)]}; };
    const auto half_width = [&](long row) {
        const double number = mode == 1 ? width / std::log(20.) * std::log(row) : mode == 2 ? width : double(row) / width;
        return std::lrint(number);
    };
    std::vector<double> averages{as_double(cell(1))};
    for (long row = 2; row <= rows; ++row) {
        const long h = half_width(row);
        const Variant before{averages.back()};
        if (mode == 2 && row <= h + 1) {
            Variant sum{as_double(cell(1))};
            for (long i = 2; i <= row + h; ++i)
                sum = Variant{as_double(calculated(VarAdd, sum, cell(i)))};
            averages.push_back(sum.dblVal / (row + h));
        } else if (h == half_width(row - 1)) {
            const Variant change = calculated(VarDiv, difference(cell(row + h), cell(row - h - 1)), whole(2 * h + 1));
            averages.push_back(as_double(calculated(VarAdd, before, change)));
        } else {
            const Variant former = calculated(VarMul, whole(2 * h - 1), before);
            const Variant sum = calculated(VarAdd, calculated(VarAdd, former, cell(row + h)), cell(row + h - 1));
            averages.push_back(as_double(calculated(VarDiv, sum, whole(2 * h + 1))));
        }
    }
    return averages;
}

class TableSmoothing : public RandomArrays {
protected:
    TableSmoothing() { edges = {32767, 32768, 2147483647, 2147483648, 3e38}; } // whose differences are beyond their type

    /// Smooths a table whose rows begin at 1 or above.
    void expect_plain_averages(VARTYPE type, unsigned one_odd_in, const Types& among = {VT_EMPTY})
    {
        const int mode = 1 + static_cast<int>(below(3)), width = 2 + static_cast<int>(below(5));
        const SAFEARRAYBOUND rows{30 + below(60), 1 - static_cast<LONG>(below(3))};
        const Variant value = array(type, {rows, {3, 0}}, one_odd_in, among);
        SCOPED_TRACE(testing::Message() << "type " << type << ", mode " << mode << ", width " << width);
        const ClientTable cells{value};
        std::vector<double> actual;
        const std::string outcome = told([&] {
            const Variant result = numeric::smoothed(value, static_cast<unsigned char>(mode), static_cast<short>(width));
            const ClientTable averages{result};
            EXPECT_EQ(result.vt, VT_ARRAY | VT_R8);
            EXPECT_EQ(std::pair(averages.lower(1), averages.upper(1)), std::pair(1LL, cells.upper(1)));
            EXPECT_EQ(averages.lower(2), 0);
            const auto numbers = averages.as<double>();
            return std::vector<double>(numbers.begin(), numbers.end());
        });
        ASSERT_EQ(outcome, told([&] {
            std::vector<double> expected;
            for (long column = 0; column < 3; ++column) {
                const bool is_left_out = column == 0 && mode != 1;
                const auto averages = is_left_out ? std::vector<double>(static_cast<std::size_t>(cells.upper(1)))
                                                  : plain_averages(cells, column, mode, width);
                expected.insert(expected.end(), averages.begin(), averages.end());
            }
            return expected;
        }));
    }
};

} // namespace

TEST_F(TableSmoothing, GivesWhatThePlatformsArithmeticGives)
{
    const Types types{VT_UI1, VT_I2, VT_I4, VT_R4, VT_R8, VT_CY, VT_DATE, VT_BOOL, VT_BSTR, VT_DECIMAL};
    for (int round = 0; round < 60; ++round) {
        const unsigned one_odd_in = round % 2 * 3;
        for (const VARTYPE type : types) {
            expect_plain_averages(type, one_odd_in);
            expect_plain_averages(VT_VARIANT, one_odd_in, {type});
        }
        expect_plain_averages(VT_VARIANT, one_odd_in, {VT_UI1, VT_I2, VT_I4, VT_R8, VT_BOOL, VT_EMPTY});
        expect_plain_averages(VT_VARIANT, one_odd_in, {VT_R4, VT_I2, VT_I4, VT_R8, VT_EMPTY});
        expect_plain_averages(VT_VARIANT, one_odd_in, {VT_CY, VT_I2, VT_I4});
        expect_plain_averages(VT_VARIANT, one_odd_in, types);
    }
}

// From a half-width of 16384 on, the number of rows of a span is a Long, and a Single divided by it a Double.
TEST_F(TableSmoothing, SpansMayBeLongerThanAnInteger)
{
    constexpr SAFEARRAYBOUND rows{40000, 1}, column{1, 1};
    const Variant singles = array(VT_R4, {rows, column}), variants = numeric::new_table(VT_VARIANT, rows, column);
    for (std::size_t i = 0; i < rows.cElements; ++i)
        ClientTable{variants}.replace(i, Variant{ClientTable{singles}[i]});
    for (const short width : {16383, 16384, 19999}) {
        const Variant from_singles = numeric::smoothed(singles, 2, width), from_variants = numeric::smoothed(variants, 2, width);
        EXPECT_TRUE(std::ranges::equal(ClientTable{from_singles}.as<double>(), ClientTable{from_variants}.as<double>())) << width;
    }
}
