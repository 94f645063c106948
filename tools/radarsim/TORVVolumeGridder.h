#pragma once

#include "radarsim/TORVGridShape.h"
#include "radarsim/TORVPolarVolume.h"
#include "radarsim/TORVRadarSampler.h"

#include <vector>

/**
 * Turns what a radar measured into a grid: each grid point takes the ray and the gate that it lies in, and is
 * interpolated between the two sweeps above and below it. Where no beam passes there is nothing: in the cone of silence
 * above the highest sweep, below the lowest, and beyond the range.
 *
 * Thread: immutable, any thread.
 */
class TORVVolumeGridder final
{
public:
    TORVVolumeGridder(const TORVGridShape& shape, const TORVRadarSampler& sampler);

    const TORVGridShape& shape() const { return _shape; }

    /// One moment of `volume` (one of its three arrays) at all grid points, x fastest, then y, then z;
    /// TORVPolarVolume::Nothing where there is none.
    std::vector<float> grid(const TORVPolarVolume& volume, const std::vector<float>& moment) const;

    /// One sweep of it, on one plane of the grid.
    std::vector<float> sweep(const TORVPolarVolume& volume, const std::vector<float>& moment, int number) const;

private:
    static constexpr int NoColumn = -1;
    static constexpr int NoSweep = -1;

    /// Where a height lies between the sweeps.
    struct Bracket
    {
        int lower = NoSweep;
        int upper = NoSweep;
        float weight = 0.0F; ///< of the upper
    };

    void findColumns(const TORVRadarSampler& sampler);
    void findBrackets(const TORVRadarSampler& sampler);
    static Bracket bracketAt(float height, const std::vector<float>& beams, float halfBeam);

    TORVGridShape _shape;
    int _gates;
    int _sweeps;
    std::vector<int> _columns;      ///< by y and x: ray times gates plus gate
    std::vector<int> _columnGates;  ///< by y and x
    std::vector<Bracket> _brackets; ///< by level and gate
};
