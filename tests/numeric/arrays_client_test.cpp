#include "support/client.h"

#include <cstring>

using client::expect_error;
using client::Object;
using client::Value;

namespace {

constexpr const wchar_t *mismatch = L"Type mismatch", *subscript = L"Subscript out of range", *overflow = L"Overflow";

using Rows = std::vector<std::vector<Value>>;

/// An array with these bounds and elements in storage order, each converted to its type.
Value array(VARTYPE type, std::vector<SAFEARRAYBOUND> bounds, const std::vector<Value>& values)
{
    Value made = Value::of_type(VT_ARRAY | type);
    made.parray = SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data());
    auto* place = static_cast<char*>(made.parray->pvData);
    for (Value element : values) {
        if (type != VT_VARIANT) {
            EXPECT_EQ(VariantChangeType(&element, &element, 0, type), S_OK);
        }
        std::memcpy(place, type == VT_VARIANT ? static_cast<void*>(&element) : &element.lVal, made.parray->cbElements);
        place += made.parray->cbElements;
        element.vt = VT_EMPTY; // the array has it
    }
    return made;
}

Value list(VARTYPE type, const std::vector<Value>& values)
{
    return array(type, {{static_cast<ULONG>(values.size()), 3}}, values);
}

/// A table whose rows count from 1 and columns from -1.
Value table(VARTYPE type, const Rows& rows)
{
    std::vector<Value> values;
    for (std::size_t column = 0; column < rows[0].size(); ++column)
        for (const auto& row : rows)
            values.push_back(row.at(column));
    return array(type, {{static_cast<ULONG>(rows.size()), 1}, {static_cast<ULONG>(rows[0].size()), -1}}, values);
}

std::wstring told(const Value& value)
{
    if (value.vt == VT_NULL)
        return L"Null";
    Value text;
    EXPECT_EQ(VariantChangeTypeEx(&text, const_cast<Value*>(&value), 0x409, 0, VT_BSTR), S_OK); // with a decimal point
    return text.text() + (value.vt == VT_I4 ? L"&" : value.vt == VT_R8 ? L"#" : L"");
}

/// An array as text: its elements, with & behind a Long and # behind a Double; of a table row by row, each in brackets.
std::wstring told_array(const Value& array)
{
    const SAFEARRAY& a = *array.parray;
    const auto element = [&](std::size_t index) {
        const char* place = static_cast<char*>(a.pvData) + index * a.cbElements;
        if (array.vt == (VT_ARRAY | VT_VARIANT))
            return told(*reinterpret_cast<const Value*>(place));
        Value shared = Value::of_type(static_cast<VARTYPE>(array.vt & VT_TYPEMASK));
        std::memcpy(&shared.lVal, place, a.cbElements);
        const std::wstring text = told(shared);
        shared.vt = VT_EMPTY;
        return text;
    };
    std::wstring all;
    const std::size_t rows = a.rgsabound[a.cDims - 1].cElements, columns = a.cDims == 2 ? a.rgsabound[0].cElements : 0;
    for (std::size_t row = 0; row < rows; ++row) {
        all += columns ? L"(" : element(row) + L" ";
        for (std::size_t column = 0; column < columns; ++column)
            all += element(column * rows + row) + (column + 1 < columns ? L" " : L")");
    }
    return all;
}

class Arrays : public testing::Test {
protected:
    std::wstring sorted(Value array) const
    {
        EXPECT_EQ(common.call(L"Sort", {Value::variable(array)}).vt, VT_EMPTY);
        return told_array(array);
    }
    std::wstring sorted_special(Value array, int column, bool transposed = false) const
    {
        EXPECT_FALSE(common.call(L"SortSpecial", {Value::variable(array), column, transposed}).flag());
        return told_array(array);
    }
    void expect_failure(const wchar_t* member, std::initializer_list<Value> arguments, long number, const wchar_t* text) const
    {
        SCOPED_TRACE(testing::Message() << member);
        expect_error(common.try_call(member, arguments), number, text);
    }

    client::Apartment apartment;
    Object common = Object::create(L"qvObjects.qvCommon");
    Value undimensioned = Value::of_type(VT_ARRAY | VT_VARIANT);
    Value numbers = list(VT_I2, {3, 1, 2});
};

} // namespace

TEST_F(Arrays, BoundsAndDimensionsNeverRaise)
{
    Value grid = table(VT_I4, {{1, 2, 3}, {4, 5, 6}});
    const Value none = array(VT_VARIANT, {{0, 0}}, {});
    for (const Value& no_array : {Value{}, Value{7}, Value{L"text"}, Value::null(), undimensioned,
                                  Value::variable(undimensioned), Value::reference(VT_ARRAY | VT_R8, &undimensioned.parray)}) {
        EXPECT_FALSE(common.call(L"BoundTest", {no_array}).flag());
        EXPECT_EQ(common.call(L"ArrayDim", {no_array}).number(), 0);
    }
    for (const Value& an_array : {grid, Value::variable(grid), Value::reference(VT_ARRAY | VT_I4, &grid.parray), none})
        EXPECT_TRUE(common.call(L"BoundTest", {an_array}).flag());
    EXPECT_EQ(common.call(L"ArrayDim", {grid}).number(), 2);
    EXPECT_EQ(common.call(L"ArrayDim", {none}).number(), 1);
}

TEST_F(Arrays, SortIsStableAndBlindToCase)
{
    EXPECT_EQ(sorted(list(VT_VARIANT, {L"b", L"A", L"a", L"D"})), L"A a b D ");
    EXPECT_EQ(sorted(list(VT_BSTR, {L"b", L"a", L"A", L"D"})), L"a A b D ");
    EXPECT_EQ(sorted(list(VT_R8, {2.5, -1, 1e9, .5})), L"-1# 0.5# 2.5# 1000000000# ");
    EXPECT_EQ(sorted(list(VT_VARIANT, {L"10", 9, L"9", 2.5, short{9}})), L"2.5# 9& 9 10 9 ");
    EXPECT_EQ(sorted(list(VT_VARIANT, {3, Value::null(), 1})), L"3& Null 1& ");
    EXPECT_EQ(sorted(list(VT_VARIANT, {L"x"})), L"x ");
    EXPECT_EQ(sorted(array(VT_VARIANT, {{0, 0}}, {})), L"");

    SafeArrayLock(numbers.parray);
    common.call(L"Sort", {Value::reference(VT_ARRAY | VT_I2, &numbers.parray)});
    SafeArrayUnlock(numbers.parray);
    EXPECT_EQ(told_array(numbers), L"1 2 3 ");

    const Object section = Object::create(L"qvObjects.qvIniFile").object(L"Section", {L"s"});
    std::vector<Value> objects;
    for (const wchar_t* value : {L"c", L"A"}) {
        objects.push_back(section.object(L"Parameter", {value}));
        Object{objects.back().pdispVal}.put(L"Value", {value});
    }
    Value mixed = list(VT_VARIANT, {objects[0], L"b", objects[1]});
    common.call(L"Sort", {Value::variable(mixed)});
    const auto* elements = static_cast<const VARIANT*>(mixed.parray->pvData);
    EXPECT_EQ(elements[0].pdispVal, objects[1].pdispVal);
    EXPECT_EQ(elements[2].pdispVal, objects[0].pdispVal);
}

TEST_F(Arrays, SortRaisesWhatItCannotDo)
{
    expect_failure(L"Sort", {7}, 13, mismatch);
    expect_failure(L"Sort", {undimensioned}, 9, subscript);
    expect_failure(L"Sort", {table(VT_I4, {{1}, {2}})}, 9, subscript);
    expect_failure(L"Sort", {list(VT_VARIANT, {1, numbers})}, 13, mismatch);
    expect_failure(L"Sort", {list(VT_VARIANT, {1, common})}, 13, mismatch);
    expect_failure(L"Sort", {list(VT_VARIANT, {1, Value::missing()})}, 13, mismatch);
}

TEST_F(Arrays, SortSpecialPutsRecordsIntoPlaceAsLongs)
{
    EXPECT_EQ(sorted_special(table(VT_VARIANT, {{3., L"x"}, {1., 1.5}, {2., L" 7 "}, {4., 2.5}}), -1),
              L"(1& 2&)(2& 7&)(3# x)(4# 2.5#)");
    EXPECT_EQ(sorted_special(table(VT_VARIANT, {{9., 1., L"12"}, {2., 1., short{5}}}), 2, true), L"(1& 9# 12)(1& 2# 5)");
    EXPECT_EQ(sorted_special(table(VT_R8, {{2.5, 8}, {1.5, 9}, {2.4, 3}}), -1), L"(2# 9#)(2# 3#)(2.5# 8#)");
    EXPECT_EQ(sorted_special(table(VT_BSTR, {{L"b", L"x"}, {L"4", L"5"}}), -1), L"(4 5)(b x)");
    EXPECT_EQ(sorted_special(table(VT_VARIANT, {{L"a", L"b"}}), 99), L"(a b)");
}

TEST_F(Arrays, SortSpecialRaisesBeforeTheRecordMoves)
{
    Value letters = table(VT_VARIANT, {{3, L"x"}, {1, L"5"}, {2, L"z"}, {0, 0}});
    expect_failure(L"SortSpecial", {Value::variable(letters), -1}, 13, mismatch);
    EXPECT_EQ(told_array(letters), L"(1& 5&)(3& x)(2& z)(0& 0&)");
    expect_failure(L"SortSpecial", {table(VT_R8, {{1, 2}, {3e9, 4}}), -1}, 6, overflow);
    expect_failure(L"SortSpecial", {table(VT_VARIANT, {{1}, {Value::null()}}), -1}, 94, L"Invalid use of Null");
    for (const int column : {-2, 1})
        expect_failure(L"SortSpecial", {table(VT_I4, {{1, 2}, {3, 4}}), column}, 9, subscript);
    expect_failure(L"SortSpecial", {numbers, 1}, 9, subscript);
    expect_failure(L"SortSpecial", {undimensioned, 1}, 9, subscript);
    expect_failure(L"SortSpecial", {L"text", 1}, 13, mismatch);

    const auto sized = [](ULONG rows, LONG first_row, ULONG columns, LONG first_column) {
        return array(VT_UI1, {{rows, first_row}, {columns, first_column}}, std::vector<Value>(rows * columns, 0));
    };
    expect_failure(L"SortSpecial", {sized(2, 32767, 1, 0), 0}, 6, overflow);
    expect_failure(L"SortSpecial", {sized(2, 0, 2, 32767), 32767}, 6, overflow);
    expect_failure(L"SortSpecial", {sized(2, -32769, 1, 0), 0}, 6, overflow);
    common.call(L"SortSpecial", {sized(2, 32766, 2, 32766), 32767});
    common.call(L"SortSpecial", {sized(0, 0, 2, 0), 0});
}

TEST_F(Arrays, MinMaxHasARowForTheLeastAndOneForTheGreatest)
{
    const Value grid = table(VT_R8, {{3, 1, 2}, {-4, 5, .5}});
    EXPECT_EQ(told_array(common.call(L"MinMax", {grid})), L"(1# -4#)(3# 5#)");
    EXPECT_EQ(told_array(common.call(L"MinMax", {grid, true})), L"(-4# 1# 0.5#)(3# 5# 2#)");
    EXPECT_EQ(told_array(common.call(L"MinMax", {table(VT_VARIANT, {{L"b", 1., 1, L"B"}})})), L"(1#)(b)");
    const Value result = common.call(L"MinMax", {grid});
    EXPECT_EQ(result.vt, VT_ARRAY | VT_VARIANT);
    for (UINT dimension : {1, 2}) {
        LONG low = 7;
        SafeArrayGetLBound(result.parray, dimension, &low);
        EXPECT_EQ(low, 0);
    }
    for (const bool transposed : {false, true}) {
        expect_failure(L"MinMax", {array(VT_R8, {{0, 0}, {3, 0}}, {}), transposed}, 9, subscript);
        expect_failure(L"MinMax", {array(VT_R8, {{3, 0}, {0, 0}}, {}), transposed}, 9, subscript);
    }
    expect_failure(L"MinMax", {numbers}, 9, subscript);
    expect_failure(L"MinMax", {undimensioned}, 9, subscript);
    expect_failure(L"MinMax", {3}, 13, mismatch);
}

TEST_F(Arrays, ExtremaOfScalarsListsAndTables)
{
    const auto of = [&](const wchar_t* member, const Value& value) { return told(common.call(member, {value})); };
    EXPECT_EQ(of(L"Min", 7) + of(L"max", L"x") + of(L"MAX", Value{}) + of(L"Min", Value::null()), L"7&xNull");
    EXPECT_EQ(of(L"Min", numbers) + of(L"max", numbers), L"13");
    EXPECT_EQ(of(L"max", table(VT_VARIANT, {{1, 2.5}, {L"a", L"A"}})) + of(L"Min", table(VT_VARIANT, {{1., 5}, {1, 7}})), L"a1#");
    EXPECT_EQ(of(L"AbsMin", list(VT_I4, {-5, 2, -1})) + of(L"AbsMax", list(VT_I4, {-5, 2, -1})), L"1&5&");
    EXPECT_EQ(of(L"AbsMin", -7) + of(L"AbsMax", -2.5) + of(L"AbsMin", L"-3") + of(L"AbsMax", L"4"), L"7&2.5#3#4#");
    const Value cube = array(VT_I2, {{1, 0}, {1, 0}, {1, 0}}, {1});
    for (const wchar_t* member : {L"Min", L"max", L"AbsMin", L"AbsMax"}) {
        EXPECT_EQ(common.call(member, {cube}).vt, VT_EMPTY);
        expect_failure(member, {array(VT_VARIANT, {{0, 0}}, {})}, 9, subscript);
        expect_failure(member, {array(VT_R8, {{0, 0}, {3, 0}}, {})}, 9, subscript);
        expect_failure(member, {list(VT_VARIANT, {1, numbers})}, 13, mismatch);
    }
    EXPECT_EQ(common.call(L"Min", {undimensioned}).vt, VT_ARRAY | VT_VARIANT);
    expect_failure(L"AbsMax", {undimensioned}, 13, mismatch);
    expect_failure(L"AbsMax", {L"text"}, 13, mismatch);
    expect_failure(L"AbsMin", {list(VT_I4, {1, -2147483647 - 1})}, 6, overflow);
}
