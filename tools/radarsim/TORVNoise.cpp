#include "radarsim/TORVNoise.h"

#include "radarsim/TORVHash.h"

#include <cstddef>

namespace
{

constexpr uint32_t Mask = TORVNoise::Size - 1;
constexpr uint32_t RowStep = TORVNoise::Size;
constexpr uint32_t PlaneStep = TORVNoise::Size * TORVNoise::Size;

/// Where a coordinate lies in its lattice cell, eased so that the slope is continuous.
struct Position
{
    explicit Position(float value)
    {
        // Cheaper than std::floor, which is a call on the plainest processors.
        const auto cut = static_cast<int32_t>(value);
        const int32_t floor = cut - (value < static_cast<float>(cut) ? 1 : 0);
        const float fraction = value - static_cast<float>(floor);
        low = static_cast<uint32_t>(floor) & Mask;
        high = (low + 1) & Mask;
        weight = fraction * fraction * (3.0F - 2.0F * fraction);
    }

    uint32_t low;
    uint32_t high;
    float weight;
};

float blend(float a, float b, float weight)
{
    return a + (b - a) * weight;
}

} // namespace

TORVNoise::TORVNoise(uint32_t seed) : _lattice(static_cast<std::size_t>(Size) * Size * Size)
{
    for (std::size_t i = 0; i < _lattice.size(); ++i) {
        _lattice[i] = TORVHash::between(TORVHash::mix(seed, static_cast<uint32_t>(i)), -1.0F, 1.0F);
    }
}

float TORVNoise::at(float x, float y, float z) const
{
    const Position px(x);
    const Position py(y);
    const Position pz(z);
    const float* rows[] = {
        &_lattice[pz.low * PlaneStep + py.low * RowStep], &_lattice[pz.low * PlaneStep + py.high * RowStep],
        &_lattice[pz.high * PlaneStep + py.low * RowStep], &_lattice[pz.high * PlaneStep + py.high * RowStep]};
    float along[4];
    for (int i = 0; i < 4; ++i) {
        along[i] = blend(rows[i][px.low], rows[i][px.high], px.weight);
    }
    return blend(blend(along[0], along[1], py.weight), blend(along[2], along[3], py.weight), pz.weight);
}

float TORVNoise::fractal(float x, float y, float z, int octaves) const
{
    // Each octave looks elsewhere, so that lattice points of two octaves never coincide.
    constexpr float Shift = 17.37F;
    float sum = 0.0F;
    float strength = 1.0F;
    float scale = 1.0F;
    for (int octave = 0; octave < octaves; ++octave) {
        const float shift = Shift * static_cast<float>(octave);
        sum += strength * at(x * scale + shift, y * scale + shift, z * scale + shift);
        strength *= 0.5F;
        scale *= 2.0F;
    }
    return sum;
}
