#include "radarsim/TORVRadarEquations.h"

#include "radarsim/TORVBeam.h"
#include "radarsim/TORVRadar.h"

#include <gtest/gtest.h>

namespace
{

using TORVRadarEquations::folded;
using TORVRadarEquations::liquidWater;
using TORVRadarEquations::rainRate;

TEST(TORVRadarEquations, KeepsASpeedWithinTheNyquistVelocity)
{
    EXPECT_FLOAT_EQ(folded(12.0F, 13.0F), 12.0F);
    EXPECT_FLOAT_EQ(folded(-12.0F, 13.0F), -12.0F);
}

TEST(TORVRadarEquations, FoldsASpeedJustBeyondToTheOtherSide)
{
    EXPECT_NEAR(folded(14.0F, 13.0F), -12.0F, 1e-5F); // 14 - 26
    EXPECT_NEAR(folded(-14.0F, 13.0F), 12.0F, 1e-5F);
}

TEST(TORVRadarEquations, FoldsAsOftenAsNeeded)
{
    EXPECT_NEAR(folded(60.0F, 13.0F), 8.0F, 1e-4F);  // 60 - 2 x 26
    EXPECT_NEAR(folded(-70.0F, 13.0F), 8.0F, 1e-4F); // -70 + 3 x 26
}

TEST(TORVRadarEquations, RainsOneMillimetreAnHourAtTheReflectivityOf200)
{
    // Z = 200 x 1^1.6 = 200: 10 log10(200) = 23.0103 dBZ
    EXPECT_NEAR(rainRate(23.0103F), 1.0F, 1e-4F);
}

TEST(TORVRadarEquations, RainsTenTimesAsMuch16DecibelsHigher)
{
    // 10^1.6 is 16 dB
    EXPECT_NEAR(rainRate(39.0103F), 10.0F, 1e-3F);
    EXPECT_NEAR(rainRate(55.0103F), 100.0F, 1e-2F);
}

TEST(TORVRadarEquations, HoldsThreeGramsOfWaterInACubicMetreOf52Decibels)
{
    // Z = 10^5.2 = 158489; 158489^(4/7) = e^(0.571429 x 11.97344) = e^6.84197 = 936.3; x 3.44e-6 = 0.003221 kg/m^2 a
    // metre
    EXPECT_NEAR(liquidWater(52.0F), 0.003221F, 2e-6F);
}

TEST(TORVRadarEquations, CountsHailAsNoMoreThanHeavyRain)
{
    EXPECT_FLOAT_EQ(liquidWater(70.0F), liquidWater(56.0F));
}

TEST(TORVRadar, HasTheNyquistVelocityOfItsWavelengthAndRate)
{
    TORVRadar radar;
    radar.prf = 1000;
    radar.wavelength = 533;
    radar.prfRatioCode = 0;
    // 0.0533 m x 1000 Hz / 4
    EXPECT_NEAR(radar.nyquist(), 13.325F, 1e-4F);
    radar.prfRatioCode = 1;
    EXPECT_NEAR(radar.nyquist(), 26.65F, 1e-4F);
}

TEST(TORVRadar, HearsAsFarAsAPulseReturnsBeforeTheNext)
{
    TORVRadar radar;
    radar.prf = 1000;
    // 299792 km/s / 2 / 1000 Hz
    EXPECT_NEAR(radar.range(), 149.896F, 1e-3F);
}

TEST(TORVBeam, LeavesTheGroundAsTheEarthCurvesAway)
{
    // s^2 / 2R = 100^2 / (2 x 8494.667) = 0.5886 km
    EXPECT_NEAR(TORVBeam::height(0.0, 100.0), 0.5886F, 2e-4F);
}

TEST(TORVBeam, ClimbsWithItsElevation)
{
    // 100 tan 1 deg + 0.5886 = 1.7455 + 0.5886; the law of sines adds less than 1 m
    EXPECT_NEAR(TORVBeam::height(1.0, 100.0), 2.334F, 2e-3F);
}

TEST(TORVBeam, SeesAPointUnderTheElevationThatReachesIt)
{
    EXPECT_NEAR(TORVBeam::elevationOf(static_cast<double>(TORVBeam::height(2.5, 80.0)), 80.0), 2.5F, 1e-3F);
}

} // namespace
