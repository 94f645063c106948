#include "visualization/TORVCameraModel.h"

#include "CameraTest.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <vector>

namespace
{

using namespace CameraTest;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

class TORVCameraModelTest : public testing::Test
{
protected:
    TORVCameraModelTest() { goHome(camera); }

    TORVCameraModel camera;
};

} // namespace

TEST_F(TORVCameraModelTest, LooksAtTheOriginFromTheSouth)
{
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -3e5, 3e5));
    EXPECT_TRUE(pointsTo(camera.getDirection(), 0.0, Half, -Half));
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 0.0, 0.0));
    EXPECT_NEAR(camera.getTargetDistance(), 424264.0687, 1e-3); // 300 km times the square root of 2
    EXPECT_NEAR(camera.getHeading(), M_PI / 2.0, 1e-12);
    EXPECT_NEAR(camera.getPitch(), M_PI / 4.0, 1e-12);
    EXPECT_TRUE(pointsTo(camera.getForward(), 0.0, 1.0, 0.0));
    EXPECT_TRUE(pointsTo(camera.getSide(), 1.0, 0.0, 0.0));
    EXPECT_TRUE(pointsTo(camera.getViewUp(), 0.0, Half, Half));
    EXPECT_TRUE(camera.isTargetLegal());
}

TEST_F(TORVCameraModelTest, TellsHeadingsCounterClockwiseFromTheEast)
{
    const struct
    {
        TORVPoint3D direction;
        double heading;
    } rows[] = {
        {{1.0, 0.0, -1.0}, 0.0},          {{1.0, 1.0, -1.0}, M_PI / 4.0},
        {{0.0, 1.0, -1.0}, M_PI / 2.0},   {{-1.0, 1.0, -1.0}, 3.0 * M_PI / 4.0},
        {{0.0, -1.0, -1.0}, -M_PI / 2.0},
    };
    for (const auto& row : rows) {
        camera.setView(Position, row.direction);
        EXPECT_NEAR(camera.getHeading(), row.heading, 1e-12);
    }
}

TEST_F(TORVCameraModelTest, TellsPitchesDownwardsFromTheHorizon)
{
    const struct
    {
        TORVPoint3D direction;
        double pitch;
    } rows[] = {
        {{0.0, 1.0, 0.0}, 0.0},
        {{0.0, 1.0, -1.0}, M_PI / 4.0},
        {{0.0, 1.0, 1.0}, -M_PI / 4.0},
        {{0.0, 1e-6, -1.0}, M_PI / 2.0 - 1e-6},
    };
    for (const auto& row : rows) {
        camera.setView(Position, row.direction);
        EXPECT_NEAR(camera.getPitch(), row.pitch, 1e-12);
    }
}

TEST_F(TORVCameraModelTest, TakesItsLimitsFromThePositionWithoutOthers)
{
    for (const double none : {0.0, -1.0, NaN, Infinity}) {
        camera.resetCamera({0.0, 0.0, 2e6}, {0.0, 1e-6, -1.0}, none, none);
        EXPECT_EQ(camera.getMaxDistance(), 4e6);
        EXPECT_EQ(camera.getTargetLimit(), 1.2e6);
    }
}

TEST_F(TORVCameraModelTest, TakesLimitsAsTheyAreTold)
{
    EXPECT_EQ(camera.getMaxDistance(), 1e6);
    EXPECT_EQ(camera.getTargetLimit(), 3e5);
    EXPECT_EQ(camera.getPanFactor(), 0.5);
    EXPECT_EQ(camera.getRotateFactor(), 0.002);
    EXPECT_EQ(camera.getZoomFactor(), 0.05);
}

TEST_F(TORVCameraModelTest, GoesBackToItsHomeWithItsLimits)
{
    const TORVCameraModel home = camera;
    camera.panCamera(100.0, 100.0);
    camera.rotateCameraView(1.0, -0.2);
    camera.zoomCamera(0.1);
    camera.resetCamera();
    EXPECT_TRUE(isAsBefore(camera, home));
}

TEST_F(TORVCameraModelTest, FindsTheHeadingOfAViewStraightDownByItsPlace)
{
    camera.setView({3e5, 4e5, 5e5}, {0.0, 0.0, -1.0});
    // A millionth of x and y, and -1: (0.3, 0.4, -1), which is 0.5 along the heading of (3, 4).
    EXPECT_NEAR(camera.getHeading(), std::atan2(4.0, 3.0), 1e-12);
    EXPECT_NEAR(camera.getPitch(), std::atan2(1.0, 0.5), 1e-12);
    // 500 km down with 0.3 and 0.4 m for each: 150 and 200 km further.
    EXPECT_TRUE(isAt(camera.getTarget(), 4.5e5, 6e5, 0.0));
}

TEST_F(TORVCameraModelTest, LooksNorthStraightDownAboveTheOrigin)
{
    camera.setView({0.0, 0.0, 3e5}, {0.0, 0.0, -1.0});
    EXPECT_EQ(camera.getPosition().y, 1e-6);
    EXPECT_NEAR(camera.getHeading(), M_PI / 2.0, 1e-12);
    EXPECT_TRUE(pointsTo(camera.getDirection(), 0.0, 1e-12, -1.0));
    EXPECT_TRUE(pointsTo(camera.getViewUp(), 0.0, 1.0, 0.0));
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 0.0, 0.0));
    EXPECT_TRUE(camera.isTargetLegal());
}

TEST_F(TORVCameraModelTest, LooksDownWhenToldToLookStraightUp)
{
    camera.setView({3e5, 4e5, 5e5}, {0.0, 0.0, 1.0});
    EXPECT_NEAR(camera.getPitch(), std::atan2(1.0, 0.5), 1e-12);
}

TEST_F(TORVCameraModelTest, RaisesACameraToTheLowestAltitude)
{
    camera.setView({0.0, -3e5, 500.0}, Direction);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -3e5, 2000.0));
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, -298e3, 0.0));
}

TEST_F(TORVCameraModelTest, BringsACameraBackToTheMaximumDistance)
{
    camera.setView({0.0, -3e6, 4e6}, Direction); // 5000 km away: a fifth of it
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -6e5, 8e5));
    EXPECT_TRUE(pointsTo(camera.getDirection(), 0.0, Half, -Half));
}

TEST_F(TORVCameraModelTest, KeepsBothLimitsWhereItCan)
{
    camera.setView({3e6, 0.0, 100.0}, {-1.0, 0.0, -1.0});
    EXPECT_TRUE(isAt(camera.getPosition(), 999997.999998, 0.0, 2000.0)); // the root of 1e12 - 4e6
}

TEST_F(TORVCameraModelTest, PrefersTheAltitudeToTheMaximumDistance)
{
    camera.resetCamera({1000.0, 0.0, 500.0}, {1.0, 0.0, -1.0}, 1500.0, 0.0);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, 0.0, 2000.0));
}

TEST_F(TORVCameraModelTest, StaysWhenItIsWorkedOutAgain)
{
    for (const TORVPoint3D position : {Position, TORVPoint3D{3e6, 1e6, 100.0}, TORVPoint3D{0.0, 0.0, 1e7}}) {
        camera.setView(position, {0.3, 0.4, -0.2});
        const TORVPoint3D first = camera.getPosition();
        for (int i = 0; i < 1000; ++i) {
            camera.calculateVectors();
        }
        EXPECT_TRUE(isNear(camera.getPosition(), first, 1e-6));
        EXPECT_NEAR(length(camera.getDirection()), 1.0, 1e-12);
    }
}

TEST_F(TORVCameraModelTest, BringsATargetBackToTheMaximumDistance)
{
    camera.setView(Position, {0.0, 1.0, -0.1}); // meets the ground 3000 km further, at y = 2700 km
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 1e6, 0.0));
    EXPECT_NEAR(camera.getTargetDistance(), std::hypot(1.3e6, 3e5), 1e-3);
    EXPECT_FALSE(camera.isTargetLegal());
}

TEST_F(TORVCameraModelTest, BringsATargetBackTowardsTheOrigin)
{
    camera.setView(Position, {1.0, 0.0, -0.1}); // meets the ground at (3000, -300) km, a root of 9.09e12 m away
    EXPECT_TRUE(isAt(camera.getTarget(), 3e12 / std::sqrt(9.09e12), -3e11 / std::sqrt(9.09e12), 0.0));
}

TEST_F(TORVCameraModelTest, HasItsTargetAheadWhenTheRayDoesNotComeDown)
{
    for (const double z : {0.0, 1.0, -1e-7}) {
        camera.setView(Position, {3.0, 4.0, z});
        EXPECT_TRUE(isNear(camera.getTarget(), {6e5, 8e5, 0.0}, 1e-3));
        EXPECT_FALSE(camera.isTargetLegal());
    }
}

TEST_F(TORVCameraModelTest, TellsATargetBehindByANegativeDistance)
{
    camera.setView({0.0, 0.0, 3e5}, {0.1, 0.0, 1.0});
    EXPECT_TRUE(isAt(camera.getTarget(), 1e6, 0.0, 0.0));
    EXPECT_NEAR(camera.getTargetDistance(), -std::hypot(1e6, 3e5), 1e-3); // 0.1 * 1e6 - 1 * 3e5 is behind
}

TEST_F(TORVCameraModelTest, IsLegalUpToTheTargetLimit)
{
    camera.setView({0.0, 0.0, 3e5}, {1.0 - 1e-9, 0.0, -1.0});
    EXPECT_TRUE(camera.isTargetLegal());
    camera.setView({0.0, 0.0, 3e5}, {1.0 + 1e-9, 0.0, -1.0});
    EXPECT_FALSE(camera.isTargetLegal());
}

TEST_F(TORVCameraModelTest, IsLegalAtTheMaximumDistanceWhenThatIsTheLimit)
{
    camera.resetCamera(Position, Direction, MaxDistance, MaxDistance);
    for (int i = 0; i < 1000; ++i) { // by rounding, some targets lie beyond
        camera.setView(Position, {std::cos(0.01 * i), std::sin(0.01 * i), -0.1});
        ASSERT_TRUE(camera.isTargetLegal()) << i;
    }
}

TEST_F(TORVCameraModelTest, LooksAtTheOriginFromWhereItIs)
{
    camera.setView({3e5, 4e5, 5e5}, {1.0, 0.0, 0.5});
    camera.targetToOrigo();
    EXPECT_TRUE(isAt(camera.getPosition(), 3e5, 4e5, 5e5));
    // Against (3, 4, 5), whose length is the root of 50.
    EXPECT_TRUE(pointsTo(camera.getDirection(), -3.0 / std::sqrt(50.0), -4.0 / std::sqrt(50.0), -Half));
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 0.0, 0.0));
    EXPECT_NEAR(camera.getTargetDistance(), 707106.7812, 1e-3);
}

TEST_F(TORVCameraModelTest, LooksAtTheOriginFromTheLowestAltitude)
{
    camera.setView({0.0, -3e5, 0.0}, Direction);
    camera.targetToOrigo();
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -3e5, 2000.0));
    EXPECT_NEAR(camera.getPitch(), std::atan2(2e3, 3e5), 1e-12);
}

TEST_F(TORVCameraModelTest, GoesHomeForAViewWithoutADirection)
{
    const TORVCameraModel home = camera;
    const TORVPoint3D elsewhere = {1e5, 2e5, 3e5};
    const struct
    {
        TORVPoint3D position;
        TORVPoint3D direction;
    } rows[] = {
        {elsewhere, {0.0, 0.0, 0.0}},        {elsewhere, {NaN, 0.0, -1.0}},
        {elsewhere, {0.0, Infinity, -1.0}},  {elsewhere, {0.0, 1.0, -Infinity}},
        {{NaN, 0.0, 3e5}, {0.0, 1.0, -1.0}}, {{0.0, 0.0, Infinity}, {0.0, 1.0, -1.0}},
    };
    for (const auto& row : rows) {
        camera.panCamera(10.0, 10.0);
        camera.setView(row.position, row.direction);
        EXPECT_TRUE(isAsBefore(camera, home));
    }
}

TEST_F(TORVCameraModelTest, TakesAViewOfAnyFiniteNumbers)
{
    const double huge = std::numeric_limits<double>::max();
    const double tiny = std::numeric_limits<double>::denorm_min();
    for (const double size : {huge, 1e300, 1e-300, tiny}) {
        camera.setView({size, -size, size}, {size, size, -size});
        EXPECT_NEAR(length(camera.getDirection()), 1.0, 1e-12) << size;
        EXPECT_NEAR(camera.getHeading(), M_PI / 4.0, 1e-12) << size;
        EXPECT_LE(length(camera.getPosition()), MaxDistance * (1.0 + 1e-12)) << size;
        EXPECT_GE(camera.getPosition().z, 2000.0) << size;
        EXPECT_TRUE(std::isfinite(camera.getTargetDistance())) << size;
    }
}

TEST_F(TORVCameraModelTest, TakesNoNumberThatIsNotFinite)
{
    const TORVCameraModel before = camera;
    for (const double bad : {NaN, Infinity, -Infinity}) {
        const std::vector<std::function<void()>> calls = {
            [&] {
                camera.resetCamera({bad, 0.0, 3e5}, Direction, 1e6, 3e5);
            },
            [&] {
                camera.resetCamera(Position, {0.0, bad, -1.0}, 1e6, 3e5);
            },
            [&] { camera.panCamera(bad, 0.0); },
            [&] { camera.panCamera(0.0, bad); },
            [&] { camera.zoomCamera(bad); },
            [&] { camera.rotateCameraTarget(bad, 0.0); },
            [&] { camera.rotateCameraTarget(0.0, bad); },
            [&] { camera.rotateCameraView(bad, 0.0); },
            [&] { camera.rotateCameraView(0.0, bad); },
            [&] { camera.setCameraByHPD(bad, 0.5, 1e5); },
            [&] { camera.setCameraByHPD(0.0, bad, 1e5); },
            [&] { camera.setCameraByHPD(0.0, 0.5, bad); },
        };
        for (std::size_t i = 0; i < calls.size(); ++i) {
            calls[i]();
            EXPECT_TRUE(isAsBefore(camera, before)) << "call " << i;
        }
    }
}

TEST(TORVCameraModelStartTest, HasNumbersBeforeItsFirstHome)
{
    TORVCameraModel camera;
    EXPECT_EQ(length(camera.getPosition()), 0.0);
    EXPECT_EQ(camera.getMaxDistance(), 0.0);
    EXPECT_EQ(camera.getRotateFactor(), 0.0);
    camera.panCamera(100.0, 100.0);
    camera.zoomCamera(0.05);
    camera.rotateCameraTarget(0.1, 0.1);
    camera.rotateCameraView(0.1, 0.1);
    camera.setCameraByHPD(0.0, 1.0, 1000.0);
    camera.targetToOrigo();
    camera.resetCamera();
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, 0.0, 2000.0));
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 0.0, 0.0));
    EXPECT_NEAR(length(camera.getDirection()), 1.0, 1e-12);
}
