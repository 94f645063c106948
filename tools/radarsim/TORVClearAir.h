#pragma once

#include "radarsim/TORVStormField.h"

class TORVNoise;

/**
 * The weak return of insects and eddies in the lowest kilometre and a half, strongest over warm ground around the
 * radar.
 *
 * Thread: immutable, any thread.
 */
class TORVClearAir final : public TORVStormField
{
public:
    struct State
    {
        float strength = 1.0F; ///< 0 at night, 1 on a summer afternoon
        float driftX = 0.0F;   ///< km that the wind has carried the pattern
        float driftY = 0.0F;
        float age = 0.0F; ///< s
    };

    TORVClearAir(const State& state, const TORVNoise& noise);

    void addTo(TORVAirSample& sample, const TORVFieldPoint& point) const override;

private:
    State _state;
    const TORVNoise& _noise;
};
