#include "radarsim/TORVVolumeGridder.h"

#include "radarsim/TORVBeam.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float TwoPi = 6.2831853F;
constexpr float RadiansPerDegree = 0.01745329F;
constexpr float BelowLowest = 1.5F; // half beams below the centre of the lowest beam that still hear something

float between(float lower, float upper, float weight)
{
    if (lower == TORVPolarVolume::Nothing || upper == TORVPolarVolume::Nothing) {
        return weight < 0.5F ? lower : upper;
    }
    return lower + (upper - lower) * weight;
}

} // namespace

TORVVolumeGridder::TORVVolumeGridder(const TORVGridShape& shape, const TORVRadarSampler& sampler)
    : _shape(shape), _gates(sampler.gates()), _sweeps(static_cast<int>(sampler.radar().elevations.size())),
      _columns(shape.planeSize(), NoColumn), _columnGates(shape.planeSize(), 0)
{
    findColumns(sampler);
    findBrackets(sampler);
}

void TORVVolumeGridder::findColumns(const TORVRadarSampler& sampler)
{
    const float dx = static_cast<float>(_shape.xScale()) * 1e-5F;
    const float dy = static_cast<float>(_shape.yScale()) * 1e-5F;
    for (int j = 0; j < _shape.y; ++j) {
        for (int i = 0; i < _shape.x; ++i) {
            const float x = (static_cast<float>(i) - 0.5F * static_cast<float>(_shape.x - 1)) * dx;
            const float y = (static_cast<float>(j) - 0.5F * static_cast<float>(_shape.y - 1)) * dy;
            const int gate = static_cast<int>(std::hypot(x, y) / sampler.gateLength());
            if (gate >= _gates) {
                continue;
            }
            const float turn = std::atan2(x, y) / TwoPi;
            const auto ray = static_cast<int>((turn < 0.0F ? turn + 1.0F : turn) * static_cast<float>(sampler.rays()));
            const std::size_t at = static_cast<std::size_t>(j) * _shape.x + i;
            _columns[at] = std::min(ray, sampler.rays() - 1) * _gates + gate;
            _columnGates[at] = gate;
        }
    }
}

void TORVVolumeGridder::findBrackets(const TORVRadarSampler& sampler)
{
    const float dz = static_cast<float>(_shape.zScale()) * 1e-5F;
    _brackets.resize(static_cast<std::size_t>(_shape.z) * _gates);
    std::vector<float> beams(static_cast<std::size_t>(_sweeps));
    for (int gate = 0; gate < _gates; ++gate) {
        const float range = sampler.gateLength() * (static_cast<float>(gate) + 0.5F);
        const auto heightOf = [range](float elevation) { return TORVBeam::height(elevation, range); };
        std::transform(sampler.radar().elevations.begin(), sampler.radar().elevations.end(), beams.begin(), heightOf);
        const float halfBeam = 0.5F * sampler.radar().beamWidth * RadiansPerDegree * range;
        for (int level = 0; level < _shape.z; ++level) {
            _brackets[static_cast<std::size_t>(level) * _gates + gate] =
                bracketAt(dz * static_cast<float>(level), beams, halfBeam);
        }
    }
}

TORVVolumeGridder::Bracket TORVVolumeGridder::bracketAt(float height, const std::vector<float>& beams, float halfBeam)
{
    const int last = static_cast<int>(beams.size()) - 1;
    if (height > beams.back() + halfBeam || height < beams.front() - BelowLowest * halfBeam) {
        return {};
    }
    const auto above = std::upper_bound(beams.begin(), beams.end(), height);
    const int upper = std::min(last, static_cast<int>(above - beams.begin()));
    const int lower = std::max(0, static_cast<int>(above - beams.begin()) - 1);
    if (upper == lower) {
        return {lower, upper, 0.0F};
    }
    const float bottom = beams[static_cast<std::size_t>(lower)];
    return {lower, upper, (height - bottom) / (beams[static_cast<std::size_t>(upper)] - bottom)};
}

std::vector<float> TORVVolumeGridder::grid(const TORVPolarVolume& volume, const std::vector<float>& moment) const
{
    std::vector<float> values(_shape.size(), TORVPolarVolume::Nothing);
    const std::size_t plane = _shape.planeSize();
    for (int j = 0; j < _shape.y; ++j) {
        const std::size_t row = static_cast<std::size_t>(j) * _shape.x;
        for (int level = 0; level < _shape.z; ++level) {
            const Bracket* brackets = &_brackets[static_cast<std::size_t>(level) * _gates];
            float* out = &values[static_cast<std::size_t>(level) * plane + row];
            for (int i = 0; i < _shape.x; ++i) {
                const int column = _columns[row + i];
                if (column == NoColumn) {
                    continue;
                }
                const Bracket& bracket = brackets[_columnGates[row + i]];
                if (bracket.lower == NoSweep) {
                    continue;
                }
                const float* sweeps = &moment[static_cast<std::size_t>(column) * volume.sweeps];
                out[i] = between(sweeps[bracket.lower], sweeps[bracket.upper], bracket.weight);
            }
        }
    }
    return values;
}

std::vector<float> TORVVolumeGridder::sweep(const TORVPolarVolume& volume, const std::vector<float>& moment,
                                            int number) const
{
    std::vector<float> values(_shape.planeSize(), TORVPolarVolume::Nothing);
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (_columns[i] != NoColumn) {
            values[i] = moment[static_cast<std::size_t>(_columns[i]) * volume.sweeps + number];
        }
    }
    return values;
}
