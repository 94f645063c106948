#pragma once

#include <functional>
#include <vector>

/**
 * How high the ground stands in the way of a radar: for each ray and gate the largest elevation angle of the terrain up
 * to there.
 *
 * Thread: immutable, any thread.
 */
class TORVHorizon final
{
public:
    /// Ground height in km above the sea, `x` km east and `y` km north of the radar.
    using Ground = std::function<float(float x, float y)>;

    TORVHorizon(int rays, int gates, float gateLength, float antennaHeight, const Ground& ground);

    /// dB lost, both ways, by a beam of `width` degrees at `elevation` degrees: half of it hidden costs 6 dB.
    float loss(int ray, int gate, float elevation, float width) const;

    /// What `loss` gives where nothing gets through.
    static constexpr float Blocked = 99.0F;

private:
    int _gates;
    std::vector<float> _angles; // degrees
};
