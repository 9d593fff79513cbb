#include "numeric/client_fixture.h"

using client::list;
using client::Outcome;
using client::table;
using client::told;
using client::Value;

namespace {

class Math : public NumericClient {
protected:
    std::wstring product(const Value& left, const Value& right) const { return told(math.call(L"MMult", {left, right})); }

    /// What a call comes to that tells the user of columns without rows.
    Outcome told_of_mismatch(const Value& left, const Value& right) const
    {
        MessageBoxCatcher box;
        Outcome outcome = math.try_call(L"MMult", {left, right});
        expect_box(box, L"Fehler", L"Fehler qvO102. Bitte informieren Sie den Hersteller!", 32513);
        return outcome;
    }

    Value two_by_three = table(VT_R8, 5, -1, {{1, 2, 3}, {4, 5, 6}});
    Value three_by_two = table(VT_I2, 1, 0, {{1, 0}, {0, 1}, {10, 100}});
};

TEST_F(Math, MMultTakesTablesAndNumbers)
{
    double number = 2.5;
    Thing two{2};
    Value narrow = Value::of_type(VT_I1); // as compilers pass a small number
    narrow.cVal = -2;
    const struct {
        Value left, right;
        const wchar_t* expected;
    } cases[]{{two_by_three, three_by_two, L"Double 5,0: (31 302)(64 605)"},
              {Value::variable(two_by_three), Value::reference(VT_ARRAY | VT_I2, &three_by_two.parray),
               L"Double 5,0: (31 302)(64 605)"},
              {table(VT_VARIANT, 5, 3, {{L"1", 2., short{3}}, {4, 5, 6}}), three_by_two, L"Double 5,0: (31 302)(64 605)"},
              {table(VT_DISPATCH, 0, 0, {{&two, &two}}), table(VT_R8, 0, 0, {{1}, {.5}}), L"Double 0,0: (3)"},
              {two_by_three, 2, L"Double 5,-1: (2 4 6)(8 10 12)"},
              {two_by_three, Value{narrow}, L"Double 5,-1: (-2 -4 -6)(-8 -10 -12)"},
              {table(VT_UI2, 0, 0, {{1, 2}}), table(VT_UI4, 0, 0, {{3}, {4}}), L"Double 0,0: (11)"},
              {L"2", two_by_three, L"Double 5,-1: (2 4 6)(8 10 12)"},
              {&two, three_by_two, L"Double 1,0: (2 0)(0 2)(20 200)"},
              {&two, 3, L"6&"},
              {short{2}, short{3}, L"6"},
              {30000, 300000, L"9000000000#"},
              {L"2", 3, L"6#"},
              {Value::null(), 3, L"Null"},
              {Value::reference(VT_R8, &number), 2, L"5#"}};
    for (const auto& [left, right, expected] : cases)
        EXPECT_EQ(product(left, right), expected);
    EXPECT_EQ(number, 2.5);
    EXPECT_EQ(told(two_by_three) + told(three_by_two), L"Double 5,-1: (1 2 3)(4 5 6)Integer 1,0: (1 0)(0 1)(10 100)");
}

TEST_F(Math, MMultRaisesWhatItCannotDo)
{
    const Value row = table(VT_I2, 0, 0, {std::vector<Value>(60000, 1)});
    const Value huge = table(VT_R8, 0, 0, {{1e200}}), no_number = table(VT_VARIANT, 0, 0, {{Value::null()}});
    const struct {
        Value left, right;
        Failure failure;
    } cases[]{{list(0, {1, 2}, VT_R8), two_by_three, subscript},
              {2, list(0, {1, 2}, VT_R8), subscript},
              {undimensioned, two_by_three, subscript},
              {L"x", 2, mismatch},
              {table(VT_BSTR, 0, 0, {{L"x"}}), 2, mismatch},
              {math, 2, mismatch},
              {table(VT_R8, 0, 0, {{1e200, 1}}), table(VT_R8, 0, 0, {{1e200}, {1}}), overflow},
              {table(VT_R8, 0, 0, {{1e308, 1e308}}), table(VT_I4, 0, 0, {{1}, {1}}), overflow},
              {1e200, huge, overflow},
              {1e200, 1e200, overflow},
              {no_number, huge, no_null},
              {Value::null(), two_by_three, no_null},
              {math.call(L"Transpose", {row}), row, no_memory}};
    for (const auto& [left, right, failure] : cases)
        expect_failure(math, L"MMult", {left, right}, failure);
}

TEST_F(Math, MMultTellsOfColumnsWithoutRows)
{
    expect_error(told_of_mismatch(two_by_three, two_by_three), subscript);
    const Outcome first = told_of_mismatch(table(VT_R8, 0, 0, {{1e200, 1}}), table(VT_R8, 0, 0, {{1e200}}));
    expect_error(first, overflow); // which comes before the row that is missing
    EXPECT_EQ(told(told_of_mismatch(three_by_two, three_by_two).value), L"Double 1,0: (1 0)(0 1)(10 100)");
}

TEST_F(Math, TransposeKeepsTypeAndBounds)
{
    Value names = table(VT_BSTR, 1, 0, {{L"a", L"b", L"c"}, {L"d", L"", L"f"}}), bytes = table(VT_UI1, -3, 1, {{1, 2, 3}});
    EXPECT_EQ(told(math.call(L"Transpose", {Value::variable(names)})), L"String 0,1: ('a' 'd')('b' '')('c' 'f')");
    EXPECT_EQ(told(names), L"String 1,0: ('a' 'b' 'c')('d' '' 'f')");
    EXPECT_EQ(told(math.call(L"Transpose", {Value::reference(VT_ARRAY | VT_UI1, &bytes.parray)})), L"Byte 1,-3: (1)(2)(3)");
    EXPECT_EQ(told(math.call(L"Transpose", {table(VT_VARIANT, 0, 0, {{L"x", 1}})})), L"Variant 0,0: ('x')(1&)");

    Thing thing;
    {
        const Value shared = math.call(L"Transpose", {table(VT_VARIANT, 0, 0, {{&thing, nothing}})});
        EXPECT_EQ(told(shared), L"Variant 0,0: (object)(nothing)");
        EXPECT_EQ(thing.holders(), 1);
    }
    EXPECT_EQ(thing.holders(), 0);

    for (const Value& other : {table(VT_DISPATCH, 0, 0, {{math}}), Value{5}, Value{L"text"}, Value{}, Value{math}})
        EXPECT_EQ(math.call(L"Transpose", {other}).vt, VT_EMPTY);
    for (const Value& other : {list(0, {1, 2}), undimensioned})
        expect_failure(math, L"Transpose", {other}, subscript);
}

} // namespace
