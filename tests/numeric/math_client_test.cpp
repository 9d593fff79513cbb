#include "support/message_box.h"
#include "support/tables.h"

using client::expect_error;
using client::Object;
using client::Outcome;
using client::table;
using client::told;
using client::Value;

namespace {

constexpr const wchar_t *mismatch = L"Type mismatch", *subscript = L"Subscript out of range", *overflow = L"Overflow",
                        *no_memory = L"Out of memory";

class Math : public testing::Test {
protected:
    std::wstring product(const Value& left, const Value& right) const
    {
        const Value result = math.call(L"MMult", {left, right});
        EXPECT_EQ(result.vt, VT_ARRAY | VT_R8);
        return told(result);
    }
    void expect_no_product(const Value& left, const Value& right, long number, const wchar_t* text) const
    {
        SCOPED_TRACE(testing::Message() << left.vt << " " << right.vt);
        expect_error(math.try_call(L"MMult", {left, right}), number, text);
    }
    /// What a call comes to that tells the user of columns without rows.
    Outcome told_of_mismatch(const Value& left, const Value& right) const
    {
        MessageBoxCatcher box;
        Outcome outcome = math.try_call(L"MMult", {left, right});
        EXPECT_TRUE(box.caught());
        EXPECT_EQ(box.caption, L"Fehler");
        EXPECT_EQ(box.text, L"Fehler qvO102. Bitte informieren Sie den Hersteller!");
        EXPECT_EQ(box.icon, 32513);
        EXPECT_EQ(box.buttons, 1);
        return outcome;
    }

    client::Apartment apartment;
    Object math = Object::create(L"qvObjects.qvMath");
    Value two_by_three = table(VT_R8, 5, -1, {{1, 2, 3}, {4, 5, 6}});
    Value three_by_two = table(VT_I2, 1, 0, {{1, 0}, {0, 1}, {10, 100}});
    Value list = Value::of_type(VT_ARRAY | VT_R8), undimensioned = Value::of_type(VT_ARRAY | VT_R8);

    Math() { list.parray = SafeArrayCreateVector(VT_R8, 0, 2); }
};

TEST_F(Math, MMultTakesTablesOfAnyTypeAndBounds)
{
    constexpr const wchar_t* expected = L"5,0: (31 302) (64 605)";
    EXPECT_EQ(product(two_by_three, three_by_two), expected);
    EXPECT_EQ(product(Value::variable(two_by_three), Value::reference(VT_ARRAY | VT_I2, &three_by_two.parray)), expected);
    EXPECT_EQ(told(two_by_three), L"5,-1: (1 2 3) (4 5 6)");
    EXPECT_EQ(product(two_by_three, table(VT_BSTR, 7, 0, {{1, 0}, {0, 1}, {10, 100}})), expected);
    EXPECT_EQ(product(table(VT_VARIANT, 5, 3, {{L"1", 2., short{3}}, {4, 5, 6}}), three_by_two), expected);
    EXPECT_EQ(product(two_by_three, 2), L"5,-1: (2 4 6) (8 10 12)");
    EXPECT_EQ(product(short{-1}, three_by_two), L"1,0: (-1 0) (0 -1) (-10 -100)");
    EXPECT_EQ(product(L"2", two_by_three), L"5,-1: (2 4 6) (8 10 12)");
}

TEST_F(Math, MMultOfNumbersIsTheirPlainProduct)
{
    const Value six = math.call(L"MMult", {short{2}, short{3}});
    EXPECT_EQ(six.vt, VT_I2);
    EXPECT_EQ(six.number(), 6);
    EXPECT_EQ(math.call(L"MMult", {30000, 300000}).vt, VT_R8);
    EXPECT_EQ(math.call(L"MMult", {L"2", 3}).number(), 6);
    EXPECT_EQ(math.call(L"MMult", {Value::null(), 3}).vt, VT_NULL);
    double number = 2.5;
    EXPECT_EQ(math.call(L"MMult", {Value::reference(VT_R8, &number), 2}).number(), 5);
    EXPECT_EQ(number, 2.5);

    const Object two = Object::create(L"qvObjects.qvIniFile").object(L"Section", {L"s"}).object(L"Parameter", {L"p"});
    two.put(L"Value", {2});
    EXPECT_EQ(math.call(L"MMult", {two, 3}).number(), 6);
    EXPECT_EQ(product(two, three_by_two), L"1,0: (2 0) (0 2) (20 200)");
    EXPECT_EQ(product(table(VT_DISPATCH, 0, 0, {{two, two}}), table(VT_R8, 0, 0, {{1}, {.5}})), L"0,0: (3)");
}

TEST_F(Math, MMultRaisesWhatItCannotDo)
{
    expect_no_product(list, two_by_three, 9, subscript);
    expect_no_product(2, list, 9, subscript);
    expect_no_product(undimensioned, two_by_three, 9, subscript);
    expect_no_product(L"x", 2, 13, mismatch);
    expect_no_product(table(VT_BSTR, 0, 0, {{L"x"}}), 2, 13, mismatch);
    expect_no_product(math, 2, 13, mismatch);
    expect_no_product(table(VT_R8, 0, 0, {{1e200, 1}}), table(VT_R8, 0, 0, {{1e200}, {1}}), 6, overflow);
    expect_no_product(table(VT_R8, 0, 0, {{1e308, 1e308}}), table(VT_I4, 0, 0, {{1}, {1}}), 6, overflow);
    expect_no_product(1e200, table(VT_R8, 0, 0, {{1e200}}), 6, overflow);
    expect_no_product(1e200, 1e200, 6, overflow);
    expect_no_product(table(VT_VARIANT, 0, 0, {{Value::null()}}), table(VT_R8, 0, 0, {{1}}), 94, L"Invalid use of Null");
    expect_no_product(Value::null(), two_by_three, 94, L"Invalid use of Null");
    const std::vector<std::vector<Value>> long_row{std::vector<Value>(60000, 1)};
    expect_no_product(math.call(L"Transpose", {table(VT_I2, 0, 0, long_row)}), table(VT_I2, 0, 0, long_row), 7, no_memory);
}

TEST_F(Math, MMultTellsOfColumnsWithoutRows)
{
    expect_error(told_of_mismatch(two_by_three, two_by_three), 9, subscript);
    expect_error(told_of_mismatch(table(VT_R8, 0, 0, {{1e200, 1}}), table(VT_R8, 0, 0, {{1e200}})), 6, overflow); // comes first
    EXPECT_EQ(told(told_of_mismatch(three_by_two, three_by_two).value), L"1,0: (1 0) (0 1) (10 100)");
}

TEST_F(Math, TransposeKeepsTypeAndBounds)
{
    Value names = table(VT_BSTR, 1, 0, {{L"a", L"b", L"c"}, {L"d", L"", L"f"}});
    const Value result = math.call(L"Transpose", {Value::variable(names)});
    EXPECT_EQ(result.vt, VT_ARRAY | VT_BSTR);
    EXPECT_EQ(told(result), L"0,1: (a d) (b ) (c f)");
    EXPECT_EQ(told(names), L"1,0: (a b c) (d  f)");
    for (const VARTYPE type : std::vector<VARTYPE>{VT_I2, VT_I4, VT_R4, VT_R8, VT_CY, VT_VARIANT, VT_UI1}) {
        Value numbers = table(type, -3, 1, {{1, 2, 3}});
        const Value column = math.call(L"Transpose", {Value::reference(VT_ARRAY | type, &numbers.parray)});
        EXPECT_EQ(column.vt, VT_ARRAY | type);
        EXPECT_EQ(told(column), L"1,-3: (1) (2) (3)");
    }
    EXPECT_EQ(told(math.call(L"Transpose", {table(VT_VARIANT, 0, 0, {{L"x", 1}})})), L"0,0: (x) (1)");

    EXPECT_EQ(math.call(L"Transpose", {table(VT_DISPATCH, 0, 0, {{math}})}).vt, VT_EMPTY);
    for (const Value& other : {Value{5}, Value{L"text"}, Value{}, Value{math}})
        EXPECT_EQ(math.call(L"Transpose", {other}).vt, VT_EMPTY);
    expect_error(math.try_call(L"Transpose", {list}), 9, subscript);
    expect_error(math.try_call(L"Transpose", {undimensioned}), 9, subscript);
}

} // namespace
