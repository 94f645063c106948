#pragma once

#include "radarsim/TORVStormField.h"
#include "radarsim/TORVStormFrame.h"

class TORVNoise;

/**
 * A wide area of stratiform rain with a bright band, uneven in the way that snow-generating cells leave streaks.
 *
 * Thread: immutable, any thread.
 */
class TORVWidespreadRain final : public TORVStormField
{
public:
    struct State
    {
        TORVStormFrame frame;
        float halfLength = 110.0F; ///< km along the motion
        float halfWidth = 170.0F;  ///< km across it
        float strength = 1.0F;     ///< 0 to 1
        float freezingLevel = 2.2F;
        float age = 0.0F; ///< s
    };

    TORVWidespreadRain(const State& state, const TORVNoise& noise);

    void addTo(TORVAirSample& sample, const TORVFieldPoint& point) const override;

private:
    State _state;
    const TORVNoise& _noise;
};
