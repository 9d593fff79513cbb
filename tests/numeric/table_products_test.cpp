#include "numeric/client_table.h"
#include "numeric/random_arrays.h"
#include "numeric/table_products.h"
#include "numeric/transposition.h"

#include <algorithm>
#include <cstring>

using automation::Variant;
using numeric::ClientTable;

// Plain loops through the platform's own VarMul and VarAdd say what is right.
namespace {

double stored(const VARIANT& value)
{
    return automation::converted(value, VT_R8).dblVal;
}

std::string expected_product(const VARIANT& left, const VARIANT& right)
{
    return told([&] {
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

std::string expected_product_with(const VARIANT& number, const VARIANT& table)
{
    return told([&] {
        const ClientTable elements{table};
        std::vector<double> cells(elements.size());
        for (std::size_t row = 0; row < elements.rows(); ++row)
            for (std::size_t index = row; index < elements.size(); index += elements.rows())
                cells[index] = stored(calculated(VarMul, number, elements[index]));
        return cells;
    });
}

/// Ours, with these bounds.
std::string product(const VARIANT& left, const VARIANT& right, LONG row = 5, LONG column = -2)
{
    return told([&] {
        const Variant result = numeric::multiplied(left, right);
        const ClientTable table{result};
        EXPECT_EQ(result.vt, VT_ARRAY | VT_R8);
        EXPECT_EQ(table.lower(1), row);
        EXPECT_EQ(table.lower(2), column);
        const auto cells = table.as<double>();
        return std::vector<double>(cells.begin(), cells.end());
    });
}

class Tables : public RandomArrays {
protected:
    void compare(VARTYPE left_type, const Types& left_types, VARTYPE right_type, const Types& right_types)
    {
        SCOPED_TRACE(testing::PrintToString(left_types) + " by " + testing::PrintToString(right_types));
        for (const unsigned one_odd_in : {4, 0}) {
            const ULONG depth = 1 + below(4);
            const Variant left = array(left_type, {{2, 5}, {depth, -7}}, one_odd_in, left_types);
            const Variant right = array(right_type, {{depth, 9}, {3, -2}}, one_odd_in, right_types);
            EXPECT_EQ(product(left, right), expected_product(left, right));
            const Variant number = element(left_types[0], one_odd_in);
            EXPECT_EQ(product(number, right, 9), expected_product_with(number, right));
            EXPECT_EQ(product(right, number, 9), expected_product_with(number, right));
        }
    }

    const Types types{VT_UI1, VT_I2, VT_BOOL, VT_I4, VT_R4, VT_R8, VT_DATE, VT_CY, VT_I8, VT_DECIMAL, VT_BSTR};
};

TEST_F(Tables, ofAnyTypesMultiplyAsThePlatformDoes)
{
    for (int round = 0; round < 10; ++round)
        for (const VARTYPE left : types)
            for (const VARTYPE right : types)
                compare(left, {left}, right, {right});
}

TEST_F(Tables, ofVariantsMultiplyAsThePlatformDoes)
{
    const std::vector<Types> mixes{{VT_R8}, {VT_I2, VT_UI1, VT_EMPTY}, {VT_I4, VT_R8}, {VT_R4, VT_I2}, {VT_R4}, {VT_R4, VT_I4},
                                   {VT_I2, VT_I4}, {VT_DATE, VT_EMPTY}, {VT_R8, VT_CY, VT_DECIMAL},
                                   {VT_R8, VT_R8, VT_R8, VT_R8, VT_NULL}};
    for (int round = 0; round < 20; ++round)
        for (const Types& left : mixes)
            for (const Types& right : mixes)
                compare(VT_VARIANT, left, VT_VARIANT, right);
}

TEST_F(Tables, withoutElementsGiveEmptySumsOrNothing)
{
    const auto made = [&](ULONG rows, ULONG columns) { return array(VT_R8, {{rows, 5}, {columns, -2}}); };
    EXPECT_EQ(product(made(2, 0), made(0, 2)), "0 0 0 0 ");
    EXPECT_EQ(product(made(0, 2), made(2, 2)), "");
    EXPECT_EQ(product(made(2, 2), made(2, 0)), "");
    EXPECT_EQ(product(made(0, 0), Variant{std::wstring_view{L"x"}}), "");
}

/// The same value, with a text of its own.
bool is_copy(const VARIANT& one, const VARIANT& other, std::size_t size)
{
    if (one.vt == VT_BSTR && other.vt == VT_BSTR)
        return one.bstrVal != other.bstrVal && automation::view(one.bstrVal) == automation::view(other.bstrVal);
    return one.vt == other.vt && std::memcmp(&one.lVal, &other.lVal, std::min<std::size_t>(size, 8)) == 0;
}

TEST_F(Tables, areTransposedWithTheirBoundsAndTypes)
{
    Types with_variants = types;
    with_variants.push_back(VT_VARIANT);
    for (const VARTYPE type : with_variants)
        for (const auto& [rows, columns] : {std::pair{70ul, 33ul}, {1ul, 65ul}, {0ul, 3ul}, {32ul, 0ul}}) {
            const Variant source = array(type, {{rows, 1}, {columns, -4}}, 9, {VT_R8, VT_BSTR});
            const Variant result = numeric::transposed(source);
            const bool is_taken = type != VT_DECIMAL && type != VT_I8;
            ASSERT_EQ(result.vt, is_taken ? VT_ARRAY | type : VT_EMPTY);
            if (!is_taken)
                continue;
            const ClientTable from{source}, to{result};
            EXPECT_EQ(std::pair(to.lower(1), to.lower(2)), std::pair(-4LL, 1LL));
            ASSERT_EQ(std::pair(to.rows(), to.columns()), std::pair(from.columns(), from.rows()));
            for (std::size_t i = 0; i < from.size(); ++i)
                EXPECT_TRUE(is_copy(from[i], to[i % rows * columns + i / rows], from.element_size())) << "type " << type;
        }
}

} // namespace
