#include "radarsim/TORVRadarEquations.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float HailCap = 56.0F;

} // namespace

float TORVRadarEquations::folded(float velocity, float nyquist)
{
    const float turn = 2.0F * nyquist;
    return velocity - turn * std::round(velocity / turn);
}

float TORVRadarEquations::rainRate(float dbz)
{
    return std::pow(std::pow(10.0F, 0.1F * dbz) / 200.0F, 1.0F / 1.6F);
}

float TORVRadarEquations::liquidWater(float dbz)
{
    return 3.44e-6F * std::pow(10.0F, 0.1F * std::min(dbz, HailCap) * 4.0F / 7.0F);
}
