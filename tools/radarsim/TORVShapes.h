#pragma once

#include <algorithm>
#include <cmath>

/// The few curves that storms and hills are made of. Thread: any thread.
namespace TORVShapes
{

/// 0 below `low`, 1 above `high`, an S between; with `low` above `high` the other way round.
inline float step(float low, float high, float value)
{
    const float t = std::clamp((value - low) / (high - low), 0.0F, 1.0F);
    return t * t * (3.0F - 2.0F * t);
}

/// 1 at 0, falling off like a bell with the deviation 1/sqrt(2).
inline float bell(float value)
{
    return std::exp(-value * value);
}

inline float blend(float a, float b, float weight)
{
    return a + (b - a) * weight;
}

/// Speed of a vortex or of an outflow at `ratio` radii from its centre, 1 where it is strongest (ratio 1).
inline float swirl(float ratio)
{
    return ratio * std::exp(0.5F * (1.0F - ratio * ratio));
}

} // namespace TORVShapes
