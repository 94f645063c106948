#include "radarsim/TORVWindProfile.h"

#include "radarsim/TORVShapes.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace
{

constexpr float RadiansPerDegree = 0.01745329F;

TORVWindProfile::Wind windOf(const TORVWindProfile::Level& level)
{
    const float angle = level.towards * RadiansPerDegree;
    return {level.speed * std::sin(angle), level.speed * std::cos(angle)};
}

TORVWindProfile::Wind between(TORVWindProfile::Wind a, TORVWindProfile::Wind b, float weight)
{
    return {TORVShapes::blend(a.u, b.u, weight), TORVShapes::blend(a.v, b.v, weight)};
}

} // namespace

TORVWindProfile::TORVWindProfile(const std::vector<Level>& levels)
{
    assert(!levels.empty());
    std::size_t upper = 0;
    for (int i = 0; i < TableSize; ++i) {
        const float height = static_cast<float>(i) / StepsPerKm;
        while (upper + 1 < levels.size() && levels[upper].height < height) {
            ++upper;
        }
        const Level& top = levels[upper];
        const Level& bottom = levels[upper == 0 ? 0 : upper - 1];
        const float depth = std::max(0.001F, top.height - bottom.height);
        const float weight = std::clamp((height - bottom.height) / depth, 0.0F, 1.0F);
        _table[static_cast<std::size_t>(i)] = between(windOf(bottom), windOf(top), weight);
    }
}

TORVWindProfile::Wind TORVWindProfile::at(float height) const
{
    const float place = std::clamp(height * StepsPerKm, 0.0F, static_cast<float>(TableSize - 1));
    const auto low = std::min(static_cast<std::size_t>(place), static_cast<std::size_t>(TableSize - 2));
    return between(_table[low], _table[low + 1], place - static_cast<float>(low));
}
