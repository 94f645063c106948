#pragma once

#include "radarsim/TORVNoise.h"

#include <cstdint>
#include <vector>

/**
 * A country that looks like the north of Europe and isn't there: a ragged coast with islands in the south and another
 * in the far north, lake plateaus, low hills that turn into fells northwards. Height is a function of place alone, so
 * tiles of any resolution fit each other.
 *
 * Thread: immutable, any thread.
 */
class TORVTerrainModel final
{
public:
    /// A round hill that stands on the country, dry even where a lake would be.
    struct Hill
    {
        double latitude;
        double longitude;
        float height; ///< m
    };

    explicit TORVTerrainModel(uint32_t seed, const std::vector<Hill>& hills = {});

    /// The country of the demo installation: each radar stands on a hill of its own.
    static TORVTerrainModel withRadarHills(uint32_t seed);

    /// Metres above the sea, 0 on it.
    float height(double latitude, double longitude) const;

    /// Whether the survey that the tiles pretend to come from saw nothing here.
    bool isVoid(double latitude, double longitude, float height) const;

private:
    struct Place;

    static Place placeOf(double latitude, double longitude);
    float inland(const Place& place) const;
    float land(const Place& place, float inland) const;
    float hillAt(double latitude, double longitude) const;

    TORVNoise _noise;
    std::vector<Hill> _hills;
};
