#include "settings/TORVViewAngle.h"

#include <gtest/gtest.h>

TEST(TORVViewAngleTest, StartsAtTheOriginWithoutAName)
{
    const TORVViewAngle view;
    EXPECT_EQ(view.getName(), QString());
    EXPECT_EQ(view.getPosition().x, 0.0);
    EXPECT_EQ(view.getPosition().z, 0.0);
    EXPECT_EQ(view.getDirection().x, 0.0);
    EXPECT_EQ(view.getDirection().z, 0.0);
}

TEST(TORVViewAngleTest, KeepsWhatItIsGiven)
{
    TORVViewAngle view;
    view.setName(QStringLiteral("From south-east"));
    view.setPosition({1.5, -2.5, 3e5});
    view.setDirection({0.25, 0.5, -0.75});
    EXPECT_EQ(view.getName(), QStringLiteral("From south-east"));
    EXPECT_EQ(view.getPosition().x, 1.5);
    EXPECT_EQ(view.getPosition().y, -2.5);
    EXPECT_EQ(view.getPosition().z, 3e5);
    EXPECT_EQ(view.getDirection().x, 0.25);
    EXPECT_EQ(view.getDirection().y, 0.5);
    EXPECT_EQ(view.getDirection().z, -0.75);
}

TEST(TORVViewAngleTest, IsCopiedWhole)
{
    const TORVViewAngle view(QStringLiteral("Home"), {1, 2, 3}, {4, 5, 6});
    TORVViewAngle copy;
    copy = view;
    EXPECT_EQ(copy.getName(), QStringLiteral("Home"));
    EXPECT_EQ(copy.getPosition().y, 2.0);
    EXPECT_EQ(copy.getDirection().z, 6.0);
}
