#include "numeric/consistent_order.h"

#include "automation/error.h"
#include "numeric/exact_order.h"
#include "numeric/variant_order.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <utility>

namespace numeric {
namespace {

struct Number {
    double nearest;
    std::uint32_t index;
    NumberKind kind;
};

/// Finds out whether numbers that stand in their exact order compare consistently, though the platform rounds numbers of
/// some kinds beside others, and which of them are equal then.
///
/// Rounding never turns an order around: of two different numbers it makes equal ones at worst. So a number only has to be
/// held against the next two lower ones of each kind: if one is less in the comparison, all below it are. Numbers that are equal
/// form groups, in which each must be equal to each.
class RoundedOrder {
public:
    RoundedOrder(std::span<const VARIANT> values, std::span<Number> sorted) : values_{values}, numbers_{sorted} {}

    bool is_consistent()
    {
        if (!extremes_compare())
            return false;
        for (std::size_t first = 0; first < numbers_.size();) {
            const std::size_t last = end_of_equals(first);
            groups_.push_back({first, 1});
            if (!join(first, last))
                return false;
            first = last;
        }
        return true;
    }

    /// Puts the numbers of each group as they stood, once the order is known to be consistent.
    void arrange_groups()
    {
        for (std::size_t i = 0; i < groups_.size(); ++i)
            if (groups_[i].values > 1)
                std::ranges::sort(of_group(i), {}, &Number::index);
    }

private:
    /// Numbers from `first` on that compare as equal, of so many different values.
    struct Group {
        std::size_t first, values;
    };
    enum class Relation { Less, Equal, Contradiction };

    static constexpr NumberKind kind_at(std::size_t i) noexcept { return static_cast<NumberKind>(i); }
    const VARIANT& value(const Number& number) const noexcept { return values_[number.index]; }
    std::span<Number> of_group(std::size_t i) const noexcept
    {
        const std::size_t end = i + 1 < groups_.size() ? groups_[i + 1].first : numbers_.size();
        return numbers_.subspan(groups_[i].first, end - groups_[i].first);
    }

    std::size_t end_of_equals(std::size_t first) const noexcept
    {
        std::size_t end = first + 1;
        while (end < numbers_.size() && numbers_[end].nearest == numbers_[first].nearest
               && exact_order(value(numbers_[first]), value(numbers_[end])) == Order::Equal)
            ++end;
        return end;
    }

    /// How a number stands to one that is not less in exact order.
    Relation relation(const Number& lower, const Number& higher) const
    {
        switch (compare(value(lower), value(higher))) {
        case Order::Less:
            return Relation::Less;
        case Order::Equal:
            return Relation::Equal;
        default:
            return Relation::Contradiction;
        }
    }

    /// Whether they stand so in whichever order they are met.
    bool agrees(const Number& lower, const Number& higher) const
    {
        const Order back = compare(value(higher), value(lower));
        const Relation forth = relation(lower, higher);
        return forth == Relation::Equal ? back == Order::Equal : forth == Relation::Less && back == Order::Greater;
    }

    /// Whether a number is less than another one, whatever types they may be rounded to.
    bool is_clearly_less(const Number& lower, const Number& higher) const noexcept
    {
        if (static_cast<float>(lower.nearest) == static_cast<float>(higher.nearest))
            return false;
        if (lower.kind != NumberKind::Currency && higher.kind != NumberKind::Currency)
            return true;
        constexpr double two_parts = .0002, most_with_exact_parts = 9e11;
        const bool is_exact = lower.nearest > -most_with_exact_parts && higher.nearest < most_with_exact_parts;
        return is_exact && higher.nearest - lower.nearest > two_parts;
    }

    /// Whether the lowest and the highest of each kind can be compared with those of the others: these may be out of the
    /// range of the type that they are rounded to, and those between them then are not.
    bool extremes_compare() const
    {
        std::array<const Number*, number_kinds> lowest{}, highest{};
        for (const Number& number : numbers_) {
            const auto kind = static_cast<std::size_t>(number.kind);
            lowest[kind] = lowest[kind] ? lowest[kind] : &number;
            highest[kind] = &number;
        }
        for (std::size_t i = 0; i < number_kinds; ++i)
            for (std::size_t j = 0; j < i; ++j) {
                if (!lowest[i] || !lowest[j] || compare_exactly(kind_at(i), kind_at(j)))
                    continue;
                for (const Number* one : {lowest[i], highest[i]})
                    for (const Number* other : {lowest[j], highest[j]})
                        if (!agrees(*std::min(one, other), *std::max(one, other)))
                            return false;
            }
        return true;
    }

    /// Holds the numbers of one value, which form the last group so far, against each other and against those below.
    bool join(std::size_t first, std::size_t last)
    {
        std::array<const Number*, number_kinds> here{};
        for (std::size_t i = first; i < last; ++i)
            here[static_cast<std::size_t>(numbers_[i].kind)] = &numbers_[i];
        for (std::size_t i = 0; i < number_kinds; ++i)
            for (std::size_t j = 0; here[i] && j < number_kinds; ++j) {
                if (compare_exactly(kind_at(i), kind_at(j)))
                    continue;
                if (here[j] && relation(*here[i], *here[j]) != Relation::Equal)
                    return false;
                // Where the next lower one is equal, the one below that must not be.
                for (const Number* lower : {below_[j], second_below_[j]})
                    if (lower && !joins(*lower, *here[i]))
                        return false;
            }
        for (std::size_t i = 0; i < number_kinds; ++i)
            if (here[i])
                second_below_[i] = std::exchange(below_[i], here[i]);
        return true;
    }

    /// Makes one group of two numbers and all between them where they are equal; false where that contradicts others.
    bool joins(const Number& lower, const Number& higher)
    {
        if (is_clearly_less(lower, higher))
            return true;
        const Relation found = relation(lower, higher);
        if (found != Relation::Equal)
            return found == Relation::Less;
        const auto place = static_cast<std::size_t>(&lower - numbers_.data());
        const std::size_t before = groups_.size();
        while (groups_.back().first > place) {
            const std::size_t values = groups_.back().values;
            groups_.pop_back();
            groups_.back().values += values;
        }
        return groups_.size() == before || are_all_equal(groups_.back().first, higher);
    }

    /// Whether each number from here up to the values of one is equal to each.
    bool are_all_equal(std::size_t first, const Number& last) const
    {
        if (groups_.back().values >= number_kinds) // numbers of one kind and different values never are
            return false;
        const std::size_t end = end_of_equals(static_cast<std::size_t>(&last - numbers_.data()));
        std::array<const Number*, number_kinds> seen{};
        for (std::size_t i = first; i < end; ++i) {
            const Number& number = numbers_[i];
            const Number*& same_kind = seen[static_cast<std::size_t>(number.kind)];
            if (same_kind && same_kind->nearest == number.nearest && exact_order(value(*same_kind), value(number)) == Order::Equal)
                continue;
            for (const Number* other : seen)
                if (other && relation(*other, number) != Relation::Equal)
                    return false;
            same_kind = &number;
        }
        return true;
    }

    std::span<const VARIANT> values_;
    std::span<Number> numbers_;
    std::vector<Group> groups_;
    std::array<const Number*, number_kinds> below_{}, second_below_{}; ///< of each kind the highest met so far
};

/// Whether Empty comes before all of these texts; it equals an empty one, which comes behind all numbers.
bool empty_comes_before(std::span<const VARIANT> values, const std::vector<std::uint32_t>& texts)
{
    VARIANT empty;
    VariantInit(&empty);
    return std::ranges::all_of(texts, [&](std::uint32_t index) { return compare(empty, values[index]) == Order::Less; });
}

} // namespace

std::optional<std::vector<std::uint32_t>> consistent_order(std::span<const VARIANT> values)
try {
    std::vector<Number> numbers;
    std::vector<std::uint32_t> texts;
    KindSet kinds;
    bool has_empty = false;
    numbers.reserve(values.size());
    for (std::uint32_t i = 0; i < values.size(); ++i) {
        if (values[i].vt == VT_BSTR) {
            texts.push_back(i);
            continue;
        }
        const NumberKind kind = number_kind(values[i]);
        if (kind == NumberKind::None)
            return std::nullopt;
        kinds.insert(kind);
        has_empty |= values[i].vt == VT_EMPTY;
        numbers.push_back({nearest_double(values[i]), i, kind});
    }
    if (has_empty && !empty_comes_before(values, texts))
        return std::nullopt;

    if (kinds.contains(NumberKind::Currency))
        std::ranges::stable_sort(numbers, [&](const Number& a, const Number& b) {
            return a.nearest < b.nearest
                || (a.nearest == b.nearest && exact_order(values[a.index], values[b.index]) == Order::Less);
        });
    else
        std::ranges::stable_sort(numbers, {}, &Number::nearest);
    if (!kinds.compare_exactly()) {
        RoundedOrder order{values, numbers};
        if (!order.is_consistent())
            return std::nullopt;
        order.arrange_groups();
    }
    std::ranges::stable_sort(texts, [&](std::uint32_t a, std::uint32_t b) { return text_less(values[a].bstrVal, values[b].bstrVal); });

    std::vector<std::uint32_t> order;
    order.reserve(values.size());
    std::ranges::transform(numbers, std::back_inserter(order), &Number::index);
    order.insert(order.end(), texts.begin(), texts.end());
    return order;
} catch (const automation::Error&) {
    return std::nullopt; // some can't be compared
}

} // namespace numeric
