#include "numeric/array_extrema.h"
#include "numeric/array_sorting.h"
#include "numeric/random_arrays.h"
#include "numeric/variant_order.h"

#include <algorithm>

using automation::Error;
using automation::Variant;
using numeric::Elements;
using numeric::End;

// The plain loops with the platform's own VarCmp and VarAbs say what is right.
namespace {

constexpr VARTYPE types[]{VT_UI1, VT_I2, VT_I4, VT_I8, VT_R4, VT_R8, VT_CY, VT_DATE, VT_BOOL, VT_BSTR, VT_DECIMAL, VT_VARIANT};

class ArrayOrder : public RandomArrays {
protected:
    ArrayOrder() { words = {L"a", L"A", L"b", L"B", L"\u00e4", L"\u00c4", L"", L"10", L"9", L"co-op", L"coop"}; }

    /// An array with bounds from anywhere; a table when it has columns. Its Variants are in a clear order, in none, or of one
    /// type that has a clear order only among its own.
    Variant any_array(VARTYPE type, ULONG rows, ULONG columns, int round)
    {
        static const Types mixes[]{
            {VT_I2, VT_I4, VT_R8, VT_BOOL, VT_UI1, VT_DATE, VT_BSTR}, {VT_I2, VT_I4, VT_R8, VT_BOOL, VT_UI1, VT_DATE},
            {VT_I2, VT_I4, VT_R8, VT_BOOL, VT_UI1, VT_DATE, VT_BSTR, VT_EMPTY, VT_NULL, VT_CY, VT_R4, VT_DECIMAL},
            {VT_R4, VT_CY, VT_DECIMAL, VT_I8}, {VT_R4}, {VT_CY}, {VT_DECIMAL}, {VT_I8}};
        constexpr unsigned one_odd_in[]{0, 8, 1};
        std::vector<SAFEARRAYBOUND> bounds{{rows, static_cast<LONG>(below(9)) - 4}};
        if (columns)
            bounds.push_back({columns, static_cast<LONG>(below(9)) - 4});
        return array(type, bounds, one_odd_in[round % 3], mixes[below(std::size(mixes))]);
    }
};

/// A value to the last bit, so that 0 differs from -0 and 1 from 1&.
std::wstring exactly(const VARIANT& value)
{
    const std::wstring type = std::to_wstring(value.vt) + L":";
    if (value.vt <= VT_NULL)
        return type;
    if (value.vt == VT_BSTR)
        return type + std::wstring{automation::view(value.bstrVal)};
    const int bytes = value.vt == VT_UI1                         ? 1
                    : value.vt == VT_I2 || value.vt == VT_BOOL ? 2
                    : value.vt == VT_I4 || value.vt == VT_R4   ? 4
                                                               : 8;
    const int scale = value.vt == VT_DECIMAL ? value.decVal.signscale : 0;
    return type + std::to_wstring(value.ullVal << (64 - 8 * bytes)) + L"," + std::to_wstring(scale);
}

/// What something gives, or the number of the error that it raises.
template <class Giving>
std::wstring outcome_of(const Giving& giving)
try {
    return exactly(giving());
} catch (const Error& error) {
    return L"error " + std::to_wstring(error.number());
}

HRESULT order(const VARIANT& left, const VARIANT& right)
{
    const HRESULT order = VarCmp(const_cast<VARIANT*>(&left), const_cast<VARIANT*>(&right), LOCALE_USER_DEFAULT, NORM_IGNORECASE);
    automation::check(order);
    return order;
}

Variant magnitude(const VARIANT& value)
{
    if (value.vt == VT_BSTR)
        return magnitude(automation::converted(value, VT_R8));
    VARIANT result; // not to be cleared after a failure
    automation::check(VarAbs(const_cast<VARIANT*>(&value), &result));
    Variant own;
    static_cast<VARIANT&>(own) = result;
    return own;
}

template <class ValueOf>
std::wstring plain_extreme(std::size_t count, End end, const ValueOf& value_of)
{
    return outcome_of([&] {
        Variant kept = value_of(0);
        for (std::size_t i = 1; i < count; ++i)
            if (Variant value = value_of(i); order(value, kept) == (end == End::Least ? VARCMP_LT : VARCMP_GT))
                kept = std::move(value);
        return kept;
    });
}

} // namespace

TEST_F(ArrayOrder, SortGivesWhatInsertionByThePlatformsComparisonGives)
{
    for (const VARTYPE type : types)
        for (int round = 0; round < 400; ++round) {
            const Variant value = any_array(type, below(30), 0, round);
            const Elements elements{value};
            std::vector<Variant> expected;
            for (std::size_t i = 0; i < elements.size(); ++i)
                expected.emplace_back(elements[i]);
            const std::wstring outcome = outcome_of([&] {
                for (std::size_t i = 1; i < expected.size(); ++i)
                    for (std::size_t j = i; j > 0 && order(expected[j - 1], expected[j]) == VARCMP_GT; --j)
                        std::swap(expected[j - 1], expected[j]);
                return Variant{};
            });
            ASSERT_EQ(outcome_of([&] { return numeric::sort(value), Variant{}; }), outcome) << type;
            for (std::size_t i = 0; outcome == L"0:" && i < expected.size(); ++i)
                ASSERT_EQ(exactly(elements[i]), exactly(expected[i])) << "at " << i;
        }
}

TEST_F(ArrayOrder, ExtremaAreThoseOfThePlainLoops)
{
    for (const VARTYPE type : types)
        for (int round = 0; round < 400; ++round) {
            SCOPED_TRACE(testing::Message() << "type " << type);
            const ULONG rows = 1 + below(6), columns = below(6);
            const Variant value = any_array(type, rows, columns, round);
            const Elements elements{value};
            const auto by_rows = [&](std::size_t i) { return Variant{elements[columns ? i % columns * rows + i / columns : i]}; };
            const auto magnitudes = [&](std::size_t i) { return magnitude(by_rows(i)); };
            for (const End end : {End::Least, End::Greatest}) {
                EXPECT_EQ(outcome_of([&] { return numeric::extreme(value, end); }), plain_extreme(elements.size(), end, by_rows));
                EXPECT_EQ(outcome_of([&] { return numeric::absolute_extreme(value, end); }),
                          plain_extreme(elements.size(), end, magnitudes));
            }
            for (const bool of_columns : {false, true}) {
                if (!columns)
                    break;
                Variant result;
                const std::wstring failure = outcome_of([&] { return result = numeric::min_max(value, of_columns), Variant{}; });
                const std::size_t lines = of_columns ? columns : rows, length = of_columns ? rows : columns;
                ASSERT_TRUE(result.vt == VT_EMPTY || Elements{result}.count(2) == lines);
                bool same_failure = false;
                for (std::size_t i = 0; i < 2 * lines; ++i) {
                    const std::size_t line = i / 2;
                    const End end = i % 2 ? End::Greatest : End::Least;
                    const std::wstring expected = plain_extreme(length, end, [&](std::size_t place) {
                        return Variant{elements[of_columns ? line * rows + place : place * rows + line]};
                    });
                    same_failure = same_failure || expected == failure;
                    EXPECT_TRUE(result.vt == VT_EMPTY || exactly(Elements{result}[i]) == expected) << "line " << line;
                }
                EXPECT_TRUE(result.vt != VT_EMPTY || same_failure);
            }
        }
}

TEST_F(ArrayOrder, WhatCannotBeComparedRaisesAndStaysWhole)
{
    for (int round = 0; round < 200; ++round) {
        const Variant value = array(VT_VARIANT, {{2 + below(20), 0}}, 0, {VT_I2, VT_R8, VT_R4, VT_BSTR, VT_EMPTY, VT_NULL});
        const Elements elements{value};
        Variant odd = round % 2 ? array(VT_I4, {{1, 0}}) : Variant{};
        if (round % 2 == 0) {
            odd.vt = round % 4 ? VT_ERROR : VT_DISPATCH;
            odd.pdispVal = nullptr;
        }
        elements.replace(below(static_cast<unsigned>(elements.size())), std::move(odd));
        const auto cells = elements.as<VARIANT>();
        const auto same = [](const VARIANT& a, const VARIANT& b) { return a.vt == b.vt && a.llVal == b.llVal; };
        const std::vector<VARIANT> before(cells.begin(), cells.end());
        EXPECT_EQ(outcome_of([&] { return numeric::sort(value), Variant{}; }), L"error 13");
        EXPECT_EQ(value.parray->cLocks, 1u) << "that of this test";
        EXPECT_TRUE(std::ranges::is_permutation(cells, before, same));
        EXPECT_EQ(outcome_of([&] { return numeric::extreme(value, End::Greatest); }), L"error 13");
    }
}
