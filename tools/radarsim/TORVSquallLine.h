#pragma once

#include "radarsim/TORVStormField.h"
#include "radarsim/TORVStormFrame.h"

class TORVNoise;

/**
 * A squall line: a bowed line of strong cells with a sharp front, a zone of weak echo behind it, then a wide region of
 * stratiform rain with a bright band under the trailing anvil. Air rises over the gust front and flows to the rear
 * aloft; a jet enters from the rear and comes down to the line.
 *
 * Thread: immutable, any thread.
 */
class TORVSquallLine final : public TORVStormField
{
public:
    struct State
    {
        TORVStormFrame frame;       ///< centre: the middle of the leading edge
        float halfLength = 100.0F;  ///< km
        float strength = 1.0F;      ///< 0 to 1
        float stratiform = 1.0F;    ///< 0 to 1, how far the region behind has grown
        float freezingLevel = 2.8F; ///< km
        float age = 0.0F;           ///< s
    };

    TORVSquallLine(const State& state, const TORVNoise& noise);

    void addTo(TORVAirSample& sample, const TORVFieldPoint& point) const override;

private:
    struct Local;

    float convection(const Local& at) const;
    float trailingRain(const Local& at) const;
    float forwardAnvil(const Local& at) const;
    void addWinds(TORVAirSample& sample, const Local& at) const;

    State _state;
    const TORVNoise& _noise;
};
