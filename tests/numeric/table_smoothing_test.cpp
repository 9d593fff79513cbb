#include "automation/border.h"
#include "numeric/client_table.h"
#include "numeric/table_smoothing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>
#include <random>

using automation::Error;
using automation::Variant;
using numeric::ClientTable;

// The plain loop with the platform's own VarMul, VarAdd, VarSub and VarDiv says what is right.
namespace {

using Operation = HRESULT(WINAPI*)(VARIANT*, VARIANT*, VARIANT*);

Variant calculated(Operation operation, Variant left, Variant right)
{
    Variant result;
    automation::check(operation(&left, &right, &result));
    return result;
}

bool is_whole(const VARIANT& value)
{
    return value.vt == VT_EMPTY || value.vt == VT_UI1 || value.vt == VT_I2 || value.vt == VT_BOOL || value.vt == VT_I4;
}

double as_double(const VARIANT& value)
{
    return automation::converted(value, VT_R8).dblVal;
}

Variant difference(const Variant& left, const Variant& right)
{
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
    std::vector<double> averages(static_cast<std::size_t>(rows) + 1);
    averages[1] = as_double(cell(1));
    for (long row = 2; row <= rows; ++row) {
        const long h = half_width(row);
        const Variant before{averages[static_cast<std::size_t>(row - 1)]};
        double& average = averages[static_cast<std::size_t>(row)];
        if (mode == 2 && row <= h + 1) {
            Variant sum{as_double(cell(1))};
            for (long i = 2; i <= row + h; ++i)
                sum = Variant{as_double(calculated(VarAdd, sum, cell(i)))};
            average = sum.dblVal / (row + h);
        } else if (h == half_width(row - 1)) {
            const Variant change = calculated(VarDiv, difference(cell(row + h), cell(row - h - 1)), whole(2 * h + 1));
            average = as_double(calculated(VarAdd, before, change));
        } else {
            const Variant former = calculated(VarMul, whole(2 * h - 1), before);
            const Variant sum = calculated(VarAdd, calculated(VarAdd, former, cell(row + h)), cell(row + h - 1));
            average = as_double(calculated(VarDiv, sum, whole(2 * h + 1)));
        }
    }
    return averages;
}

constexpr VARTYPE types[]{VT_UI1, VT_I2, VT_I4, VT_R4, VT_R8, VT_CY, VT_DATE, VT_BOOL, VT_BSTR, VT_DECIMAL};

class TableSmoothing : public testing::Test {
protected:
    TableSmoothing()
    {
        _controlfp(_PC_53, _MCW_PC); // for platforms that compute on the old unit
    }

    Variant element(VARTYPE type)
    {
        double number = static_cast<int>(random() % 200) - (type == VT_UI1 ? 0 : 100);
        if (type == VT_R4 || type == VT_R8 || type == VT_DATE)
            number += std::uniform_real_distribution{}(random);
        return type == VT_EMPTY ? Variant{} : automation::converted(Variant{number}, type);
    }

    /// A table whose rows begin at 1 or above, with elements of one type or Variants of any of `among`.
    Variant table(VARTYPE type, const std::vector<VARTYPE>& among = {})
    {
        const SAFEARRAYBOUND rows{static_cast<ULONG>(30 + random() % 30), 1 - static_cast<LONG>(random() % 3)};
        Variant made = numeric::new_table(type, rows, {3, 0});
        const ClientTable cells{made};
        for (std::size_t i = 0; i < cells.size(); ++i)
            cells.replace(i, element(type == VT_VARIANT ? among[random() % among.size()] : type));
        if (type == VT_I4) // whose differences may be beyond a Long
            std::ranges::for_each(cells.as<LONG>(), [](LONG& number) { number *= 20000000; });
        return made;
    }

    void expect_plain_averages(const Variant& value)
    {
        const int mode = 1 + static_cast<int>(random() % 3), width = 2 + static_cast<int>(random() % 5);
        SCOPED_TRACE(testing::Message() << "type " << value.vt << ", mode " << mode << ", width " << width);
        const ClientTable cells{value};
        const Variant result = numeric::smoothed(value, static_cast<unsigned char>(mode), static_cast<short>(width));
        ASSERT_EQ(result.vt, VT_ARRAY | VT_R8);
        const ClientTable averages{result};
        ASSERT_EQ(averages.lower(1), 1);
        ASSERT_EQ(averages.upper(1), cells.upper(1));
        ASSERT_EQ(averages.lower(2), 0);
        for (long column = 0; column < 3; ++column) {
            std::vector<double> expected(averages.rows() + 1);
            if (column > 0 || mode == 1)
                expected = plain_averages(cells, column, mode, width);
            const double* const actual = &averages.as<double>()[averages.at(1, column)];
            ASSERT_TRUE(std::equal(expected.begin() + 1, expected.end(), actual)) << "in column " << column;
        }
    }

    std::mt19937 random{4};
};

} // namespace

TEST_F(TableSmoothing, GivesWhatThePlatformsArithmeticGives)
{
    for (int round = 0; round < 60; ++round) {
        for (const VARTYPE type : types) {
            expect_plain_averages(table(type));
            expect_plain_averages(table(VT_VARIANT, {type}));
        }
        expect_plain_averages(table(VT_VARIANT, {VT_UI1, VT_I2, VT_I4, VT_R8, VT_BOOL, VT_EMPTY}));
        expect_plain_averages(table(VT_VARIANT, {VT_R4, VT_I2, VT_I4, VT_R8, VT_EMPTY}));
        expect_plain_averages(table(VT_VARIANT, {types, types + std::size(types)}));
    }
}

// Integers and Singles whose difference is none, in an array of their type and among Variants that are left to the platform.
TEST_F(TableSmoothing, DifferencesGoBeyondTheirType)
{
    const auto third_average = [&](VARTYPE type, std::initializer_list<Variant> elements) {
        const Variant made = numeric::new_table(type, {4, 1}, {1, 1});
        for (std::size_t i = 0; i < elements.size(); ++i)
            ClientTable{made}.replace(i, elements.begin()[i]);
        return ClientTable{numeric::smoothed(made, 2, 1)}.as<double>()[2];
    };
    constexpr double largest = std::numeric_limits<float>::max();
    const Variant zero = whole(0), money = automation::converted(zero, VT_CY), low = whole(-32768), high = whole(32767);
    EXPECT_EQ(third_average(VT_I2, {low, zero, zero, high}), -32768 / 3. + 65535 / 3.);
    EXPECT_EQ(third_average(VT_VARIANT, {low, zero, money, high}), -32768 / 3. + 65535 / 3.);
    const Variant down = automation::converted(Variant{-largest}, VT_R4), up = automation::converted(Variant{largest}, VT_R4);
    EXPECT_EQ(third_average(VT_VARIANT, {down, zero, zero, up}), -largest / 3 + 2 * largest / 3);
}

// From a half-width of 16384 on, the number of rows of a span is a Long, and a Single divided by it a Double.
TEST_F(TableSmoothing, SpansMayBeLongerThanAnInteger)
{
    constexpr SAFEARRAYBOUND rows{40000, 1}, columns{1, 1};
    const Variant singles = numeric::new_table(VT_R4, rows, columns), variants = numeric::new_table(VT_VARIANT, rows, columns);
    for (std::size_t i = 0; i < rows.cElements; ++i) {
        Variant value = element(VT_R4);
        ClientTable{singles}.replace(i, value);
        ClientTable{variants}.replace(i, value);
    }
    for (const short width : {16383, 16384, 19999}) {
        const Variant from_singles = numeric::smoothed(singles, 2, width), from_variants = numeric::smoothed(variants, 2, width);
        EXPECT_TRUE(std::ranges::equal(ClientTable{from_singles}.as<double>(), ClientTable{from_variants}.as<double>())) << width;
    }
}
