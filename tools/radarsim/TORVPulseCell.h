#pragma once

#include "radarsim/TORVStormField.h"

#include <cstdint>

class TORVNoise;

/**
 * A single shower or thunderstorm cell through its life: the first echo aloft, a tall mature column that reaches the
 * ground, then a collapse with an outburst of cold air at the ground and a fading veil aloft, which the wind draws out.
 *
 * Thread: immutable, any thread.
 */
class TORVPulseCell final : public TORVStormField
{
public:
    struct State
    {
        float x = 0.0F; ///< km, at this moment
        float y = 0.0F;
        float life = 0.5F;   ///< 0 born, 1 gone
        float peak = 50.0F;  ///< dBZ
        float radius = 4.0F; ///< km
        float height = 9.0F; ///< km, the top at its tallest
        float shearX = 0.0F; ///< km that it leans for each km of height
        float shearY = 0.0F;
        uint32_t seed = 0;
    };

    TORVPulseCell(const State& state, const TORVNoise& noise);

    void addTo(TORVAirSample& sample, const TORVFieldPoint& point) const override;

private:
    struct Local;

    float column(const Local& at) const;
    float drizzle(const Local& at) const;
    float veil(const Local& at) const;
    void addWinds(TORVAirSample& sample, const Local& at) const;

    State _state;
    const TORVNoise& _noise;
    float _ownNoise; ///< each cell looks at its own piece of the noise
    float _top;      ///< km, at this moment
    float _base;
    float _coreHeight;
    float _force; ///< 0 to 1
};
