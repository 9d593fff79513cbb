#include "automation/border.h"
#include "automation/safe_array.h"
#include "numeric/client_table.h"
#include "numeric/qvMath.h"
#include "numeric/table_products.h"
#include "numeric/transposition.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <random>
#include <vector>

using automation::check;
using automation::Error;
using automation::Ref;
using automation::Runtime;
using automation::Variant;
using numeric::ClientTable;

// Plain loops through the platform's own VarMul and VarAdd say what is right.
namespace {

bool is_finite(const VARIANT& value)
{
    return value.vt == VT_R4 ? std::isfinite(value.fltVal) : value.vt != VT_R8 || std::isfinite(value.dblVal);
}

/// What VarMul or VarAdd gives, with the overflow that not every platform finds.
Variant calculated(HRESULT(WINAPI* operation)(VARIANT*, VARIANT*, VARIANT*), VARIANT left, VARIANT right)
{
    Variant result;
    check(operation(&left, &right, &result));
    if (!is_finite(result) && is_finite(left) && is_finite(right))
        throw Error{Runtime::Overflow};
    return result;
}

double stored(const VARIANT& value)
{
    if (value.vt == VT_NULL)
        throw Error{Runtime::InvalidNull};
    Variant number;
    check(automation::change_type(number, value, VT_R8));
    return number.dblVal;
}

struct Outcome {
    std::vector<double> cells;
    std::int32_t error = 0;

    bool operator==(const Outcome& other) const
    {
        const auto same = [](double a, double b) {
            return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
        };
        return error == other.error && std::ranges::equal(cells, other.cells, same);
    }
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome)
{
    out << "error " << outcome.error << ":";
    for (const double cell : outcome.cells)
        out << " " << cell;
    return out;
}

template <class Rule>
Outcome outcome_of(const Rule& rule)
{
    try {
        return {rule()};
    } catch (const Error& error) {
        return {{}, error.number()};
    }
}

Outcome expected_product(const VARIANT& left, const VARIANT& right)
{
    return outcome_of([&] {
        const ClientTable a{left}, b{right};
        std::vector<double> cells(a.rows() * b.columns());
        for (std::size_t i = 0; i < a.rows(); ++i)
            for (std::size_t j = 0; j < b.columns(); ++j)
                for (std::size_t k = 0; k < a.columns(); ++k) {
                    double& cell = cells[j * a.rows() + i];
                    const Variant step = calculated(VarMul, b[j * b.rows() + k], a[k * a.rows() + i]);
                    cell = stored(calculated(VarAdd, step, Variant{cell}));
                }
        return cells;
    });
}

Outcome expected_product_with(const VARIANT& number, const VARIANT& table)
{
    return outcome_of([&] {
        const ClientTable elements{table};
        std::vector<double> cells(elements.size());
        for (std::size_t row = 0; row < elements.rows(); ++row)
            for (std::size_t column = 0; column < elements.columns(); ++column) {
                const std::size_t index = column * elements.rows() + row;
                cells[index] = stored(calculated(VarMul, number, elements[index]));
            }
        return cells;
    });
}

/// Ours, with these bounds.
Outcome product(const VARIANT& left, const VARIANT& right, LONG row = 5, LONG column = -2)
{
    return outcome_of([&] {
        const Variant result = numeric::multiplied(left, right);
        const ClientTable table{result};
        EXPECT_EQ(result.vt, VT_ARRAY | VT_R8);
        EXPECT_EQ(table.lower(1), row);
        EXPECT_EQ(table.lower(2), column);
        const auto cells = table.as<double>();
        return std::vector<double>(cells.begin(), cells.end());
    });
}

class Tables : public testing::Test {
protected:
    Tables() { _controlfp(_PC_53, _MCW_PC); } // the platform may compute with the old unit

    Variant element(VARTYPE type, unsigned one_odd_in)
    {
        static constexpr double ordinary[]{0, 1, 2, 3, 7, 100};
        static constexpr double odd[]{255, 32767, 2147483647, 16777217, 1e30, 1e160, 1e300, INFINITY, NAN, -0.};
        double number = ordinary[random() % std::size(ordinary)];
        if (type != VT_UI1 && type != VT_I2 && type != VT_BOOL && type != VT_I4 && type != VT_I8)
            number /= 8;
        if (type != VT_UI1 && random() % 3 == 0)
            number = -number;
        if (random() % one_odd_in == 0)
            number = odd[random() % std::size(odd)];
        Variant value;
        if (type == VT_EMPTY || type == VT_NULL)
            value.vt = type;
        else if (type != VT_R8 && !std::isfinite(number))
            return element(type, one_odd_in);
        else if (FAILED(automation::change_type(value, Variant{number}, type)))
            return element(type, one_odd_in);
        return value;
    }

    /// A table of one type, or of Variants of these types.
    Variant table(std::vector<VARTYPE> types, SAFEARRAYBOUND rows, SAFEARRAYBOUND columns, bool in_variants, unsigned one_odd_in)
    {
        Variant made = numeric::new_table(in_variants ? static_cast<VARTYPE>(VT_VARIANT) : types[0], rows, columns);
        const ClientTable elements{made};
        for (std::size_t i = 0; i < elements.size(); ++i)
            elements.replace(i, element(types[random() % types.size()], one_odd_in));
        return made;
    }

    void compare(const std::vector<VARTYPE>& left_types, const std::vector<VARTYPE>& right_types, bool in_variants)
    {
        for (const unsigned one_odd_in : {4u, 1000000u}) {
            const ULONG depth = 1 + random() % 4;
            const Variant left = table(left_types, {2, 5}, {depth, -7}, in_variants, one_odd_in);
            const Variant right = table(right_types, {depth, 9}, {3, -2}, in_variants, one_odd_in);
            SCOPED_TRACE(testing::PrintToString(left_types) + " by " + testing::PrintToString(right_types));
            EXPECT_EQ(product(left, right), expected_product(left, right));
            const Variant number = element(left_types[0], one_odd_in);
            EXPECT_EQ(product(number, right, 9), expected_product_with(number, right)) << stored(number);
            EXPECT_EQ(product(right, number, 9), expected_product_with(number, right)) << stored(number);
        }
    }

    std::mt19937 random{1};
};

constexpr VARTYPE types[]{VT_UI1, VT_I2, VT_BOOL, VT_I4, VT_R4, VT_R8, VT_DATE, VT_CY, VT_I8, VT_DECIMAL, VT_BSTR};

TEST_F(Tables, ofAnyTypesMultiplyAsThePlatformDoes)
{
    for (int round = 0; round < 10; ++round)
        for (const VARTYPE left : types)
            for (const VARTYPE right : types)
                compare({left}, {right}, false);
}

TEST_F(Tables, ofVariantsMultiplyAsThePlatformDoes)
{
    const std::vector<std::vector<VARTYPE>> mixes{{VT_R8}, {VT_I2, VT_UI1, VT_EMPTY}, {VT_I4, VT_R8}, {VT_R4, VT_I2}, {VT_R4},
                                                  {VT_R4, VT_I4}, {VT_I2, VT_I4}, {VT_DATE, VT_EMPTY}, {VT_R8, VT_CY, VT_DECIMAL},
                                                  {VT_R8, VT_R8, VT_R8, VT_R8, VT_NULL}};
    for (int round = 0; round < 20; ++round)
        for (const auto& left : mixes)
            for (const auto& right : mixes)
                compare(left, right, true);
}

TEST_F(Tables, withoutElementsGiveEmptySumsOrNothing)
{
    const auto made = [&](ULONG rows, ULONG columns) { return table({VT_R8}, {rows, 5}, {columns, -2}, false, 1000000); };
    EXPECT_EQ(product(made(2, 0), made(0, 2)), (Outcome{{0, 0, 0, 0}}));
    EXPECT_EQ(product(made(0, 2), made(2, 2)), Outcome{});
    EXPECT_EQ(product(made(2, 2), made(2, 0)), Outcome{});
    EXPECT_EQ(product(made(0, 0), Variant{std::wstring_view{L"x"}}), Outcome{});
}

/// The same value in another place, with a text of its own.
bool is_copy(const ClientTable& source, std::size_t place, const ClientTable& target, std::size_t there)
{
    const VARIANT one = source[place], other = target[there];
    if (one.vt == VT_BSTR && other.vt == VT_BSTR)
        return one.bstrVal != other.bstrVal && automation::view(one.bstrVal) == automation::view(other.bstrVal);
    return std::memcmp(source.place(place), target.place(there), source.element_size()) == 0;
}

TEST_F(Tables, areTransposedWithTheirBoundsAndTypes)
{
    std::vector<VARTYPE> with_variants{std::begin(types), std::end(types)};
    with_variants.push_back(VT_VARIANT);
    for (const VARTYPE type : with_variants) {
        const bool mixed = type == VT_VARIANT;
        const auto or_mixed = [&](VARENUM other) { return mixed ? static_cast<VARTYPE>(other) : type; };
        const std::vector<VARTYPE> content{or_mixed(VT_R8), or_mixed(VT_BSTR)};
        const Variant source = table(content, {40, 1}, {3, -4}, mixed, 9);
        const Variant result = numeric::transposed_table(source);
        ASSERT_EQ(result.vt, VT_ARRAY | type);
        const ClientTable from{source}, to{result};
        EXPECT_EQ(to.lower(1), -4);
        EXPECT_EQ(to.upper(1), -2);
        EXPECT_EQ(to.lower(2), 1);
        EXPECT_EQ(to.upper(2), 40);
        for (long long row = 1; row <= 40; ++row)
            for (long long column = -4; column <= -2; ++column)
                EXPECT_TRUE(is_copy(from, from.at(row, column), to, to.at(column, row))) << type;
        EXPECT_EQ(numeric::transposed(source).vt, type == VT_DECIMAL || type == VT_I8 ? VT_EMPTY : VT_ARRAY | type);
    }
}

TEST_F(Tables, shareTheirObjectsWhenTransposed)
{
    const auto object = automation::make<qvMath>();
    const auto references = [&] { return object->AddRef(), object->Release(); };
    for (const VARTYPE type : std::vector<VARTYPE>{VT_DISPATCH, VT_VARIANT}) {
        Variant source = numeric::new_table(type, {1, 0}, {2, 0});
        ClientTable{source}.replace(1, Variant{Ref<IDispatch>{object}});
        EXPECT_EQ(references(), 2u);
        {
            const Variant result = numeric::transposed_table(source);
            EXPECT_EQ(references(), 3u);
            EXPECT_EQ(ClientTable{result}[1].pdispVal, object.get());
        }
        EXPECT_EQ(references(), 2u);
        EXPECT_EQ(numeric::transposed(source).vt, type == VT_DISPATCH ? VT_EMPTY : VT_ARRAY | VT_VARIANT);
    }
}

} // namespace
