#pragma once

#include <cstddef>

namespace numeric {

/// A table in storage order, columns one after the other, that someone else owns. Rows and columns count from 0 here.
template <class Element>
struct Table {
    Element* cells;
    std::size_t rows;
    std::size_t columns;

    Element& operator()(std::size_t row, std::size_t column) const noexcept { return cells[column * rows + row]; }
    Element* column(std::size_t column) const noexcept { return cells + column * rows; }
    std::size_t size() const noexcept { return rows * columns; }
    operator Table<const Element>() const noexcept { return {cells, rows, columns}; }
};

} // namespace numeric
