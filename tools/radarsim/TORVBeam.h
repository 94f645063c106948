#pragma once

/**
 * The path of a radar beam over an Earth of 4/3 radius, which is what normal refraction amounts to.
 *
 * For an elevation angle e and a distance s along the ground, with R = 4/3 of 6371 km and the angle a = s/R at the
 * Earth's centre: height = R (cos e / cos(e + a) - 1), the local angle of the beam = e + a (the sphere's law of sines).
 *
 * Thread: any thread.
 */
namespace TORVBeam
{

constexpr double EarthRadius = 8494.667; ///< km, 4/3 of 6371

/// km above the antenna of the beam's centre, `ground` km away; `elevation` in degrees.
float height(double elevation, double ground);

/// Radians between the beam and the horizontal there.
float localAngle(double elevation, double ground);

/// Degrees of elevation under which a point `height` km above the antenna stands, `ground` km away.
float elevationOf(double height, double ground);

} // namespace TORVBeam
