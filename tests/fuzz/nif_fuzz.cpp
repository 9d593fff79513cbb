// Any bytes as a NIF file: what is read is what the plainest reader reads, and is read again from what is written of it.
#include "fuzz/driver.h"

#include "datafiles/nif_table.h"
#include "text/leading_number.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <sstream>

namespace {

std::vector<std::string> lines_of(std::string_view text)
{
    std::vector<std::string> lines;
    std::istringstream rest{std::string{text}};
    for (std::string line; std::getline(rest, line, '\r'); lines.push_back(line))
        if (rest.peek() == '\n')
            rest.get();
    return lines;
}

std::optional<std::int32_t> whole_number(const std::string& text)
{
    char* end = nullptr;
    const long long value = std::strtoll(text.c_str(), &end, 10); // the nearest one that it can hold
    const auto number = static_cast<std::int32_t>(value);
    const bool whole = text.find_first_not_of(" -0123456789") == text.npos && end != text.c_str()
                    && end[std::strspn(end, " ")] == '\0';
    return whole && value == number ? std::optional{number} : std::nullopt;
}

/// Nothing for a text that is no table.
std::optional<nif::Table> read_plainly(std::string_view text)
{
    const std::vector<std::string> lines = lines_of(text);
    if (lines.size() < 6)
        return std::nullopt;
    const std::size_t comma = lines[0].find(',');
    if (comma == std::string::npos)
        return std::nullopt;
    const auto n = whole_number(lines[0].substr(0, comma)), m = whole_number(lines[0].substr(comma + 1)), k = whole_number(lines[5]);
    if (!n || !m || !k || *n <= 0 || *m <= 0)
        return std::nullopt;
    std::uint64_t next = 6 + static_cast<std::uint64_t>(std::max(*k, 0));
    const auto objects = static_cast<std::uint64_t>(*m), columns = static_cast<std::uint64_t>(*n);
    if (next + objects * (columns + 1) > lines.size())
        return std::nullopt;
    nif::Table table{*m, *n, lines[2], {}, std::vector<double>(objects * columns)};
    for (std::uint64_t i = 0; i < objects; ++i) {
        table.names.push_back(lines[next++]);
        for (std::uint64_t j = 0; j < columns; ++j)
            table.values[j * objects + i] = text::leading_number(lines[next++]);
    }
    return table;
}

template <class Action>
std::optional<nif::Table> table_of(const Action& action)
{
    std::optional<nif::Table> table;
    fuzz_succeeds({6, 9, 13, 62}, [&] { table = action(); });
    return table;
}

bool equal(const nif::Table& left, const nif::Table& right)
{
    return left.m == right.m && left.n == right.n && left.description == right.description && left.names == right.names
        && left.values == right.values;
}

nif::Table read(std::string_view bytes, std::size_t piece_size)
{
    nif::Table table;
    nif::read_table(bytes, table, piece_size);
    return table;
}

std::string written(const nif::Table& table)
{
    std::string text = nif::header_lines(table.m, table.n, "", "", table.description);
    for (std::size_t i = 0; i < table.names.size(); ++i) {
        text.append(table.names[i]).append("\r\n");
        for (std::size_t place = i; place < table.values.size(); place += table.names.size()) {
            char number[40];
            text.append(number, static_cast<std::size_t>(std::snprintf(number, sizeof number, "%.17g\r\n", table.values[place])));
        }
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    // The first byte makes the size of the pieces that the file is read in.
    const std::size_t piece_size = data[0] % 16 == 0 ? size : data[0];
    const std::string_view bytes{reinterpret_cast<const char*>(data) + 1, size - 1};
    const auto table = table_of([&] { return read(bytes, piece_size); });
    const auto expected = table_of([&]() -> std::optional<nif::Table> { return read_plainly(bytes); });
    fuzz_require(table.has_value() == expected.has_value(), "one reader takes it for a table and the other does not");
    if (!table)
        return 0;
    fuzz_require(equal(*table, *expected), "the plain reader reads another table");
    fuzz_require(equal(read(written(*table), piece_size), *table), "what is written reads as another table");
    return 0;
}

std::vector<std::string> fuzz_seeds()
{
    using namespace std::string_literals;
    return {"\x10""3,2\r\n6,-1\r\ntext\r\nASCII\r\n\r\n0\r\none\r\n1\r\n2,5\r\n-1e3\r\ntwo, 2\r\n4\r\n5\r\n6.5\r\n"s,
            "\1""1,1\r\r\r\r\r2\rskipped\rskipped\rname\r0.1\r"s,
            "\x11 2 , 3 \r\r\r\r\r-1\ra\r1\r2\rb\r3\r4\rc\r5\r6"s,
            "\x23""1,1\r\r\r\r\r0\r\r\r"s,
            "\r\n"s, "\r"s, "\n"s, ","s, "1,1"s, "2,1"s, "2147483647"s, "-1"s, "0\r"s, "1E999\r"s, " "s, "\0"s, "65536,65536"s};
}
