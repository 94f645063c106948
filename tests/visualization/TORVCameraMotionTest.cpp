#include "CameraTest.h"
#include "visualization/TORVCameraModel.h"

#include <gtest/gtest.h>

#include <vtkNew.h>
#include <vtkTransform.h>

#include <cmath>

namespace
{

using namespace CameraTest;

constexpr double PitchLimit = 1.56905099575;
constexpr double PitchLimitSine = 0.9999984769101585;
constexpr double PitchLimitCosine = 0.0017453301587975797;
constexpr double StopAltitude = 2000.001;

class TORVCameraMotionTest : public testing::Test
{
protected:
    TORVCameraMotionTest() { goHome(camera); }

    /// Looks at a target on the ground, along that heading and at that pitch, from that far.
    void lookAt(const TORVPoint3D& target, double heading, double pitch, double distance)
    {
        const TORVPoint3D direction = {std::cos(pitch) * std::cos(heading), std::cos(pitch) * std::sin(heading),
                                       -std::sin(pitch)};
        camera.setView(
            {target.x - distance * direction.x, target.y - distance * direction.y, target.z - distance * direction.z},
            direction);
        ASSERT_TRUE(isNear(camera.getTarget(), target, 1e-3));
    }

    static void turned(double degrees, const TORVPoint3D& axis, TORVPoint3D& point, const TORVPoint3D& centre)
    {
        vtkNew<vtkTransform> transform;
        transform->Translate(centre.x, centre.y, centre.z);
        transform->RotateWXYZ(degrees, axis.x, axis.y, axis.z);
        transform->Translate(-centre.x, -centre.y, -centre.z);
        const double from[3] = {point.x, point.y, point.z};
        double to[3];
        transform->TransformPoint(from, to);
        point = {to[0], to[1], to[2]};
    }

    TORVCameraModel camera;
};

constexpr TORVPoint3D Origin = {0.0, 0.0, 0.0};
constexpr TORVPoint3D Up = {0.0, 0.0, 1.0};

} // namespace

TEST_F(TORVCameraMotionTest, PansToTheRightAndAhead)
{
    camera.panCamera(100.0, 50.0); // times a thousandth of 424264.0687 m
    EXPECT_TRUE(isAt(camera.getPosition(), 42426.40687, -3e5 + 21213.20344, 3e5));
    EXPECT_TRUE(pointsTo(camera.getDirection(), 0.0, Half, -Half));
    EXPECT_TRUE(isAt(camera.getTarget(), 42426.40687, 21213.20344, 0.0));
}

TEST_F(TORVCameraMotionTest, PansAlongItsHeading)
{
    lookAt(Origin, M_PI, M_PI / 4.0, Distance); // from the east to the west: right is north
    camera.panCamera(100.0, 50.0);
    EXPECT_TRUE(isAt(camera.getTarget(), -21213.20344, 42426.40687, 0.0));
}

TEST_F(TORVCameraMotionTest, PansAlongTheMaximumDistance)
{
    camera.panCamera(0.0, -1e4); // 4242 km back, to (0, -4542.64, 300): scaled down to 1000 km
    const double size = std::hypot(3e5 + 4242640.687, 3e5);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -(3e5 + 4242640.687) * 1e6 / size, 3e5 * 1e6 / size));
}

TEST_F(TORVCameraMotionTest, PansAheadWithATargetBehind)
{
    camera.setView({0.0, 0.0, 3e5}, {0.1, 0.0, 1.0});
    camera.panCamera(0.0, 1.0);
    EXPECT_TRUE(isAt(camera.getPosition(), 1044.03065, 0.0, 3e5)); // a thousandth of the root of 1e12 + 9e10
}

TEST_F(TORVCameraMotionTest, ZoomsByPartsOfTheMaximumDistance)
{
    camera.zoomCamera(0.05); // 50 km at 45 degrees
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -3e5 + 35355.33906, 3e5 - 35355.33906));
    camera.zoomCamera(-0.1);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -3e5 - 35355.33906, 3e5 + 35355.33906));
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 0.0, 0.0));
    EXPECT_TRUE(pointsTo(camera.getDirection(), 0.0, Half, -Half));
}

TEST_F(TORVCameraMotionTest, ZoomsByAMetreAtLeast)
{
    camera.zoomCamera(1e-9);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -3e5 + Half, 3e5 - Half));
    camera.zoomCamera(-1e-9);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -3e5, 3e5));
    camera.zoomCamera(0.0);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -3e5, 3e5));
}

TEST_F(TORVCameraMotionTest, StopsAZoomJustAboveTheLowestAltitude)
{
    lookAt(Origin, M_PI / 2.0, M_PI / 4.0, 30000.0); // 21213 m up; 50 km ahead is under the ground
    camera.zoomCamera(0.05);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -StopAltitude, StopAltitude));
    EXPECT_GT(camera.getPosition().z, 2000.0);
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 0.0, 0.0));
}

TEST_F(TORVCameraMotionTest, StaysWhereAZoomHasStopped)
{
    lookAt(Origin, M_PI / 2.0, M_PI / 4.0, 30000.0);
    camera.zoomCamera(0.05);
    const TORVCameraModel before = camera;
    camera.zoomCamera(0.05);
    EXPECT_TRUE(isAsBefore(camera, before));
}

TEST_F(TORVCameraMotionTest, RefusesAZoomAtTheLowestAltitude)
{
    camera.setView({0.0, -3e5, 2000.0}, Direction);
    const TORVCameraModel before = camera;
    camera.zoomCamera(0.05);
    EXPECT_TRUE(isAsBefore(camera, before));
    camera.setView({0.0, -3e5, 2000.0}, {0.0, 1.0, 0.0}); // to the horizon: the altitude itself is not above it
    const TORVCameraModel level = camera;
    camera.zoomCamera(0.05);
    EXPECT_TRUE(isAsBefore(camera, level));
}

TEST_F(TORVCameraMotionTest, ZoomsAwayFromTheLowestAltitude)
{
    camera.setView({0.0, -3e5, 2000.0}, Direction);
    camera.zoomCamera(-0.05);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -3e5 - 35355.33906, 2000.0 + 35355.33906));
}

TEST_F(TORVCameraMotionTest, StopsABackwardZoomOfACameraThatLooksUp)
{
    camera.setView({0.0, 0.0, 10000.0}, {0.0, 1.0, 1.0});
    camera.zoomCamera(-0.05);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -(10000.0 - StopAltitude), StopAltitude));
}

TEST_F(TORVCameraMotionTest, ZoomsOutToTheMaximumDistance)
{
    camera.zoomCamera(-0.9);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -1e6 * Half, 1e6 * Half));
}

TEST_F(TORVCameraMotionTest, TurnsAboutTheTargetAsARotationDoes)
{
    lookAt({5e4, -2e4, 0.0}, 2.0, 0.7, 3e5);
    TORVPoint3D position = camera.getPosition();
    TORVPoint3D direction = camera.getDirection();
    TORVPoint3D side = camera.getSide();
    const TORVPoint3D target = camera.getTarget();
    const double turn = 0.3 * -180.0 / 3.14159265;
    turned(turn, Up, position, target);
    turned(turn, Up, direction, Origin);
    turned(turn, Up, side, Origin);
    const double tilt = 0.2 * -180.0 / 3.14159265;
    turned(tilt, side, position, target);
    turned(tilt, side, direction, Origin);
    camera.rotateCameraTarget(0.3, 0.2);
    EXPECT_TRUE(isNear(camera.getPosition(), position, 1e-6));
    EXPECT_TRUE(isNear(camera.getDirection(), direction, 1e-12));
    EXPECT_TRUE(isNear(camera.getTarget(), target, 1e-6));
}

TEST_F(TORVCameraMotionTest, TurnsAQuarterClockwiseAboutTheTarget)
{
    camera.rotateCameraTarget(3.14159265 / 2.0, 0.0); // from the south to the west
    EXPECT_TRUE(isAt(camera.getPosition(), -3e5, 0.0, 3e5));
    EXPECT_TRUE(pointsTo(camera.getDirection(), Half, 0.0, -Half));
    EXPECT_NEAR(camera.getHeading(), 0.0, 1e-9);
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 0.0, 0.0));
}

TEST_F(TORVCameraMotionTest, RisesAboveTheTarget)
{
    camera.rotateCameraTarget(0.0, 3.14159265 / 12.0); // 45 + 15 degrees
    EXPECT_NEAR(camera.getPitch(), M_PI / 3.0, 1e-9);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -212132.0344, 367423.4614)); // half of D, and D times 0.8660254038
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 0.0, 0.0));
}

TEST_F(TORVCameraMotionTest, StopsAt89Point9DegreesAboveTheTarget)
{
    for (int i = 0; i < 100; ++i) {
        camera.rotateCameraTarget(0.0, 0.05);
    }
    EXPECT_NEAR(camera.getPitch(), PitchLimit, 1e-9);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -Distance * PitchLimitCosine, Distance * PitchLimitSine));
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 0.0, 0.0));
}

TEST_F(TORVCameraMotionTest, GoesOnTurningAtThePitchLimit)
{
    camera.rotateCameraTarget(0.0, 2.0);
    camera.rotateCameraTarget(3.14159265 / 2.0, 0.1);
    EXPECT_NEAR(camera.getHeading(), 0.0, 1e-6);
    EXPECT_NEAR(camera.getPitch(), PitchLimit, 1e-9);
    EXPECT_TRUE(isAt(camera.getPosition(), -Distance * PitchLimitCosine, 0.0, Distance * PitchLimitSine));
}

TEST_F(TORVCameraMotionTest, SinksToTheLowestAltitudeAboutTheTarget)
{
    camera.rotateCameraTarget(0.0, -1.0);
    EXPECT_NEAR(camera.getPosition().z, 2000.0, 1e-6);
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 0.0, 0.0));
    EXPECT_NEAR(camera.getTargetDistance(), Distance, 1e-3);
    EXPECT_NEAR(camera.getPitch(), std::asin(2000.0 / Distance), 1e-9);
}

TEST_F(TORVCameraMotionTest, ComesNearerWhereATurnWouldLeaveTheMaximumDistance)
{
    const double pitch = M_PI / 9.0;
    lookAt({3e5, 0.0, 0.0}, 0.0, pitch, 1.2e6); // 827.6 km west and 410.4 km up
    camera.rotateCameraTarget(3.14159265,
                              0.0); // to the east, where 1.2e6 m from the target are 1485 km from the origin
    EXPECT_TRUE(isAt(camera.getTarget(), 3e5, 0.0, 0.0));
    EXPECT_NEAR(camera.getPitch(), pitch, 1e-9);
    EXPECT_NEAR(length(camera.getPosition()), MaxDistance, 1e-3);
    // r with |(3e5 + r cos 20, r sin 20)| = 1e6: -281907.786 + the root of 281907.786 squared + 1e12 - 9e10.
    EXPECT_NEAR(camera.getTargetDistance(), 712813.796, 1.0);
    camera.rotateCameraTarget(3.14159265, 0.0);
    EXPECT_TRUE(isAt(camera.getTarget(), 3e5, 0.0, 0.0));
}

TEST_F(TORVCameraMotionTest, StaysHigherWhereBothLimitsAreInTheWay)
{
    const double distance = 1.2e6;
    lookAt({3e5, 0.0, 0.0}, 0.0, std::asin(2000.0 / distance), distance);
    camera.rotateCameraTarget(3.14159265, 0.0);
    EXPECT_TRUE(isAt(camera.getTarget(), 3e5, 0.0, 0.0));
    EXPECT_NEAR(camera.getPosition().z, 2000.0, 1e-3);
    EXPECT_NEAR(camera.getPosition().x, 999997.999998, 1e-2);
}

TEST_F(TORVCameraMotionTest, StaysWhereNoPlaceIsLeftBehindTheTarget)
{
    lookAt({999999.0, 0.0, 0.0}, 0.0, M_PI / 4.0, 1e5);
    const TORVCameraModel before = camera;
    camera.rotateCameraTarget(3.0, 0.0);
    EXPECT_TRUE(isAsBefore(camera, before));
}

TEST_F(TORVCameraMotionTest, TurnsAboutATargetThatIsNotOnItsRay)
{
    camera.setView(Position, {0.0, 1.0, 0.0}); // target 1000 km ahead of the origin
    TORVPoint3D position = camera.getPosition();
    turned(0.1 * -180.0 / 3.14159265, Up, position, {0.0, 1e6, 0.0});
    camera.rotateCameraTarget(0.1, 0.0);
    EXPECT_TRUE(isNear(camera.getPosition(), position, 1e-6));
    EXPECT_NEAR(camera.getHeading(), M_PI / 2.0 - 0.1, 1e-8);
    EXPECT_NEAR(camera.getPitch(), 0.0, 1e-12);
}

TEST_F(TORVCameraMotionTest, RisesAboveATargetThatIsNotOnItsRay)
{
    camera.setView({0.0, 0.0, 1e5}, {0.0, 1.0, 0.0});
    TORVPoint3D position = camera.getPosition();
    turned(0.1 * -180.0 / 3.14159265, {1.0, 0.0, 0.0}, position, {0.0, 1e6, 0.0});
    camera.rotateCameraTarget(0.0, 0.1);
    EXPECT_TRUE(isNear(camera.getPosition(), position, 1e-6));
    EXPECT_NEAR(camera.getPitch(), 0.1, 1e-8);
}

TEST_F(TORVCameraMotionTest, TurnsTheOtherWayAboutATargetBehind)
{
    camera.setView({0.0, 0.0, 3e5}, {0.0, 0.1, 1.0}); // target 1000 km to the north
    const double pitch = camera.getPitch();
    TORVPoint3D position = camera.getPosition();
    turned(0.1 * 180.0 / 3.14159265, Up, position, {0.0, 1e6, 0.0});
    camera.rotateCameraTarget(0.1, 0.0);
    EXPECT_TRUE(isNear(camera.getPosition(), position, 1e-6));
    EXPECT_NEAR(camera.getHeading(), M_PI / 2.0 + 0.1, 1e-8);
    EXPECT_NEAR(camera.getPitch(), pitch, 1e-12);
}

TEST_F(TORVCameraMotionTest, TurnsOnTheSpot)
{
    camera.rotateCameraView(0.3, 0.2);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -3e5, 3e5));
    EXPECT_NEAR(camera.getHeading(), M_PI / 2.0 + 0.3, 1e-12);
    EXPECT_NEAR(camera.getPitch(), M_PI / 4.0 + 0.2, 1e-12);
    const double pitch = M_PI / 4.0 + 0.2;
    EXPECT_TRUE(pointsTo(camera.getDirection(), -std::cos(pitch) * std::sin(0.3), std::cos(pitch) * std::cos(0.3),
                         -std::sin(pitch)));
    const double reach = 3e5 / std::tan(pitch); // on the ground
    EXPECT_TRUE(isAt(camera.getTarget(), -reach * std::sin(0.3), -3e5 + reach * std::cos(0.3), 0.0));
}

TEST_F(TORVCameraMotionTest, StopsAt89Point9DegreesOnTheSpot)
{
    for (const double sign : {1.0, -1.0}) {
        goHome(camera);
        for (int i = 0; i < 100; ++i) {
            camera.rotateCameraView(0.0, sign * 0.05);
        }
        EXPECT_NEAR(camera.getPitch(), sign * PitchLimit, 1e-9);
        EXPECT_TRUE(pointsTo(camera.getDirection(), 0.0, PitchLimitCosine, -sign * PitchLimitSine));
        camera.rotateCameraView(1.0, sign * 0.05); // the heading goes on
        EXPECT_NEAR(camera.getHeading(), M_PI / 2.0 + 1.0, 1e-9);
        EXPECT_NEAR(camera.getPitch(), sign * PitchLimit, 1e-9);
        EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -3e5, 3e5));
    }
}

TEST_F(TORVCameraMotionTest, ComesBackToThePitchLimitFromAViewStraightDown)
{
    camera.setView({0.0, 0.0, 3e5}, {0.0, 1e-6, -1.0});
    ASSERT_GT(camera.getPitch(), PitchLimit);
    camera.rotateCameraTarget(0.01, 0.0);
    EXPECT_NEAR(camera.getPitch(), PitchLimit, 1e-9);
    camera.setView({0.0, 0.0, 3e5}, {0.0, 1e-6, -1.0});
    camera.rotateCameraView(0.01, 0.0);
    EXPECT_NEAR(camera.getPitch(), PitchLimit, 1e-9);
}

TEST_F(TORVCameraMotionTest, TurnsTheOppositeWaysOnTheSpotAndAboutTheTarget)
{
    camera.rotateCameraView(0.1, 0.0);
    EXPECT_NEAR(camera.getHeading(), M_PI / 2.0 + 0.1, 1e-9);
    goHome(camera);
    camera.rotateCameraTarget(0.1, 0.0);
    EXPECT_NEAR(camera.getHeading(), M_PI / 2.0 - 0.1, 1e-9);
}

TEST_F(TORVCameraMotionTest, GoesAboutTheTargetToAHeading)
{
    for (const double heading : {-3.0, -M_PI / 2.0, 0.0, 1.0, M_PI / 2.0, M_PI, 5.0, 2.0 * M_PI + 0.5}) {
        goHome(camera);
        camera.setCameraByHPD(heading, M_PI / 4.0, Distance);
        EXPECT_TRUE(isAt(camera.getPosition(), -3e5 * std::cos(heading), -3e5 * std::sin(heading), 3e5)) << heading;
        EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 0.0, 0.0)) << heading;
        EXPECT_NEAR(camera.getTargetDistance(), Distance, 1e-3);
    }
}

TEST_F(TORVCameraMotionTest, GoesAboutTheTargetToAPitch)
{
    camera.setCameraByHPD(M_PI / 2.0, M_PI / 6.0, Distance);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -367423.4614, 212132.0344));
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 0.0, 0.0));
    camera.setCameraByHPD(M_PI / 2.0, 3.0, Distance);
    EXPECT_NEAR(camera.getPitch(), PitchLimit, 1e-9);
    camera.setCameraByHPD(M_PI / 2.0, -3.0, Distance); // as low as the ground lets it
    EXPECT_NEAR(camera.getPosition().z, 2000.0, 1e-6);
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 0.0, 0.0));
}

TEST_F(TORVCameraMotionTest, GoesToADistanceOfTheTarget)
{
    camera.setCameraByHPD(M_PI / 2.0, M_PI / 4.0, 1e5);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -1e5 * Half, 1e5 * Half));
    camera.setCameraByHPD(M_PI / 2.0, M_PI / 4.0, 5e6); // as far as the maximum distance lets it
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -1e6 * Half, 1e6 * Half));
    EXPECT_TRUE(isAt(camera.getTarget(), 0.0, 0.0, 0.0));
}

TEST_F(TORVCameraMotionTest, ComesNoNearerToTheTargetThanTheLowestAltitude)
{
    for (const double distance : {100.0, 0.0, -5.0}) {
        goHome(camera);
        camera.setCameraByHPD(M_PI / 2.0, M_PI / 4.0, distance);
        EXPECT_TRUE(isAt(camera.getPosition(), 0.0, -2000.0, 2000.0));
        EXPECT_NEAR(camera.getPitch(), M_PI / 4.0, 1e-6);
    }
}

TEST_F(TORVCameraMotionTest, StaysAtTheHeadingThatItHas)
{
    // Unit vectors whose product with themselves is more than 1 by a rounding error are among these.
    for (int i = 0; i < 1000; ++i) {
        camera.setView(Position, {std::cos(0.01 * i), std::sin(0.01 * i), -1.0});
        const TORVPoint3D before = camera.getPosition();
        camera.setCameraByHPD(camera.getHeading(), camera.getPitch(), camera.getTargetDistance());
        EXPECT_TRUE(isNear(camera.getPosition(), before, 1e-6));
    }
}

TEST_F(TORVCameraMotionTest, GoesAheadToADistanceOfATargetThatIsNotOnItsRay)
{
    camera.setView({0.0, 0.0, 1e5}, {0.0, 1.0, 0.0});
    const double distance = std::hypot(1e6, 1e5);
    camera.setCameraByHPD(M_PI / 2.0, 0.0, distance - 1000.0);
    EXPECT_TRUE(isAt(camera.getPosition(), 0.0, 1000.0, 1e5));
    EXPECT_NEAR(camera.getPitch(), 0.0, 1e-12);
}

TEST_F(TORVCameraMotionTest, TurnsTheShortWayAboutATargetThatIsNotOnItsRay)
{
    camera.setView({0.0, 0.0, 1e5}, {-1.0, -1e-3, 0.0});
    TORVPoint3D position = camera.getPosition();
    const TORVPoint3D target = camera.getTarget();
    // From just beyond -pi to just before pi.
    turned((3.14 - (camera.getHeading() + 2.0 * M_PI)) * 180.0 / M_PI, Up, position, target);
    camera.setCameraByHPD(3.14, 0.0, camera.getTargetDistance());
    EXPECT_TRUE(isNear(camera.getPosition(), position, 1e-3));
    EXPECT_NEAR(camera.getHeading(), 3.14, 1e-9);
}
