#include "ui/bitmap_header.h"

#include <gtest/gtest.h>

#include <string>

using bitmap::Size;

namespace {

using namespace std::string_literals;

/// The file's own header, and the start of the next one up to the size.
std::string header(char header_size)
{
    return "BM"s + std::string(12, '\x77') + header_size + "\0\0\0"s;
}

} // namespace

TEST(BitmapHeader, GivesTheSizeWhateverKindItIs)
{
    const std::string size = "\x80\2\0\0\xE0\1\0\0"s; // 640 and 480
    for (const char kind : {'\x28', '\x0C', '\x38', '\x40', '\x6C', '\x7C', '\0'})
        EXPECT_EQ(bitmap::size_of(header(kind) + size + "\1\0\x18\0"s), (Size{640, 480})) << int{kind};
    EXPECT_EQ(bitmap::size_of(header('\x28') + "\x80\2\0\0\x20\xFE\xFF\xFF"s), (Size{640, -480})) << "from the top down";
    EXPECT_EQ(bitmap::size_of(header('\x28') + "\xFF\xFF\xFF\x7F\0\0\0\x80"s), (Size{0x7FFFFFFF, INT32_MIN}));
    EXPECT_EQ(bitmap::size_of(std::string(54, 'x')), (Size{0x78787878, 0x78787878})) << "no bitmap";
}

TEST(BitmapHeader, WhatIsMissingIsZero)
{
    const std::string whole = header('\x28') + "\1\2\3\4\5\6\7\x08";
    EXPECT_EQ(bitmap::size_of(""), (Size{0, 0}));
    EXPECT_EQ(bitmap::size_of(whole.substr(0, 18)), (Size{0, 0}));
    EXPECT_EQ(bitmap::size_of(whole.substr(0, 20)), (Size{0x0201, 0}));
    EXPECT_EQ(bitmap::size_of(whole.substr(0, 25)), (Size{0x04030201, 0x070605}));
}
