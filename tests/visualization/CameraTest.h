#pragma once

#include "visualization/TORVCameraModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

/// A camera 300 km south of the origin and 300 km up that looks north and down at it, 45 degrees: target at the origin,
/// 424264.07 m away. No further than 1000 km from the origin; targets up to 300 km from it are legal.
namespace CameraTest
{

constexpr double MaxDistance = 1e6;
constexpr double TargetLimit = 3e5;
constexpr TORVPoint3D Position = {0.0, -3e5, 3e5};
constexpr TORVPoint3D Direction = {0.0, 1.0, -1.0};
constexpr double Half = 0.70710678118654752; // of the square root of 2: sine and cosine of 45 degrees
constexpr double Distance = 3e5 / Half;

template <typename Camera>
void goHome(Camera& camera)
{
    camera.resetCamera(Position, Direction, MaxDistance, TargetLimit);
}

inline double length(const TORVPoint3D& point)
{
    return std::hypot(point.x, point.y, point.z);
}

inline TORVPoint3D minus(const TORVPoint3D& a, const TORVPoint3D& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

inline testing::AssertionResult isNear(const TORVPoint3D& actual, const TORVPoint3D& expected, double tolerance)
{
    const TORVPoint3D difference = minus(actual, expected);
    if (std::max({std::abs(difference.x), std::abs(difference.y), std::abs(difference.z)}) <= tolerance) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << testing::PrintToString(actual.x) << ", " << actual.y << ", " << actual.z
                                       << " in place of " << expected.x << ", " << expected.y << ", " << expected.z;
}

/// Metres: far below what one sees, far above what 1000 km lose in a double.
inline testing::AssertionResult isAt(const TORVPoint3D& actual, double x, double y, double z)
{
    return isNear(actual, {x, y, z}, 1e-3);
}

/// Of unit vectors.
inline testing::AssertionResult pointsTo(const TORVPoint3D& actual, double x, double y, double z)
{
    return isNear(actual, {x, y, z}, 1e-9);
}

inline testing::AssertionResult isAsBefore(const TORVCameraModel& camera, const TORVCameraModel& before)
{
    const bool isSame = length(minus(camera.getPosition(), before.getPosition())) == 0.0 &&
                        length(minus(camera.getDirection(), before.getDirection())) == 0.0 &&
                        length(minus(camera.getTarget(), before.getTarget())) == 0.0 &&
                        camera.getMaxDistance() == before.getMaxDistance() &&
                        camera.getTargetLimit() == before.getTargetLimit();
    return isSame ? testing::AssertionSuccess() : testing::AssertionFailure() << "the camera has moved";
}

} // namespace CameraTest
