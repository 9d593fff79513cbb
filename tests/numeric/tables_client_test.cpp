#include "numeric/client_fixture.h"

using client::array;
using client::list;
using client::table;
using client::told;
using client::Value;

namespace {

class Tables : public NumericClient {
protected:
    /// The table with the new columns. Scripts pass Variants; compiled clients pass variables of the table's own type.
    std::wstring appended(Value matrix, const Value& vector, bool typed = false) const
    {
        const Value variable = typed ? Value::reference(matrix.vt, &matrix.parray) : Value::variable(matrix);
        EXPECT_EQ(math.call(L"AddVektor", {variable, vector}).vt, VT_EMPTY);
        return told(matrix);
    }
    /// How many rows are kept, and which.
    std::wstring checked(Value texts) const
    {
        const std::wstring rows = told(math.call(L"CheckData", {Value::variable(texts)}));
        return rows + L" " + told(texts);
    }
    std::wstring checked(Value texts, Value objects, bool typed = false) const
    {
        const auto variable = [&](Value& value) {
            return typed ? Value::reference(value.vt, &value.parray) : Value::variable(value);
        };
        const std::wstring rows = told(math.call(L"CheckData", {variable(texts), variable(objects)}));
        return rows + L" " + told(texts) + L" " + told(objects);
    }
};

} // namespace

TEST_F(Tables, NumbersToBaseCounts)
{
    const auto numbers = [&](int base, int digits, const Value& as_digits) {
        return told(math.call(L"NumbersToBase", {base, digits, as_digits}));
    };
    EXPECT_EQ(told(math.call(L"NumbersToBase", {2, 3})), L"Long 0,0: (0 0 0)(0 0 1)(0 1 0)(0 1 1)(1 0 0)(1 0 1)(1 1 0)(1 1 1)");
    EXPECT_EQ(numbers(2, 3, false), L"Long 0,1: (0)(1)(10)(11)(100)(101)(110)(111)");
    EXPECT_EQ(numbers(1, 2, true), L"Long 0,0: (0 0)");
    EXPECT_EQ(numbers(-2, 2, false), L"Long 0,1: (0)(1)(2)(3)");

    for (const bool as_digits : {true, false}) {
        for (const auto& [base, digits] : {std::pair{2, 0}, {2, -1}, {0, 3}, {0, -1}, {-3, 3}})
            expect_failure(math, L"NumbersToBase", {base, digits, as_digits}, subscript);
        for (const auto& [base, digits] : {std::pair{2, 32}, {46341, 2}, {-46341, 3}, {2147483647, 2147483647}})
            expect_failure(math, L"NumbersToBase", {base, digits, as_digits}, overflow);
        expect_failure(math, L"NumbersToBase", {2147483647, 1, as_digits}, no_memory);
    }
    expect_failure(math, L"NumbersToBase", {2, 11, false}, overflow);
    for (const auto& [base, digits] : {std::pair{2, 25}, {2, 31}, {1, 2147483647}})
        expect_failure(math, L"NumbersToBase", {base, digits}, no_memory);
}

TEST_F(Tables, RoundDownCutsWhatTheUserReads)
{
    const struct {
        double number;
        int places;
        double expected;
    } cases[]{{3.14159, 2, 3.14}, {-3.149, 2, -3.14}, {.1 + .2, 20, .3}, // whose text has 15 digits
              {1.99, 0, 1}, {1.99, -1, 1}, {1234.5, -2, 123}, {5, 2, 5}, {1e100, -99, 1e100}};
    for (const auto& [number, places, expected] : cases)
        EXPECT_EQ(math.call(L"RoundDown", {number, places}).dblVal, expected) << number << " to " << places;
    for (const auto& [number, places] : {std::pair{1.5, -2}, {-1.5, -2}, {1.5e100, 3}}) // the exponent is cut
        expect_failure(math, L"RoundDown", {number, places}, mismatch);
    expect_failure(math, L"RoundDown", {1.5, -3}, invalid_call);
    expect_failure(math, L"RoundDown", {1.5, 2147483647}, overflow);
}

TEST_F(Tables, AddVektorAppendsColumns)
{
    const Value matrix = table(VT_VARIANT, 1, 1, {{1, 2}, {3, L"\u00e4\u00f6"}, {5, 6}});
    EXPECT_EQ(appended(matrix, table(VT_R8, 1, 1, {{.5}, {1.5}, {2.5}})),
              L"Variant 1,1: (1& 2& 0.5#)(3& '\u00e4\u00f6' 1.5#)(5& 6& 2.5#)");
    EXPECT_EQ(appended(matrix, table(VT_BSTR, 1, 0, {{L"a", L"b"}, {L"c", L"\u00fc"}})),
              L"Variant 1,1: (1& 2& 'b' -)(3& '\u00e4\u00f6' '\u00fc' -)(5& 6& - -)")
        << "the columns count from 1, and the last row is missing";
    const Value five = table(VT_VARIANT, 5, -1, {{1}, {2}});
    EXPECT_EQ(appended(five, table(VT_I4, 1, -3, {{7, 8}, {9, 10}})), L"Variant 5,-1: (1& 7& 8&)(2& 9& 10&)")
        << "the offset of the rows moves the columns too";
    EXPECT_EQ(appended(five, table(VT_I4, 1, 1, {{7}, {8}})), L"Variant 5,-1: (1& -)(2& -)");

    Value itself = table(VT_VARIANT, 1, 0, {{1, L"x"}});
    math.call(L"AddVektor", {Value::variable(itself), Value::variable(itself)});
    EXPECT_EQ(told(itself), L"Variant 1,0: (1& 'x' 'x' -)");
    Value nested = table(VT_VARIANT, 1, 1, {{table(VT_I4, 1, 1, {{7}})}, {1}});
    math.call(L"AddVektor", {Value::variable(nested), Value::variable(*static_cast<VARIANT*>(nested.parray->pvData))});
    EXPECT_EQ(static_cast<VARIANT*>(nested.parray->pvData)[2].lVal, 7) << "a cell that moves when the table grows";

    // What can't be read leaves the new column empty.
    const Value one = table(VT_VARIANT, 1, 1, {{1}});
    for (const Value& other : {list(1, {1, 2, 3}, VT_I4), Value{5}, Value{}, undimensioned, nothing})
        EXPECT_EQ(appended(one, other), L"Variant 1,1: (1& -)");
    EXPECT_EQ(appended(one, table(VT_I4, 1, 1, {{}})), L"Variant 1,1: (1&)");
    EXPECT_EQ(appended(table(VT_VARIANT, 0, 0, {{}, {}}), table(VT_I4, 0, 1, {{7}, {8}})), L"Variant 0,0: (7&)(8&)");
}

TEST_F(Tables, AddVektorKeepsTheTypeOfATypedTable)
{
    Thing five{5}, plain;
    const Value many = table(VT_VARIANT, 0, 1, {{L"7"}, {L"none"}, {&five}, {&plain}});
    EXPECT_EQ(appended(table(VT_I4, 0, 0, {{1}, {2}, {3}, {4}}), many, true), L"Long 0,0: (1 7)(2 0)(3 5)(4 0)");
    EXPECT_EQ(appended(table(VT_BSTR, 0, 0, {{L"\u00e4"}, {L""}}), table(VT_VARIANT, 0, 1, {{Value::null()}, {7}}), true),
              L"String 0,0: ('\u00e4' '')('' '7')");
}

TEST_F(Tables, AddVektorLeavesAloneWhatCannotGrow)
{
    const Value vector = table(VT_I4, 1, 1, {{7}});
    Value matrix = table(VT_VARIANT, 1, 1, {{1}});
    SafeArrayLock(matrix.parray);
    math.call(L"AddVektor", {Value::variable(matrix), vector});
    SafeArrayUnlock(matrix.parray);
    matrix.parray->fFeatures |= FADF_STATIC;
    math.call(L"AddVektor", {Value::reference(matrix.vt, &matrix.parray), vector});
    matrix.parray->fFeatures &= static_cast<USHORT>(~FADF_STATIC);
    EXPECT_EQ(told(matrix), L"Variant 1,1: (1&)");
    EXPECT_EQ(appended(table(VT_VARIANT, 1, 2147483647, {{1}}), vector), L"Variant 1,2147483647: (1&)");
    // So many columns of so many rows that their size wraps around.
    const Value wide = array(VT_UI1, {{0, 1}, {0x0CCCCCCC, 1}}, {});
    const Value tall = table(VT_VARIANT, 1, 1, std::vector<std::vector<Value>>(40, {1}));
    EXPECT_EQ(appended(tall, wide), told(tall));
    EXPECT_EQ(appended(5, vector), L"5&");
    EXPECT_EQ(math.call(L"AddVektor", {Value::variable(undimensioned), vector}).vt, VT_EMPTY);
    EXPECT_EQ(undimensioned.parray, nullptr);
}

TEST_F(Tables, AddVektorSharesObjects)
{
    Thing first, second;
    {
        Value matrix = table(VT_VARIANT, 1, 1, {{&first}, {nothing}});
        const Value vector = table(VT_DISPATCH, 1, 1, {{&second}, {&first}});
        math.call(L"AddVektor", {Value::variable(matrix), vector});
        EXPECT_EQ(told(matrix), L"Variant 1,1: (object object)(nothing object)");
        EXPECT_EQ(first.holders(), 3);
        EXPECT_EQ(second.holders(), 2);
    }
    EXPECT_EQ(first.holders() + second.holders(), 0);
}

TEST_F(Tables, CheckDataKeepsRowsWithTexts)
{
    EXPECT_EQ(checked(table(VT_VARIANT, 1, -1, {{L"", L"\u00e4"}, {L"", Value{}}, {0, L""}, {Value{}, L""}})),
              L"2& String 0,0: ('' '\u00e4')('0' '')");
    EXPECT_EQ(checked(table(VT_BSTR, 7, 7, {{L""}, {L"x"}})), L"1& String 0,0: ('x')");
    EXPECT_EQ(checked(table(VT_VARIANT, 0, 0, {{L"", L""}, {L"", Value{}}})), L"0& String 0,0: ('' '')");
    EXPECT_EQ(checked(array(VT_VARIANT, {{0, 5}, {2, 5}}, {})), L"0& String 0,0: ('' '')");
    Thing valued{L"v"}, blank{L""};
    EXPECT_EQ(checked(table(VT_VARIANT, 0, 0, {{&blank}, {&valued}})), L"1& String 0,0: ('v')");
}

TEST_F(Tables, CheckDataKeepsObjectsWithTheirTexts)
{
    Thing plain, valued{L"v"}, blank{L""};
    const Value texts = table(VT_VARIANT, 1, 1, {{L"a"}, {L""}, {L"c"}, {L""}, {L""}, {L""}});
    const std::vector<std::vector<Value>> objects{{&blank, nothing},   {nothing, &blank}, {&plain, &plain},
                                                  {nothing, &valued}, {nothing, &plain}, {nothing, nothing}};
    for (const VARTYPE type : {VT_VARIANT, VT_DISPATCH, VT_UNKNOWN})
        EXPECT_EQ(checked(texts, table(type, 1, 3, objects)),
                  L"4& String 0,0: ('a')('c')('')('') "
                  L"Object 0,0: (object nothing)(object object)(nothing object)(nothing object)");
    EXPECT_EQ(checked(table(VT_BSTR, 0, 0, {{L""}, {L""}}), table(VT_DISPATCH, 0, 0, {{nothing}, {&blank}})),
              L"0& String 0,0: ('') Object 0,0: (object)")
        << "the last row stays";
}

TEST_F(Tables, CheckDataKeepsTheTypeOfTypedTables)
{
    Thing plain, blank{L""};
    const Value objects = table(VT_VARIANT, 1, 1, {{nothing}, {&plain}});
    EXPECT_EQ(checked(table(VT_BSTR, 1, 1, {{L""}, {L"\u00fc"}}), table(VT_DISPATCH, 1, 1, {{&blank}, {&plain}}), true),
              L"1& String 0,0: ('\u00fc') Object 0,0: (object)");
    EXPECT_EQ(checked(table(VT_VARIANT, 1, 1, {{L""}, {5}}), objects, true), L"1& Variant 0,0: ('5') Variant 0,0: (object)");
    EXPECT_EQ(blank.holders(), 0);
    EXPECT_EQ(plain.holders(), 1) << "only the table that was passed here";
}

TEST_F(Tables, CheckDataNeedsObjectsForRowsWithoutTextOnly)
{
    Thing plain;
    Value texts = table(VT_VARIANT, 1, 1, {{L"a"}, {L""}, {L"b"}}), objects = table(VT_VARIANT, 2, 1, {{&plain}});
    EXPECT_EQ(math.call(L"CheckData", {Value::variable(texts), Value::variable(objects)}).number(), 3);
    EXPECT_EQ(told(texts), L"String 0,0: ('a')('')('b')");
    EXPECT_EQ(told(objects), L"Object 0,0: (nothing)(object)(nothing)");
}

TEST_F(Tables, CheckDataLosesNothingWhenItFails)
{
    Thing plain;
    const Value texts = table(VT_VARIANT, 1, 1, {{L""}, {L"x"}}), objects = table(VT_VARIANT, 1, 1, {{nothing}, {&plain}});
    const auto beside_x = [](const Value& value) { return table(VT_VARIANT, 1, 1, {{L"x"}, {value}}); };
    const auto beside_nothing = [&](const Value& value) { return table(VT_VARIANT, 1, 1, {{nothing}, {value}}); };
    const struct {
        Value texts, objects;
        Failure failure;
    } cases[]{{beside_x(Value::null()), objects, no_null},
              {beside_x(Value::of_type(VT_ERROR)), objects, mismatch},
              {beside_x(&plain), objects, mismatch},
              {beside_x(texts), objects, mismatch},
              {texts, beside_nothing(5), mismatch},
              {texts, beside_nothing(Value{}), mismatch},
              {texts, table(VT_DISPATCH, 2, 1, {{&plain}, {&plain}}), subscript},
              {texts, table(VT_VARIANT, 1, 1, {{}, {}}), subscript},
              {table(VT_VARIANT, 1, 1, {{}, {}}), objects, subscript},
              {undimensioned, objects, subscript},
              {texts, undimensioned, subscript},
              {5, objects, mismatch},
              {texts, nothing, mismatch}};
    for (const auto& [before, objects_before, failure] : cases) {
        Value first = before, second = objects_before;
        expect_failure(math, L"CheckData", {Value::variable(first), Value::variable(second)}, failure);
        EXPECT_EQ(told(first) + told(second), told(before) + told(objects_before));
    }
    expect_failure(math, L"CheckData", {L"text"}, mismatch);

    // An array that can't be replaced: neither is.
    Value first = texts, second = objects;
    for (Value* held : {&first, &second}) {
        SafeArrayLock(held->parray);
        expect_failure(math, L"CheckData", {Value::variable(first), Value::variable(second)}, locked);
        SafeArrayUnlock(held->parray);
    }
    second.parray->fFeatures |= FADF_FIXEDSIZE;
    expect_failure(math, L"CheckData", {Value::variable(first), Value::reference(VT_ARRAY | VT_VARIANT, &second.parray)}, locked);
    second.parray->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
    EXPECT_EQ(told(first) + told(second), told(texts) + told(objects));
}
