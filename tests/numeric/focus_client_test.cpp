#include "support/message_box.h"
#include "support/tables.h"

using client::array;
using client::expect_error;
using client::list;
using client::Object;
using client::table;
using client::told;
using client::Value;

namespace {

constexpr const wchar_t *mismatch = L"Type mismatch", *subscript = L"Subscript out of range", *overflow = L"Overflow",
                        *no_null = L"Invalid use of Null";

/// A table of one column.
Value column(VARTYPE type, LONG first_row, LONG index, const std::vector<Value>& values)
{
    return array(type, {{static_cast<ULONG>(values.size()), first_row}, {1, index}}, values);
}

class Smoothing : public testing::Test {
protected:
    std::wstring averages(const Value& r, int mode, int width) const
    {
        const Value result = math.call(L"AvgDyn", {r, mode, width});
        EXPECT_EQ(result.vt, VT_ARRAY | VT_R8);
        return told(result);
    }
    void expect_failure(const Value& r, int mode, int width, long number, const wchar_t* text) const
    {
        expect_error(math.try_call(L"AvgDyn", {r, mode, width}), number, text);
    }

    client::Apartment apartment;
    Object math = Object::create(L"qvObjects.qvMath");
};

class Focus : public testing::Test {
protected:
    client::Outcome outcome(const Value& koeff, bool with_basis, int mode = 0, int width = 0) const
    {
        return synthesis.try_call(L"CalcFocus", {basis, spectra, factors, koeff, with_basis, mode, width});
    }
    std::wstring focus(const Value& koeff, bool with_basis, int mode = 0, int width = 0) const
    {
        const client::Outcome all = outcome(koeff, with_basis, mode, width);
        EXPECT_EQ(all.result, S_OK) << "error " << all.number();
        EXPECT_EQ(all.value.vt, VT_ARRAY | (with_basis ? VT_VARIANT : VT_R8));
        return told(all.value);
    }

    client::Apartment apartment;
    Object synthesis = Object::create(L"qvObjects.qvSyno");
    Value basis = table(VT_VARIANT, 1, 3, {{L"a", 9}, {5, 9}, {2.5, 9}, {L"4", 9}});
    Value spectra = table(VT_I2, 1, 0, {{1, 0}, {0, 1}, {1, 1}, {2, 1}});
    Value factors = table(VT_R8, 7, 1, {{1, 2}, {3, 4}});
};

} // namespace

TEST_F(Smoothing, AveragesColumnsOfAnyBounds)
{
    EXPECT_EQ(averages(column(VT_R8, 1, -1, {3, 6, 12, 24, 48, 96}), 1, 3), L"1,-1: (3) (7) (14) (28) (45.6) (48)");
    const Value whole = table(VT_I2, 0, 0, {{9, 9}, {9, 6}, {9, 3}, {9, 9}, {9, 3}, {9, 6}, {9, 13}});
    EXPECT_EQ(averages(whole, 3, 2), L"1,0: (0 6) (0 6) (0 5.4) (0 6.8) (0 7.4) (0 7)");
    Value texts = table(VT_VARIANT, -1, 1, {{L"x"}, {L"y"}, {L"2"}, {8}, {L"5"}, {true}});
    EXPECT_EQ(averages(Value::variable(texts), 2, 1), L"1,1: (2) (5) (4) (3)");
    Value singles = column(VT_R4, 1, 1, {3, 6, 12, 24});
    EXPECT_EQ(averages(Value::reference(VT_ARRAY | VT_R4, &singles.parray), 2, 2), L"1,1: (3) (11.25) (11.25) (14)");
    EXPECT_EQ(averages(table(VT_UI1, 5, 2, {{1, 2}, {3, 4}}), 4, 1), L"1,2: (0 0) (0 0) (0 0) (0 0) (0 0) (0 0)");
}

TEST_F(Smoothing, WithoutModeOrWidthTheInputComesBack)
{
    Value texts = table(VT_BSTR, 3, 3, {{L"a"}, {L"b"}});
    for (const auto& [mode, width] : {std::pair{0, 5}, {1, 0}}) {
        const Value same = math.call(L"AvgDyn", {Value::variable(texts), mode, width});
        EXPECT_EQ(same.vt, VT_ARRAY | VT_BSTR);
        EXPECT_NE(same.parray, texts.parray);
        EXPECT_EQ(math.call(L"AvgDyn", {L"text", mode, width}).text(), L"text");
        EXPECT_EQ(math.call(L"AvgDyn", {Value::of_type(VT_ARRAY | VT_R8), mode, width}).vt, VT_ARRAY | VT_R8);
    }
}

TEST_F(Smoothing, RaisesWhatItCannotDo)
{
    const Value numbers = column(VT_I4, 1, 1, {1, 2, 3, 4});
    expect_failure(5, 1, 1, 13, mismatch);
    expect_failure(list(1, {1, 2}), 1, 1, 9, subscript);
    expect_failure(Value::of_type(VT_ARRAY | VT_R8), 1, 1, 9, subscript);
    expect_failure(numbers, 2, -2, 9, subscript);
    expect_failure(column(VT_I4, 2, 1, {1, 2, 3, 4}), 1, 1, 9, subscript);
    expect_failure(column(VT_I4, -5, 1, {1, 2}), 1, 1, 9, subscript);
    expect_failure(column(VT_I4, 1, 2, {1, 2, 3, 4}), 2, 1, 9, subscript);
    expect_failure(column(VT_UI1, 1, 1, std::vector<Value>(32768, 1)), 3, 1, 6, overflow);
    expect_failure(column(VT_R8, 1, 1, {-1e308, 0, 0, 1e308}), 2, 1, 6, overflow);
    expect_failure(column(VT_VARIANT, 1, 1, {1, L"x", 3}), 2, 1, 13, mismatch);
    expect_failure(column(VT_VARIANT, 1, 1, {1, Value::null(), 3}), 2, 1, 94, no_null);
    expect_failure(column(VT_UI1, 2000000000, 1, {1}), 2, 1, 7, L"Out of memory");
    EXPECT_EQ(math.try_call(L"AvgDyn", {numbers, 256, 1}).result, DISP_E_OVERFLOW);
}

TEST_F(Smoothing, StepsThatAreTooLargeAreShown)
{
    for (const auto& [rows, text] : {std::pair{9, L"funAvgDyn: Error1"}, {7, L"funAvgDyn: Error2"}}) {
        const Value sevens = column(VT_R8, 0, 0, std::vector<Value>(static_cast<std::size_t>(rows), 7));
        MessageBoxCatcher box;
        const std::wstring result = averages(sevens, 1, 7);
        EXPECT_TRUE(box.caught());
        EXPECT_EQ(box.caption, L"qvObjects");
        EXPECT_EQ(box.text, text);
        EXPECT_EQ(box.icon, 0);
        EXPECT_EQ(box.buttons, 1);
        EXPECT_EQ(result.substr(0, 21), L"1,0: (7) (0) (2) (2) ");
    }
}

TEST_F(Focus, IsSpectraTimesFactorsTimesCoefficients)
{
    EXPECT_EQ(focus(list(1, {10, L"1"}), false), L"1,1: (12) (34) (46) (58)");
    EXPECT_EQ(focus(list(-1, {7, 7, 10, 1}), false), L"1,1: (12) (34) (46) (58)");
    basis = Value{};
    EXPECT_EQ(focus(list(1, {1, 1}), false), L"1,1: (3) (7) (10) (13)");
    basis = column(VT_R8, 1, 1, {1});
    EXPECT_EQ(focus(list(1, {3, 3}), false, 2, 1), L"1,1: (9) (20) (30) (33)");

    Value typed = array(VT_R8, {{1, 1}}, {2}), one = table(VT_R8, 0, 0, {{3}, {4}}), factor = table(VT_R4, 1, 5, {{.5}});
    VARIANT_BOOL with_basis = VARIANT_FALSE;
    BYTE mode = 0;
    SHORT width = 0;
    EXPECT_EQ(told(synthesis.call(L"CalcFocus", {basis, Value::reference(VT_ARRAY | VT_R8, &one.parray),
                                                       Value::reference(VT_ARRAY | VT_R4, &factor.parray), typed,
                                                       Value::reference(VT_BOOL, &with_basis), Value::reference(VT_UI1, &mode),
                                                       Value::reference(VT_I2, &width)})),
              L"0,1: (3) (4)");
}

TEST_F(Focus, CarriesTheBasisInColumnZero)
{
    EXPECT_EQ(focus(list(1, {1}), true), L"1,0: (a 3) (5 7) (2.5 10) (4 13)");
    basis = column(VT_I4, 1, 1, {3, 6, 9, 3});
    EXPECT_EQ(focus(list(1, {3}), true, 2, 1), L"1,0: (3 9) (6 20) (6 30) (7 33)");
}

TEST_F(Focus, RaisesWhatItCannotDo)
{
    const auto expect_failure = [&](const Value& koeff, long number, const wchar_t* text, bool with_basis = true, int mode = 0) {
        expect_error(outcome(koeff, with_basis, mode, 1), number, text);
    };
    const Value one = list(1, {1});
    expect_failure(7, 13, mismatch);
    expect_failure(list(1, {L"x"}), 13, mismatch);
    expect_failure(list(1, {Value::null()}), 94, no_null);
    expect_failure(list(2, {1}), 9, subscript);
    expect_failure(list(0, {1}), 9, subscript);
    expect_failure(table(VT_R8, 1, 1, {{1}}), 9, subscript);
    basis = column(VT_I4, 2, 1, {1, 2, 3});
    expect_failure(one, 9, subscript);
    basis = Value{};
    expect_failure(one, 13, mismatch);
    expect_failure(list(1, {1, 1}), 13, mismatch, false, 1);

    MessageBoxCatcher box;
    spectra = table(VT_R8, 1, 1, {{1, 2, 3}});
    expect_failure(one, 9, subscript, false);
    EXPECT_TRUE(box.caught());
    EXPECT_NE(box.text.find(L"qvO102"), std::wstring::npos);
}
