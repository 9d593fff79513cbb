#pragma once

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <span>
#include <vector>

namespace numeric {

/// Straight insertion sort, ascending and stable, of elements known by their index: `greater(a, b)` says whether one
/// element is greater than another, `move(from, to)` takes the element at `from` and puts it down at `to`, below it, so
/// that those between move up by one. Elements only move between two comparisons: when one fails, each is still there.
template <class Greater, class Move>
void insertion_sort(std::size_t count, const Greater& greater, const Move& move)
{
    for (std::size_t i = 1; i < count; ++i) {
        std::size_t place = i;
        while (place > 0 && greater(place - 1, i))
            --place;
        if (place != i)
            move(i, place);
    }
}

/// What straight insertion makes of numbers when a NaN is taken for greater than any other and any other for greater than
/// it. A NaN then goes to the front at its turn, and only numbers less than all before it, and other NaNs, pass it later.
template <std::floating_point Number>
void sort_with_nans(std::span<Number> numbers)
{
    struct Displaced {
        Number nan, least_before;
    };
    std::vector<Number> sorted, leading;
    std::vector<Displaced> displaced;
    Number least{};
    for (const Number number : numbers) {
        if (!std::isnan(number)) {
            least = sorted.empty() ? number : std::min(least, number);
            sorted.push_back(number);
        } else if (sorted.empty()) {
            leading.push_back(number);
        } else {
            displaced.push_back({number, least});
        }
    }
    std::ranges::stable_sort(sorted);
    auto place = numbers.begin();
    for (const Number number : sorted) {
        for (; !displaced.empty() && displaced.back().least_before <= number; displaced.pop_back())
            *place++ = displaced.back().nan;
        *place++ = number;
    }
    std::ranges::reverse_copy(leading, place);
}

} // namespace numeric
