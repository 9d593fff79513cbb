#include "datafiles/nif_format.h"

#include "automation/error.h"
#include "text/leading_number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace nif {
namespace {

using automation::Error;
using automation::Runtime;

std::string_view without_blanks(std::string_view text) noexcept
{
    const std::size_t first = text.find_first_not_of(' ');
    if (first == text.npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

constexpr std::array powers{1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/// Most values are just digits with a point or a comma among them, so few that both the digits and the power of ten are
/// exact. These are read together with the end of their line, which is where this gives; null for any other line.
const char* read_plain_value(const char* next, const char* end, double& value) noexcept
{
    constexpr int most_digits = 15, high_digits = 8; // in two parts, as 64 bits take their time on a 32-bit processor
    const bool negative = next != end && *next == '-';
    next += negative ? 1 : 0;
    std::uint32_t high = 0, low = 0;
    int digits = 0;
    const char* point = nullptr;
    for (; next != end; ++next) {
        const std::uint32_t digit = static_cast<unsigned char>(*next) - std::uint32_t{'0'};
        if (digit < 10) {
            if (digits < high_digits)
                high = high * 10 + digit;
            else
                low = low * 10 + digit;
            ++digits;
        } else if (!point && (*next == '.' || *next == ',')) {
            point = next;
        } else {
            break;
        }
    }
    if (next == end || *next != '\r' || digits == 0 || digits > most_digits)
        return nullptr;
    double size = static_cast<std::int32_t>(high);
    if (digits > high_digits)
        size = size * powers[static_cast<std::size_t>(digits - high_digits)] + static_cast<std::int32_t>(low);
    if (point)
        size /= powers[static_cast<std::size_t>(next - point - 1)];
    value = negative && size != 0 ? -size : size;
    return next;
}

void require_positive(std::int32_t m, std::int32_t n)
{
    if (m <= 0 || n <= 0)
        throw Error{Runtime::SubscriptOutOfRange};
}

bool fits_memory(std::int32_t m, std::int32_t n) noexcept
{
    constexpr std::uint64_t most_bytes = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::uint64_t>(m) * static_cast<std::uint64_t>(n) <= most_bytes / sizeof(double);
}

} // namespace

void Reader::read_sizes(std::int32_t& m, std::int32_t& n)
{
    const std::string_view sizes = line();
    const std::size_t comma = sizes.find(',');
    if (comma == sizes.npos)
        throw Error{Runtime::TypeMismatch};
    n = number(sizes.substr(0, comma));
    m = number(sizes.substr(comma + 1));
}

std::string_view Reader::read_description()
{
    line();
    return line();
}

void Reader::skip_to_objects()
{
    line();
    line();
    for (std::int32_t more = number(line()); more > 0; --more)
        line();
}

/// Every line takes a byte at least: its end, or a character where the last one has no end.
bool Reader::can_hold(std::int32_t m, std::int32_t n) const
{
    require_positive(m, n);
    const bool is_in_file = static_cast<std::uint64_t>(m) * (static_cast<std::uint64_t>(n) + 1) <= left_.size() + ahead_;
    return is_in_file && fits_memory(m, n);
}

void require_possible(std::int32_t m, std::int32_t n)
{
    require_positive(m, n);
    if (!fits_memory(m, n))
        throw Error{Runtime::OutOfMemory};
}

void Reader::read_values(std::int32_t count, double* values, std::size_t distance)
{
    for (; count > 0; --count, values += distance) {
        skip_line_feed();
        const char* const start = left_.data();
        if (const char* const end = read_plain_value(start, start + left_.size(), *values))
            end_line(static_cast<std::size_t>(end - start));
        else
            *values = text::leading_number(line());
    }
}

std::string_view Reader::line()
{
    skip_line_feed();
    const std::size_t size = left_.find('\r');
    if (size == left_.npos)
        return line_in_pieces();
    const std::string_view line = left_.substr(0, size);
    end_line(size);
    return line;
}

/// The line that begins in this piece and ends in another, or with the file.
std::string_view Reader::line_in_pieces()
{
    line_ = left_;
    while (get_piece()) {
        if (line_.empty())
            skip_line_feed();
        const std::size_t size = left_.find('\r');
        line_ += left_.substr(0, size);
        if (size == left_.npos)
            continue;
        end_line(size);
        return line_;
    }
    if (line_.empty())
        throw Error{Runtime::InputPastEnd};
    return line_;
}

bool Reader::get_piece()
{
    left_ = next_piece_();
    ahead_ -= std::min<std::uint64_t>(ahead_, left_.size());
    return !left_.empty();
}

/// Goes behind a line of this size and the carriage return that ends it.
void Reader::end_line(std::size_t size) noexcept
{
    left_.remove_prefix(size + 1);
    after_return_ = true;
}

void Reader::skip_line_feed() noexcept
{
    if (!after_return_ || left_.empty())
        return;
    after_return_ = false;
    if (left_.front() == '\n')
        left_.remove_prefix(1);
}

std::int32_t Reader::number(std::string_view text) const
{
    text = without_blanks(text);
    std::int32_t value = 0;
    const auto [end, code] = std::from_chars(text.data(), text.data() + text.size(), value);
    return code == std::errc{} && end == text.data() + text.size() ? value : to_long_(text);
}

std::string header_lines(std::int32_t m, std::int32_t n, std::string_view highest, std::string_view lowest,
                         std::string_view description)
{
    std::string lines = std::to_string(n) + ',' + std::to_string(m);
    lines.append(line_end).append(highest).append(",").append(lowest);
    lines.append(line_end).append(description);
    lines.append(line_end).append("ASCII");
    lines.append(line_end).append(line_end).append("0").append(line_end);
    return lines;
}

} // namespace nif
