#include "radarsim/TORVMeltingLayer.h"
#include "radarsim/TORVNoise.h"
#include "radarsim/TORVPulseCell.h"
#include "radarsim/TORVSquallLine.h"
#include "radarsim/TORVSupercell.h"
#include "radarsim/TORVWeather.h"
#include "radarsim/TORVWidespreadRain.h"
#include "radarsim/TORVWindProfile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{

TORVAirSample sampleOf(const TORVStormField& field, float x, float y, float z)
{
    TORVAirSample sample;
    field.addTo(sample, {x, y, z, 0.0F});
    return sample;
}

float highestIn(const TORVStormField& field, float west, float east, float south, float north, float z)
{
    float highest = TORVAirSample::NoEcho;
    for (float x = west; x <= east; x += 1.0F) {
        for (float y = south; y <= north; y += 1.0F) {
            highest = std::max(highest, sampleOf(field, x, y, z).dbz);
        }
    }
    return highest;
}

TEST(TORVNoise, IsTheSameForTheSameSeed)
{
    EXPECT_EQ(TORVNoise(5).at(1.3F, 2.7F, 3.1F), TORVNoise(5).at(1.3F, 2.7F, 3.1F));
}

TEST(TORVNoise, DiffersForAnotherSeed)
{
    EXPECT_NE(TORVNoise(5).at(1.3F, 2.7F, 3.1F), TORVNoise(6).at(1.3F, 2.7F, 3.1F));
}

TEST(TORVNoise, RepeatsAfterItsSizeAlsoBelowZero)
{
    const TORVNoise noise(5);
    EXPECT_NEAR(noise.at(1.25F, 2.5F, 3.75F), noise.at(1.25F - 64.0F, 2.5F + 64.0F, 3.75F - 128.0F), 1e-6F);
}

TEST(TORVNoise, HasNoJumpWhereTwoCellsMeet)
{
    const TORVNoise noise(5);
    for (int x = -3; x < 3; ++x) {
        const auto edge = static_cast<float>(x);
        EXPECT_NEAR(noise.at(edge - 1e-3F, 0.4F, 0.6F), noise.at(edge + 1e-3F, 0.4F, 0.6F), 1e-3F);
    }
}

TEST(TORVWindProfile, IsLinearBetweenItsLevels)
{
    const TORVWindProfile profile({{0.0F, 90.0F, 10.0F}, {2.0F, 90.0F, 20.0F}});
    EXPECT_NEAR(profile.at(1.0F).u, 15.0F, 1e-4F); // half-way, blowing to the east
    EXPECT_NEAR(profile.at(1.0F).v, 0.0F, 1e-4F);
}

TEST(TORVWindProfile, GoesOnAboveItsTop)
{
    const TORVWindProfile profile({{0.0F, 0.0F, 10.0F}, {2.0F, 0.0F, 20.0F}});
    EXPECT_NEAR(profile.at(19.0F).v, 20.0F, 1e-4F);
    EXPECT_NEAR(profile.at(-1.0F).v, 10.0F, 1e-4F);
}

TEST(TORVMeltingLayer, IsBrightestJustBelowTheFreezingLevel)
{
    const float band = TORVMeltingLayer::decibels(2.3F, 2.5F, 8.0F, 0.0F);
    EXPECT_GT(band, TORVMeltingLayer::decibels(1.0F, 2.5F, 8.0F, 0.0F) + 5.0F);
    EXPECT_GT(band, TORVMeltingLayer::decibels(3.2F, 2.5F, 8.0F, 0.0F) + 8.0F);
}

TEST(TORVMeltingLayer, ChangesNothingInTheRainFarBelow)
{
    EXPECT_NEAR(TORVMeltingLayer::decibels(0.5F, 2.5F, 8.0F, 0.0F), 0.0F, 1e-3F);
}

TEST(TORVMeltingLayer, IsWeakerAndThickerInAWideBeam)
{
    EXPECT_LT(TORVMeltingLayer::decibels(2.28F, 2.5F, 8.0F, 0.6F), TORVMeltingLayer::decibels(2.28F, 2.5F, 8.0F, 0.0F));
    EXPECT_GT(TORVMeltingLayer::decibels(1.6F, 2.5F, 8.0F, 0.6F), TORVMeltingLayer::decibels(1.6F, 2.5F, 8.0F, 0.0F));
}

class TORVSupercellTest : public testing::Test
{
protected:
    // It moves to the east (90 degrees), so east is ahead and north is left.
    static TORVSupercell::State mature() { return {TORVStormFrame::at(0.0F, 0.0F, 1.5707963F), 1.0F, 1.0F, 5000.0F}; }

    const TORVNoise noise{11};
    const TORVSupercell storm{mature(), noise};
};

TEST_F(TORVSupercellTest, HasAHailCoreAheadAndToTheLeftOfTheUpdraft)
{
    EXPECT_GT(highestIn(storm, 0.0F, 15.0F, 0.0F, 15.0F, 1.0F), 55.0F);
}

TEST_F(TORVSupercellTest, RoofsItsWeakEchoVaultWithAnOverhang)
{
    float below = 0.0F;
    float above = 0.0F;
    for (float x = 0.0F; x <= 6.0F; x += 1.0F) {
        below += sampleOf(storm, x, -3.0F, 3.0F).dbz / 7.0F;
        above += sampleOf(storm, x, -3.0F, 8.0F).dbz / 7.0F;
    }
    EXPECT_GT(above, below + 15.0F);
}

TEST_F(TORVSupercellTest, HasAHookOnlyNearTheGround)
{
    // West of the mesocyclone's centre, where the appendage comes down from the core.
    EXPECT_GT(highestIn(storm, -15.0F, -8.0F, -10.0F, 0.0F, 1.0F), 40.0F);
    EXPECT_LT(highestIn(storm, -15.0F, -11.0F, -10.0F, -4.0F, 9.0F), 40.0F);
}

TEST_F(TORVSupercellTest, StreamsAnAnvilFarAhead)
{
    EXPECT_GT(highestIn(storm, 70.0F, 90.0F, -10.0F, 10.0F, 9.0F), 8.0F);
    EXPECT_EQ(highestIn(storm, 70.0F, 90.0F, -10.0F, 10.0F, 2.0F), TORVAirSample::NoEcho);
}

TEST_F(TORVSupercellTest, TurnsAgainstTheClock)
{
    // The vortex' centre lies about 3 km behind and 5 km to the right: north wind on its west side, south wind on its
    // east.
    EXPECT_LT(sampleOf(storm, -8.0F, -4.7F, 3.0F).v, -10.0F);
    EXPECT_GT(sampleOf(storm, 4.0F, -4.7F, 3.0F).v, 10.0F);
}

TEST_F(TORVSupercellTest, IsRoughWhereTheShearIs)
{
    EXPECT_GT(sampleOf(storm, 2.0F, -4.7F, 3.0F).turbulence, 3.0F);
    EXPECT_LT(sampleOf(storm, 60.0F, 0.0F, 9.0F).turbulence, 1.0F);
}

TEST_F(TORVSupercellTest, HasNoHookBeforeItRotates)
{
    TORVSupercell::State young = mature();
    young.rotation = 0.0F;
    const TORVSupercell before(young, noise);
    EXPECT_LT(highestIn(before, -15.0F, -11.0F, -10.0F, -2.0F, 1.0F),
              highestIn(storm, -15.0F, -11.0F, -10.0F, -2.0F, 1.0F) - 10.0F);
}

TEST_F(TORVSupercellTest, StaysWithinItsBounds)
{
    const TORVFieldBounds& box = storm.bounds();
    for (float y = box.south; y <= box.north; y += 4.0F) {
        EXPECT_EQ(sampleOf(storm, box.west - 1.0F, y, 8.0F).dbz, TORVAirSample::NoEcho);
        EXPECT_EQ(sampleOf(storm, box.east + 1.0F, y, 8.0F).dbz, TORVAirSample::NoEcho);
    }
}

class TORVSquallLineTest : public testing::Test
{
protected:
    static TORVSquallLine::State mature()
    {
        TORVSquallLine::State state;
        state.frame = TORVStormFrame::at(0.0F, 0.0F, 1.5707963F);
        state.age = 12000.0F;
        return state;
    }

    const TORVNoise noise{12};
    const TORVSquallLine line{mature(), noise};
};

TEST_F(TORVSquallLineTest, IsStrongestAtItsFront)
{
    const float front = highestIn(line, -22.0F, 8.0F, -60.0F, 60.0F, 1.5F);
    EXPECT_GT(front, 50.0F);
    EXPECT_GT(front, highestIn(line, -90.0F, -45.0F, -60.0F, 60.0F, 1.5F) + 8.0F);
}

TEST_F(TORVSquallLineTest, HasABrightBandInTheRainBehind)
{
    float band = 0.0F;
    float rain = 0.0F;
    for (float y = -40.0F; y <= 40.0F; y += 1.0F) {
        band += sampleOf(line, -60.0F, y, 2.6F).dbz / 81.0F;
        rain += sampleOf(line, -60.0F, y, 1.0F).dbz / 81.0F;
    }
    EXPECT_GT(band, rain + 4.0F);
}

TEST_F(TORVSquallLineTest, IsDryAheadNearTheGround)
{
    EXPECT_LT(highestIn(line, 20.0F, 25.0F, -40.0F, 40.0F, 1.0F), 0.0F);
}

TEST_F(TORVSquallLineTest, BringsAJetFromTheRear)
{
    EXPECT_GT(sampleOf(line, -40.0F, 0.0F, 2.3F).u, 5.0F);
    EXPECT_LT(sampleOf(line, -40.0F, 0.0F, 7.0F).u, -5.0F);
}

TEST(TORVPulseCell, ShowsItsFirstEchoAloft)
{
    const TORVNoise noise(13);
    const TORVPulseCell cell({0.0F, 0.0F, 0.10F, 52.0F, 4.0F, 10.0F, 0.0F, 0.0F, 3}, noise);
    EXPECT_GT(highestIn(cell, -3.0F, 3.0F, -3.0F, 3.0F, 4.5F), 20.0F);
    EXPECT_LT(highestIn(cell, -3.0F, 3.0F, -3.0F, 3.0F, 0.5F), 10.0F);
}

TEST(TORVPulseCell, ReachesTheGroundWhenMature)
{
    const TORVNoise noise(13);
    const TORVPulseCell cell({0.0F, 0.0F, 0.5F, 52.0F, 4.0F, 10.0F, 0.0F, 0.0F, 3}, noise);
    EXPECT_GT(highestIn(cell, -3.0F, 3.0F, -3.0F, 3.0F, 0.5F), 40.0F);
}

TEST(TORVPulseCell, IsGoneAtItsEnd)
{
    const TORVNoise noise(13);
    const TORVPulseCell mature({0.0F, 0.0F, 0.5F, 52.0F, 4.0F, 10.0F, 0.0F, 0.0F, 3}, noise);
    const TORVPulseCell old({0.0F, 0.0F, 0.99F, 52.0F, 4.0F, 10.0F, 0.0F, 0.0F, 3}, noise);
    EXPECT_LT(highestIn(old, -3.0F, 3.0F, -3.0F, 3.0F, 3.0F),
              highestIn(mature, -3.0F, 3.0F, -3.0F, 3.0F, 3.0F) - 15.0F);
}

TEST(TORVPulseCell, BurstsOutwardsAtTheGroundWhenItCollapses)
{
    const TORVNoise noise(13);
    const TORVPulseCell cell({0.0F, 0.0F, 0.6F, 52.0F, 4.0F, 10.0F, 0.0F, 0.0F, 3}, noise);
    EXPECT_GT(sampleOf(cell, 5.0F, 0.0F, 0.1F).u, 4.0F);
    EXPECT_LT(sampleOf(cell, -5.0F, 0.0F, 0.1F).u, -4.0F);
}

TEST(TORVWidespreadRain, FillsItsAreaWithModerateEcho)
{
    TORVWidespreadRain::State state;
    state.frame = TORVStormFrame::at(0.0F, 0.0F, 1.5707963F);
    const TORVNoise noise(14);
    const TORVWidespreadRain rain(state, noise);
    const float strongest = highestIn(rain, -30.0F, 30.0F, -30.0F, 30.0F, 1.0F);
    EXPECT_GT(strongest, 25.0F);
    EXPECT_LT(strongest, 48.0F);
}

TEST(TORVWeather, LetsEveryStormMoveWithoutJumps)
{
    const TORVWeather weather(TORVWeather::SUPERCELLS, 3);
    const int64_t evening = 1784052000; // 2026-07-14 18:00 UTC
    const auto centreOf = [&weather](int64_t time) {
        const TORVWeather::Fields fields = weather.fieldsAt(time);
        const TORVFieldBounds& box = fields.front()->bounds();
        return std::make_pair(0.5F * (box.west + box.east), 0.5F * (box.south + box.north));
    };
    const auto before = centreOf(evening);
    const auto after = centreOf(evening + 60);
    // The first field is the supercell; it moves at 12.5 m/s: 0.75 km in a minute.
    EXPECT_NEAR(std::hypot(after.first - before.first, after.second - before.second), 0.75F, 0.01F);
}

TEST(TORVWeather, HasSomethingToShowAtEveryHour)
{
    for (const auto scenario : {TORVWeather::SUPERCELLS, TORVWeather::FRONTS}) {
        const TORVWeather weather(scenario, 4);
        for (int64_t hour = 0; hour < 24; ++hour) {
            EXPECT_GE(weather.fieldsAt(1784000000 + 3600 * hour).size(), 2U) << hour; // more than clear air
        }
    }
}

} // namespace
