#include "radarsim/TORVPulseCell.h"

#include "radarsim/TORVHash.h"
#include "radarsim/TORVNoise.h"
#include "radarsim/TORVShapes.h"

#include <algorithm>
#include <cmath>

using namespace TORVShapes;

namespace
{

constexpr float Reach = 4.5F; // radii
constexpr float WeakestEcho = -12.0F;

TORVFieldBounds boxOf(const TORVPulseCell::State& state)
{
    const float reach = Reach * state.radius;
    return {state.x - reach, state.x + reach, state.y - reach, state.y + reach, state.height + 1.0F};
}

} // namespace

/// km from the cell's axis, and radii from it along a path that noise has bent.
struct TORVPulseCell::Local
{
    float x;
    float y;
    float z;
    float r;
    float bent;
    float grain;
};

TORVPulseCell::TORVPulseCell(const State& state, const TORVNoise& noise)
    : TORVStormField(boxOf(state)), _state(state), _noise(noise),
      _ownNoise(64.0F * TORVHash::unit(TORVHash::mix(state.seed)))
{
    const float life = state.life;
    const float tallest = blend(1.0F, 0.72F, step(0.65F, 1.0F, life));
    _top = 4.2F + (state.height - 4.2F) * step(0.0F, 0.42F, life) * tallest;
    _base = 3.4F * step(0.30F, 0.06F, life) + 4.6F * step(0.66F, 0.98F, life);
    _coreHeight = blend(5.2F, 1.5F, step(0.22F, 0.66F, life));
    _force = step(0.0F, 0.20F, life) * step(1.0F, 0.60F, life);
}

void TORVPulseCell::addTo(TORVAirSample& sample, const TORVFieldPoint& point) const
{
    const float lean = point.z - 3.0F;
    const float x = point.x - _state.x - lean * _state.shearX;
    const float y = point.y - _state.y - lean * _state.shearY;
    const float r = std::hypot(x, y) / _state.radius;
    if (r > Reach) {
        return;
    }
    const float place = _ownNoise + 2.5F * _state.life;
    const float bendX = _noise.fractal(x / 3.6F + _ownNoise, y / 3.6F, point.z / 6.0F + place, 3);
    const float bendY = _noise.fractal(x / 3.6F, y / 3.6F + _ownNoise, point.z / 6.0F + place, 3);
    const float bent = std::hypot(x / _state.radius + 0.95F * bendX, y / _state.radius + 0.95F * bendY);
    const float grain = _noise.fractal(x / 2.0F + _ownNoise, y / 2.0F, point.z / 2.5F + place, 2);
    const Local at{x, y, point.z, r, bent, grain};
    const float dbz = std::max({column(at), drizzle(at), veil(at)}) + 4.0F * grain;
    if (dbz > WeakestEcho) {
        sample.dbz = std::max(sample.dbz, dbz);
    }
    addWinds(sample, at);
}

float TORVPulseCell::column(const Local& at) const
{
    const float wider = 1.0F + 0.3F * step(0.55F, 1.0F, _state.life);
    const float outside = 13.0F * (std::max(0.0F, _base - at.z) + std::max(0.0F, at.z - _top + 0.9F));
    return _state.peak - 22.0F * (1.0F - _force) - 17.0F * std::pow(at.bent / wider, 1.6F) -
           1.7F * std::fabs(at.z - _coreHeight) - outside;
}

float TORVPulseCell::drizzle(const Local& at) const
{
    const float fallen = step(0.22F, 0.5F, _state.life) * step(1.0F, 0.8F, _state.life);
    return 0.5F * _state.peak - 11.0F * at.bent - 30.0F * (1.0F - fallen) - 9.0F * std::max(0.0F, at.z - 4.5F);
}

float TORVPulseCell::veil(const Local& at) const
{
    const float spread = step(0.3F, 0.6F, _state.life) * step(1.0F, 0.75F, _state.life);
    const float inside = step(4.6F, 6.2F, at.z) * step(_top + 0.4F, _top - 0.9F, at.z);
    return 0.5F * _state.peak - 9.0F * at.bent - 36.0F * (1.0F - inside * spread);
}

void TORVPulseCell::addWinds(TORVAirSample& sample, const Local& at) const
{
    const float collapse = step(0.38F, 0.52F, _state.life) * step(0.85F, 0.65F, _state.life);
    const float burst = 11.0F * collapse * step(1.6F, 0.2F, at.z) * swirl(at.r / 1.2F);
    const float away = std::max(0.1F, at.r * _state.radius);
    sample.u += burst * at.x / away;
    sample.v += burst * at.y / away;

    const float growth = step(0.02F, 0.18F, _state.life) * step(0.55F, 0.32F, _state.life);
    const float vertical = (16.0F * growth - 9.0F * collapse) * bell(at.r / 0.85F);
    sample.w += vertical * step(0.0F, 3.0F, at.z) * step(_top, _top - 2.0F, at.z);
    sample.turbulence = std::max(sample.turbulence, (0.8F + 3.2F * _force) * bell(at.r / 1.6F));
}
