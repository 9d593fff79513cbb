#pragma once

#include "automation/error.h"
#include "datafiles/nif_format.h"

#include <string>
#include <string_view>
#include <vector>

namespace nif {

/// A table in memory, the object's index fastest.
struct Table {
    std::int32_t m = 0, n = 0;
    std::string description;
    std::vector<std::string> names;
    std::vector<double> values;
};

/// Reads a whole file in pieces of this size; what was read before an error stays.
inline void read_table(std::string_view bytes, Table& table, std::size_t piece_size = 5)
{
    const auto no_number = [](std::string_view) -> std::int32_t { throw automation::Error{automation::Runtime::TypeMismatch}; };
    const auto next_piece = [rest = bytes, piece_size]() mutable {
        const std::string_view piece = rest.substr(0, piece_size);
        rest.remove_prefix(piece.size());
        return piece;
    };
    Reader reader{bytes.size(), next_piece, no_number};
    reader.read_sizes(table.m, table.n);
    table.description = reader.read_description();
    reader.skip_to_objects();
    if (!reader.can_hold(table.m, table.n))
        throw automation::Error{automation::Runtime::InputPastEnd};
    const auto m = static_cast<std::size_t>(table.m);
    table.names.assign(m, {});
    table.values.assign(m * static_cast<std::size_t>(table.n), 0);
    for (std::size_t i = 0; i < m; ++i) {
        table.names[i] = reader.read_name();
        reader.read_values(table.n, &table.values[i], m);
    }
}

} // namespace nif
