#include "datalib/TORVLandmarkSet.h"

#include <gtest/gtest.h>

namespace
{

bool contains(const TORVCoordinate& lowerLeft, const TORVCoordinate& upperRight, double lat, double lon)
{
    return TORVLandmarkSet(TORVCoordinate(0.0, 0.0), lowerLeft, upperRight).contains(TORVCoordinate(lat, lon));
}

} // namespace

TEST(TORVLandmarkSetTest, KnowsItsArea)
{
    const TORVLandmarkSet set(TORVCoordinate(46.0, 8.8), TORVCoordinate(44.0, 6.0), TORVCoordinate(48.0, 12.0));
    EXPECT_EQ(set.getCenter().getLat(), 46.0);
    EXPECT_EQ(set.getLowerLeft().getLon(), 6.0);
    EXPECT_EQ(set.getUpperRight().getLat(), 48.0);
    EXPECT_TRUE(set.getLandmarks().isEmpty());
}

TEST(TORVLandmarkSetTest, HoldsItsCornersAndEdges)
{
    const TORVCoordinate low(44.0, 6.0);
    const TORVCoordinate high(48.0, 12.0);
    EXPECT_TRUE(contains(low, high, 44.0, 6.0));
    EXPECT_TRUE(contains(low, high, 48.0, 12.0));
    EXPECT_TRUE(contains(low, high, 44.0, 12.0));
    EXPECT_TRUE(contains(low, high, 46.0, 6.0));
    EXPECT_FALSE(contains(low, high, 43.9999, 8.0));
    EXPECT_FALSE(contains(low, high, 48.0001, 8.0));
    EXPECT_FALSE(contains(low, high, 46.0, 5.9999));
    EXPECT_FALSE(contains(low, high, 46.0, 12.0001));
}

TEST(TORVLandmarkSetTest, LiesInTheSouthAndWest)
{
    EXPECT_TRUE(contains(TORVCoordinate(-36.0, -73.0), TORVCoordinate(-32.0, -68.0), -33.5, -70.6));
    EXPECT_FALSE(contains(TORVCoordinate(-36.0, -73.0), TORVCoordinate(-32.0, -68.0), 33.5, 70.6));
}

TEST(TORVLandmarkSetTest, GoesOverTheDateLine)
{
    // From 176 east to 183, which a coordinate calls -177.
    const TORVCoordinate low(-20.0, 176.0);
    const TORVCoordinate high(-16.0, 183.0);
    EXPECT_TRUE(contains(low, high, -18.0, 176.0));
    EXPECT_TRUE(contains(low, high, -18.0, 180.0));
    EXPECT_TRUE(contains(low, high, -18.0, -180.0));
    EXPECT_TRUE(contains(low, high, -18.0, -177.0));
    EXPECT_FALSE(contains(low, high, -18.0, -176.9));
    EXPECT_FALSE(contains(low, high, -18.0, 175.9));
    EXPECT_FALSE(contains(low, high, -18.0, 0.0));
}

TEST(TORVLandmarkSetTest, GoesRoundThePole)
{
    const TORVCoordinate low(85.0, -180.0);
    const TORVCoordinate high(90.0, 180.0);
    EXPECT_TRUE(contains(low, high, 86.0, -180.0));
    EXPECT_TRUE(contains(low, high, 90.0, 0.0));
    EXPECT_TRUE(contains(low, high, 86.0, 180.0));
    EXPECT_FALSE(contains(low, high, 84.0, 0.0));
}
