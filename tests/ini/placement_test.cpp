#include "ini/placement.h"

#include <gtest/gtest.h>

namespace {

using placement::fitted;
using placement::FittedSize;
using placement::Thickness;

TEST(Placement, BarsAreCutToTheRoomAndToTheirLimit)
{
    EXPECT_EQ(fitted(500, 800, 0, 300), (FittedSize{500, false}));
    EXPECT_EQ(fitted(800, 800, 0, 800), (FittedSize{800, false})) << "the bounds themselves are fine";
    EXPECT_EQ(fitted(900, 800, 0, 300), (FittedSize{800, false}));
    EXPECT_EQ(fitted(900, 800, -1, 300), (FittedSize{800, false})) << "no limit";
    EXPECT_EQ(fitted(900, 800, 600, 300), (FittedSize{600, false}));
    EXPECT_EQ(fitted(900, 800, 850, 300), (FittedSize{800, false})) << "room beyond the window helps nobody";
    EXPECT_EQ(fitted(500, 800, 299.5, 300), (FittedSize{299.5, true}));
    EXPECT_EQ(fitted(200, 800, 0, 300), (FittedSize{200, true})) << "it is not made larger";
    EXPECT_EQ(fitted(500, 0, 0, 300), (FittedSize{0, true})) << "in a window without room";
}

TEST(Placement, NumbersOfFormsClientsSayWhatIsKept)
{
    for (long border = -1; border <= 6; ++border)
        EXPECT_EQ(placement::is_sizable(border), border == 2 || border == 5) << border;
    using enum Thickness;
    const Thickness kept[]{None, Height, Height, Width, Width, None};
    for (long align = 0; align <= 5; ++align)
        EXPECT_EQ(placement::thickness(align), kept[align]) << align;
    EXPECT_EQ(placement::restored_state(1), 0);
    EXPECT_EQ(placement::restored_state(2), 2);
    EXPECT_EQ(placement::centred(100, 120), -10) << "a form that is larger than the screen";
}

} // namespace
