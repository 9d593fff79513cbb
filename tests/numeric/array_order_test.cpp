#include "automation/border.h"
#include "numeric/array_extrema.h"
#include "numeric/array_sorting.h"
#include "numeric/elements.h"
#include "numeric/variant_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <random>

using automation::Error;
using automation::Variant;
using numeric::Elements;
using numeric::End;

// The plain loops with the platform's own VarCmp and VarAbs say what is right.
namespace {

Variant of_type(VARTYPE type, double number)
{
    Variant value;
    EXPECT_EQ(automation::change_type(value, Variant{number}, type), S_OK) << type;
    return value;
}

Variant double_of(unsigned long long bits, VARTYPE type = VT_R8)
{
    Variant value{0.0};
    std::memcpy(&value.dblVal, &bits, sizeof bits);
    value.vt = type;
    return value;
}

constexpr unsigned long long quiet_nan = 0x7FF8000000000000, minus_zero = 0x8000000000000000;
constexpr VARTYPE types[]{VT_UI1, VT_I2, VT_I4, VT_I8, VT_R4, VT_R8, VT_CY, VT_DATE, VT_BOOL, VT_BSTR, VT_DECIMAL, VT_VARIANT};

/// What arrays are made of: numbers and texts in a clear order; the same with NaN and numbers that have no absolute value;
/// Variants of every type; Variants of one type that has a clear order only among its own.
enum Mix { Clear, Odd, Any, Alone, Mixes };

class ArrayOrder : public testing::Test {
protected:
    unsigned below(unsigned end) { return random() % end; }

    Variant element(VARTYPE type, bool odd)
    {
        const double number = static_cast<int>(below(9)) - 4;
        switch (type) {
        case VT_BSTR: {
            constexpr const wchar_t* texts[]{L"a", L"A", L"b", L"B", L"\u00e4", L"\u00c4", L"", L"10", L"9", L"co-op", L"coop"};
            return Variant{std::wstring_view{texts[below(std::size(texts))]}};
        }
        case VT_BOOL:
            return Variant{number > 0};
        case VT_UI1:
            return of_type(VT_UI1, number + 4);
        case VT_I2:
        case VT_I4:
            return of_type(type, odd && below(20) == 0 ? (type == VT_I2 ? -32768. : -2147483648.) : number);
        case VT_R4: {
            Variant value = of_type(VT_R4, number / 8 + .1);
            if (odd && below(8) == 0)
                value.fltVal = below(2) ? std::numeric_limits<float>::quiet_NaN() : -0.f;
            return value;
        }
        case VT_R8:
        case VT_DATE:
            if (number == 0)
                return double_of(below(2) ? minus_zero : 0, type);
            return odd && below(8) == 0 ? double_of(quiet_nan, type) : of_type(type, number / 8);
        case VT_EMPTY:
        case VT_NULL: {
            Variant value;
            value.vt = type;
            return value;
        }
        default:
            return of_type(type, number);
        }
    }

    /// An array with bounds from anywhere; a table when it has columns.
    Variant array(VARTYPE type, ULONG rows, ULONG columns, Mix mix)
    {
        constexpr VARTYPE mixed[]{VT_I2,   VT_I4,    VT_R8,   VT_BOOL, VT_BSTR, VT_UI1,
                                  VT_DATE, VT_EMPTY, VT_NULL, VT_CY,   VT_R4,   VT_DECIMAL};
        constexpr VARTYPE lonely[]{VT_CY, VT_R4, VT_DECIMAL, VT_I8};
        SAFEARRAYBOUND bounds[]{{rows, static_cast<LONG>(below(9)) - 4}, {columns, static_cast<LONG>(below(9)) - 4}};
        Variant value;
        value.parray = SafeArrayCreate(type, columns ? 2 : 1, bounds);
        value.vt = VT_ARRAY | type;
        const Elements elements{value};
        const VARTYPE alone = lonely[below(4)];
        for (std::size_t i = 0; i < elements.size(); ++i) {
            const VARTYPE picked = mix == Alone ? alone : mixed[below(mix == Any ? std::size(mixed) : 7)];
            elements.replace(i, element(type == VT_VARIANT ? picked : type, mix != Clear));
        }
        return value;
    }

    std::mt19937 random{20};
};

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

/// The value, or the number of the error that giving it raised, in a form that tells -0 from 0 and 1 from 1&.
std::wstring told(const std::function<Variant()>& giving)
try {
    const Variant value = giving();
    std::wstring bits = std::to_wstring(value.vt) + L":";
    if (value.vt == VT_BSTR)
        return bits + std::wstring{automation::view(value.bstrVal)};
    const std::size_t size = value.vt == VT_UI1                         ? 1
                           : value.vt == VT_I2 || value.vt == VT_BOOL ? 2
                           : value.vt == VT_I4 || value.vt == VT_R4   ? 4
                                                                      : 8;
    for (std::size_t i = 0; value.vt > VT_NULL && i < size; ++i)
        bits += std::to_wstring(reinterpret_cast<const unsigned char*>(&value.lVal)[i]) + L" ";
    return bits;
} catch (const Error& error) {
    return L"error " + std::to_wstring(error.number());
}

std::size_t wanted(End end)
{
    return end == End::Least ? VARCMP_LT : VARCMP_GT;
}

template <class ValueOf>
Variant plain_extreme(std::size_t count, End end, const ValueOf& value_of)
{
    Variant kept = value_of(0);
    for (std::size_t i = 1; i < count; ++i)
        if (Variant value = value_of(i); static_cast<std::size_t>(order(value, kept)) == wanted(end))
            kept = std::move(value);
    return kept;
}

} // namespace

TEST_F(ArrayOrder, SortGivesWhatInsertionByThePlatformsComparisonGives)
{
    for (const VARTYPE type : types)
        for (int round = 0; round < 400; ++round) {
            const Variant value = array(type, below(30), 0, static_cast<Mix>(round % Mixes));
            const Elements elements{value};
            std::vector<VARIANT> expected(elements.size());
            for (std::size_t i = 0; i < expected.size(); ++i)
                expected[i] = elements[i];
            const std::wstring outcome = told([&] {
                for (std::size_t i = 1; i < expected.size(); ++i)
                    for (std::size_t j = i; j > 0 && order(expected[j - 1], expected[j]) == VARCMP_GT; --j)
                        std::swap(expected[j - 1], expected[j]);
                return Variant{};
            });
            ASSERT_EQ(told([&] { return numeric::sort(value), Variant{}; }), outcome) << type;
            for (std::size_t i = 0; outcome == L"0:" && i < expected.size(); ++i) {
                const VARIANT sorted = elements[i];
                ASSERT_EQ(std::memcmp(&sorted, &expected[i], sizeof(WORD)), 0);
                ASSERT_EQ(std::memcmp(&sorted.lVal, &expected[i].lVal, std::min<std::size_t>(elements.element_size(), 8)), 0)
                    << "of type " << type << " at " << i;
            }
        }
}

TEST_F(ArrayOrder, ExtremaAreThoseOfThePlainLoops)
{
    for (const VARTYPE type : types)
        for (int round = 0; round < 400; ++round) {
            const ULONG rows = 1 + below(6), columns = below(6);
            const Variant value = array(type, rows, columns, static_cast<Mix>(round % Mixes));
            const Elements elements{value};
            const auto by_rows = [&](std::size_t i) {
                return columns ? Variant{elements[i % columns * rows + i / columns]} : Variant{elements[i]};
            };
            for (const End end : {End::Least, End::Greatest}) {
                EXPECT_EQ(told([&] { return numeric::extreme(value, end); }),
                          told([&] { return plain_extreme(elements.size(), end, by_rows); }))
                    << "of type " << type;
                const auto magnitudes = [&](std::size_t i) { return magnitude(by_rows(i)); };
                EXPECT_EQ(told([&] { return numeric::absolute_extreme(value, end); }),
                          told([&] { return plain_extreme(elements.size(), end, magnitudes); }))
                    << "of type " << type;
            }
            if (!columns)
                continue;
            for (const bool of_columns : {false, true}) {
                const auto of_line = [&](std::size_t line, End end) {
                    return told([&] {
                        return plain_extreme(of_columns ? rows : columns, end, [&](std::size_t i) {
                            return Variant{elements[of_columns ? line * rows + i : i * rows + line]};
                        });
                    });
                };
                Variant result;
                const std::wstring failure = told([&] { return result = numeric::min_max(value, of_columns), Variant{}; });
                const std::size_t lines = of_columns ? columns : rows;
                ASSERT_TRUE(result.vt == VT_EMPTY || Elements{result}.count(2) == lines);
                bool same_failure = false;
                for (std::size_t line = 0; line < lines; ++line)
                    for (const End end : {End::Least, End::Greatest}) {
                        same_failure = same_failure || of_line(line, end) == failure;
                        if (result.vt != VT_EMPTY) {
                            EXPECT_EQ(told([&] { return Variant{Elements{result}[2 * line + (end == End::Greatest)]}; }),
                                      of_line(line, end))
                                << "of type " << type;
                        }
                    }
                EXPECT_TRUE(result.vt != VT_EMPTY || same_failure) << "of type " << type;
            }
        }
}

TEST_F(ArrayOrder, WhatCannotBeComparedRaisesAndStaysWhole)
{
    for (int round = 0; round < 200; ++round) {
        const Variant value = array(VT_VARIANT, 2 + below(20), 0, Any);
        const Elements elements{value};
        Variant odd = array(VT_I4, 1, 0, Clear);
        if (below(2)) {
            odd = Variant{};
            odd.vt = below(2) ? VT_ERROR : VT_DISPATCH;
        }
        elements.replace(below(static_cast<unsigned>(elements.size())), std::move(odd));
        const auto contents = [&] {
            std::vector<std::pair<VARTYPE, LONGLONG>> all;
            for (const VARIANT& element : elements.as<VARIANT>())
                all.emplace_back(element.vt, element.llVal);
            std::ranges::sort(all);
            return all;
        };
        const auto before = contents();
        EXPECT_EQ(told([&] { return numeric::sort(value), Variant{}; }), L"error 13");
        EXPECT_EQ(contents(), before);
        EXPECT_EQ(told([&] { return numeric::extreme(value, End::Greatest); }), L"error 13");
    }
}
