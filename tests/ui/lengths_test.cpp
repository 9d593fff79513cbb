#include "support/error_of.h"
#include "ui/extent.h"
#include "ui/position.h"

#include <gtest/gtest.h>

using device::Extent;

TEST(Lengths, AnInchHas1440Twips)
{
    EXPECT_EQ((Extent{1024, 96}.twips()), 15360);
    EXPECT_EQ((Extent{1024, 96}.twips_per_pixel()), 15);
    EXPECT_EQ((Extent{1170, 100}.twips()), 16848);
    EXPECT_EQ((Extent{4958, 600}.twips()), 11899.2) << "a page";
    EXPECT_EQ((Extent{0, 1200}.twips_per_pixel()), 1.2) << "a printer's pixel";
    EXPECT_EQ((Extent{0, 96}.in_pixels(150)), 10);
    EXPECT_EQ((Extent{0, 120}.in_pixels(-1)), -1 / 12.f);
    EXPECT_EQ((Extent{0, 2880}.in_pixels(3)), 6);
    EXPECT_EQ(error_of([] { static_cast<void>(Extent{0, 2880}.in_pixels(3e38f)); }), 6);
}

TEST(Lengths, AreRoundedToTheNearestAndTheEvenNumber)
{
    for (const auto& [length, whole] :
         {std::pair{14.4, 14}, {0.5, 0}, {1.5, 2}, {-2.5, -2}, {-0.6, -1}, {32767.49, 32767}, {-32768.5, -32768}})
        EXPECT_EQ(device::rounded<std::int16_t>(length), whole) << length;
    for (const double length : {32767.5, -32768.6, 65536., 1e300, std::nan("")})
        EXPECT_EQ(error_of([&] { device::rounded<std::int16_t>(length); }), 6) << length;
    EXPECT_EQ(device::rounded<std::int32_t>(2147483647.4), 2147483647);
    EXPECT_EQ(error_of([] { device::rounded<std::int32_t>(2147483647.5); }), 6);
}

TEST(Lengths, APositionStaysOrComesInside)
{
    struct Case { double position, length, room, inside; };
    for (const Case& c : {Case{10, 20, 100, 10}, {80, 20, 100, 80}, {81.5, 20, 100, 80}, {-5, 20, 100, 0}, {30, 100, 100, 0},
                          {30, 120, 100, 0}, {-30, 120, 100, 0}, {5, 20, 0, 0}})
        EXPECT_EQ(position::inside(c.position, c.length, c.room), c.inside) << c.position << " " << c.length;
    for (const auto& [towards, at] : {std::pair{0., 40.}, {-1., 0.}, {1., 80.}, {-7., 0.}, {1.5, 80.}, {0.5, 60.}, {-0.25, 30.}})
        EXPECT_EQ(position::between_edges(towards, 20, 100), at) << towards;
    EXPECT_EQ(position::between_edges(0, 120, 100), -10) << "larger than the room";
}
