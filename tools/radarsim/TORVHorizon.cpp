#include "radarsim/TORVHorizon.h"

#include "radarsim/TORVBeam.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float TwoPi = 6.2831853F;
constexpr float NearClutter = 2.0F; // km, the hill that the radar stands on hides nothing

} // namespace

TORVHorizon::TORVHorizon(int rays, int gates, float gateLength, float antennaHeight, const Ground& ground)
    : _gates(gates), _angles(static_cast<std::size_t>(rays) * gates)
{
    for (int ray = 0; ray < rays; ++ray) {
        const float azimuth = TwoPi * (static_cast<float>(ray) + 0.5F) / static_cast<float>(rays);
        float highest = -90.0F;
        for (int gate = 0; gate < gates; ++gate) {
            const float range = gateLength * (static_cast<float>(gate) + 0.5F);
            if (range > NearClutter) {
                const float height = ground(range * std::sin(azimuth), range * std::cos(azimuth));
                highest = std::max(highest, TORVBeam::elevationOf(height - antennaHeight, range));
            }
            _angles[static_cast<std::size_t>(ray) * gates + gate] = highest;
        }
    }
}

float TORVHorizon::loss(int ray, int gate, float elevation, float width) const
{
    constexpr float LeastOpen = 0.02F;
    const float hidden = _angles[static_cast<std::size_t>(ray) * _gates + gate];
    const float open = std::clamp((elevation + 0.5F * width - hidden) / width, 0.0F, 1.0F);
    if (open >= 1.0F) {
        return 0.0F;
    }
    return open < LeastOpen ? Blocked : -20.0F * std::log10(open);
}
