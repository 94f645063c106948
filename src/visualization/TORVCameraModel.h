#pragma once

#include "utils/TORVPoint3D.h"

/**
 * Where the scene is seen from: a position, a direction and the target on the ground, kept above the ground and near
 * the data. The arithmetic of all motions, without a window.
 *
 * Metres of the scene with z up, and radians. Heading 0 looks along x and grows counter-clockwise seen from above;
 * pitch grows downwards, 0 looks at the horizon.
 *
 * After each call from the first home view on:
 * - the direction has length 1;
 * - z is `LowestAltitude` or more;
 * - the position is no further from the origin than the maximum distance, unless that were below `LowestAltitude`;
 * - no number is infinite or not a number. Calls with such arguments do nothing, unless they say otherwise.
 *
 * Before the first home view all is 0: no maximum distance, and drags move nothing.
 *
 * Thread: a plain value, any thread.
 */
class TORVCameraModel final
{
public:
    static constexpr double LowestAltitude = 2000.0;

    /// 89.9 degrees. A home view or a stored one may look down more steeply; whatever turns the camera comes back to
    /// it.
    static constexpr double PitchLimit = 1.56905099575;

    /// Installs a home view and goes there. Without a maximum distance above 0 it is twice the length of `position`,
    /// without a target limit above 0 that is 0.3 times the maximum distance.
    void resetCamera(const TORVPoint3D& position, const TORVPoint3D& direction, double maxDistance, double targetLimit);

    /// Goes to the home view.
    void resetCamera();

    /// Goes to a stored view, corrected where it breaks a limit; to the home view when the direction is 0 or a number
    /// of either is not finite.
    void setView(const TORVPoint3D& position, const TORVPoint3D& direction);

    /// Looks at the origin from where it is.
    void targetToOrigo();

    /// Moves in the plane: `dx` to the right and `dy` ahead, in thousandths of the distance to the target.
    void panCamera(double dx, double dy);

    /// Moves ahead by `step` maximum distances, 1 m at least; stops just above the lowest altitude.
    void zoomCamera(double step);

    /// Turns about the target, clockwise seen from above for a `heading` above 0 and upwards for a `pitch` above 0. The
    /// target stays; where a limit is in the way, the camera comes nearer to it or stays higher.
    void rotateCameraTarget(double heading, double pitch);

    /// Turns on the spot, counter-clockwise seen from above for a `heading` above 0 and to look down for a `pitch`
    /// above 0.
    void rotateCameraView(double heading, double pitch);

    /// Goes about the target to this heading and pitch, at this distance from it.
    void setCameraByHPD(double heading, double pitch, double distance);

    /// Whether the target is seen and near enough to turn about it.
    bool isTargetLegal() const;

    /// Brings position and direction into their limits, and works out all that follows from them.
    void calculateVectors();

    const TORVPoint3D& getPosition() const { return _position; }
    const TORVPoint3D& getDirection() const { return _direction; }

    /// Where the ray of view meets the ground, but no further from the origin than the maximum distance; that far along
    /// the forward vector when the ray doesn't come down.
    const TORVPoint3D& getTarget() const { return _target; }

    /// From the position; negative for a target behind the camera, which then looks up.
    double getTargetDistance() const { return _targetDistance; }

    double getHeading() const { return _heading; }
    double getPitch() const { return _pitch; }

    /// Ahead and to the right, in the plane, of length 1.
    const TORVPoint3D& getForward() const { return _forward; }
    const TORVPoint3D& getSide() const { return _side; }

    /// What the camera has above it: of length 1, at a right angle to the direction.
    TORVPoint3D getViewUp() const;

    double getMaxDistance() const { return _maxDistance; }
    double getTargetLimit() const { return _targetLimit; }

    /// What one pixel of a drag, and one step of the wheel, are worth.
    double getPanFactor() const { return _panFactor; }
    double getRotateFactor() const { return _rotateFactor; }
    double getZoomFactor() const { return _zoomFactor; }

private:
    void goHome();
    void moveTo(const TORVPoint3D& position);
    void lookAlong(double heading, double pitch);
    void turnAboutTarget(double heading, double pitch);
    void swingRoundTarget(double heading, double pitch);
    void orbitTarget(double heading, double pitch, double distance);
    double lowestPitch(double heading, double distance) const;
    double nearestDistance(double pitch) const;
    double reachFromTarget(const TORVPoint3D& direction) const;
    void limitPosition();
    void calculateTarget();

    TORVPoint3D _position;
    TORVPoint3D _direction;
    double _panFactor = 0.0;
    double _rotateFactor = 0.0;
    double _zoomFactor = 0.0;
    TORVPoint3D _resetPosition;
    TORVPoint3D _resetDirection;
    double _maxDistance = 0.0;
    double _targetLimit = 0.0;
    double _pitch = 0.0;
    double _heading = 0.0;
    double _targetDistance = 0.0;
    TORVPoint3D _target;
    double _targetFromOrigin = 0.0;
    bool _isLookingDown = false;
    bool _isTargetOnRay = false; // it is where the ray meets the ground, not brought nearer
    TORVPoint3D _forward;
    TORVPoint3D _side;
};
