#include "utils/TORVDisplayMode.h"

#include <gtest/gtest.h>

namespace
{

class TORVDisplayModeTest : public testing::Test
{
protected:
    ~TORVDisplayModeTest() override { TORVDisplayMode::setNight(false); }
};

} // namespace

TEST_F(TORVDisplayModeTest, IsDayFirst)
{
    EXPECT_FALSE(TORVDisplayMode::isNight());
}

TEST_F(TORVDisplayModeTest, CountsChangesAndNothingElse)
{
    const int before = TORVDisplayMode::getChangeCount();
    TORVDisplayMode::setNight(false);
    EXPECT_EQ(TORVDisplayMode::getChangeCount(), before);
    TORVDisplayMode::setNight(true);
    EXPECT_TRUE(TORVDisplayMode::isNight());
    TORVDisplayMode::setNight(true);
    EXPECT_EQ(TORVDisplayMode::getChangeCount(), before + 1);
    TORVDisplayMode::setNight(false);
    EXPECT_EQ(TORVDisplayMode::getChangeCount(), before + 2);
}
