#include "text/bits.h"

#include "support/error_of.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

TEST(Bits, OneIsSetOrClearedAndTheOthersStay)
{
    constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min(), highest = std::numeric_limits<std::int32_t>::max();
    struct Case {
        std::int32_t number;
        unsigned bit;
        bool set;
        std::int32_t result;
    };
    for (const auto& [number, bit, set, result] : {Case{0, 3, true, 8}, Case{15, 0, false, 14}, Case{8, 3, true, 8}, Case{0, 0, false, 0},
                                                   Case{0, 30, true, 0x40000000}, Case{-1, 30, false, -0x40000001},
                                                   Case{lowest, 0, true, lowest + 1}, Case{highest, 0, false, highest - 1}})
        EXPECT_EQ(text::with_bit(number, bit, set), result) << number << ", bit " << bit;
    for (const unsigned bit : {31u, 32u, 255u}) {
        EXPECT_EQ(error_of([&] { text::with_bit(0, bit, true); }), 6) << bit;
        EXPECT_EQ(error_of([&] { text::has_bit(-1, bit); }), 6) << bit;
    }
    EXPECT_TRUE(text::has_bit(8, 3) && text::has_bit(lowest + 1, 0) && text::has_bit(-1, 30));
    EXPECT_FALSE(text::has_bit(7, 3) || text::has_bit(lowest, 30));
}
