#include "radarsim/TORVRadarSampler.h"

#include "radarsim/TORVHorizon.h"
#include "radarsim/TORVVolumeGridder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr float Nothing = TORVPolarVolume::Nothing;
constexpr int64_t Evening = 1784052000; // 2026-07-14 18:00 UTC

float flatGround(float, float)
{
    return 0.0F;
}

TEST(TORVHorizon, CostsSixDecibelsWhereHalfTheBeamIsHidden)
{
    // A wall 10 km away as high as the antenna is seen at 0 degrees but for the Earth's curve: 10^2/(2 x 8494.7) = 5.9
    // m, 0.034 degrees. Half of a beam at that elevation passes: 20 log10(1/2) = -6.02 dB.
    const TORVHorizon horizon(4, 20, 1.0F, 0.1F, [](float x, float y) { return x * x + y * y > 100.0F ? 0.1F : 0.0F; });
    EXPECT_NEAR(horizon.loss(0, 15, -0.034F, 1.0F), 6.02F, 0.1F);
}

TEST(TORVHorizon, CostsNothingAboveTheHills)
{
    const TORVHorizon horizon(4, 20, 1.0F, 0.1F, [](float, float) { return 0.1F; });
    EXPECT_EQ(horizon.loss(0, 15, 2.0F, 1.0F), 0.0F);
}

TEST(TORVHorizon, LetsNothingThroughAMountain)
{
    const TORVHorizon horizon(4, 40, 1.0F, 0.1F,
                              [](float x, float y) { return std::hypot(x, y) > 10.0F ? 2.0F : 0.0F; });
    EXPECT_EQ(horizon.loss(0, 5, 0.5F, 1.0F), 0.0F);
    EXPECT_EQ(horizon.loss(0, 39, 0.5F, 1.0F), TORVHorizon::Blocked);
}

TEST(TORVRadarSampler, SeesTheSameTwice)
{
    const TORVWeather weather(TORVWeather::SUPERCELLS, 1);
    const TORVRadarSampler sampler({}, 90, 2.0F, flatGround);
    const TORVPolarVolume once = sampler.scan(weather, Evening, 5);
    const TORVPolarVolume again = sampler.scan(weather, Evening, 5);
    EXPECT_EQ(once.dbz, again.dbz);
    EXPECT_EQ(once.velocity, again.velocity);
    EXPECT_EQ(once.width, again.width);
}

TEST(TORVRadarSampler, HearsNothingBelowWhatTheDistanceAllows)
{
    const TORVWeather weather(TORVWeather::FRONTS, 1);
    const TORVRadarSampler sampler({}, 90, 2.0F, flatGround);
    const TORVPolarVolume volume = sampler.scan(weather, Evening, 5);
    float weakestFar = 99.0F;
    for (int ray = 0; ray < volume.rays; ++ray) {
        for (int gate = 50; gate < volume.gates; ++gate) {
            const float dbz = volume.dbz[volume.index(ray, gate, 0)];
            weakestFar = dbz == Nothing ? weakestFar : std::min(weakestFar, dbz);
        }
    }
    // Gate 50 lies 101 km away: -40 + 20 log10(101) = 0.09 dBZ.
    EXPECT_GE(weakestFar, 0.09F);
    EXPECT_LT(weakestFar, 20.0F);
}

TEST(TORVRadarSampler, MeasuresAllThreeMomentsOrNone)
{
    const TORVWeather weather(TORVWeather::SUPERCELLS, 1);
    const TORVRadarSampler sampler({}, 90, 2.0F, flatGround);
    const TORVPolarVolume volume = sampler.scan(weather, Evening, 5);
    for (std::size_t i = 0; i < volume.size(); ++i) {
        ASSERT_EQ(volume.dbz[i] == Nothing, volume.velocity[i] == Nothing);
        ASSERT_EQ(volume.dbz[i] == Nothing, volume.width[i] == Nothing);
    }
}

TEST(TORVRadarSampler, LosesEchoBehindAMountain)
{
    const TORVWeather weather(TORVWeather::FRONTS, 1);
    const auto wall = [](float x, float y) { return std::hypot(x, y) > 15.0F && x < 0.0F ? 3.0F : 0.0F; };
    const TORVPolarVolume open = TORVRadarSampler({}, 90, 2.0F, flatGround).scan(weather, Evening, 5);
    const TORVPolarVolume hidden = TORVRadarSampler({}, 90, 2.0F, wall).scan(weather, Evening, 5);
    // Ray 67 of 90 looks to 270 degrees: the rain behind the squall line.
    const std::size_t at = open.index(67, 30, 0);
    EXPECT_NE(open.dbz[at], Nothing);
    EXPECT_EQ(hidden.dbz[at], Nothing);
}

class TORVVolumeGridderTest : public testing::Test
{
protected:
    TORVVolumeGridderTest() { radar.elevations = {1.0F, 3.0F, 5.0F}; }

    // Each sweep full of one value.
    TORVPolarVolume volumeOf(const TORVRadarSampler& sampler) const
    {
        TORVPolarVolume volume(sampler.rays(), sampler.gates(), 3, sampler.gateLength());
        for (std::size_t i = 0; i < volume.size(); ++i) {
            volume.dbz[i] = 10.0F * static_cast<float>(1 + i % 3);
        }
        return volume;
    }

    float at(int x, int y, int z)
    {
        const TORVRadarSampler sampler(radar, 360, 1.0F, flatGround);
        const TORVVolumeGridder gridder(shape, sampler);
        const TORVPolarVolume volume = volumeOf(sampler);
        return gridder.grid(volume, volume.dbz)[(static_cast<std::size_t>(z) * 240 + y) * 240 + x];
    }

    TORVRadar radar;
    TORVGridShape shape; // 240 x 240 x 20 at 1 km and 750 m; the radar at 119.5, 119.5
};

TEST_F(TORVVolumeGridderTest, IsEmptyAboveTheHighestBeam)
{
    EXPECT_EQ(at(124, 119, 10), Nothing); // 4.5 km away and 7.5 km up
}

TEST_F(TORVVolumeGridderTest, IsEmptyBelowTheLowestBeam)
{
    EXPECT_EQ(at(229, 119, 0), Nothing); // 110 km away the beam is at 1.92 + 0.71 km
}

TEST_F(TORVVolumeGridderTest, IsEmptyBeyondTheRange)
{
    EXPECT_EQ(at(0, 0, 8), Nothing); // 169 km away; the range is 150 km
    EXPECT_NE(at(40, 40, 8), Nothing);
}

TEST_F(TORVVolumeGridderTest, BlendsTheSweepsAboveAndBelow)
{
    // Point 199 lies 79.5 km east, in gate 79, whose middle is 79.5 km (y: 0.5 km off). Beam heights: 79.5 tan 1 +
    // 0.372 = 1.760, 79.5 tan 3 + 0.372 = 4.538 km. Level 4 at 3.0 km: (3.0 - 1.760) / 2.778 = 0.446 of the way from 10
    // to 20.
    EXPECT_NEAR(at(199, 119, 4), 14.46F, 0.05F);
}

TEST_F(TORVVolumeGridderTest, TakesOneSweepWhole)
{
    const TORVRadarSampler sampler(radar, 360, 1.0F, flatGround);
    const TORVVolumeGridder gridder(shape, sampler);
    const TORVPolarVolume volume = volumeOf(sampler);
    const std::vector<float> plane = gridder.sweep(volume, volume.dbz, 2);
    EXPECT_EQ(plane[119 * 240 + 150], 30.0F);
    EXPECT_EQ(plane[0], Nothing);
}

TEST(TORVGridShape, PutsTheRadarInTheMiddle)
{
    const TORVGridShape shape;
    EXPECT_EQ(shape.xRadar(), 119500);
    EXPECT_EQ(shape.xScale(), 100000);
    EXPECT_EQ(shape.zScale(), 75000);
    EXPECT_EQ((TORVGridShape{181, 181, 12}.xRadar()), 90000);
}

} // namespace
