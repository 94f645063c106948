#pragma once

#include <cstdint>
#include <vector>

/**
 * Smooth noise in space: random values on a cubic lattice of step 1 that repeats after `Size` steps, blended between
 * the lattice points. What moves or changes with time moves the point that it asks for.
 *
 * Thread: immutable, any thread.
 */
class TORVNoise final
{
public:
    static constexpr int Size = 64;

    explicit TORVNoise(uint32_t seed);

    /// -1 to 1; the deviation is about 0.35.
    float at(float x, float y, float z) const;

    /// `octaves` of halving size and strength, the first with the lattice step 1; the deviation is about 0.4.
    float fractal(float x, float y, float z, int octaves) const;

private:
    std::vector<float> _lattice;
};
