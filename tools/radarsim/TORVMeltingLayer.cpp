#include "radarsim/TORVMeltingLayer.h"

#include "radarsim/TORVShapes.h"

#include <algorithm>
#include <cmath>

using namespace TORVShapes;

namespace
{

constexpr float BandBelowFreezing = 0.22F; // km
constexpr float BandDepth = 0.30F;         // km, deviation
constexpr float BandStrength = 13.0F;      // dB
constexpr float StepIntoSnow = 3.0F;       // dB, snow reflects less than the rain that it becomes
constexpr float SnowDecrease = 3.6F;       // dB/km
constexpr float TopDecrease = 14.0F;       // dB/km, in the last kilometre

} // namespace

float TORVMeltingLayer::decibels(float z, float freezingLevel, float top, float blur)
{
    const float depth = std::sqrt(BandDepth * BandDepth + blur * blur);
    const float offset = (z - freezingLevel + BandBelowFreezing) / depth;
    const float band =
        offset * offset < 12.0F ? BandStrength * (BandDepth / depth) * std::exp(-0.5F * offset * offset) : 0.0F;
    const float snow = StepIntoSnow * step(-depth, depth, z - freezingLevel - 0.1F);
    const float above = std::max(0.0F, z - freezingLevel);
    return band - snow - SnowDecrease * above - TopDecrease * std::max(0.0F, z - top + 1.0F);
}
