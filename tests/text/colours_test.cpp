#include "text/colours.h"

#include "support/error_of.h"

#include <gtest/gtest.h>

TEST(Colours, ChannelsAreRoundedQuotients)
{
    constexpr int overflow = -6;
    struct Case {
        std::int32_t colour;
        int red, green, blue;
    };
    const auto channel = [](std::uint8_t (*of)(std::int32_t), std::int32_t colour) {
        int value = 0;
        const int error = error_of([&] { value = of(colour); });
        return error ? -error : value;
    };
    for (const auto& [colour, red, green, blue] :
         {Case{0x030201, 1, 2, 3}, Case{0, 0, 0, 0}, Case{0x7FFFFFFF, 255, 0, 0}, Case{0xFF00, 0, 255, 1},
          Case{0xFFFF, 255, 0, 1}, Case{0x180, 0x80, 2, 0}, // a half goes to the even number
          Case{0x280, 0x80, 2, 0}, Case{0x281, 0x81, 3, 0}, Case{-1, overflow, 0, 0}, Case{-256, 0, overflow, 0},
          Case{-128, overflow, 0, 0}, Case{-129, overflow, overflow, 0}, Case{-0x10000, 0, overflow, overflow},
          Case{-0x7FFFFFFF - 1 + 15, overflow, overflow, overflow}}) {
        EXPECT_EQ(channel(text::red, colour), red) << colour;
        EXPECT_EQ(channel(text::green, colour), green) << colour;
        EXPECT_EQ(channel(text::blue, colour), blue) << colour;
    }
}
