#include "numeric/array_sorting.h"

#include "automation/border.h"
#include "numeric/consistent_order.h"
#include "numeric/elements.h"
#include "numeric/insertion_sort.h"
#include "numeric/variant_order.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <span>
#include <vector>

namespace numeric {
namespace {

using automation::Error;
using automation::Runtime;
using automation::Variant;

/// Moves the last bytes in front of the others.
void last_to_front(std::byte* first, std::byte* last, std::byte* end)
{
    const std::vector<std::byte> moved(last, end);
    std::memmove(first + moved.size(), first, static_cast<std::size_t>(last - first));
    std::memcpy(first, moved.data(), moved.size());
}

void sort_by_insertion(const Elements& elements)
{
    insertion_sort(
        elements.size(), [&](std::size_t a, std::size_t b) { return compare(elements[a], elements[b]) == Order::Greater; },
        [&](std::size_t from, std::size_t to) {
            last_to_front(elements.place(to), elements.place(from), elements.place(from + 1));
        });
}

/// Whether the platform's comparison takes a NaN for greater than numbers, and numbers for greater than a NaN.
bool nan_is_always_greater()
{
    const Variant nan{std::numeric_limits<double>::quiet_NaN()}, number{1.0};
    return compare(nan, number) == Order::Greater && compare(number, nan) == Order::Greater
        && compare(nan, nan) == Order::Greater;
}

void rearrange(std::span<VARIANT> values, std::span<const std::uint32_t> order)
{
    const std::vector<VARIANT> former(values.begin(), values.end());
    std::ranges::transform(order, values.begin(), [&](std::uint32_t index) { return former[index]; });
}

void sort_variants(const Elements& elements)
{
    const auto values = elements.as<VARIANT>();
    if (const auto order = consistent_order(values))
        rearrange(values, *order);
    else if (is_consistent(values))
        std::ranges::stable_sort(values, consistent_less);
    else
        sort_by_insertion(elements);
}

void sort_values(const Elements& elements)
{
    if ((elements.type() == VT_R8 || elements.type() == VT_DATE) && nan_is_always_greater())
        return sort_with_nans(elements.as<double>());
    if (elements.type() == VT_R4 && nan_is_always_greater())
        return sort_with_nans(elements.as<float>());
    if (elements.type() == VT_BSTR)
        std::ranges::stable_sort(elements.as<BSTR>(), text_less);
    else if (elements.type() == VT_VARIANT)
        sort_variants(elements);
    else
        sort_by_insertion(elements);
}

/// Places are counted by Integers.
void check_counter(const Elements& table, USHORT dimension)
{
    if (table.lower(dimension) < -0x8000 || table.upper(dimension) > 0x7FFF)
        throw Error{Runtime::Overflow};
}

/// A table as a list of records, each a list of fields: its rows, or its columns.
class Records {
public:
    Records(const Elements& table, bool of_columns)
        : table_{table}, of_columns_{of_columns}, count_{table.count(of_columns ? 2 : 1)},
          fields_{table.count(of_columns ? 1 : 2)}
    {
    }

    std::size_t count() const noexcept { return count_; }
    std::size_t fields() const noexcept { return fields_; }
    std::size_t index(std::size_t record, std::size_t field) const noexcept
    {
        return of_columns_ ? record * fields_ + field : field * count_ + record;
    }

    /// Takes a record and puts it down below, so that those between move up.
    void move(std::size_t from, std::size_t to) const
    {
        if (of_columns_)
            return last_to_front(table_.place(index(to, 0)), table_.place(index(from, 0)), table_.place(index(from + 1, 0)));
        for (std::size_t field = 0; field < fields_; ++field)
            last_to_front(table_.place(index(to, field)), table_.place(index(from, field)), table_.place(index(from, field) + 1));
    }

private:
    const Elements& table_;
    bool of_columns_;
    std::size_t count_, fields_;
};

/// The Longs of a record, of which one is its key, on their way into place.
class Buffer {
public:
    Buffer(const Elements& table, const Records& records) : table_{table}, records_{records}, longs_(records.fields()) {}

    void load(std::size_t record)
    {
        for (std::size_t field = 0; field < longs_.size(); ++field)
            longs_[field] = automation::converted(table_[records_.index(record, field)], VT_I4);
    }
    const Variant& operator[](std::size_t field) const noexcept { return longs_[field]; }

    /// Puts the Longs where a record was, converted to what the table holds.
    void move_into(std::size_t from, std::size_t to)
    {
        if (table_.type() != VT_VARIANT)
            for (Variant& value : longs_)
                value = automation::converted(value, table_.type());
        records_.move(from, to);
        for (std::size_t field = 0; field < longs_.size(); ++field)
            table_.replace(records_.index(to, field), std::move(longs_[field]));
    }

private:
    const Elements& table_;
    const Records& records_;
    std::vector<Variant> longs_;
};

} // namespace

void sort(const VARIANT& array)
{
    const Elements elements{array};
    if (elements.dimensions() != 1)
        throw Error{Runtime::SubscriptOutOfRange};
    for_numbers(
        elements, [](auto numbers) { std::ranges::stable_sort(numbers); }, [&] { sort_values(elements); });
}

void sort_records(const VARIANT& table, long key, bool of_columns)
{
    const Elements elements{table};
    if (elements.dimensions() != 2)
        throw Error{Runtime::SubscriptOutOfRange};
    check_counter(elements, of_columns ? 2 : 1);
    const Records records{elements, of_columns};
    if (records.count() < 2)
        return;
    const USHORT field_dimension = of_columns ? 1 : 2;
    check_counter(elements, field_dimension);

    Buffer buffer{elements, records};
    const long long key_field = key - elements.lower(field_dimension);
    const bool has_key = key_field >= 0 && key_field < static_cast<long long>(records.fields());
    for (std::size_t i = 1; i < records.count(); ++i) {
        buffer.load(i);
        if (!has_key)
            throw Error{Runtime::SubscriptOutOfRange};
        const auto field = static_cast<std::size_t>(key_field);
        std::size_t place = i;
        while (place > 0 && compare(elements[records.index(place - 1, field)], buffer[field]) == Order::Greater)
            --place;
        if (place != i)
            buffer.move_into(i, place);
    }
}

} // namespace numeric
