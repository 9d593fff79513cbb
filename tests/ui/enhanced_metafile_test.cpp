#include "ui/enhanced_metafile.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

/// A header, a record, the end; all small.
struct Bytes : std::string {
    Bytes() : std::string(120, '\0')
    {
        set(0, 1);
        set(4, 88);
        set(24, -100);
        set(28, 0);
        set(32, 100);
        set(36, 50);
        set(40, 0x464D4520);
        set(48, 120);
        set(88, 70);
        set(92, 12);
        set(100, 14);
        set(104, 20);
    }
    void set(std::size_t place, std::int32_t number) { std::memcpy(data() + place, &number, sizeof number); }
};

TEST(EnhancedMetafile, EndsWithItsLastRecord)
{
    const Bytes whole;
    const std::string file = whole + "what someone else has written behind it";
    const auto found = ui::enhanced_metafile(file);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->records, whole);
    EXPECT_EQ(found->frame.width, 200);
    EXPECT_EQ(found->frame.height, 50);
}

TEST(EnhancedMetafile, IsRefusedUnlessItIsWhole)
{
    const Bytes whole;
    for (std::size_t size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(ui::enhanced_metafile(std::string{whole, 0, size}));
    struct Fault {
        std::size_t place;
        std::int32_t number;
    };
    for (const auto& [place, number] : {Fault{0, 2}, Fault{4, 84}, Fault{4, 90}, Fault{4, -4}, Fault{40, 0}, Fault{48, 121},
                                        Fault{48, 100}, Fault{48, -1}, Fault{92, 0}, Fault{92, 4}, Fault{92, 10}, Fault{92, 16},
                                        Fault{92, -8}, Fault{100, 15}, Fault{104, 24}, Fault{104, 0}}) {
        Bytes faulty;
        faulty.set(place, number);
        EXPECT_FALSE(ui::enhanced_metafile(faulty)) << number << " at " << place;
    }
}

TEST(EnhancedMetafile, KeepsItsProportionWhereASizeIsLeftOpen)
{
    struct Case {
        ui::Extent wanted, picture, size;
    };
    for (const auto& [wanted, picture, size] : {Case{{30, 40}, {2, 1}, {30, 40}}, Case{{0, 0}, {2, 1}, {1000, 500}},
                                                Case{{0, 0}, {1, 2}, {400, 800}}, Case{{100, 0}, {2, 1}, {100, 50}},
                                                Case{{0, 50}, {2, 1}, {100, 50}}, Case{{0, 900}, {2, 1}, {1000, 500}},
                                                Case{{0, 50}, {0, 1}, {1000, 50}}, Case{{100, 0}, {2, -1}, {100, 800}}}) {
        const ui::Extent found = ui::picture_size(wanted, {1000, 800}, picture);
        EXPECT_DOUBLE_EQ(found.width, size.width);
        EXPECT_DOUBLE_EQ(found.height, size.height);
    }
}

} // namespace
