#include "visualization/TORVLabelRoom.h"

#include <gtest/gtest.h>

TEST(TORVLabelRoom, GivesABoxOnce)
{
    TORVLabelRoom room;
    EXPECT_TRUE(room.take({10.0, 50.0, 10.0, 20.0}));
    EXPECT_FALSE(room.take({10.0, 50.0, 10.0, 20.0}));
    EXPECT_FALSE(room.take({49.0, 60.0, 19.0, 30.0}));
    EXPECT_FALSE(room.take({0.0, 100.0, 0.0, 100.0}));
}

TEST(TORVLabelRoom, GivesBoxesThatOnlyTouch)
{
    TORVLabelRoom room;
    EXPECT_TRUE(room.take({10.0, 50.0, 10.0, 20.0}));
    EXPECT_TRUE(room.take({50.0, 60.0, 10.0, 20.0}));
    EXPECT_TRUE(room.take({10.0, 50.0, 20.0, 30.0}));
}

TEST(TORVLabelRoom, TakesNothingForABoxThatItRefused)
{
    TORVLabelRoom room;
    EXPECT_TRUE(room.take({10.0, 50.0, 10.0, 20.0}));
    EXPECT_FALSE(room.take({40.0, 90.0, 10.0, 20.0}));
    EXPECT_TRUE(room.take({60.0, 90.0, 10.0, 20.0}));
}

TEST(TORVLabelRoom, IsEmptyForANewPicture)
{
    TORVLabelRoom room;
    EXPECT_TRUE(room.take({10.0, 50.0, 10.0, 20.0}));
    room.clear();
    EXPECT_TRUE(room.take({10.0, 50.0, 10.0, 20.0}));
}
