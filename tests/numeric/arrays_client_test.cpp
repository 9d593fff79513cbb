#include "numeric/client_fixture.h"

using client::array;
using client::list;
using client::table;
using client::told;
using client::Value;

namespace {

class Arrays : public NumericClient {
protected:
    std::wstring sorted(Value array) const
    {
        EXPECT_EQ(common.call(L"Sort", {Value::variable(array)}).vt, VT_EMPTY);
        return told(array);
    }
    std::wstring sorted_special(Value array, int column, bool transposed = false) const
    {
        EXPECT_FALSE(common.call(L"SortSpecial", {Value::variable(array), column, transposed}).flag());
        return told(array);
    }
    Value numbers = list(3, {3, 1, 2}, VT_I2), none = list(0, {});
    Value no_rows = array(VT_R8, {{0, 0}, {3, 0}}, {}), no_columns = array(VT_R8, {{3, 0}, {0, 0}}, {});
};

} // namespace

TEST_F(Arrays, BoundsAndDimensionsNeverRaise)
{
    Value grid = table(VT_I4, 1, -1, {{1, 2, 3}, {4, 5, 6}});
    const std::pair<Value, long> cases[]{
        {Value{}, 0}, {7, 0}, {L"text", 0}, {Value::null(), 0}, {undimensioned, 0}, {Value::variable(undimensioned), 0},
        {Value::reference(VT_ARRAY | VT_R8, &undimensioned.parray), 0}, {grid, 2}, {Value::variable(grid), 2},
        {Value::reference(VT_ARRAY | VT_I4, &grid.parray), 2}, {none, 1}};
    for (const auto& [value, dimensions] : cases) {
        EXPECT_EQ(common.call(L"ArrayDim", {value}).number(), dimensions) << "type " << value.vt;
        EXPECT_EQ(common.call(L"BoundTest", {value}).flag(), dimensions > 0) << "type " << value.vt;
    }
}

TEST_F(Arrays, SortIsStableAndBlindToCase)
{
    EXPECT_EQ(sorted(list(3, {L"b", L"A", L"a", L"D"})), L"Variant 3: 'A' 'a' 'b' 'D'");
    EXPECT_EQ(sorted(list(3, {L"b", L"a", L"A", L"D"}, VT_BSTR)), L"String 3: 'a' 'A' 'b' 'D'");
    EXPECT_EQ(sorted(list(3, {L"10", 9, L"9", 2.5, short{9}})), L"Variant 3: 2.5# 9& 9 '10' '9'");
    EXPECT_EQ(sorted(list(3, {3, Value::null(), 1})), L"Variant 3: 3& Null 1&");

    SafeArrayLock(numbers.parray);
    common.call(L"Sort", {Value::reference(VT_ARRAY | VT_I2, &numbers.parray)});
    SafeArrayUnlock(numbers.parray);
    EXPECT_EQ(told(numbers), L"Integer 3: 1 2 3");

    Thing last{L"c"}, first{L"A"};
    Value mixed = list(3, {&last, L"b", &first});
    common.call(L"Sort", {Value::variable(mixed)});
    const auto* elements = static_cast<const VARIANT*>(mixed.parray->pvData);
    EXPECT_EQ(elements[0].pdispVal, &first);
    EXPECT_EQ(elements[2].pdispVal, &last);
    EXPECT_EQ(first.holders() + last.holders(), 2);
}

TEST_F(Arrays, CurrencyComparesOverItsWholeRange)
{
    const auto currency = [](double amount) {
        Value value = Value::of_type(VT_CY);
        EXPECT_EQ(VarCyFromR8(amount, &value.cyVal), S_OK);
        return value;
    };
    const std::vector<Value> amounts{currency(9e14), currency(-9e14), currency(0), currency(.0001)};
    EXPECT_EQ(sorted(list(3, amounts)), L"Variant 3: -900000000000000 0 0.0001 900000000000000");
    const Value mixed = list(3, {currency(9e14), -5, currency(-9e14), short{7}, Value{}, true, currency(6.5)});
    EXPECT_EQ(sorted(mixed), L"Variant 3: -900000000000000 -5& -1 - 6.5 7 900000000000000");
    EXPECT_EQ(told(common.call(L"Min", {mixed})) + told(common.call(L"max", {mixed})), L"-900000000000000900000000000000");
    Value long_long = Value::of_type(VT_I8);
    long_long.llVal = -922337203685478;
    EXPECT_EQ(sorted(list(3, {currency(9e14), long_long, currency(-922337203685477)})),
              L"Variant 3: -922337203685478 -922337203685477 900000000000000");
    EXPECT_EQ(sorted(list(3, {1e20, currency(9e14), -9e14, 5})), L"Variant 3: -900000000000000# 5& 900000000000000 1E+20#");
}

TEST_F(Arrays, SortRaisesWhatItCannotDo)
{
    expect_failure(common, L"Sort", {7}, mismatch);
    expect_failure(common, L"Sort", {list(3, {1, common})}, mismatch);
    expect_failure(common, L"Sort", {undimensioned}, subscript);
    expect_failure(common, L"Sort", {no_rows}, subscript);
}

TEST_F(Arrays, SortSpecialPutsRecordsIntoPlaceAsLongs)
{
    EXPECT_EQ(sorted_special(table(VT_VARIANT, 1, -1, {{3., L"x"}, {1., 1.5}, {2., L" 7 "}, {4., 2.5}}), -1),
              L"Variant 1,-1: (1& 2&)(2& 7&)(3# 'x')(4# 2.5#)");
    EXPECT_EQ(sorted_special(table(VT_VARIANT, 1, -1, {{9., 1., L"12"}, {2., 1., short{5}}}), 2, true),
              L"Variant 1,-1: (1& 9# '12')(1& 2# 5)");
    EXPECT_EQ(sorted_special(table(VT_R8, 1, -1, {{2.5, 8}, {1.5, 9}, {2.4, 3}}), -1), L"Double 1,-1: (2 9)(2 3)(2.5 8)");
    EXPECT_EQ(sorted_special(table(VT_BSTR, 1, -1, {{L"b", L"x"}, {L"4", L"5"}}), -1), L"String 1,-1: ('4' '5')('b' 'x')");
    EXPECT_EQ(sorted_special(table(VT_VARIANT, 1, -1, {{L"a", L"b"}}), 99), L"Variant 1,-1: ('a' 'b')");
}

TEST_F(Arrays, SortSpecialRaisesBeforeTheRecordMoves)
{
    Value letters = table(VT_VARIANT, 1, -1, {{3, L"x"}, {1, L"5"}, {2, L"z"}, {0, 0}});
    expect_failure(common, L"SortSpecial", {Value::variable(letters), -1}, mismatch);
    EXPECT_EQ(told(letters), L"Variant 1,-1: (1& 5&)(3& 'x')(2& 'z')(0& 0&)");
    expect_failure(common, L"SortSpecial", {table(VT_R8, 1, -1, {{1, 2}, {3e9, 4}}), -1}, overflow);
    expect_failure(common, L"SortSpecial", {table(VT_VARIANT, 1, -1, {{1}, {Value::null()}}), -1}, no_null);
    for (const int column : {-2, 1})
        expect_failure(common, L"SortSpecial", {table(VT_I4, 1, -1, {{1, 2}, {3, 4}}), column}, subscript);
    for (const Value& value : {numbers, undimensioned})
        expect_failure(common, L"SortSpecial", {value, 1}, subscript);
    expect_failure(common, L"SortSpecial", {L"text", 1}, mismatch);

    const auto sized = [](ULONG rows, LONG first_row, ULONG columns, LONG first_column) {
        return array(VT_UI1, {{rows, first_row}, {columns, first_column}}, std::vector<Value>(rows * columns, 0));
    };
    expect_failure(common, L"SortSpecial", {sized(2, 32767, 1, 0), 0}, overflow);
    expect_failure(common, L"SortSpecial", {sized(2, 0, 2, 32767), 32767}, overflow);
    expect_failure(common, L"SortSpecial", {sized(2, -32769, 1, 0), 0}, overflow);
    common.call(L"SortSpecial", {sized(2, 32766, 2, 32766), 32767});
    common.call(L"SortSpecial", {sized(0, 0, 2, 0), 0});
}

TEST_F(Arrays, MinMaxHasARowForTheLeastAndOneForTheGreatest)
{
    const Value grid = table(VT_R8, 1, -1, {{3, 1, 2}, {-4, 5, .5}});
    EXPECT_EQ(told(common.call(L"MinMax", {grid})), L"Variant 0,0: (1# -4#)(3# 5#)");
    EXPECT_EQ(told(common.call(L"MinMax", {grid, true})), L"Variant 0,0: (-4# 1# 0.5#)(3# 5# 2#)");
    for (const bool transposed : {false, true})
        for (const Value& value : {no_rows, no_columns, numbers, undimensioned})
            expect_failure(common, L"MinMax", {value, transposed}, subscript);
    expect_failure(common, L"MinMax", {3}, mismatch);
}

TEST_F(Arrays, ExtremaOfScalarsListsAndTables)
{
    const auto of = [&](const wchar_t* member, const Value& value) { return told(common.call(member, {value})); };
    EXPECT_EQ(of(L"Min", 7) + of(L"max", L"x") + of(L"MAX", Value{}) + of(L"Min", Value::null()), L"7&'x'-Null");
    EXPECT_EQ(of(L"Min", numbers) + of(L"max", numbers), L"13");
    EXPECT_EQ(of(L"max", table(VT_VARIANT, 1, -1, {{1, 2.5}, {L"a", L"A"}})), L"'a'");
    EXPECT_EQ(of(L"Min", Value::reference(VT_ARRAY | VT_I2, &numbers.parray)), L"1");
    EXPECT_EQ(of(L"AbsMin", list(3, {-5, 2, -1}, VT_I4)) + of(L"AbsMax", list(3, {-5, 2, -1}, VT_I4)), L"1&5&");
    EXPECT_EQ(of(L"AbsMin", -7) + of(L"AbsMax", -2.5) + of(L"AbsMin", L"-3"), L"7&2.5#3#");
    for (const wchar_t* member : {L"Min", L"max", L"AbsMin", L"AbsMax"}) {
        EXPECT_EQ(common.call(member, {array(VT_I2, {{1, 0}, {1, 0}, {1, 0}}, {1})}).vt, VT_EMPTY);
        for (const Value& value : {none, no_rows})
            expect_failure(common, member, {value}, subscript);
        expect_failure(common, member, {list(3, {1, numbers})}, mismatch);
    }
    EXPECT_EQ(common.call(L"Min", {undimensioned}).vt, VT_ARRAY | VT_VARIANT);
    for (const Value& value : {undimensioned, Value{L"text"}})
        expect_failure(common, L"AbsMax", {value}, mismatch);
    expect_failure(common, L"AbsMin", {list(3, {1, -2147483647 - 1}, VT_I4)}, overflow);
}
