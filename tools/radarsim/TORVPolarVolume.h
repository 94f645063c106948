#pragma once

#include <cstddef>
#include <vector>

/**
 * What a radar measured in one scan of all elevations, in its own coordinates. The sweeps of one ray and gate lie side
 * by side: whoever builds a column from them finds it in one piece of memory.
 *
 * Gate g covers the ground from g to g+1 gate lengths; ray r looks to (r + 0.5) * 360 / rays degrees.
 *
 * Thread: a plain value, any thread.
 */
struct TORVPolarVolume
{
    static constexpr float Nothing = -999.0F;

    TORVPolarVolume(int rayCount, int gateCount, int sweepCount, float gateKm)
        : rays(rayCount), gates(gateCount), sweeps(sweepCount), gateLength(gateKm), dbz(size(), Nothing),
          velocity(size(), Nothing), width(size(), Nothing)
    {
    }

    std::size_t size() const { return static_cast<std::size_t>(rays) * gates * sweeps; }

    std::size_t index(int ray, int gate, int sweep) const
    {
        return (static_cast<std::size_t>(ray) * gates + gate) * sweeps + sweep;
    }

    int rays;
    int gates;
    int sweeps;
    float gateLength;            ///< km
    std::vector<float> dbz;      ///< Nothing where no echo is heard, in all three
    std::vector<float> velocity; ///< m/s away from the radar, not folded
    std::vector<float> width;    ///< m/s
};
