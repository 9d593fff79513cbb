#include "numeric/client_fixture.h"

using client::array;
using client::list;
using client::Object;
using client::table;
using client::told;
using client::Value;

namespace {

/// A table of one column.
Value column(VARTYPE type, LONG first_row, LONG index, const std::vector<Value>& values)
{
    return array(type, {{static_cast<ULONG>(values.size()), first_row}, {1, index}}, values);
}

class Smoothing : public NumericClient {
protected:
    std::wstring averages(const Value& r, int mode, int width) const { return told(math.call(L"AvgDyn", {r, mode, width})); }
};

class Focus : public NumericClient {
protected:
    client::Outcome focus(const Value& koeff, bool with_basis, int mode = 0, int width = 0) const
    {
        return synthesis.try_call(L"CalcFocus", {basis, spectra, factors, koeff, with_basis, mode, width});
    }

    Object synthesis = Object::create(L"qvObjects.qvSyno");
    Value basis = table(VT_VARIANT, 1, 3, {{L"a", 9}, {5, 9}, {2.5, 9}, {L"4", 9}});
    Value spectra = table(VT_I2, 1, 0, {{1, 0}, {0, 1}, {1, 1}, {2, 1}});
    Value factors = table(VT_R8, 7, 1, {{1, 2}, {3, 4}});
};

} // namespace

TEST_F(Smoothing, AveragesColumnsOfAnyBounds)
{
    EXPECT_EQ(averages(column(VT_R8, 1, -1, {3, 6, 12, 24, 48, 96}), 1, 3), L"Double 1,-1: (3)(7)(14)(28)(45.6)(48)");
    const Value whole = table(VT_I2, 0, 0, {{9, 9}, {9, 6}, {9, 3}, {9, 9}, {9, 3}, {9, 6}, {9, 13}});
    EXPECT_EQ(averages(whole, 3, 2), L"Double 1,0: (0 6)(0 6)(0 5.4)(0 6.8)(0 7.4)(0 7)");
    Value texts = table(VT_VARIANT, -1, 1, {{L"x"}, {L"y"}, {L"2"}, {8}, {L"5"}, {true}});
    EXPECT_EQ(averages(Value::variable(texts), 2, 1), L"Double 1,1: (2)(5)(4)(3)");
    Value singles = column(VT_R4, 1, 1, {3, 6, 12, 24});
    EXPECT_EQ(averages(Value::reference(VT_ARRAY | VT_R4, &singles.parray), 2, 2), L"Double 1,1: (3)(11.25)(11.25)(14)");
    EXPECT_EQ(told(singles), L"Single 1,1: (3)(6)(12)(24)");
    EXPECT_EQ(averages(table(VT_UI1, 5, 2, {{1, 2}, {3, 4}}), 4, 1), L"Double 1,2: (0 0)(0 0)(0 0)(0 0)(0 0)(0 0)");
}

TEST_F(Smoothing, WithoutModeOrWidthTheInputComesBack)
{
    Value texts = table(VT_BSTR, 3, 3, {{L"a"}, {L"b"}});
    for (const auto& [mode, width] : {std::pair{0, 5}, {1, 0}}) {
        const Value same = math.call(L"AvgDyn", {Value::variable(texts), mode, width});
        EXPECT_EQ(told(same), L"String 3,3: ('a')('b')");
        EXPECT_NE(same.parray, texts.parray);
        EXPECT_EQ(averages(L"text", mode, width), L"'text'");
        EXPECT_EQ(math.call(L"AvgDyn", {undimensioned, mode, width}).vt, undimensioned.vt);
    }
}

TEST_F(Smoothing, RaisesWhatItCannotDo)
{
    const Value numbers = column(VT_I4, 1, 1, {1, 2, 3, 4});
    const struct {
        Value r;
        int mode, width;
        Failure failure;
    } cases[]{{5, 1, 1, mismatch},
              {list(1, {1, 2}), 1, 1, subscript},
              {undimensioned, 1, 1, subscript},
              {numbers, 2, -2, subscript},
              {column(VT_I4, 2, 1, {1, 2, 3, 4}), 1, 1, subscript},
              {column(VT_I4, -5, 1, {1, 2}), 1, 1, subscript},
              {column(VT_I4, 1, 2, {1, 2, 3, 4}), 2, 1, subscript},
              {column(VT_UI1, 1, 1, std::vector<Value>(32768, 1)), 3, 1, overflow},
              {column(VT_R8, 1, 1, {-1e308, 0, 0, 1e308}), 2, 1, overflow},
              {column(VT_VARIANT, 1, 1, {1, L"x", 3}), 2, 1, mismatch},
              {column(VT_VARIANT, 1, 1, {1, Value::null(), 3}), 2, 1, no_null},
              {column(VT_UI1, 2000000000, 1, {1}), 2, 1, no_memory}};
    for (const auto& [r, mode, width, failure] : cases)
        expect_failure(math, L"AvgDyn", {r, mode, width}, failure);
    EXPECT_EQ(math.try_call(L"AvgDyn", {numbers, 256, 1}).result, DISP_E_OVERFLOW);
}

TEST_F(Smoothing, StepsThatAreTooLargeAreShown)
{
    for (const auto& [rows, text] : {std::pair{9, L"funAvgDyn: Error1"}, {7, L"funAvgDyn: Error2"}}) {
        MessageBoxCatcher box;
        const std::wstring result = averages(column(VT_R8, 0, 0, std::vector<Value>(static_cast<std::size_t>(rows), 7)), 1, 7);
        expect_box(box, L"qvObjects", text, 0);
        EXPECT_EQ(result.substr(0, 24), L"Double 1,0: (7)(0)(2)(2)");
    }
}

TEST_F(Focus, IsSpectraTimesFactorsTimesCoefficients)
{
    EXPECT_EQ(told(focus(list(1, {10, L"1"}), false).value), L"Double 1,1: (12)(34)(46)(58)");
    EXPECT_EQ(told(focus(list(-1, {7, 7, 10, 1}), false).value), L"Double 1,1: (12)(34)(46)(58)");
    basis = Value{};
    EXPECT_EQ(told(focus(list(1, {1, 1}), false).value), L"Double 1,1: (3)(7)(10)(13)");
    basis = column(VT_R8, 1, 1, {1});
    EXPECT_EQ(told(focus(list(1, {3, 3}), false, 2, 1).value), L"Double 1,1: (9)(20)(30)(33)");

    const Value two = list(1, {2}, VT_R8);
    Value one = table(VT_R8, 0, 0, {{3}, {4}}), half = table(VT_R4, 1, 5, {{.5}});
    VARIANT_BOOL with_basis = VARIANT_FALSE;
    BYTE mode = 0;
    SHORT width = 0;
    spectra = Value::reference(one.vt, &one.parray);
    factors = Value::reference(half.vt, &half.parray);
    EXPECT_EQ(told(synthesis.call(L"CalcFocus", {basis, spectra, factors, two, Value::reference(VT_BOOL, &with_basis),
                                                 Value::reference(VT_UI1, &mode), Value::reference(VT_I2, &width)})),
              L"Double 0,1: (3)(4)");
}

TEST_F(Focus, CarriesTheBasisInColumnZero)
{
    EXPECT_EQ(told(focus(list(1, {1}), true).value), L"Variant 1,0: ('a' 3#)(5& 7#)(2.5# 10#)('4' 13#)");
    basis = column(VT_I4, 1, 1, {3, 6, 9, 3});
    EXPECT_EQ(told(focus(list(1, {3}), true, 2, 1).value), L"Variant 1,0: (3# 9#)(6# 20#)(6# 30#)(7# 33#)");
}

TEST_F(Focus, RaisesWhatItCannotDo)
{
    const Value one = list(1, {1});
    for (const Value& koeff : {Value{7}, list(1, {L"x"})})
        expect_error(focus(koeff, true), mismatch);
    for (const Value& koeff : {list(2, {1}), list(0, {1}), table(VT_R8, 1, 1, {{1}})})
        expect_error(focus(koeff, true), subscript);
    expect_error(focus(list(1, {Value::null()}), true), no_null);
    basis = column(VT_I4, 2, 1, {1, 2, 3});
    expect_error(focus(one, true), subscript);
    basis = Value{};
    expect_error(focus(one, true), mismatch);
    expect_error(focus(list(1, {1, 1}), false, 1, 1), mismatch);

    MessageBoxCatcher box;
    spectra = table(VT_R8, 1, 1, {{1, 2, 3}});
    expect_error(focus(one, false), subscript);
    expect_box(box, L"Fehler", L"Fehler qvO102. Bitte informieren Sie den Hersteller!", 32513);
}
