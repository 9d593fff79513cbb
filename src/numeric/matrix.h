#pragma once

#include "numeric/table.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

/// Products and transposition of tables: what the plain loops give, to the last bit, in a fraction of their time.
namespace numeric {

/// How two elements are multiplied.
enum class Arithmetic {
    Whole,  ///< as whole numbers of 32 bits: a product 0 has no sign
    Single, ///< as Singles: the product is rounded to one, unless it is beyond a Single's range
    Double,
};

/// What the kernel of the matrix product is made for.
enum class InstructionSet { Sse2, Avx, Avx512 };

/// The best one that the processor and the system have.
InstructionSet instruction_set() noexcept;

/// The matrix product: result(i, j) begins as 0 and becomes right(k, j) * left(i, k) + result(i, j) for each k, the first one
/// first, product and sum rounded each by itself. `right` has a row for each column of `left`, and may have more. False where a
/// product or a sum of finite numbers is beyond a Double; the result then means nothing. Of a NaN, sign and payload are open.
[[nodiscard]] bool multiply(Table<const double> left, Table<const double> right, Table<double> result, Arithmetic arithmetic,
                            InstructionSet instructions = instruction_set());

/// A table times a number; the result may be the table. False where a product of finite numbers is beyond a Double.
[[nodiscard]] bool multiply(Table<const double> table, double number, Table<double> result, Arithmetic arithmetic) noexcept;

/// Puts the element (row, column) of a table at (column, row) of another, which has its columns as rows.
template <class Element>
    requires std::is_trivially_copyable_v<Element>
void transpose(Table<const Element> source, Table<Element> target) noexcept
{
    // In squares, so that the lines of both tables stay in the cache until they are done.
    constexpr std::size_t side = 32;
    for (std::size_t left = 0; left < source.columns; left += side)
        for (std::size_t top = 0; top < source.rows; top += side) {
            const std::size_t right = std::min(left + side, source.columns), bottom = std::min(top + side, source.rows);
            for (std::size_t row = top; row < bottom; ++row)
                for (std::size_t column = left; column < right; ++column)
                    target(column, row) = source(row, column);
        }
}

} // namespace numeric
