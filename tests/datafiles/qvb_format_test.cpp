#include "datafiles/qvb_format.h"

#include "datafiles/element_conversion.h"
#include "datafiles/memory_source.h"
#include "support/error_of.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <limits>
#include <tuple>
#include <optional>

using namespace std::string_literals;
using namespace std::string_view_literals;
using qvb::bytes_of;
using qvb::InformationHeader;
using qvb::MatrixHeader;
using qvb::MemorySource;

namespace {

constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();

const InformationHeader information{1, std::string{qvb::ID_QVB}, {{" key ", "value"}, {"", "  "}}};
const std::string information_bytes = "\1\0\0\0"
                                      "\x24\0\0\0"
                                      "6CDF9090-DB73-11d2-9970-E08431000000"
                                      "\2\0\0\0"
                                      "\5\0\0\0 key \5\0\0\0value"
                                      "\0\0\0\0\2\0\0\0  "s;

MatrixHeader header_of(std::int32_t objects, std::int32_t x, std::int32_t y, std::int32_t planes)
{
    return {.objects = objects, .x = x, .y = y, .planes = planes};
}

MatrixHeader fitted(std::int32_t x, std::int32_t y, std::int32_t rows, std::int32_t columns)
{
    MatrixHeader header = header_of(0, x, y, 1);
    qvb::fit(header, rows, columns);
    return header;
}

} // namespace

TEST(InformationHeader, IsWrittenAndReadFieldByField)
{
    EXPECT_EQ(bytes_of(information), information_bytes);
    EXPECT_EQ(bytes_of(InformationHeader{}), std::string(12, '\0'));

    MemorySource source{information_bytes};
    InformationHeader read;
    qvb::read(source, read);
    EXPECT_EQ(bytes_of(read), information_bytes) << "blanks stay";
    EXPECT_EQ(source.left(), 0u);

    const InformationHeader fresh = qvb::new_information("now");
    ASSERT_EQ(fresh.entries.size(), 3u);
    EXPECT_EQ(fresh.entries[2], (std::pair<std::string, std::string>{"Created", "now"}));
    EXPECT_EQ(fresh.version, 0);
}

TEST(InformationHeader, EveryTruncationMeetsTheEnd)
{
    for (std::size_t size = 0; size < information_bytes.size(); ++size) {
        MemorySource source{std::string_view{information_bytes}.substr(0, size)};
        InformationHeader read{7, "before", {{"a", "b"}}};
        EXPECT_EQ(error_of([&] { qvb::read(source, read); }), 62) << size;
        EXPECT_EQ(read.version, size < 4 ? 7 : 1);
        EXPECT_EQ(read.file_type, size < 44 ? "before" : information.file_type);
        EXPECT_EQ(read.entries.size(), 1u);
    }
}

TEST(InformationHeader, CountsAreCheckedBeforeTheyAreBelieved)
{
    const auto error = [](const std::string& bytes) {
        MemorySource source{bytes};
        InformationHeader read;
        return error_of([&] { qvb::read(source, read); });
    };
    const std::string start(4, '\0');
    EXPECT_EQ(error(start + "\xFF\xFF\xFF\xFF"s), 5) << "a negative length";
    EXPECT_EQ(error(start + "\xFF\xFF\xFF\x7F"s), 62);
    EXPECT_EQ(error(start + "\0\0\0\0\0\0\0\0"s), 9) << "no entries";
    EXPECT_EQ(error(start + "\0\0\0\0\xFF\xFF\xFF\xFF"s), 9);
    EXPECT_EQ(error(start + "\0\0\0\0\xFF\xFF\xFF\x7F"s + std::string(64, '\0')), 62);
}

TEST(MatrixHeader, Takes30Bytes)
{
    MatrixHeader header = header_of(3, 4, 0x01020304, -1);
    header.element = 77;
    header.transpose = header.feature_names = true;
    header.extended_header = 5;
    const std::string bytes = "\3\0\0\0\4\0\0\0\4\3\2\1\xFF\xFF\xFF\xFF\x4D\0\0\0\xFF\xFF\0\0\xFF\xFF\5\0\0\0"s;
    EXPECT_EQ(bytes_of(header), bytes);
    EXPECT_EQ(bytes_of(MatrixHeader{}), "\0\0\0\0\0\0\0\0\1\0\0\0\1\0\0\0\4\0\0\0\0\0\0\0\0\0\0\0\0\0"s);

    MemorySource source{bytes};
    MatrixHeader read;
    qvb::read(source, read);
    EXPECT_EQ(read, header);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        MemorySource part{std::string_view{bytes}.substr(0, size)};
        EXPECT_EQ(error_of([&] { qvb::read(part, read); }), 62);
    }
    EXPECT_EQ(read, header);
}

TEST(MatrixHeader, FitsATable)
{
    EXPECT_EQ(fitted(0, 1, 3, 4), header_of(3, 4, 1, 1));
    EXPECT_EQ(fitted(0, 2, 9, 6), header_of(9, 3, 2, 1));
    EXPECT_EQ(fitted(0, 4, 9, 6), header_of(9, 6, 1, 1)) << "a height that does not divide the columns is dropped";
    EXPECT_EQ(fitted(2, 3, 9, 6), header_of(9, 2, 3, 1));
    EXPECT_EQ(fitted(7, -3, 9, 6), header_of(9, 6, 1, 1));
    EXPECT_EQ(fitted(5, 2, 0, 0), header_of(0, 0, 2, 1));
    EXPECT_EQ(error_of([] { fitted(65536, 32768, 1, 1); }), 6);
}

TEST(MatrixHeader, SizesTheDataWithinTheFile)
{
    const std::string data(48, 'x');
    const auto error = [&](const MatrixHeader& header, std::size_t width, std::int32_t lower1 = 0, std::int32_t lower2 = 0) {
        return error_of([&] { qvb::size_of_data(MemorySource{data}, header, width, lower1, lower2); });
    };
    const qvb::Size size = qvb::size_of_data(MemorySource{data}, header_of(2, 1, 3, 2), 4, -5, 1);
    EXPECT_EQ(size.rows, 2);
    EXPECT_EQ(size.columns, 6);

    EXPECT_EQ(error(header_of(2, 1, 3, 2), 8), 62);
    EXPECT_EQ(error(header_of(49, 1, 1, 1), 1), 62);
    EXPECT_EQ(error(header_of(largest, largest, 1, 1), 8), 62) << "a size of 2^65 bytes";
    for (const MatrixHeader& empty : {header_of(0, 1, 1, 1), header_of(-1, 1, 1, 1), header_of(1, 0, 1, 1), header_of(1, 2, 1, -1)})
        EXPECT_EQ(error(empty, 1), 9);
    EXPECT_EQ(error(header_of(1, -2, -1, 3), 1), 0) << "only the product counts";
    EXPECT_EQ(error(header_of(0, 65536, 32768, 0), 1), 6) << "the product comes first";
    EXPECT_EQ(error(header_of(1, 65536, 32767, 2), 1), 6);
    EXPECT_EQ(error(header_of(2, 1, 1, 1), 1, largest), 6) << "an upper bound beyond the range";
    EXPECT_EQ(error(header_of(1, 1, 1, 1), 1, largest, largest), 0);

    struct : qvb::Source {
        void read(void*, std::size_t) override {}
        std::uint64_t left() const noexcept override { return std::uint64_t{1} << 40; }
    } huge;
    for (const auto& [rows, width, number] : {std::tuple{65536, 1u, 7}, {32768, 2u, 7}, {8192, 8u, 7}, {4096, 8u, 7}, {4095, 8u, 0}})
        EXPECT_EQ(error_of([&] { qvb::size_of_data(huge, header_of(rows, 65536, 1, 1), width, 0, 0); }), number) << rows;
}

TEST(NamesBlock, NamesLoseTheBlanksAroundThem)
{
    const std::vector<std::string> names{" a ", "", "  ", "b c", "\tx"};
    const std::string bytes = "\5\0\0\0\3\0\0\0 a \0\0\0\0\2\0\0\0  \3\0\0\0b c\2\0\0\0\tx"s;
    EXPECT_EQ(bytes_of(names), bytes);
    MemorySource source{bytes};
    EXPECT_EQ(qvb::read_names(source), (std::vector<std::string>{"a", "", "", "b c", "\tx"}));

    for (std::size_t size = 0; size < bytes.size(); ++size) {
        MemorySource part{std::string_view{bytes}.substr(0, size)};
        EXPECT_EQ(error_of([&] { qvb::read_names(part); }), 62) << size;
    }
    MemorySource none{"\0\0\0\0"sv}, negative{"\xFF\xFF\xFF\xFF"sv}, many{"\xFF\xFF\xFF\x7F    "sv};
    EXPECT_EQ(error_of([&] { qvb::read_names(none); }), 9);
    EXPECT_EQ(error_of([&] { qvb::read_names(negative); }), 9);
    EXPECT_EQ(error_of([&] { qvb::read_names(many); }), 62);
}

namespace {

template <class Target, class Number>
std::optional<Target> converted(Number number)
{
    Target element{};
    return qvb::convert(number, element) ? std::optional{element} : std::nullopt;
}

template <class Target>
void expect_range(double lowest, double highest)
{
    EXPECT_EQ(converted<Target>(lowest - 0.5), lowest) << "a half goes to the even neighbour";
    EXPECT_EQ(converted<Target>(highest), highest);
    EXPECT_FALSE(converted<Target>(highest + 0.5));
    EXPECT_FALSE(converted<Target>(std::nextafter(lowest - 0.5, -HUGE_VAL)));
    for (const double number : {-HUGE_VAL, HUGE_VAL, -1e300, 1e300, std::nan("")})
        EXPECT_FALSE(converted<Target>(number));
    for (double number = -0.5; number <= 100; number += 0.25)
        EXPECT_EQ(converted<Target>(number), std::nearbyint(number));
}

} // namespace

TEST(ElementConversion, RoundsHalvesToEvenAndKeepsToTheRange)
{
    expect_range<std::uint8_t>(0, 255);
    expect_range<std::int16_t>(-32768, 32767);
    expect_range<std::int32_t>(-2147483648.0, 2147483647.0);
    EXPECT_EQ(converted<float>(0.1), 0.1f);
    EXPECT_EQ(converted<float>(-3.4028234663852886e38), -3.4028234663852886e38f);
    EXPECT_FALSE(converted<float>(3.4028235e38));
    EXPECT_FALSE(converted<float>(HUGE_VAL));
    EXPECT_EQ(converted<std::int16_t>(-32768), -32768);
    EXPECT_FALSE(converted<std::int16_t>(32768));
    EXPECT_FALSE(converted<std::uint8_t>(-1));
    EXPECT_FALSE(converted<std::uint8_t>(256));
    EXPECT_EQ(converted<float>(16777219), 16777220.0f);
}
