#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

/// The text of a named table of m objects with n values each:
///
///     n,m
///     highest value,lowest value
///     description
///     ASCII
///     (an empty line)
///     k, then k more lines that say nothing
///     the name of an object, and each of its values on a line of its own; and so on for each object
///
/// Lines end with CR LF or CR. The bytes are those of the system's code page.
namespace nif {

/// Takes a file apart, from its start to its end. Its parts are to be read in the order in which they are declared; a text
/// stays until the next part is read. Each raises 62 where the file ends too early.
class Reader {
public:
    /// Gives the bytes of the file in pieces, cut anywhere, the last one followed by an empty one.
    using NextPiece = std::function<std::string_view()>;
    /// Converts a text that is not just digits to a whole number, or raises what that fails with.
    using ToLong = std::int32_t (*)(std::string_view text);

    /// `size` is the number of bytes in all the pieces.
    Reader(std::uint64_t size, NextPiece next_piece, ToLong to_long)
        : ahead_{size}, next_piece_{std::move(next_piece)}, to_long_{to_long}
    {
    }

    /// Each is set as soon as it is read. Raises 13 where there is no comma, and what `ToLong` raises.
    void read_sizes(std::int32_t& m, std::int32_t& n);
    std::string_view read_description();
    void skip_to_objects();
    /// Whether the rest may be a table of this size, and one whose values an array can take. Raises 9 for a size that is not
    /// positive.
    bool can_hold(std::int32_t m, std::int32_t n) const;
    std::string_view read_name() { return line(); }
    /// Reads the values of an object, to places that are so far from one another. Raises 6 for a number beyond the range.
    void read_values(std::int32_t count, double* values, std::size_t distance);

private:
    std::string_view line();
    std::string_view line_in_pieces();
    bool get_piece();
    void end_line(std::size_t size) noexcept;
    void skip_line_feed() noexcept;
    std::int32_t number(std::string_view text) const;

    std::uint64_t ahead_;      ///< how many bytes there are in the pieces to come
    std::string_view left_;    ///< what is left of the piece
    std::string line_;         ///< a line that goes on over several pieces
    bool after_return_ = false; ///< a line feed here belongs to the line before
    NextPiece next_piece_;
    ToLong to_long_;
};

/// Raises 9 for a size that is not positive, 7 for a table whose values take more than an array can: 2 GB, at eight bytes each.
void require_possible(std::int32_t m, std::int32_t n);

/// The end of each line that is written.
inline constexpr std::string_view line_end = "\r\n";

/// The lines before the objects.
std::string header_lines(std::int32_t m, std::int32_t n, std::string_view highest, std::string_view lowest,
                         std::string_view description);

} // namespace nif
