#pragma once

#include <cstddef>

namespace ui {

/// Whether each line of a table stands at its own place.
template <class Row, std::size_t size>
consteval bool in_order(const Row (&rows)[size])
{
    for (std::size_t place = 0; place < size; ++place)
        if (static_cast<std::size_t>(rows[place].line) != place)
            return false;
    return true;
}

} // namespace ui
