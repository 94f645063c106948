#include "radarsim/TORVSquallLine.h"

#include "radarsim/TORVMeltingLayer.h"
#include "radarsim/TORVNoise.h"
#include "radarsim/TORVShapes.h"

#include <algorithm>
#include <cmath>

using namespace TORVShapes;

namespace
{

constexpr float Rear = 125.0F;
constexpr float Front = 26.0F;
constexpr float Top = 13.5F;
constexpr float BowRadius = 230.0F;
constexpr float WeakestEcho = -12.0F;

} // namespace

/// `d` km behind the leading edge at this place of the line, `s` km along the line.
struct TORVSquallLine::Local
{
    float d;
    float s;
    float z;
    float blur;
    float end; ///< 1 in the line, 0 beyond its ends
    float grain;
    float cells; ///< -1 to 1 along the line
};

TORVSquallLine::TORVSquallLine(const State& state, const TORVNoise& noise)
    : TORVStormField(state.frame.box(Rear + 25.0F, Front, state.halfLength, state.halfLength, Top)), _state(state),
      _noise(noise)
{
}

void TORVSquallLine::addTo(TORVAirSample& sample, const TORVFieldPoint& point) const
{
    const float ahead = _state.frame.ahead(point);
    const float s = _state.frame.left(point);
    if (std::fabs(s) > _state.halfLength) {
        return;
    }
    const float change = _state.age / 2400.0F;
    const float bend = 8.0F * _noise.fractal(s / 24.0F, change, 0.5F, 3) +
                       1.6F * _noise.fractal(s / 5.0F, ahead / 5.0F, 5.0F * change + 0.3F * point.z, 2);
    const float d = bend - ahead - s * s / (2.0F * BowRadius);
    if (d < -Front || d > Rear) {
        return;
    }
    const float grain = _noise.fractal(d / 5.0F, s / 5.0F, point.z / 3.0F + 3.0F * change, 3);
    const float cells = _noise.fractal(s / 8.0F, d / 11.0F, 4.0F * change, 3);
    const float end = step(_state.halfLength, _state.halfLength - 32.0F, std::fabs(s) + 5.0F * grain);
    const Local at{d, s, point.z, point.blur, end, grain, cells};
    const float dbz = std::max({convection(at), trailingRain(at), forwardAnvil(at)}) - 40.0F * (1.0F - _state.strength);
    if (dbz > WeakestEcho) {
        sample.dbz = std::max(sample.dbz, dbz);
    }
    addWinds(sample, at);
}

float TORVSquallLine::convection(const Local& at) const
{
    // Updrafts lean to the rear.
    const float d = at.d - 0.9F * std::max(0.0F, at.z - 1.5F);
    const float front = step(-2.2F, 3.0F, d);
    const float rear = step(19.0F + 9.0F * at.cells, 4.0F, d);
    const float tall = 9.0F + 3.6F * at.cells;
    return 48.0F + 13.0F * at.cells + 4.5F * at.grain - 40.0F * (1.0F - front) - 30.0F * (1.0F - rear) -
           1.8F * std::max(0.0F, d - 16.0F) - 5.0F * std::max(0.0F, -2.0F - d) - 2.0F * std::max(0.0F, at.z - 6.0F) -
           11.0F * std::max(0.0F, at.z - tall) - 34.0F * (1.0F - at.end);
}

float TORVSquallLine::trailingRain(const Local& at) const
{
    const float grown = 26.0F + 92.0F * _state.stratiform;
    const float region = step(11.0F, 34.0F, at.d) * step(grown, 0.62F * grown, at.d + 14.0F * at.cells);
    const float there = std::max(0.0F, at.d) / Rear;
    const float top = 10.6F - 3.2F * there + 0.7F * at.grain;
    const float behindLine = step(3.0F, 12.0F, at.d);
    return 16.0F + 14.0F * region + 3.5F * at.grain + 6.0F * at.cells +
           TORVMeltingLayer::decibels(at.z, _state.freezingLevel, top, at.blur) - 30.0F * (1.0F - behindLine) -
           38.0F * step(0.66F * grown, grown, at.d + 12.0F * at.cells) - 28.0F * (1.0F - at.end);
}

float TORVSquallLine::forwardAnvil(const Local& at) const
{
    const float along = -at.d / Front;
    if (along < -0.4F) {
        return TORVAirSample::NoEcho;
    }
    const float inside = step(7.4F, 8.8F, at.z - 0.8F * at.grain) * step(11.4F, 10.0F, at.z);
    return 19.0F - 34.0F * std::max(0.0F, along) + 4.0F * at.grain - 40.0F * (1.0F - inside) - 25.0F * (1.0F - at.end);
}

void TORVSquallLine::addWinds(TORVAirSample& sample, const Local& at) const
{
    const float strength = _state.strength * at.end;
    const float behind = step(-2.0F, 4.0F, at.d) * step(Rear, 75.0F, at.d);
    const float jetHeight = 1.2F + 0.028F * std::max(0.0F, at.d);
    const float jet = 15.0F * bell((at.z - jetHeight) / 1.1F) * behind;
    const float gust = 12.0F * bell((at.d - 5.0F) / 7.0F) * step(1.8F, 0.3F, at.z);
    const float rearward = 14.0F * bell((at.z - 6.8F) / 2.4F) * behind;
    _state.frame.addWind(sample, strength * (jet + gust - rearward), 0.0F);

    const float lift = bell((at.d - 1.0F - 0.9F * at.z) / 3.0F) * std::max(0.0F, std::sin(3.1416F * at.z / 11.0F));
    sample.w +=
        strength * (13.0F * lift * (1.0F + at.cells) - 3.0F * bell((at.d - 9.0F) / 5.0F) * step(4.0F, 1.0F, at.z));
    const float edge = bell((at.d - 1.5F - 0.9F * at.z) / 3.5F);
    sample.turbulence = std::max(sample.turbulence, strength * (0.7F + 5.0F * edge * step(11.0F, 8.0F, at.z)));
}
