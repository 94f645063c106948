#include "radarsim/TORVWidespreadRain.h"

#include "radarsim/TORVMeltingLayer.h"
#include "radarsim/TORVNoise.h"
#include "radarsim/TORVShapes.h"

#include <algorithm>
#include <cmath>

using namespace TORVShapes;

namespace
{

constexpr float HighestTop = 8.6F;
constexpr float WeakestEcho = -15.0F;

/// Snow falls slowly through wind that grows with height, so what arrives at the ground left its cell far behind.
float streakShift(float z, float freezingLevel)
{
    return 0.6F * z + 2.8F * std::max(0.0F, z - freezingLevel);
}

} // namespace

TORVWidespreadRain::TORVWidespreadRain(const State& state, const TORVNoise& noise)
    : TORVStormField(state.frame.box(state.halfLength, state.halfLength, state.halfWidth, state.halfWidth, HighestTop)),
      _state(state), _noise(noise)
{
}

void TORVWidespreadRain::addTo(TORVAirSample& sample, const TORVFieldPoint& point) const
{
    const float a = _state.frame.ahead(point);
    const float l = _state.frame.left(point);
    const float reach = std::hypot(a / _state.halfLength, l / _state.halfWidth);
    if (reach > 1.0F) {
        return;
    }
    const float change = _state.age / 5400.0F;
    const float shifted = a - streakShift(point.z, _state.freezingLevel);
    const float broad = _noise.fractal(shifted / 42.0F, l / 42.0F, change, 2);
    const float streaks = _noise.fractal(shifted / 9.0F, l / 6.5F, 4.0F * change + point.z / 9.0F, 3);
    const float edge = 75.0F * std::pow(std::max(0.0F, reach - 0.35F - 0.22F * broad - 0.06F * streaks), 1.7F);
    const float top = 6.6F + 1.6F * broad + 0.5F * streaks;
    const float freezing = _state.freezingLevel + 0.08F * broad;
    const float dbz = 26.0F + 8.0F * broad + 4.5F * streaks - edge - 30.0F * (1.0F - _state.strength) +
                      TORVMeltingLayer::decibels(point.z, freezing, top, point.blur);
    if (dbz > WeakestEcho) {
        sample.dbz = std::max(sample.dbz, dbz);
        sample.turbulence = std::max(sample.turbulence, 0.7F);
    }
}
