#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// The layouts of binary data files. All integers are little-endian. A text is its length in bytes (32 bits, signed) and
/// then its bytes in the system's code page, without an end mark. A QVB file is
///
///     information header      what kind of file this is, and who made it when
///     matrix header           30 bytes: the sizes and the type of the matrix
///     data                    the elements, packed, the object's index fastest
///     names block             only where the matrix header says so: the names of the objects
namespace qvb {

/// Where the bytes of a file come from.
class Source {
public:
    /// Reads the next bytes. Raises 62 where there are not so many.
    virtual void read(void* bytes, std::size_t size) = 0;
    /// How many bytes are left.
    virtual std::uint64_t left() const noexcept = 0;

protected:
    ~Source() = default;
};

/// The identifiers of the kinds of data files.
inline constexpr std::string_view ID_NIF = "9582B510-DB73-11d2-9970-E08431000000";
inline constexpr std::string_view ID_QVD = "893E82C0-DB73-11d2-9970-E08431000000";
inline constexpr std::string_view ID_QVB = "6CDF9090-DB73-11d2-9970-E08431000000";

/// The header that every binary data file begins with:
///
///     version                 32 bits
///     file type               a text
///     number of entries       32 bits
///     each entry              two texts: its key and its value
struct InformationHeader {
    std::int32_t version = 0;
    std::string file_type;
    std::vector<std::pair<std::string, std::string>> entries;
};

/// A header with the three entries that new files get; `created` says when.
InformationHeader new_information(std::string_view created);

std::string bytes_of(const InformationHeader& header);

/// Reads field by field: what was read before an error stays in `header`, except that the entries change together. Raises 9
/// where there are no entries, 5 for a negative length, 62 where the file ends before what it announces.
void read(Source& source, InformationHeader& header);

/// The types of elements, by their numbers in the file.
enum class Element : std::int32_t { Byte = 0, Int = 1, Lng = 2, Sng = 3, Dbl = 4 };

/// The header of the matrix. In the file, flags take 16 bits (0 or -1) and everything else 32.
struct MatrixHeader {
    std::int32_t objects = 0; ///< the rows
    std::int32_t x = 0, y = 1, planes = 1; ///< their product is the number of columns
    std::int32_t element = static_cast<std::int32_t>(Element::Dbl); ///< any number that a file may hold
    bool transpose = false;
    bool object_names = false; ///< a names block follows the data
    bool feature_names = false;
    std::int32_t extended_header = 0;

    bool operator==(const MatrixHeader&) const = default;
};

std::string bytes_of(const MatrixHeader& header);

/// Raises 62 where the file ends before, and leaves `header` as it was.
void read(Source& source, MatrixHeader& header);

/// Makes the header that of a table: `y` stays if it divides the number of columns, and x is what goes with it. Raises 6
/// where x times y is beyond 32 bits.
void fit(MatrixHeader& header, std::int32_t rows, std::int32_t columns);

struct Size {
    std::int32_t rows, columns;
};

/// The size of the matrix behind the headers, whose elements take `width` bytes and whose indices begin at these bounds.
/// Raises 6 where a product or an upper bound is beyond 32 bits, 9 where a size is not positive, 62 where the rest of the
/// file can't hold so many elements, 7 where an array can't: it takes 2 GB at most.
Size size_of_data(const Source& source, const MatrixHeader& header, std::size_t width, std::int32_t lower1, std::int32_t lower2);

/// The names block: the number of names (32 bits) and each of them as a text.
std::string bytes_of(const std::vector<std::string>& names);

/// The names without the blanks around them. Raises what reading an information header raises.
std::vector<std::string> read_names(Source& source);

} // namespace qvb
