#include "support/dispatch_object.h"
#include "support/tables.h"

#include <cstring>
#include <optional>

using client::array;
using client::expect_error;
using client::Object;
using client::table;
using client::Value;

namespace {

constexpr const wchar_t *mismatch = L"Type mismatch", *subscript = L"Subscript out of range", *overflow = L"Overflow",
                        *no_memory = L"Out of memory", *invalid = L"Invalid procedure call or argument",
                        *locked = L"This array is fixed or temporarily locked", *no_null = L"Invalid use of Null";

/// An object of the client, with a default value or without one.
class Thing final : public DispatchObject {
public:
    explicit Thing(std::optional<Value> value = {})
        : DispatchObject{{}, [=](DISPID id, const DISPPARAMS&, VARIANT* result) mutable {
                             return id == DISPID_VALUE && value ? VariantCopy(result, &*value) : DISP_E_MEMBERNOTFOUND;
                         }}
    {
    }
    long holders() const { return references() - 1; }
};

std::wstring told_element(const Value& value)
{
    if (value.vt & VT_ARRAY)
        return L"array";
    switch (value.vt) {
    case VT_EMPTY:
        return L"-";
    case VT_NULL:
    case VT_ERROR:
        return L"none";
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return value.punkVal ? L"object" : L"nothing";
    case VT_BSTR:
        return L"'" + value.text() + L"'";
    default:
        Value text;
        EXPECT_EQ(VariantChangeTypeEx(&text, const_cast<Value*>(&value), 0x409, 0, VT_BSTR), S_OK); // with a decimal point
        return text.text();
    }
}

/// A table as text: the type of its elements, its bounds, its rows.
std::wstring shown(const Value& value)
{
    const SAFEARRAY* array = value.vt & VT_BYREF ? *value.pparray : value.parray;
    if (!(value.vt & VT_ARRAY) || !array || array->cDims != 2)
        return L"no table";
    const auto type = static_cast<VARTYPE>(value.vt & VT_TYPEMASK);
    const auto [column_count, first_column] = array->rgsabound[0];
    const auto [row_count, first_row] = array->rgsabound[1];
    const auto range = [](LONG first, ULONG count) {
        return std::to_wstring(first) + L".." + std::to_wstring(first + static_cast<LONG>(count) - 1);
    };
    std::wstring all = type == VT_VARIANT ? L"Variant" : type == VT_BSTR ? L"String" : type == VT_DISPATCH ? L"Object"
                     : type == VT_I4 ? L"Long" : type == VT_R8 ? L"Double" : std::to_wstring(type);
    all += L" " + range(first_row, row_count) + L", " + range(first_column, column_count) + L": ";
    for (ULONG row = 0; row < row_count; ++row) {
        all += L"(";
        for (ULONG column = 0; column < column_count; ++column) {
            const auto* place = static_cast<char*>(array->pvData) + (column * row_count + row) * array->cbElements;
            Value shared = Value::of_type(type);
            std::memcpy(type == VT_VARIANT ? static_cast<void*>(&shared) : &shared.lVal, place, array->cbElements);
            all += (column > 0 ? L" " : L"") + told_element(shared);
            shared.vt = VT_EMPTY;
        }
        all += L")";
    }
    return all;
}

class Tables : public testing::Test {
protected:
    using Arguments = std::initializer_list<Value>;

    void expect_failure(const wchar_t* member, Arguments arguments, long number, const wchar_t* text) const
    {
        SCOPED_TRACE(testing::Message() << member);
        expect_error(math.try_call(member, arguments), number, text);
    }
    std::wstring appended(Value matrix, const Value& vector) const
    {
        EXPECT_EQ(math.call(L"AddVektor", {Value::variable(matrix), vector}).vt, VT_EMPTY);
        return shown(matrix);
    }
    std::wstring checked(Value texts, long rows) const
    {
        EXPECT_EQ(math.call(L"CheckData", {Value::variable(texts)}).number(), rows);
        return shown(texts);
    }
    std::wstring checked(Value texts, Value objects, long rows) const
    {
        EXPECT_EQ(math.call(L"CheckData", {Value::variable(texts), Value::variable(objects)}).number(), rows);
        return shown(texts) + L" | " + shown(objects);
    }

    client::Apartment apartment;
    Object math = Object::create(L"qvObjects.qvMath");
    Value nothing{static_cast<IDispatch*>(nullptr)};
    Value undimensioned = Value::of_type(VT_ARRAY | VT_VARIANT);
};

} // namespace

TEST_F(Tables, NumbersToBaseCounts)
{
    const auto numbers = [&](int base, int digits, const Value& as_digits) {
        return shown(math.call(L"NumbersToBase", {base, digits, as_digits}));
    };
    EXPECT_EQ(shown(math.call(L"NumbersToBase", {2, 3})),
              L"Long 0..7, 0..2: (0 0 0)(0 0 1)(0 1 0)(0 1 1)(1 0 0)(1 0 1)(1 1 0)(1 1 1)");
    EXPECT_EQ(numbers(2, 3, false), L"Long 0..7, 1..1: (0)(1)(10)(11)(100)(101)(110)(111)");
    EXPECT_EQ(numbers(14, 1, false), L"Long 0..13, 1..1: (0)(1)(2)(3)(4)(5)(6)(7)(8)(9)(1)(1)(1)(1)");
    EXPECT_EQ(numbers(1, 2, true), L"Long 0..0, 0..1: (0 0)");
    EXPECT_EQ(numbers(-2, 2, true), L"Long 0..3, 0..1: (0 0)(0 1)(0 2)(0 3)");
    EXPECT_EQ(numbers(-2, 2, false), L"Long 0..3, 1..1: (0)(1)(2)(3)");

    for (const bool as_digits : {true, false}) {
        for (const auto& [base, digits] : {std::pair{2, 0}, {2, -1}, {0, 3}, {0, -1}, {-3, 3}})
            expect_failure(L"NumbersToBase", {base, digits, as_digits}, 9, subscript);
        for (const auto& [base, digits] : {std::pair{2, 32}, {46341, 2}, {-46341, 3}, {2147483647, 2147483647}})
            expect_failure(L"NumbersToBase", {base, digits, as_digits}, 6, overflow);
        expect_failure(L"NumbersToBase", {2147483647, 1, as_digits}, 7, no_memory);
    }
    expect_failure(L"NumbersToBase", {2, 11, false}, 6, overflow);
    expect_failure(L"NumbersToBase", {2, 25}, 7, no_memory);
    expect_failure(L"NumbersToBase", {2, 31}, 7, no_memory);
    expect_failure(L"NumbersToBase", {1, 2147483647}, 7, no_memory);
}

TEST_F(Tables, RoundDownCutsWhatTheUserReads)
{
    const auto rounded = [&](double number, int places) { return math.call(L"RoundDown", {number, places}).dblVal; };
    EXPECT_EQ(rounded(3.14159, 2), 3.14);
    EXPECT_EQ(rounded(-3.149, 2), -3.14);
    EXPECT_EQ(rounded(.1 + .2, 20), .3) << "the text has 15 digits";
    EXPECT_EQ(rounded(1.99, 0) + rounded(1.99, -1), 2);
    EXPECT_EQ(rounded(1234.5, -2), 123);
    EXPECT_EQ(rounded(5, 2), 5);
    EXPECT_EQ(rounded(1e100, -99), 1e100);
    expect_failure(L"RoundDown", {1.5, -2}, 13, mismatch);
    expect_failure(L"RoundDown", {-1.5, -2}, 13, mismatch);
    expect_failure(L"RoundDown", {1.5e100, 3}, 13, mismatch); // the exponent is cut
    expect_failure(L"RoundDown", {1.5, -3}, 5, invalid);
    expect_failure(L"RoundDown", {1.5, 2147483647}, 6, overflow);
}

TEST_F(Tables, AddVektorAppendsColumns)
{
    const Value matrix = table(VT_VARIANT, 1, 1, {{1, 2}, {3, L"\u00e4\u00f6"}, {5, 6}});
    EXPECT_EQ(appended(matrix, table(VT_R8, 1, 1, {{.5}, {1.5}, {2.5}})),
              L"Variant 1..3, 1..3: (1 2 0.5)(3 '\u00e4\u00f6' 1.5)(5 6 2.5)");
    EXPECT_EQ(appended(matrix, table(VT_BSTR, 1, 0, {{L"a", L"b"}, {L"c", L"\u00fc"}})),
              L"Variant 1..3, 1..4: (1 2 'b' -)(3 '\u00e4\u00f6' '\u00fc' -)(5 6 - -)")
        << "the columns count from 1, and the last row is missing";
    EXPECT_EQ(appended(table(VT_VARIANT, 5, -1, {{1}, {2}}), table(VT_I4, 1, -3, {{7, 8}, {9, 10}})),
              L"Variant 5..6, -1..1: (1 7 8)(2 9 10)")
        << "the offset of the rows moves the columns too";
    EXPECT_EQ(appended(table(VT_VARIANT, 5, -1, {{1}, {2}}), table(VT_I4, 1, 1, {{7}, {8}})), L"Variant 5..6, -1..0: (1 -)(2 -)");

    Value itself = table(VT_VARIANT, 1, 0, {{1, L"x"}});
    math.call(L"AddVektor", {Value::variable(itself), Value::variable(itself)});
    EXPECT_EQ(shown(itself), L"Variant 1..1, 0..3: (1 'x' 'x' -)");
    Value nested = table(VT_VARIANT, 1, 1, {{table(VT_I4, 1, 1, {{7}})}, {1}});
    auto* cell = static_cast<VARIANT*>(nested.parray->pvData);
    math.call(L"AddVektor", {Value::variable(nested), Value::variable(*cell)});
    cell = static_cast<VARIANT*>(nested.parray->pvData);
    EXPECT_EQ(cell[2].lVal, 7) << "a cell that moves when the table grows";

    // What can't be read leaves the new column empty.
    SAFEARRAYBOUND line{3, 1};
    Value list = Value::of_type(VT_ARRAY | VT_I4);
    list.parray = SafeArrayCreate(VT_I4, 1, &line);
    for (const Value& other : {list, Value{5}, Value{}, undimensioned, nothing})
        EXPECT_EQ(appended(table(VT_VARIANT, 1, 1, {{1}}), other), L"Variant 1..1, 1..2: (1 -)");
    EXPECT_EQ(appended(table(VT_VARIANT, 1, 1, {{1}}), table(VT_I4, 1, 1, {{}})), L"Variant 1..1, 1..1: (1)");
    EXPECT_EQ(appended(table(VT_VARIANT, 0, 0, {{}, {}}), table(VT_I4, 0, 1, {{7}, {8}})), L"Variant 0..1, 0..0: (7)(8)");
}

TEST_F(Tables, AddVektorKeepsTheTypeOfATypedTable)
{
    Value longs = table(VT_I4, 0, 0, {{1}, {2}, {3}, {4}});
    Thing five{5}, plain;
    const Value vector = table(VT_VARIANT, 0, 1, {{L"7"}, {L"none"}, {&five}, {&plain}});
    math.call(L"AddVektor", {Value::reference(VT_ARRAY | VT_I4, &longs.parray), vector});
    EXPECT_EQ(shown(longs), L"Long 0..3, 0..1: (1 7)(2 0)(3 5)(4 0)");
    Value texts = table(VT_BSTR, 0, 0, {{L"\u00e4"}, {L""}});
    math.call(L"AddVektor",
              {Value::reference(VT_ARRAY | VT_BSTR, &texts.parray), table(VT_VARIANT, 0, 1, {{Value::null()}, {7}})});
    EXPECT_EQ(shown(texts), L"String 0..1, 0..1: ('\u00e4' '')('' '7')");
}

TEST_F(Tables, AddVektorLeavesAloneWhatCannotGrow)
{
    const Value vector = table(VT_I4, 1, 1, {{7}});
    Value matrix = table(VT_VARIANT, 1, 1, {{1}});
    SafeArrayLock(matrix.parray);
    math.call(L"AddVektor", {Value::variable(matrix), vector});
    SafeArrayUnlock(matrix.parray);
    matrix.parray->fFeatures |= FADF_STATIC;
    math.call(L"AddVektor", {Value::reference(VT_ARRAY | VT_VARIANT, &matrix.parray), vector});
    matrix.parray->fFeatures &= static_cast<USHORT>(~FADF_STATIC);
    EXPECT_EQ(shown(matrix), L"Variant 1..1, 1..1: (1)");
    EXPECT_EQ(appended(table(VT_VARIANT, 1, 2147483647, {{1}}), vector), L"Variant 1..1, 2147483647..2147483647: (1)");
    // So many columns of so many rows that their size wraps around.
    Value wide = array(VT_UI1, {{0, 1}, {0x0CCCCCCC, 1}}, {});
    Value tall = table(VT_VARIANT, 1, 1, std::vector<std::vector<Value>>(40, {1}));
    EXPECT_EQ(appended(tall, wide).substr(0, 20), L"Variant 1..40, 1..1:");
    Value number = 5;
    for (Value* other : {&number, &undimensioned})
        EXPECT_EQ(appended(*other, vector), L"no table");
}

TEST_F(Tables, AddVektorSharesObjects)
{
    Thing first, second;
    {
        Value matrix = table(VT_VARIANT, 1, 1, {{&first}, {nothing}});
        const Value vector = table(VT_DISPATCH, 1, 1, {{&second}, {&first}});
        math.call(L"AddVektor", {Value::variable(matrix), vector});
        EXPECT_EQ(shown(matrix), L"Variant 1..2, 1..2: (object object)(nothing object)");
        EXPECT_EQ(first.holders(), 3);
        EXPECT_EQ(second.holders(), 2);
    }
    EXPECT_EQ(first.holders() + second.holders(), 0);
}

TEST_F(Tables, CheckDataKeepsRowsWithTexts)
{
    EXPECT_EQ(checked(table(VT_VARIANT, 1, -1, {{L"", L"\u00e4"}, {L"", Value{}}, {0, L""}, {Value{}, L""}}), 2),
              L"String 0..1, 0..1: ('' '\u00e4')('0' '')");
    EXPECT_EQ(checked(table(VT_BSTR, 7, 7, {{L""}, {L"x"}}), 1), L"String 0..0, 0..0: ('x')");
    EXPECT_EQ(checked(table(VT_I4, 0, 0, {{0, 1}}), 1), L"String 0..0, 0..1: ('0' '1')");
    EXPECT_EQ(checked(table(VT_VARIANT, 0, 0, {{L"", L""}, {L"", Value{}}}), 0), L"String 0..0, 0..1: ('' '')");
    EXPECT_EQ(checked(array(VT_VARIANT, {{0, 5}, {2, 5}}, {}), 0), L"String 0..0, 0..1: ('' '')");
    Thing valued{L"v"}, blank{L""};
    EXPECT_EQ(checked(table(VT_VARIANT, 0, 0, {{&blank}, {&valued}}), 1), L"String 0..0, 0..0: ('v')");
}

TEST_F(Tables, CheckDataKeepsObjectsWithTheirTexts)
{
    Thing plain, valued{L"v"}, blank{L""};
    const Value texts = table(VT_VARIANT, 1, 1, {{L"a"}, {L""}, {L"c"}, {L""}, {L""}, {L""}});
    const std::vector<std::vector<Value>> objects{{&blank, nothing},   {nothing, &blank}, {&plain, &plain},
                                                  {nothing, &valued}, {nothing, &plain}, {nothing, nothing}};
    for (const VARTYPE type : {VT_VARIANT, VT_DISPATCH, VT_UNKNOWN})
        EXPECT_EQ(checked(texts, table(type, 1, 3, objects), 4),
                  L"String 0..3, 0..0: ('a')('c')('')('') | "
                  L"Object 0..3, 0..1: (object nothing)(object object)(nothing object)(nothing object)");
    EXPECT_EQ(checked(table(VT_BSTR, 0, 0, {{L""}, {L""}}), table(VT_DISPATCH, 0, 0, {{nothing}, {&blank}}), 0),
              L"String 0..0, 0..0: ('') | Object 0..0, 0..0: (object)")
        << "the last row stays";
}

TEST_F(Tables, CheckDataKeepsTheTypeOfTypedTables)
{
    Thing plain, blank{L""};
    Value texts = table(VT_BSTR, 1, 1, {{L""}, {L"\u00fc"}}), objects = table(VT_DISPATCH, 1, 1, {{&blank}, {&plain}});
    EXPECT_EQ(math.call(L"CheckData", {Value::reference(VT_ARRAY | VT_BSTR, &texts.parray),
                                       Value::reference(VT_ARRAY | VT_DISPATCH, &objects.parray)}).number(), 1);
    EXPECT_EQ(shown(texts) + shown(objects), L"String 0..0, 0..0: ('\u00fc')Object 0..0, 0..0: (object)");
    EXPECT_EQ(blank.holders(), 0);
    EXPECT_EQ(plain.holders(), 1);
    Value mixed = table(VT_VARIANT, 1, 1, {{L""}, {5}}), things = table(VT_VARIANT, 1, 1, {{nothing}, {&plain}});
    EXPECT_EQ(math.call(L"CheckData", {Value::reference(VT_ARRAY | VT_VARIANT, &mixed.parray),
                                       Value::reference(VT_ARRAY | VT_VARIANT, &things.parray)}).number(), 1);
    EXPECT_EQ(shown(mixed) + shown(things), L"Variant 0..0, 0..0: ('5')Variant 0..0, 0..0: (object)");
}

TEST_F(Tables, CheckDataLosesNothingWhenItFails)
{
    Thing plain;
    const Value texts = table(VT_VARIANT, 1, 1, {{L""}, {L"x"}}), objects = table(VT_VARIANT, 1, 1, {{nothing}, {&plain}});
    const auto fails = [&](Value first, Value second, long number, const wchar_t* text) {
        const std::wstring before = shown(first) + shown(second);
        expect_failure(L"CheckData", {Value::variable(first), Value::variable(second)}, number, text);
        EXPECT_EQ(shown(first) + shown(second), before);
    };
    fails(table(VT_VARIANT, 1, 1, {{L"x"}, {Value::null()}}), objects, 94, no_null);
    fails(table(VT_VARIANT, 1, 1, {{L"x"}, {Value::of_type(VT_ERROR)}}), objects, 13, mismatch);
    fails(table(VT_VARIANT, 1, 1, {{L"x"}, {&plain}}), objects, 13, mismatch);
    fails(table(VT_VARIANT, 1, 1, {{L"x"}, {texts}}), objects, 13, mismatch);
    fails(texts, table(VT_VARIANT, 1, 1, {{nothing}, {5}}), 13, mismatch);
    fails(texts, table(VT_VARIANT, 1, 1, {{Value{}}, {nothing}}), 13, mismatch);
    fails(texts, table(VT_DISPATCH, 0, 1, {{&plain}, {&plain}}), 9, subscript);
    fails(texts, table(VT_VARIANT, 1, 1, {{}, {}}), 9, subscript);
    fails(table(VT_VARIANT, 1, 1, {{}, {}}), objects, 9, subscript);
    fails(undimensioned, objects, 9, subscript);
    fails(texts, undimensioned, 9, subscript);
    fails(5, objects, 13, mismatch);
    fails(texts, nothing, 13, mismatch);
    expect_failure(L"CheckData", {L"text"}, 13, mismatch);

    // An array that can't be replaced: neither is.
    Value first = texts, second = objects;
    for (Value* held : {&first, &second}) {
        SafeArrayLock(held->parray);
        expect_failure(L"CheckData", {Value::variable(first), Value::variable(second)}, 10, locked);
        SafeArrayUnlock(held->parray);
    }
    second.parray->fFeatures |= FADF_FIXEDSIZE;
    expect_failure(L"CheckData", {Value::variable(first), Value::reference(VT_ARRAY | VT_VARIANT, &second.parray)}, 10, locked);
    second.parray->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
    EXPECT_EQ(shown(first) + shown(second), shown(texts) + shown(objects));
}
