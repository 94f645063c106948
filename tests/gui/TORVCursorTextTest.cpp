#include "gui/TORVCursorText.h"

#include "datalib/TORVDataType.h"
#include "settings/TORVGeneralSettings.h"
#include "support/SandboxedHome.h"

#include <gtest/gtest.h>

namespace
{

class TORVCursorTextTest : public testing::Test
{
protected:
    QString northSouth(double km) const
    {
        return TORVCursorText::directed(settings, km, QStringLiteral(" N"), QStringLiteral(" S"));
    }

    SandboxedHome home;
    TORVGeneralSettings settings;
};

} // namespace

TEST_F(TORVCursorTextTest, HeightsAreWholeMetres)
{
    EXPECT_EQ(TORVCursorText::height(settings, 4500.4), QStringLiteral("4500 m"));
    EXPECT_EQ(TORVCursorText::height(settings, -12.6), QStringLiteral("-13 m"));
}

TEST_F(TORVCursorTextTest, HeightsAreWholeFeetInTheOtherUnits)
{
    settings.setMetricUnits(false);
    EXPECT_EQ(TORVCursorText::height(settings, 3048.0), QStringLiteral("10000 ft"));
}

TEST_F(TORVCursorTextTest, AHeightThatRoundsToZeroHasNoSign)
{
    EXPECT_EQ(TORVCursorText::height(settings, -0.4), QStringLiteral("0 m"));
    settings.setMetricUnits(false);
    EXPECT_EQ(TORVCursorText::height(settings, -0.1), QStringLiteral("0 ft"));
    EXPECT_EQ(TORVCursorText::height(settings, -0.4), QStringLiteral("-1 ft"));
}

TEST_F(TORVCursorTextTest, DistancesHaveOneDecimal)
{
    EXPECT_EQ(TORVCursorText::distance(settings, 21.55001), QStringLiteral("21.6 km"));
    settings.setMetricUnits(false);
    EXPECT_EQ(TORVCursorText::distance(settings, 18.52), QStringLiteral("10.0 NM"));
}

TEST_F(TORVCursorTextTest, ADirectionStandsInPlaceOfASign)
{
    EXPECT_EQ(northSouth(2.5), QStringLiteral("2.5 km N"));
    EXPECT_EQ(northSouth(-2.5), QStringLiteral("2.5 km S"));
}

TEST_F(TORVCursorTextTest, ADistanceThatRoundsToZeroIsInNoneOfTheNegativeDirections)
{
    EXPECT_EQ(northSouth(0.0), QStringLiteral("0.0 km N"));
    EXPECT_EQ(northSouth(-0.04), QStringLiteral("0.0 km N"));
    EXPECT_EQ(northSouth(-0.06), QStringLiteral("0.1 km S"));
}

TEST_F(TORVCursorTextTest, AnglesHaveOneDecimalAndADegreeSign)
{
    EXPECT_EQ(TORVCursorText::angle(263.44), QStringLiteral("263.4\u00B0"));
    EXPECT_EQ(TORVCursorText::angle(-10.86), QStringLiteral("-10.9\u00B0"));
    EXPECT_EQ(TORVCursorText::angle(-0.04), QStringLiteral("0.0\u00B0"));
}

TEST_F(TORVCursorTextTest, RoomIsKeptForASignWhereTheTypeHasOne)
{
    EXPECT_EQ(TORVCursorText::widestValue(TORVDataType(2)), QStringLiteral("-88.8"));
    EXPECT_EQ(TORVCursorText::widestValue(TORVDataType(13)), QStringLiteral("888.8"));
}

TEST_F(TORVCursorTextTest, RoomIsKeptForCoordinatesOfEachFormat)
{
    EXPECT_EQ(TORVCursorText::widestCoordinates(settings), QStringLiteral("88.8889\u00B0 S, 168.8889\u00B0 W"));
    settings.setLatLonFormat(TORVGeneralSettings::LATLON_DMS);
    EXPECT_EQ(TORVCursorText::widestCoordinates(settings).size(),
              QStringLiteral("88\u00B0 53' 20.00\" S, 168\u00B0 53' 20.00\" W").size());
}
