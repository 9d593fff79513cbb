#include "datafiles/nif_format.h"

#include "datafiles/nif_table.h"
#include "support/error_of.h"

#include <gtest/gtest.h>

#include <cmath>

using nif::read_table;
using nif::Table;

namespace {

constexpr std::size_t whole = static_cast<std::size_t>(-1);

Table table_of(std::string_view bytes)
{
    Table table;
    read_table(bytes, table);
    return table;
}

int error_of_reading(std::string_view bytes)
{
    return error_of([&] { table_of(bytes); });
}

const std::string sample = "3,2\r\n6.5,-1\r\nA description, free\r\nASCII\r\n\r\n0\r\nfirst, one\r\n1\r\n2,5\r\n-1\r\n second\r\n4\r\n5\r\n6.5\r\n";

} // namespace

TEST(NifReading, SizesDescriptionNamesAndValues)
{
    const Table table = table_of(sample);
    EXPECT_EQ(table.m, 2);
    EXPECT_EQ(table.n, 3);
    EXPECT_EQ(table.description, "A description, free");
    EXPECT_EQ(table.names, (std::vector<std::string>{"first, one", " second"}));
    EXPECT_EQ(table.values, (std::vector<double>{1, 4, 2.5, 5, -1, 6.5})) << "the object's index runs fastest";
    EXPECT_EQ(nif::header_lines(2, 3, "6.5", "-1", "A description, free"), sample.substr(0, sample.find("first")));
}

TEST(NifReading, LinesEndAtCarriageReturns)
{
    std::string returns = sample;
    std::erase(returns, '\n');
    EXPECT_EQ(table_of(returns).values, table_of(sample).values);
    EXPECT_EQ(table_of("1,1\r\rd\n2\r\r\r0\rn\n\r\r\n").description, "d\n2") << "a line feed alone is an ordinary character";
    EXPECT_EQ(table_of("1,1\r\r\r\r\r0\r\r\r").values, std::vector<double>{0}) << "an empty line is zero";
    EXPECT_EQ(table_of("1,1\r\r\r\r\r0\rname\r7").values, std::vector<double>{7}) << "the last line needs no end";
}

TEST(NifReading, SkipsFurtherHeaderLines)
{
    EXPECT_EQ(table_of("1,1\r\r\r\r\r2\rskipped\rskipped\rname\r5\r").names, std::vector<std::string>{"name"});
    EXPECT_EQ(table_of("1,1\r\r\r\r\r-2\rname\r5\r").names, std::vector<std::string>{"name"});
    EXPECT_EQ(error_of_reading("1,1\r\r\r\r\r2147483647\rname\r5\r"), 62);
    EXPECT_EQ(error_of_reading("1,1\r\r\r\r\r\rname\r5\r"), 13) << "no number of lines";
}

TEST(NifReading, SizesAreCheckedBeforeTheyAreBelieved)
{
    EXPECT_EQ(table_of(" 2 ,  1 \r\r\r\r\r0\rn\r1\r2\r").n, 2);
    for (const char* const sizes : {"", "1", "1;1", ",", "1,", ",1", "x,1", "1,x", "1,1,1", "99999999999,1"})
        EXPECT_EQ(error_of_reading(std::string{sizes} + "\r\r\r\r\r0\rname\r5\r"), 13) << sizes;
    for (const char* const sizes : {"0,1", "1,0", "-1,1", "1,-1", "-2147483648,-2147483648"})
        EXPECT_EQ(error_of_reading(std::string{sizes} + "\r\r\r\r\r0\rname\r5\r"), 9) << sizes;
    for (const char* const sizes : {"2147483647,2147483647", "2147483647,1", "1,2147483647", "7,1"})
        EXPECT_EQ(error_of_reading(std::string{sizes} + "\r\r\r\r\r0\rname\r5\r"), 62) << sizes;
    EXPECT_EQ(error_of_reading("2,1\r\r\r\r\r0\rname\r1E999\r1\r"), 6);
}

TEST(NifReading, ATableBeyondMemoryIsNoneThatAFileCanHold)
{
    constexpr std::int32_t most = 0x7FFFFFFF / sizeof(double); // values
    const nif::Reader reader{std::uint64_t{1} << 40, [] { return std::string_view{}; }, nullptr};
    EXPECT_TRUE(reader.can_hold(1, most));
    EXPECT_EQ(error_of([] { nif::require_possible(most, 1); }), 0);
    for (const auto& [m, n] : std::vector<std::pair<int, int>>{{1, most + 1}, {65536, 8192}, {65536, 65536}}) {
        EXPECT_FALSE(reader.can_hold(m, n));
        EXPECT_EQ(error_of([&] { nif::require_possible(m, n); }), 7) << m << ' ' << n;
    }
}

TEST(NifReading, EveryTruncationGivesAnErrorOrTheWholeTable)
{
    const std::size_t last = sample.rfind("6.5");
    for (std::size_t size = 0; size < sample.size(); ++size) {
        const std::string_view part = std::string_view{sample}.substr(0, size);
        EXPECT_EQ(error_of_reading(part) == 0, size > last) << size;
    }
    Table table;
    EXPECT_THROW(read_table(std::string_view{sample}.substr(0, last), table), automation::Error);
    EXPECT_EQ(table.values, (std::vector<double>{1, 4, 2.5, 5, -1, 0})) << "what was read stays";
}

TEST(NifReading, ValuesAreReadAlikeInEveryForm)
{
    std::string text = "14,1\r\r\r\r\r0\rname\r";
    for (const char* const value : {"-0", "-0.0", "123456789012345", "1234567890123456", "-12345678.9012345", "0,000000000000001", ".5", "5.",
                                    "1.2.3", "1,2,3", " 1 2", "+7", "1e2", "-,25\n"})
        text.append(value).append("\r");
    Table table;
    read_table(text, table, whole);
    EXPECT_EQ(table.values, (std::vector<double>{0, 0, 123456789012345, 1234567890123456, -12345678.9012345, 1e-15, 0.5, 5, 1.2, 1.2, 12, 7,
                                                 100, -0.25}));
    EXPECT_FALSE(std::signbit(table.values[0]));
    EXPECT_FALSE(std::signbit(table.values[1]));
}

TEST(NifReading, AnyBytesAreText)
{
    const std::string_view zeros{"1,1\r\0\r\0d\r\r\r0\r\0n\0\r1\0002\r", 21};
    const Table table = table_of(zeros);
    EXPECT_EQ(table.description, (std::string{"\0d", 2}));
    EXPECT_EQ(table.names[0], (std::string{"\0n\0", 3}));
    EXPECT_EQ(table.values[0], 1);
}
