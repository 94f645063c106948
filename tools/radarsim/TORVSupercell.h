#pragma once

#include "radarsim/TORVStormField.h"
#include "radarsim/TORVStormFrame.h"

class TORVNoise;

/**
 * A classic right-moving supercell: a core with hail, a long precipitation shield to the left of and ahead of it, a
 * hook that winds round the mesocyclone at the right rear flank, a vault of weak echo over the inflow roofed by the
 * overhang, and an anvil that streams ahead. The frame's centre is the updraft; lengths are those of textbook storms.
 *
 * Thread: immutable, any thread.
 */
class TORVSupercell final : public TORVStormField
{
public:
    struct State
    {
        TORVStormFrame frame;
        float strength = 1.0F; ///< 0 to 1, of the echo and the updraft
        float rotation = 1.0F; ///< 0 to 1, of mesocyclone and hook
        float age = 0.0F;      ///< s, drives the slow change of the noise
    };

    TORVSupercell(const State& state, const TORVNoise& noise);

    void addTo(TORVAirSample& sample, const TORVFieldPoint& point) const override;

private:
    struct Local;

    float echo(const Local& at) const;
    float core(const Local& at) const;
    float hook(const Local& at) const;
    float overhang(const Local& at) const;
    float vault(const Local& at) const;
    float anvil(const Local& at) const;
    float cap(const Local& at) const;
    void addWinds(TORVAirSample& sample, const Local& at) const;

    State _state;
    const TORVNoise& _noise;
};
