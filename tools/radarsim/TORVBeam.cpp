#include "radarsim/TORVBeam.h"

#include <cmath>

namespace
{

constexpr double DegreesPerRadian = 57.29577951308232;
constexpr double Radius = TORVBeam::EarthRadius;

} // namespace

float TORVBeam::height(double elevation, double ground)
{
    const double e = elevation / DegreesPerRadian;
    return static_cast<float>(Radius * (std::cos(e) / std::cos(e + ground / Radius) - 1.0));
}

float TORVBeam::localAngle(double elevation, double ground)
{
    return static_cast<float>(elevation / DegreesPerRadian + ground / Radius);
}

float TORVBeam::elevationOf(double height, double ground)
{
    const double a = ground / Radius;
    const double top = (Radius + height) * std::cos(a) - Radius;
    return static_cast<float>(DegreesPerRadian * std::atan2(top, (Radius + height) * std::sin(a)));
}
