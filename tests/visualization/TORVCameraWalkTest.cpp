#include "CameraTest.h"
#include "visualization/TORVCameraModel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace
{

using namespace CameraTest;

/// Does what users do, and worse, in an order that is the same each time.
class TORVCameraWalkTest : public testing::Test
{
protected:
    static constexpr int Gestures = 100000;

    double between(double low, double high) { return std::uniform_real_distribution<double>(low, high)(generator); }

    /// Mostly small, seldom huge.
    double amount() { return std::pow(10.0, between(-3.0, 4.0)) * (between(0.0, 1.0) < 0.5 ? -1.0 : 1.0); }

    TORVPoint3D point(double size) { return {between(-size, size), between(-size, size), between(-size, size)}; }

    /// @return whether it turns the camera, which brings the pitch into its limits.
    bool gesture(TORVCameraModel& camera)
    {
        const int kind = std::uniform_int_distribution<int>(0, 40)(generator);
        if (kind == 0) {
            camera.resetCamera();
        } else if (kind == 1) {
            camera.targetToOrigo();
        } else if (kind == 2) {
            camera.setView(point(2e6), point(1.0));
        } else if (kind < 13) {
            camera.panCamera(amount(), amount());
        } else if (kind < 21) {
            camera.zoomCamera(0.001 * amount());
        } else if (kind < 28) {
            camera.rotateCameraView(0.01 * amount(), 0.01 * amount());
            return true;
        } else if (kind < 36) {
            const bool isLegal = camera.isTargetLegal();
            camera.rotateCameraTarget(0.01 * amount(), 0.01 * amount());
            return isLegal;
        } else {
            camera.setCameraByHPD(between(-7.0, 7.0), between(-2.0, 2.0), 100.0 * amount());
        }
        return false;
    }

    static void expectWithinLimits(const TORVCameraModel& camera)
    {
        ASSERT_GE(camera.getPosition().z, 2000.0);
        ASSERT_LE(length(camera.getPosition()), camera.getMaxDistance() * (1.0 + 1e-12));
        ASSERT_NEAR(length(camera.getDirection()), 1.0, 1e-12);
        ASSERT_LE(std::abs(camera.getPitch()), M_PI / 2.0);
        ASSERT_LE(length(camera.getTarget()), camera.getMaxDistance() * (1.0 + 1e-12));
        ASSERT_EQ(camera.getTarget().z, 0.0);
        ASSERT_NEAR(length(camera.getForward()), 1.0, 1e-12);
        ASSERT_TRUE(std::isfinite(camera.getHeading()));
        ASSERT_GE(std::abs(camera.getTargetDistance()), 2000.0);
        ASSERT_NEAR(length(camera.getViewUp()), 1.0, 1e-12);
    }

    std::mt19937 generator{20260714};
};

} // namespace

TEST_F(TORVCameraWalkTest, StaysWithinItsLimits)
{
    TORVCameraModel camera;
    goHome(camera);
    for (int i = 0; i < Gestures; ++i) {
        const bool isTurn = gesture(camera);
        ASSERT_NO_FATAL_FAILURE(expectWithinLimits(camera)) << "gesture " << i;
        ASSERT_TRUE(!isTurn || std::abs(camera.getPitch()) <= TORVCameraModel::PitchLimit + 1e-9) << "gesture " << i;
    }
}

TEST_F(TORVCameraWalkTest, KeepsALegalTargetWhileItTurnsAboutIt)
{
    TORVCameraModel camera;
    goHome(camera);
    for (int i = 0; i < Gestures; ++i) {
        const bool isLegal = camera.isTargetLegal();
        const TORVPoint3D target = camera.getTarget();
        camera.rotateCameraTarget(0.01 * amount(), 0.01 * amount());
        if (isLegal) {
            ASSERT_TRUE(isNear(camera.getTarget(), target, 0.01)) << "gesture " << i;
        }
        gesture(camera);
    }
}

TEST_F(TORVCameraWalkTest, StaysAboveTheGroundWhereTheMaximumDistanceIsBelowIt)
{
    TORVCameraModel camera;
    camera.resetCamera({0.0, 0.0, 500.0}, {0.0, 1.0, -1.0}, 1000.0, 500.0);
    for (int i = 0; i < Gestures; ++i) {
        gesture(camera);
        ASSERT_GE(camera.getPosition().z, 2000.0);
        ASSERT_LE(length(camera.getPosition()), 2000.0 + 1e-9);
        ASSERT_NEAR(length(camera.getDirection()), 1.0, 1e-12);
        ASSERT_TRUE(std::isfinite(camera.getTargetDistance()));
    }
}
