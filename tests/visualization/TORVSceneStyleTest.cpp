#include "visualization/TORVSceneStyle.h"

#include "support/SandboxedHome.h"

#include <gtest/gtest.h>

namespace
{

class TORVSceneStyleTest : public testing::Test
{
protected:
    void write(const QByteArray& text) { home.write(QStringLiteral(".config/Halmera/TORV3DVisStyles.conf"), text); }

    SandboxedHome home;
};

using Color = TORVSceneStyle::Color;

constexpr Color Grey = {0.3, 0.3, 0.3};

} // namespace

TEST_F(TORVSceneStyleTest, HasDefaultsWithoutAFile)
{
    const TORVSceneStyle style(QStringLiteral("RADARRINGS"), false);
    EXPECT_EQ(style.color("line/color", Grey), Grey);
    EXPECT_EQ(style.number("label/size", 10000.0, 0.0, 1e6), 10000.0);
    EXPECT_EQ(style.integer("line/segments", 64, 1, 1000), 64);
}

TEST_F(TORVSceneStyleTest, TellsDayFromNight)
{
    write("[RADARRINGS_DAY]\nline\\width=2\n\n[RADARRINGS_NIGHT]\nline\\width=3\n");
    EXPECT_EQ(TORVSceneStyle(QStringLiteral("RADARRINGS"), false).number("line/width", 1.0, 0.0, 10.0), 2.0);
    EXPECT_EQ(TORVSceneStyle(QStringLiteral("RADARRINGS"), true).number("line/width", 1.0, 0.0, 10.0), 3.0);
}

TEST_F(TORVSceneStyleTest, TakesEachChannelForItself)
{
    write("[COMPASS_DAY]\ncompass\\color\\r=0.5\ncompass\\color\\b=1\n");
    const Color expected = {0.5, 0.3, 1.0};
    EXPECT_EQ(TORVSceneStyle(QStringLiteral("COMPASS"), false).color("compass/color", Grey), expected);
}

TEST_F(TORVSceneStyleTest, BringsNumbersIntoTheirRange)
{
    write("[RENDERER_DAY]\nbackground\\color\\r=7\nbackground\\color\\g=-1\nsite\\marker\\radius=1e300\n");
    const TORVSceneStyle style(QStringLiteral("RENDERER"), false);
    const Color expected = {1.0, 0.0, 0.3};
    EXPECT_EQ(style.color("background/color", Grey), expected);
    EXPECT_EQ(style.number("site/marker/radius", 5000.0, 0.0, 1e6), 1e6);
}

TEST_F(TORVSceneStyleTest, TakesWhatIsNoNumberForAbsent)
{
    write("[LATLONGRID_NIGHT]\nlabel\\size=nan\nline\\segments=many\nline\\color\\g=inf\n");
    const TORVSceneStyle style(QStringLiteral("LATLONGRID"), true);
    EXPECT_EQ(style.number("label/size", 5000.0, 0.0, 1e6), 5000.0);
    EXPECT_EQ(style.integer("line/segments", 64, 1, 1000), 64);
    EXPECT_EQ(style.color("line/color", Grey), Grey);
}
