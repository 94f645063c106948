#include "radarsim/TORVClearAir.h"

#include "radarsim/TORVNoise.h"
#include "radarsim/TORVShapes.h"

#include <algorithm>
#include <cmath>

using namespace TORVShapes;

namespace
{

constexpr float Reach = 62.0F;
constexpr float Depth = 2.4F;
constexpr float WeakestEcho = -22.0F;

} // namespace

TORVClearAir::TORVClearAir(const State& state, const TORVNoise& noise)
    : TORVStormField({-Reach, Reach, -Reach, Reach, Depth}), _state(state), _noise(noise)
{
}

void TORVClearAir::addTo(TORVAirSample& sample, const TORVFieldPoint& point) const
{
    const float range = std::hypot(point.x, point.y);
    if (range > Reach) {
        return;
    }
    const float x = point.x - _state.driftX;
    const float y = point.y - _state.driftY;
    const float change = _state.age / 1800.0F;
    const float broad = _noise.fractal(x / 16.0F, y / 16.0F, change, 2);
    const float fine = _noise.fractal(x / 2.2F, y / 2.2F, 4.0F * change, 2);
    const float depth = 1.3F + 0.4F * broad;
    const float dbz = 3.0F + 6.0F * broad + 6.0F * fine - 0.16F * range - 12.0F * std::max(0.0F, point.z - depth) -
                      24.0F * (1.0F - _state.strength);
    if (dbz > WeakestEcho) {
        sample.dbz = std::max(sample.dbz, dbz);
        sample.turbulence = std::max(sample.turbulence, 1.0F);
    }
}
