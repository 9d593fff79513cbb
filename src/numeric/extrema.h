#pragma once

#include <cstddef>
#include <vector>

/// The least and the greatest elements of tables in storage order (first index fastest). Elements are known by their index
/// there; `before(a, b)` says whether element a goes before element b, by being less or by being greater. No table is empty.
namespace numeric {

/// The first of all elements, and of equal ones the one in the lowest row, then in the lowest column. Only for an order
/// in which any two elements stand in the same way however they are met; the table is read in storage order.
template <class Before>
std::size_t first_of_all(std::size_t rows, std::size_t columns, const Before& before)
{
    std::size_t best = 0, best_row = 0, index = 0;
    for (std::size_t column = 0; column < columns; ++column)
        for (std::size_t row = 0; row < rows; ++row, ++index)
            if (before(index, best) || (row < best_row && !before(best, index))) {
                best = index;
                best_row = row;
            }
    return best;
}

/// What remains of all elements when each in turn, row by row, replaces the one kept if it goes before that.
template <class Before>
std::size_t last_kept(std::size_t rows, std::size_t columns, const Before& before)
{
    std::size_t kept = 0;
    for (std::size_t row = 0; row < rows; ++row)
        for (std::size_t column = row == 0 ? 1 : 0; column < columns; ++column)
            if (before(column * rows + row, kept))
                kept = column * rows + row;
    return kept;
}

/// Where the least and the greatest element of a row or a column are.
struct Extremes {
    std::size_t least;
    std::size_t greatest;
};

/// Those of each row, or of each column: of equal elements the first in the row or column.
template <class Less, class Greater>
std::vector<Extremes> extremes_of_lines(std::size_t rows, std::size_t columns, bool of_columns, const Less& less,
                                        const Greater& greater)
{
    std::vector<Extremes> lines(of_columns ? columns : rows);
    std::size_t index = 0;
    for (std::size_t column = 0; column < columns; ++column)
        for (std::size_t row = 0; row < rows; ++row, ++index) {
            Extremes& line = lines[of_columns ? column : row];
            if ((of_columns ? row : column) == 0) {
                line = {index, index};
                continue;
            }
            if (less(index, line.least))
                line.least = index;
            if (greater(index, line.greatest))
                line.greatest = index;
        }
    return lines;
}

} // namespace numeric
