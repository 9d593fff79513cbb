#include "datafiles/qvb_format.h"

#include "automation/error.h"

#include <bit>
#include <cstring>
#include <limits>

namespace qvb {
namespace {

using automation::Error;
using automation::Runtime;

static_assert(std::endian::native == std::endian::little);

constexpr std::size_t matrix_header_size = 30;
constexpr std::size_t length_size = sizeof(std::int32_t);

template <class Integer>
void append(std::string& bytes, Integer value)
{
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

void append_flag(std::string& bytes, bool flag)
{
    append(bytes, static_cast<std::int16_t>(flag ? -1 : 0));
}

/// A number of bytes or of things, as it is written.
std::int32_t length(std::size_t size)
{
    if (size > std::numeric_limits<std::int32_t>::max())
        throw Error{Runtime::Overflow};
    return static_cast<std::int32_t>(size);
}

void append_text(std::string& bytes, std::string_view text)
{
    append(bytes, length(text.size()));
    bytes += text;
}

std::int32_t read_number(Source& source)
{
    std::int32_t number = 0;
    source.read(&number, sizeof number);
    return number;
}

std::string read_text(Source& source)
{
    const std::int32_t size = read_number(source);
    if (size < 0)
        throw Error{Runtime::InvalidCall};
    if (static_cast<std::uint64_t>(size) > source.left())
        throw Error{Runtime::InputPastEnd};
    std::string text(static_cast<std::size_t>(size), ' ');
    source.read(text.data(), text.size());
    return text;
}

/// Reads how many things follow that take at least so many bytes each.
std::size_t read_count(Source& source, std::size_t least_size)
{
    const std::int32_t count = read_number(source);
    if (count <= 0)
        throw Error{Runtime::SubscriptOutOfRange};
    if (static_cast<std::uint64_t>(count) * least_size > source.left())
        throw Error{Runtime::InputPastEnd};
    return static_cast<std::size_t>(count);
}

std::string without_blanks(std::string text)
{
    const std::size_t first = text.find_first_not_of(' ');
    if (first == text.npos)
        return {};
    text.erase(text.find_last_not_of(' ') + 1);
    text.erase(0, first);
    return text;
}

std::int32_t product(std::int32_t left, std::int32_t right)
{
    std::int32_t result = 0;
    if (__builtin_mul_overflow(left, right, &result))
        throw Error{Runtime::Overflow};
    return result;
}

void require_upper_bound(std::int32_t lower, std::int32_t count)
{
    const std::int64_t upper = std::int64_t{lower} + count - 1;
    if (upper != static_cast<std::int32_t>(upper))
        throw Error{Runtime::Overflow};
}

/// Takes the fields of a header from its bytes one after another.
class Fields {
public:
    explicit Fields(const char* bytes) noexcept : next_{bytes} {}

    std::int32_t number() noexcept { return take<std::int32_t>(); }
    bool flag() noexcept { return take<std::int16_t>() != 0; }

private:
    template <class Integer>
    Integer take() noexcept
    {
        Integer value;
        std::memcpy(&value, next_, sizeof value);
        next_ += sizeof value;
        return value;
    }

    const char* next_;
};

} // namespace

InformationHeader new_information(std::string_view created)
{
    InformationHeader header;
    header.entries = {{"Authors", "The qvObjects developers"},
                      {"Copyright", "Copyright 1999 The qvObjects developers"},
                      {"Created", std::string{created}}};
    return header;
}

std::string bytes_of(const InformationHeader& header)
{
    std::string bytes;
    append(bytes, header.version);
    append_text(bytes, header.file_type);
    append(bytes, length(header.entries.size()));
    for (const auto& [key, value] : header.entries) {
        append_text(bytes, key);
        append_text(bytes, value);
    }
    return bytes;
}

void read(Source& source, InformationHeader& header)
{
    header.version = read_number(source);
    header.file_type = read_text(source);
    std::size_t count = read_count(source, 2 * length_size);
    decltype(header.entries) entries;
    for (; count > 0; --count) {
        std::string key = read_text(source);
        entries.emplace_back(std::move(key), read_text(source));
    }
    header.entries = std::move(entries);
}

std::string bytes_of(const MatrixHeader& header)
{
    std::string bytes;
    for (const std::int32_t number : {header.objects, header.x, header.y, header.planes, header.element})
        append(bytes, number);
    for (const bool flag : {header.transpose, header.object_names, header.feature_names})
        append_flag(bytes, flag);
    append(bytes, header.extended_header);
    return bytes;
}

void read(Source& source, MatrixHeader& header)
{
    char bytes[matrix_header_size];
    source.read(bytes, sizeof bytes);
    Fields fields{bytes};
    header.objects = fields.number();
    header.x = fields.number();
    header.y = fields.number();
    header.planes = fields.number();
    header.element = fields.number();
    header.transpose = fields.flag();
    header.object_names = fields.flag();
    header.feature_names = fields.flag();
    header.extended_header = fields.number();
}

void fit(MatrixHeader& header, std::int32_t rows, std::int32_t columns)
{
    if (header.y < 1)
        header.y = 1;
    if (product(header.y, header.x) != columns) {
        if (columns % header.y != 0)
            header.y = 1;
        header.x = columns / header.y;
    }
    header.objects = rows;
}

Size size_of_data(const Source& source, const MatrixHeader& header, std::size_t width, std::int32_t lower1, std::int32_t lower2)
{
    const Size size{header.objects, product(product(header.x, header.y), header.planes)};
    require_upper_bound(lower1, size.rows);
    require_upper_bound(lower2, size.columns);
    if (size.rows <= 0 || size.columns <= 0)
        throw Error{Runtime::SubscriptOutOfRange};
    const std::uint64_t count = static_cast<std::uint64_t>(size.rows) * static_cast<std::uint64_t>(size.columns);
    if (count > source.left() / width)
        throw Error{Runtime::InputPastEnd};
    if (count > std::numeric_limits<std::int32_t>::max() / width)
        throw Error{Runtime::OutOfMemory};
    return size;
}

std::string bytes_of(const std::vector<std::string>& names)
{
    std::string bytes;
    append(bytes, length(names.size()));
    for (const std::string& name : names)
        append_text(bytes, name);
    return bytes;
}

std::vector<std::string> read_names(Source& source)
{
    std::size_t count = read_count(source, length_size);
    std::vector<std::string> names;
    for (; count > 0; --count)
        names.push_back(without_blanks(read_text(source)));
    return names;
}

} // namespace qvb
