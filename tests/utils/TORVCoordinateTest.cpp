#include "utils/TORVCoordinate.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

struct Box
{
    int minLat = 0;
    int maxLat = 0;
    int minLon = 0;
    int maxLon = 0;
};

Box boundsOf(const TORVCoordinate& centre, double distance, int minDegrees)
{
    Box box;
    centre.calcLatLonBounds(distance, box.minLat, box.maxLat, box.minLon, box.maxLon, minDegrees);
    return box;
}

// The smaller turn from one bearing to another; the program's short pi moves places by millimetres.
double turn(double bearing, double other)
{
    return std::remainder(bearing - other, 360.0);
}

} // namespace

TEST(TORVCoordinate, ReadsBinaryAngles)
{
    EXPECT_EQ(TORVCoordinate(0U, 0U).getLat(), 0.0);
    EXPECT_EQ(TORVCoordinate(0x80000000U, 0x80000000U).getLat(), -180.0);
    EXPECT_NEAR(TORVCoordinate(0x40000000U, 0U).getLat(), 90.0, 1e-9);
    EXPECT_NEAR(TORVCoordinate(0xFFFFFFFFU, 0U).getLat(), -360.0 / 4294967296.0, 1e-12);
    EXPECT_NEAR(TORVCoordinate(0U, 0xC0000000U).getLon(), -90.0, 1e-9);
}

TEST(TORVCoordinate, NormalisesALatitudeLikeALongitude)
{
    EXPECT_EQ(TORVCoordinate(200.0, 0.0).getLat(), -160.0);
    EXPECT_EQ(TORVCoordinate(-200.0, 0.0).getLat(), 160.0);
    EXPECT_EQ(TORVCoordinate(0.0, 360.0).getLon(), 0.0);
    EXPECT_EQ(TORVCoordinate(0.0, 180.0).getLon(), 180.0);
    EXPECT_EQ(TORVCoordinate(0.0, -180.0).getLon(), -180.0);
}

TEST(TORVCoordinate, TakesAnythingElseForZero)
{
    EXPECT_EQ(TORVCoordinate(400.0, 0.0).getLat(), 0.0);
    EXPECT_EQ(TORVCoordinate(0.0, -360.5).getLon(), 0.0);
    EXPECT_EQ(TORVCoordinate(std::nan(""), INFINITY).getLat(), 0.0);
    EXPECT_EQ(TORVCoordinate(std::nan(""), INFINITY).getLon(), 0.0);
}

TEST(TORVCoordinate, ReadsDegreesMinutesAndSeconds)
{
    const TORVCoordinate place(60, 30U, 36U, 'N', 24, 15U, 0U, 'E'); // 60 + 30/60 + 36/3600
    EXPECT_NEAR(place.getLat(), 60.51, 1e-12);
    EXPECT_NEAR(place.getLon(), 24.25, 1e-12);
}

TEST(TORVCoordinate, NegatesSouthAndWestInEitherCase)
{
    EXPECT_NEAR(TORVCoordinate(33, 30U, 0U, 's', 70, 30U, 0U, 'w').getLat(), -33.5, 1e-12);
    EXPECT_NEAR(TORVCoordinate(33, 30U, 0U, 'S', 70, 30U, 0U, 'W').getLon(), -70.5, 1e-12);
    EXPECT_NEAR(TORVCoordinate(33, 30U, 0U, 'x', 70, 30U, 0U, 'x').getLat(), 33.5, 1e-12);
}

TEST(TORVCoordinate, DividesMinutesWithoutCuttingThem)
{
    EXPECT_NEAR(TORVCoordinate(-10, 59U, 59U, 'N', 0, 0U, 0U, 'E').getLat(), -10.0 + 59.0 / 60.0 + 59.0 / 3600.0,
                1e-12);
}

TEST(TORVCoordinate, MarksTheHemisphereBySign)
{
    EXPECT_EQ(TORVCoordinate(0.0, 0.0).getLatitudeMark(), QLatin1Char('N'));
    EXPECT_EQ(TORVCoordinate(0.0, 0.0).getLongitudeMark(), QLatin1Char('E'));
    EXPECT_EQ(TORVCoordinate(-0.1, -0.1).getLatitudeMark(), QLatin1Char('S'));
    EXPECT_EQ(TORVCoordinate(-0.1, -0.1).getLongitudeMark(), QLatin1Char('W'));
    EXPECT_EQ(TORVCoordinate(0.0 - 1.0, 10.0).getLatitudeMark(), QLatin1Char('S')); // one degree south of the equator
}

TEST(TORVCoordinate, WritesDecimalDegrees)
{
    EXPECT_EQ(TORVCoordinate(60.12346, -24.5).toDecimalString(), QString::fromUtf8("60.1235° N, 24.5000° W"));
}

TEST(TORVCoordinate, WritesSecondsInItsDmForm)
{
    // 60.1234: 0.1234 * 60 = 7.404 minutes; 0.404 * 60 = 24.24 seconds.
    EXPECT_EQ(TORVCoordinate(-60.1234, 24.5).toDmString(), QString::fromUtf8("60° 7' 24.24\" S, 24° 30' 0.00\" E"));
}

TEST(TORVCoordinate, ClosesDecimalMinutesWithADoubleQuote)
{
    EXPECT_EQ(TORVCoordinate(60.1234, 24.5).toDMsString(), QString::fromUtf8("60° 7.404\" N, 24° 30.000\" E"));
}

TEST(TORVCoordinate, WritesOneOfTheTwo)
{
    const TORVCoordinate place(1.0, 2.0);
    EXPECT_EQ(place.toDecimalString(TORVCoordinate::LATITUDE_ONLY), QString::fromUtf8("1.0000° N"));
    EXPECT_EQ(place.toDecimalString(TORVCoordinate::LONGITUDE_ONLY), QString::fromUtf8("2.0000° E"));
}

TEST(TORVCoordinate, CarriesRoundedSecondsIntoMinutesAndDegrees)
{
    const double almostSix = 6.0 - 0.001 / 3600.0; // 5° 59' 59.999"
    EXPECT_EQ(TORVCoordinate(almostSix, 0.0).toDmString(TORVCoordinate::LATITUDE_ONLY),
              QString::fromUtf8("6° 0' 0.00\" N"));
    EXPECT_EQ(TORVCoordinate(almostSix, 0.0).toDMsString(TORVCoordinate::LATITUDE_ONLY),
              QString::fromUtf8("6° 0.000\" N"));
}

TEST(TORVCoordinate, BearsEastAt90AndWestAt270)
{
    const TORVCoordinate centre(0.0, 20.0);
    EXPECT_NEAR(turn(centre.getBearingTo(TORVCoordinate(0.0, 21.0)), 90.0), 0.0, 1e-5);
    EXPECT_NEAR(turn(centre.getBearingTo(TORVCoordinate(0.0, 19.0)), 270.0), 0.0, 1e-5);
    EXPECT_NEAR(turn(centre.getBearingTo(TORVCoordinate(1.0, 20.0)), 0.0), 0.0, 1e-5);
    EXPECT_NEAR(turn(centre.getBearingTo(TORVCoordinate(-1.0, 20.0)), 180.0), 0.0, 1e-5);
}

TEST(TORVCoordinate, MeasuresDistanceOnTheEllipsoid)
{
    // geod +a=6378137 +rf=298.257 -I +units=m: 60N 25E to 61N 27E
    EXPECT_NEAR(TORVCoordinate(60.0, 25.0).getDistanceTo(TORVCoordinate(61.0, 27.0)), 156496.17, 0.1);
}

TEST(TORVCoordinate, MeasuresOneDegree)
{
    // The ellipsoid's meridian: 110574 m for the degree at the equator, 111693 m for the degree below the pole.
    EXPECT_NEAR(TORVCoordinate(0.0, 0.0).calcOneLatDegLength(), 110574.0, 2.0);
    EXPECT_NEAR(TORVCoordinate(90.0, 0.0).calcOneLatDegLength(), 111693.9, 2.0);
    EXPECT_NEAR(TORVCoordinate(-90.0, 0.0).calcOneLatDegLength(), 111693.9, 2.0);
    // One degree of the equator: 2 pi 6378137 / 360.
    EXPECT_NEAR(TORVCoordinate(0.0, 0.0).calcOneLonDegLength(), 111319.5, 1.0);
    EXPECT_NEAR(TORVCoordinate(0.0, 180.0).calcOneLonDegLength(), 111319.5, 1.0);
}

TEST(TORVCoordinate, BoxReachesTheDistanceInWholeDegrees)
{
    // At 60 N: 170 km are 1.53 degrees of latitude, so 2; a degree of longitude is about half as long, so 4.
    const Box box = boundsOf(TORVCoordinate(60.0, 25.0), 170000.0, 1);
    EXPECT_EQ(box.minLat, 58);
    EXPECT_EQ(box.maxLat, 62);
    EXPECT_EQ(box.minLon, 21);
    EXPECT_EQ(box.maxLon, 29);
}

TEST(TORVCoordinate, BoxIsAtLeastAsTallAsAsked)
{
    const Box box = boundsOf(TORVCoordinate(46.04, 8.83), 1000.0, 4);
    EXPECT_EQ(box.maxLat - box.minLat, 8);
}

TEST(TORVCoordinate, BoxThatTouchesAPoleGoesRoundTheGlobe)
{
    const Box box = boundsOf(TORVCoordinate(89.0, 25.0), 170000.0, 1);
    EXPECT_EQ(box.maxLat, 90);
    EXPECT_EQ(box.minLon, -180);
    EXPECT_EQ(box.maxLon, 180);
}

TEST(TORVCoordinate, BoxAtThePoleItselfIsFinite)
{
    const Box box = boundsOf(TORVCoordinate(-90.0, 0.0), 170000.0, 4);
    EXPECT_EQ(box.minLat, -90);
    EXPECT_EQ(box.maxLat, -86);
    EXPECT_EQ(box.minLon, -180);
    EXPECT_EQ(box.maxLon, 180);
}

TEST(TORVCoordinate, BoxMayPassTheDateLine)
{
    const Box box = boundsOf(TORVCoordinate(0.0, 179.0), 170000.0, 4);
    EXPECT_GT(box.maxLon, 180);
    EXPECT_EQ(box.minLat, -4);
}

TEST(TORVCoordinate, BoxOfAnEndlessDistanceIsTheGlobe)
{
    const Box box = boundsOf(TORVCoordinate(10.0, 10.0), 1e300, 4);
    EXPECT_EQ(box.minLat, -90);
    EXPECT_EQ(box.maxLat, 90);
    EXPECT_EQ(box.minLon, -180);
    EXPECT_EQ(box.maxLon, 180);
}
