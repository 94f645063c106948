#include "visualization/TORVCameraModel.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr double PitchLimitSine = 0.9999984769101585;
constexpr double PitchLimitCosine = 0.0017453301587975797;

// A zoom that the ground stops ends here, so that the altitude is still above the lowest one.
constexpr double StopAltitude = TORVCameraModel::LowestAltitude + 0.001;

// A ray that comes down more gently meets the ground too far away for its numbers to mean anything.
constexpr double GentlestSlope = 1e-6;

// Gives a view from straight above its heading.
constexpr double HeadingOfPosition = 1e-6;

// Turns about the target are told in degrees made with a pi of eight decimals.
constexpr double TurnScale = M_PI / 3.14159265;

constexpr double PanPerDistance = 0.001;

TORVPoint3D operator+(const TORVPoint3D& a, const TORVPoint3D& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

TORVPoint3D operator-(const TORVPoint3D& a, const TORVPoint3D& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

TORVPoint3D operator*(double factor, const TORVPoint3D& a)
{
    return {factor * a.x, factor * a.y, factor * a.z};
}

double dot(const TORVPoint3D& a, const TORVPoint3D& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

double lengthOf(const TORVPoint3D& a)
{
    return std::hypot(a.x, a.y, a.z);
}

bool isFinite(const TORVPoint3D& a)
{
    return std::isfinite(a.x) && std::isfinite(a.y) && std::isfinite(a.z);
}

bool isZero(const TORVPoint3D& a)
{
    return a.x == 0.0 && a.y == 0.0 && a.z == 0.0;
}

// Leaves zero alone. The largest component goes out first: the length of the largest numbers is infinite.
TORVPoint3D normalised(const TORVPoint3D& a)
{
    const double largest = std::max({std::abs(a.x), std::abs(a.y), std::abs(a.z)});
    if (largest == 0.0) {
        return a;
    }
    const TORVPoint3D scaled = {a.x / largest, a.y / largest, a.z / largest};
    return (1.0 / lengthOf(scaled)) * scaled;
}

TORVPoint3D turnedAboutZ(const TORVPoint3D& a, double angle)
{
    const double sine = std::sin(angle);
    const double cosine = std::cos(angle);
    return {cosine * a.x - sine * a.y, sine * a.x + cosine * a.y, a.z};
}

// The limits have numbers of their own, so that every way to one ends at the same direction.
TORVPoint3D directionOf(double heading, double pitch)
{
    const bool isAtLimit = std::abs(pitch) >= TORVCameraModel::PitchLimit;
    const double sine = isAtLimit ? std::copysign(PitchLimitSine, pitch) : std::sin(pitch);
    const double cosine = isAtLimit ? PitchLimitCosine : std::cos(pitch);
    return {cosine * std::cos(heading), cosine * std::sin(heading), -sine};
}

double limitedPitch(double pitch)
{
    return std::clamp(pitch, -TORVCameraModel::PitchLimit, TORVCameraModel::PitchLimit);
}

bool isUsable(double distance)
{
    return std::isfinite(distance) && distance > 0.0;
}

} // namespace

void TORVCameraModel::resetCamera(const TORVPoint3D& position, const TORVPoint3D& direction, double maxDistance,
                                  double targetLimit)
{
    if (!isFinite(position) || !isFinite(direction)) {
        return;
    }
    _panFactor = 0.5;
    _rotateFactor = 0.002;
    _zoomFactor = 0.05;
    _resetPosition = position;
    _resetDirection = normalised(direction);
    _maxDistance = isUsable(maxDistance) ? maxDistance : 2.0 * lengthOf(position);
    _targetLimit = isUsable(targetLimit) ? targetLimit : 0.3 * _maxDistance;
    goHome();
}

void TORVCameraModel::resetCamera()
{
    resetCamera(_resetPosition, _resetDirection, _maxDistance, _targetLimit);
}

void TORVCameraModel::goHome()
{
    _position = _resetPosition;
    _direction = _resetDirection;
    calculateVectors();
}

void TORVCameraModel::setView(const TORVPoint3D& position, const TORVPoint3D& direction)
{
    if (!isFinite(position) || !isFinite(direction) || isZero(direction)) {
        resetCamera();
        return;
    }
    _position = position;
    _direction = direction;
    calculateVectors();
}

void TORVCameraModel::targetToOrigo()
{
    _direction = normalised(-1.0 * _position);
    calculateVectors();
}

void TORVCameraModel::panCamera(double dx, double dy)
{
    // A target behind the camera is no reason to pan backwards.
    const double scale = std::abs(_targetDistance) * PanPerDistance;
    moveTo(_position + scale * (dx * _side + dy * _forward));
}

void TORVCameraModel::zoomCamera(double step)
{
    double delta = step * _maxDistance;
    if (!std::isfinite(delta)) {
        return;
    }
    if (delta != 0.0 && std::abs(delta) < 1.0) {
        delta = std::copysign(1.0, delta);
    }
    TORVPoint3D position = _position + delta * _direction;
    if (position.z <= LowestAltitude) {
        if (_position.z <= StopAltitude) {
            return;
        }
        position = _position + ((StopAltitude - _position.z) / _direction.z) * _direction;
        position.z = StopAltitude;
    }
    moveTo(position);
}

void TORVCameraModel::rotateCameraTarget(double heading, double pitch)
{
    const double scale = std::copysign(TurnScale, _targetDistance);
    turnAboutTarget(-scale * heading, scale * pitch);
}

void TORVCameraModel::rotateCameraView(double heading, double pitch)
{
    lookAlong(_heading + heading, _pitch + pitch);
}

void TORVCameraModel::setCameraByHPD(double heading, double pitch, double distance)
{
    if (!std::isfinite(heading) || !std::isfinite(pitch) || !std::isfinite(distance)) {
        return;
    }
    const double present = std::abs(_targetDistance);
    if (_isTargetOnRay) {
        orbitTarget(heading, pitch, std::max(distance, std::min(nearestDistance(pitch), present)));
        return;
    }
    turnAboutTarget(heading - _heading, pitch - _pitch);
    moveTo(_position + (present - distance) * _direction);
}

bool TORVCameraModel::isTargetLegal() const
{
    return _isLookingDown && _targetFromOrigin <= _targetLimit;
}

void TORVCameraModel::calculateVectors()
{
    _direction = normalised(_direction);
    if (_direction.x == 0.0 && _direction.y == 0.0) {
        if (_position.x == 0.0 && _position.y == 0.0) {
            _position.y = HeadingOfPosition;
        }
        _direction = normalised({HeadingOfPosition * _position.x, HeadingOfPosition * _position.y, -1.0});
    }
    limitPosition();
    _heading = std::atan2(_direction.y, _direction.x);
    _pitch = -std::atan2(_direction.z, std::hypot(_direction.x, _direction.y));
    _forward = normalised({_direction.x, _direction.y, 0.0});
    _side = {_forward.y, -_forward.x, 0.0};
    calculateTarget();
}

TORVPoint3D TORVCameraModel::getViewUp() const
{
    return {-_direction.z * _forward.x, -_direction.z * _forward.y, std::hypot(_direction.x, _direction.y)};
}

void TORVCameraModel::moveTo(const TORVPoint3D& position)
{
    if (!isFinite(position)) {
        return;
    }
    _position = position;
    calculateVectors();
}

void TORVCameraModel::lookAlong(double heading, double pitch)
{
    if (!std::isfinite(heading) || !std::isfinite(pitch)) {
        return;
    }
    _direction = directionOf(heading, limitedPitch(pitch));
    calculateVectors();
}

void TORVCameraModel::turnAboutTarget(double heading, double pitch)
{
    if (!std::isfinite(heading) || !std::isfinite(pitch)) {
        return;
    }
    if (_isTargetOnRay) {
        orbitTarget(_heading + heading, _pitch + pitch, _targetDistance);
        return;
    }
    swingRoundTarget(heading, pitch);
}

// The target stands off the ray, so that position and direction are turned each for itself.
void TORVCameraModel::swingRoundTarget(double heading, double pitch)
{
    const TORVPoint3D target = _target;
    _position = target + turnedAboutZ(_position - target, heading);
    _direction = turnedAboutZ(_direction, heading);
    calculateVectors();
    const double newPitch = limitedPitch(_pitch + pitch);
    const double sine = std::sin(newPitch - _pitch);
    const double cosine = std::cos(newPitch - _pitch);
    const TORVPoint3D arm = _position - target;
    const double ahead = dot(arm, _forward);
    const TORVPoint3D sideways = dot(arm, _side) * _side;
    const TORVPoint3D turned = sideways + (ahead * cosine + arm.z * sine) * _forward;
    _position = target + TORVPoint3D{turned.x, turned.y, arm.z * cosine - ahead * sine};
    lookAlong(_heading, newPitch);
}

// Looks at the target from there, or from as near to there as the limits let it; where they leave no place, nothing
// moves.
void TORVCameraModel::orbitTarget(double heading, double pitch, double distance)
{
    const double lowest = lowestPitch(heading, distance);
    if (lowest > PitchLimit) {
        return;
    }
    const TORVPoint3D direction = directionOf(heading, std::clamp(pitch, lowest, PitchLimit));
    _direction = direction;
    moveTo(_target - std::min(distance, reachFromTarget(direction)) * direction);
}

// At which a camera that looks at the target stands at the lowest altitude, and within the maximum distance.
double TORVCameraModel::lowestPitch(double heading, double distance) const
{
    const double byAltitude = std::asin(std::min(LowestAltitude / distance, PitchLimitSine));
    if (_maxDistance <= 0.0) {
        return byAltitude;
    }
    const double ahead = _target.x * std::cos(heading) + _target.y * std::sin(heading);
    const double room = _maxDistance * _maxDistance - LowestAltitude * LowestAltitude - dot(_target, _target);
    if (room <= 0.0) {
        return std::numeric_limits<double>::infinity();
    }
    return std::max(byAltitude, std::atan2(LowestAltitude, ahead + std::sqrt(ahead * ahead + room)));
}

// How far one can go back from the target before the maximum distance.
double TORVCameraModel::reachFromTarget(const TORVPoint3D& direction) const
{
    if (_maxDistance <= 0.0) {
        return std::numeric_limits<double>::infinity();
    }
    const double ahead = dot(_target, direction);
    const double room = _maxDistance * _maxDistance - dot(_target, _target);
    return ahead + std::sqrt(ahead * ahead + std::max(room, 0.0));
}

// From which one stands at the lowest altitude.
double TORVCameraModel::nearestDistance(double pitch) const
{
    const double sine = std::sin(limitedPitch(pitch));
    return sine > 0.0 ? LowestAltitude / sine : std::numeric_limits<double>::infinity();
}

// The altitude wins over the maximum distance; the plane gives way first.
void TORVCameraModel::limitPosition()
{
    _position.z = std::max(_position.z, LowestAltitude);
    const double length = lengthOf(_position);
    if (_maxDistance <= 0.0 || length <= _maxDistance) {
        return;
    }
    _position = (_maxDistance / length) * _position;
    if (_position.z >= LowestAltitude) {
        return;
    }
    _position.z = LowestAltitude;
    const double inPlane = std::hypot(_position.x, _position.y);
    const double room = std::sqrt(std::max(_maxDistance * _maxDistance - LowestAltitude * LowestAltitude, 0.0));
    if (inPlane > room) {
        _position.x *= room / inPlane;
        _position.y *= room / inPlane;
    }
}

void TORVCameraModel::calculateTarget()
{
    _isLookingDown = _direction.z < -GentlestSlope;
    const double t = _isLookingDown ? -_position.z / _direction.z : 0.0;
    const TORVPoint3D hit = {_position.x + t * _direction.x, _position.y + t * _direction.y, 0.0};
    const double reach = lengthOf(hit);
    _isTargetOnRay = _isLookingDown && (_maxDistance <= 0.0 || reach <= _maxDistance);
    _target = _isTargetOnRay ? hit : _maxDistance * (_isLookingDown ? normalised(hit) : _forward);
    _targetFromOrigin = _isTargetOnRay ? reach : _maxDistance;
    const TORVPoint3D arm = _target - _position;
    _targetDistance = std::copysign(lengthOf(arm), dot(arm, _direction));
}
