#pragma once

#include <cstdint>

/**
 * Random numbers without a state: each is a function of what it is asked for (seed, place, time), so any moment of any
 * storm can be computed alone, in any order and on any number of threads, and comes out the same. The distributions of
 * the standard library are not used: they differ between libraries.
 *
 * Mixing: the finaliser of MurmurHash3, once for each word.
 *
 * Thread: any thread.
 */
class TORVHash final
{
public:
    TORVHash() = delete;

    static constexpr uint32_t mix(uint32_t a)
    {
        a ^= a >> 16;
        a *= 0x85ebca6bU;
        a ^= a >> 13;
        a *= 0xc2b2ae35U;
        return a ^ (a >> 16);
    }

    static constexpr uint32_t mix(uint32_t a, uint32_t b) { return mix(mix(a + 0x9e3779b9U) ^ b); }

    static constexpr uint32_t mix(uint32_t a, uint32_t b, uint32_t c) { return mix(mix(a, b), c); }

    /// 0 to below 1.
    static constexpr float unit(uint32_t hash) { return static_cast<float>(hash >> 8) * (1.0F / 16777216.0F); }

    /// From `low` to below `high`.
    static constexpr float between(uint32_t hash, float low, float high) { return low + (high - low) * unit(hash); }

    /// Close to normal, mean 0, deviation 1, never beyond 3.5: the sum of the four bytes.
    static constexpr float normal(uint32_t hash)
    {
        const uint32_t sum = (hash & 255U) + ((hash >> 8) & 255U) + ((hash >> 16) & 255U) + (hash >> 24);
        return (static_cast<float>(sum) - 510.0F) * (1.0F / 147.8F);
    }
};
