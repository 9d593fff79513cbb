#pragma once

#include "automation/border.h"
#include "numeric/elements.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <iomanip>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

/// Arrays of every type, the same in every run, for tests that have the platform's own functions say what is right.
class RandomArrays : public testing::Test {
protected:
    using Types = std::vector<VARTYPE>;
    using Variant = automation::Variant;

    RandomArrays() { _controlfp(_PC_53, _MCW_PC); } // the platform may compute with the old unit

    unsigned below(unsigned end) { return random() % end; }

    /// A small number, of which many are equal or not exact; one out of so many is from the edge of a type.
    Variant element(VARTYPE type, unsigned one_odd_in = 0)
    {
        const bool is_floating = type == VT_R4 || type == VT_R8 || type == VT_DATE;
        const bool has_fractions = is_floating || type == VT_CY || type == VT_DECIMAL || type == VT_BSTR;
        Variant value;
        if (type == VT_BSTR && !words.empty())
            return Variant{std::wstring_view{words[below(static_cast<unsigned>(words.size()))]}};
        if (type == VT_EMPTY || type == VT_NULL) {
            value.vt = type;
            return value;
        }
        const bool is_odd = one_odd_in && below(one_odd_in) == 0;
        const double size = is_odd ? edges[below(static_cast<unsigned>(edges.size()))] : below(10) / (has_fractions ? 10. : 1.);
        const double number = below(2) ? -size : size;
        if ((!std::isfinite(number) && !is_floating) || FAILED(automation::change_type(value, Variant{number}, type)))
            return element(type, one_odd_in);
        return value;
    }

    /// An array with these bounds; one of Variants has elements of any of these types.
    Variant array(VARTYPE type, std::vector<SAFEARRAYBOUND> bounds, unsigned one_odd_in = 0, const Types& among = {VT_EMPTY})
    {
        Variant made;
        made.parray = SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data());
        made.vt = VT_ARRAY | type;
        const numeric::Elements elements{made};
        for (std::size_t i = 0; i < elements.size(); ++i) {
            const VARTYPE any = among[below(static_cast<unsigned>(among.size()))];
            elements.replace(i, element(type == VT_VARIANT ? any : type, one_odd_in));
        }
        return made;
    }

    std::vector<double> edges{255, 32767, 32768, 16777217, 2147483647, 2147483648, 3e38, 1e160, 1e300, INFINITY, NAN};
    std::vector<const wchar_t*> words; ///< what texts are made of, if they are no numbers
    std::mt19937 random{1};
};

/// What an operation of the platform gives, with the larger type and the overflow that not every platform finds.
inline automation::Variant calculated(HRESULT(WINAPI* operation)(VARIANT*, VARIANT*, VARIANT*), VARIANT left, VARIANT right)
{
    const auto is_finite = [](const VARIANT& value) {
        const bool is_double = value.vt == VT_R8 || value.vt == VT_DATE;
        return value.vt == VT_R4 ? std::isfinite(value.fltVal) : !is_double || std::isfinite(value.dblVal);
    };
    automation::Variant result;
    automation::check(operation(&left, &right, &result));
    if (is_finite(result) || !is_finite(left) || !is_finite(right))
        return result;
    if (result.vt == VT_R4)
        return calculated(operation, automation::converted(left, VT_R8), automation::converted(right, VT_R8));
    throw automation::Error{automation::Runtime::Overflow};
}

/// The numbers that something gives, so that 0 and -0 differ and all NaNs are alike; or the number of the error that it raises.
template <class Giving>
std::string told(const Giving& giving)
try {
    std::ostringstream all;
    all << std::setprecision(17);
    for (const double number : giving())
        std::isnan(number) ? all << "NaN " : all << number << ' ';
    return all.str();
} catch (const automation::Error& error) {
    return "error " + std::to_string(error.number());
}
