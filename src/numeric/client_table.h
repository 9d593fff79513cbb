#pragma once

#include "numeric/elements.h"
#include "numeric/table.h"

#include <vector>

namespace numeric {

/// A client's array of two dimensions, rows first, locked while this lives.
class ClientTable : public Elements {
public:
    /// Raises 13 for a value that is no array, 9 for one that has not two dimensions.
    explicit ClientTable(const VARIANT& value);

    std::size_t rows() const noexcept { return count(1); }
    std::size_t columns() const noexcept { return count(2); }
    /// The place of an element known by its own indexes. Raises 9 when there is none.
    std::size_t at(long long row, long long column) const;

    template <class Element>
    Table<Element> view() const noexcept
    {
        return {as<Element>().data(), rows(), columns()};
    }
};

/// The bounds of one dimension. Raises 9 when it has a negative number of elements, 7 when it has more than an array can hold.
SAFEARRAYBOUND bounds(long long lower, long long upper);
SAFEARRAYBOUND bounds_of(const Elements& elements, USHORT dimension) noexcept;

/// A new table whose elements are zero, empty or nothing. Raises 7 when it is too large for memory.
automation::Variant new_table(VARTYPE type, SAFEARRAYBOUND rows, SAFEARRAYBOUND columns);

/// What a table holds, as far as the platform's arithmetic makes a difference: a set of these.
enum Kinds : unsigned {
    Small = 1,   ///< Byte, Integer, Boolean, Empty: next to a Single they compute as Singles
    Long = 2,    ///< next to a Single it computes as a Double
    Single = 4,
    Double = 8,
    Date = 16,   ///< a Double that may stay a date
    Other = 32,  ///< texts, Currency, Decimal, Null, ...: left to the platform
};
Kinds kind(VARTYPE type) noexcept;
unsigned kinds(const Elements& elements) noexcept;

/// The elements of a table without any of the kind Other as Doubles, each converted exactly: those of a Double array itself,
/// or a copy.
class Doubles {
public:
    explicit Doubles(const ClientTable& table);
    Table<const double> table() const noexcept { return view_; }

private:
    std::vector<double> copy_;
    Table<const double> view_;
};

} // namespace numeric
