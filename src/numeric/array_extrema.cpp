#include "numeric/array_extrema.h"

#include "automation/border.h"
#include "numeric/elements.h"
#include "numeric/extrema.h"
#include "numeric/variant_order.h"

#include <algorithm>
#include <limits>
#include <span>
#include <type_traits>
#include <vector>

namespace numeric {
namespace {

using automation::Error;
using automation::Runtime;
using automation::Variant;

bool is_dimensioned(const VARIANT& value) noexcept
{
    const auto array = automation::array_in(value);
    return array && *array && (*array)->cDims > 0;
}

/// The rows and columns of an array, a list being one row.
struct Size {
    explicit Size(const Elements& elements)
        : rows{elements.dimensions() == 2 ? elements.count(1) : 1}, columns{elements.count(elements.dimensions())}
    {
        if (elements.size() == 0)
            throw Error{Runtime::SubscriptOutOfRange};
    }
    std::size_t rows, columns;
};

/// What `work` gives for the order of elements, as a function of two indices that says whether one is less, if any two of
/// them stand in the same way however they are met; what `otherwise` gives for all others.
template <class Work, class Otherwise>
auto for_consistent(const Elements& elements, const Work& work, const Otherwise& otherwise)
{
    return for_numbers(
        elements, [&](auto numbers) { return work([=](std::size_t a, std::size_t b) { return numbers[a] < numbers[b]; }); },
        [&] {
            if (elements.type() == VT_BSTR)
                return work([texts = elements.as<BSTR>()](std::size_t a, std::size_t b) {
                    return text_less(texts[a], texts[b]);
                });
            if (elements.type() == VT_VARIANT && is_consistent(elements.as<VARIANT>()))
                return work([values = elements.as<VARIANT>()](std::size_t a, std::size_t b) {
                    return consistent_less(values[a], values[b]);
                });
            return otherwise();
        });
}

/// The first of all, which is the least or the greatest.
template <class Less>
std::size_t first_at(Size size, End end, const Less& less)
{
    if (end == End::Least)
        return first_of_all(size.rows, size.columns, less);
    return first_of_all(size.rows, size.columns, [&](std::size_t a, std::size_t b) { return less(b, a); });
}

constexpr Order wanted(End end) noexcept
{
    return end == End::Least ? Order::Less : Order::Greater;
}

Variant extreme_element(const Elements& elements, End end)
{
    const Size size{elements};
    const std::size_t found = for_consistent(
        elements, [&](const auto& less) { return first_at(size, end, less); },
        [&] {
            return last_kept(size.rows, size.columns,
                             [&](std::size_t a, std::size_t b) { return compare(elements[a], elements[b]) == wanted(end); });
        });
    return Variant{elements[found]};
}

/// Whether the absolute values of numbers are of their type.
template <class Number>
bool have_magnitudes(std::span<Number> numbers) noexcept
{
    if constexpr (std::is_floating_point_v<Number> || std::is_unsigned_v<Number>)
        return true;
    else
        return std::ranges::find(numbers, std::numeric_limits<Number>::min()) == numbers.end();
}

template <class Number>
Number magnitude(Number number) noexcept
{
    if constexpr (std::is_unsigned_v<Number>)
        return number;
    else
        return static_cast<Number>(number < 0 ? -number : number);
}

Variant last_kept_magnitude(const Elements& elements, Size size, End end)
{
    Variant kept = absolute(elements[0]);
    last_kept(size.rows, size.columns, [&](std::size_t index, std::size_t) {
        Variant other = absolute(elements[index]);
        const bool replaces = compare(other, kept) == wanted(end);
        if (replaces)
            kept = std::move(other);
        return replaces;
    });
    return kept;
}

Variant extreme_magnitude(const Elements& elements, End end)
{
    const Size size{elements};
    const auto by = [&](const auto& magnitude_at) {
        return absolute(elements[first_at(
            size, end, [&](std::size_t a, std::size_t b) { return magnitude_at(a) < magnitude_at(b); })]);
    };
    const auto of_others = [&] {
        if (elements.type() == VT_VARIANT && have_plain_magnitudes(elements.as<VARIANT>()))
            return by([values = elements.as<VARIANT>()](std::size_t i) { return plain_magnitude(values[i]); });
        return last_kept_magnitude(elements, size, end);
    };
    return for_numbers(
        elements,
        [&](auto numbers) {
            return have_magnitudes(numbers) ? by([=](std::size_t i) { return magnitude(numbers[i]); }) : of_others();
        },
        of_others);
}

std::vector<Extremes> extremes(const Elements& table, bool of_columns)
{
    const Size size{table};
    return for_consistent(
        table,
        [&](const auto& less) {
            return extremes_of_lines(size.rows, size.columns, of_columns, less,
                                     [&](std::size_t a, std::size_t b) { return less(b, a); });
        },
        [&] {
            return extremes_of_lines(
                size.rows, size.columns, of_columns,
                [&](std::size_t a, std::size_t b) { return compare(table[a], table[b]) == Order::Less; },
                [&](std::size_t a, std::size_t b) { return compare(table[a], table[b]) == Order::Greater; });
        });
}

} // namespace

Variant extreme(const VARIANT& value, End end)
{
    if (!is_dimensioned(value))
        return Variant{automation::followed(value)};
    const Elements elements{value};
    return elements.dimensions() > 2 ? Variant{} : extreme_element(elements, end);
}

Variant absolute_extreme(const VARIANT& value, End end)
{
    if (!is_dimensioned(value))
        return absolute(automation::followed(value));
    const Elements elements{value};
    return elements.dimensions() > 2 ? Variant{} : extreme_magnitude(elements, end);
}

Variant min_max(const VARIANT& table, bool of_columns)
{
    const Elements elements{table};
    if (elements.dimensions() != 2)
        throw Error{Runtime::SubscriptOutOfRange};
    const SAFEARRAYBOUND bounds[]{{2, 0}, {static_cast<ULONG>(elements.count(of_columns ? 2 : 1)), 0}};
    Variant result = automation::new_array(VT_VARIANT, bounds);
    const std::vector<Extremes> lines = extremes(elements, of_columns);
    const automation::LockedArray<VARIANT> cells{result.parray};
    for (std::size_t i = 0; i < lines.size(); ++i) {
        cells[2 * i] = Variant{elements[lines[i].least]}.release();
        cells[2 * i + 1] = Variant{elements[lines[i].greatest]}.release();
    }
    return result;
}

} // namespace numeric
