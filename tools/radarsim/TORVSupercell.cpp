#include "radarsim/TORVSupercell.h"

#include "radarsim/TORVNoise.h"
#include "radarsim/TORVShapes.h"

#include <algorithm>
#include <cmath>

using namespace TORVShapes;

namespace
{

// Lengths below are those of a middling storm; this one is a good third larger.
constexpr float Size = 1.35F;
constexpr float AnvilLength = 105.0F;
constexpr float Behind = 26.0F;
constexpr float Before = AnvilLength + 6.0F;
constexpr float Sideways = 58.0F;
constexpr float Top = 16.5F;
constexpr float DegreesPerRadian = 57.29578F;

/// The mesocyclone, right behind the updraft and leaning ahead with height.
float mesoAhead(float z)
{
    return -2.5F + 0.35F * z;
}

constexpr float MesoLeft = -3.5F;
constexpr float MesoRadius = 3.6F;
constexpr float MesoSpeed = 30.0F;

} // namespace

/// A point in the storm's directions; `a` and `l` are bent by noise so that no edge is a drawn curve.
struct TORVSupercell::Local
{
    float a;
    float l;
    float z;
    float straightA;
    float straightL;
    float grain;
};

TORVSupercell::TORVSupercell(const State& state, const TORVNoise& noise)
    : TORVStormField(state.frame.box(Size * Behind, Size * Before, Size * Sideways, Size * Sideways, Top)),
      _state(state), _noise(noise)
{
}

void TORVSupercell::addTo(TORVAirSample& sample, const TORVFieldPoint& point) const
{
    const float a = _state.frame.ahead(point) / Size;
    const float l = _state.frame.left(point) / Size;
    if (a < -Behind || a > Before || std::fabs(l) > Sideways) {
        return;
    }
    const float change = _state.age / 1100.0F;
    const float bendA = _noise.fractal(a / 6.0F, l / 6.0F, point.z / 5.0F + change, 2);
    const float bendL = _noise.fractal(a / 6.0F + 31.0F, l / 6.0F, point.z / 5.0F + change, 2);
    const float grain = _noise.fractal(a / 2.6F, l / 2.6F, point.z / 2.0F + 3.0F * change, 3);
    const Local at{a + 2.0F * bendA, l + 2.0F * bendL, point.z, a, l, grain};
    sample.dbz = std::max(sample.dbz, echo(at));
    addWinds(sample, at);
}

float TORVSupercell::echo(const Local& at) const
{
    const float body = std::max({core(at), hook(at), overhang(at)}) - vault(at) - cap(at) + 4.5F * at.grain;
    const float strongest = std::max(body, anvil(at)) - 45.0F * (1.0F - _state.strength);
    return strongest > -12.0F ? strongest : TORVAirSample::NoEcho;
}

float TORVSupercell::core(const Local& at) const
{
    const float aloft = step(2.0F, 7.5F, at.z);
    const float a = at.a - blend(6.0F, 1.0F, aloft);
    const float l = at.l - blend(5.0F, 1.0F, aloft);
    // The shield points ahead and to the left, hence the turn of 20 degrees.
    const float along = 0.94F * a + 0.34F * l;
    const float across = 0.94F * l - 0.34F * a;
    const float q = std::hypot(along / (along > 0.0F ? 17.0F : 4.5F), across / (across > 0.0F ? 8.5F : 5.0F));
    return 60.0F - 21.0F * std::pow(q, 1.2F) - 2.4F * std::max(0.0F, at.z - 8.0F);
}

float TORVSupercell::hook(const Local& at) const
{
    const float x = at.a - mesoAhead(at.z);
    const float y = at.l - MesoLeft;
    float angle = std::atan2(y, x) * DegreesPerRadian;
    if (angle < -60.0F) {
        angle += 360.0F;
    }
    const float spiral = 8.8F - 0.0225F * (angle - 60.0F);
    const float band = (std::hypot(x, y) - spiral) / (2.6F - 0.0030F * angle);
    const float length = step(40.0F, 95.0F, angle) * step(310.0F, 255.0F, angle);
    const float low = step(5.5F, 2.5F, at.z) * _state.rotation;
    return 51.0F - 0.025F * std::max(0.0F, angle - 90.0F) - 11.0F * band * band - 40.0F * (1.0F - length * low);
}

float TORVSupercell::overhang(const Local& at) const
{
    const float a = at.a - 0.6F * (at.z - 5.0F) - 1.5F;
    const float l = at.l + 0.5F;
    const float q = std::hypot(a / (a > 0.0F ? 9.5F : 6.0F), l / 7.5F);
    const float high = step(3.2F, 6.2F, at.z);
    return 58.0F - 21.0F * std::pow(q, 1.3F) - 2.4F * std::max(0.0F, at.z - 8.0F) - 60.0F * (1.0F - high);
}

/// How many dB the updraft takes away: it carries everything up before it can grow.
float TORVSupercell::vault(const Local& at) const
{
    const float a = at.straightA - 1.5F - 0.25F * at.z;
    const float l = at.straightL + 2.2F - 0.15F * at.z;
    const float open = a > 0.0F ? 1.45F : 1.0F;
    const float radius = blend(3.7F, 2.3F, step(2.0F, 7.0F, at.z));
    const float distance = std::hypot(a / open, l) / radius;
    return 40.0F * std::exp(-distance * distance * distance) * step(8.2F, 5.2F, at.z) * _state.rotation;
}

float TORVSupercell::anvil(const Local& at) const
{
    const float along = (at.a + 14.0F) / (AnvilLength * _state.strength + 1.0F);
    if (along < 0.0F || along > 1.0F) {
        return TORVAirSample::NoEcho;
    }
    const float ragged =
        _noise.fractal(at.straightA / 14.0F, at.straightL / 14.0F, 0.3F * at.z + _state.age / 2500.0F, 3);
    const float side = at.l / (13.0F + 0.36F * (at.a + 14.0F));
    const float edge = 17.0F * side * side + 26.0F * step(0.62F, 1.0F, along) + 20.0F * step(0.06F, 0.0F, along);
    const float base = 4.5F + 1.8F * along + 1.3F * ragged;
    const float top = 12.0F - 1.3F * along + 0.3F * at.grain;
    const float inside = step(base - 0.9F, base + 1.1F, at.z) * step(top + 0.4F, top - 1.2F, at.z);
    return 25.0F - 9.0F * along + 3.5F * ragged - edge - 40.0F * (1.0F - inside);
}

/// What is lost near and above the storm's top, which bulges over the updraft.
float TORVSupercell::cap(const Local& at) const
{
    const float dome = bell(std::hypot(at.straightA - 4.0F, at.straightL) / 8.0F);
    const float top = 8.0F + 6.6F * dome * _state.strength;
    return 11.0F * std::max(0.0F, at.z - top + 1.2F);
}

void TORVSupercell::addWinds(TORVAirSample& sample, const Local& at) const
{
    const float x = at.straightA - mesoAhead(at.z);
    const float y = at.straightL - MesoLeft;
    const float r = std::hypot(x, y);
    const float deep = step(10.0F, 6.5F, at.z) * (0.62F + 0.38F * step(0.0F, 3.0F, at.z));
    const float spin = _state.rotation * deep * MesoSpeed * swirl(r / MesoRadius) / std::max(r, 0.1F);

    const float away = std::hypot(at.straightA, at.straightL);
    const float spread =
        24.0F * bell((at.z - 11.2F) / 1.6F) * _state.strength * swirl(away / 11.0F) / std::max(away, 0.1F);
    const float cold = 13.0F * step(1.8F, 0.4F, at.z) * _state.strength *
                       swirl(std::hypot(at.straightA + 1.0F, at.straightL - 3.0F) / 9.0F);
    _state.frame.addWind(sample, -spin * y + spread * at.straightA + 0.6F * cold,
                         spin * x + spread * at.straightL - 0.8F * cold);

    const float updraft = bell(std::hypot(at.straightA - 0.3F * at.z, at.straightL + 1.5F) / 4.0F);
    const float column = std::max(0.0F, std::sin(3.1416F * at.z / 14.0F));
    sample.w += 38.0F * _state.strength * updraft * column -
                8.0F * _state.strength * step(4.0F, 1.0F, at.z) * bell(away / 9.0F);
    const float rough = 6.5F * bell((r - MesoRadius) / 2.6F) * deep * _state.rotation + 5.0F * updraft * column;
    sample.turbulence = std::max(sample.turbulence, rough * _state.strength + 1.2F * bell(away / 22.0F));
}
