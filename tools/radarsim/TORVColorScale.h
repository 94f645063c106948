#pragma once

#include <cstdint>
#include <vector>

/**
 * A colour scale of the demo installation: written to its colour file, and used for pictures.
 *
 * Each colour stands at its seam and runs into the next one's. The "Default" scales are ordered by warning and keep
 * apart for the colour-blind as far as rainbow habits allow; in the "Colour-safe" ones lightness rises all the way.
 *
 * Thread: constant, any thread.
 */
struct TORVColorScale
{
    struct Stop
    {
        double value;   ///< in the unit
        uint32_t color; ///< 0xRRGGBB
    };

    const char* name;
    const char* unit;
    const char* labelFormat;
    int group;      ///< which quantity, see TORVColorGroup
    double topSeam; ///< closes the last band
    std::vector<Stop> stops;

    /// All, in the order of their numbers, which start at 1.
    static const std::vector<TORVColorScale>& all();

    /// The first scale of a quantity.
    static const TORVColorScale& defaultOf(int group);

    /// 0xRRGGBB, blended between the stops.
    uint32_t colorAt(double value) const;
};

/// What a raw data type shows.
struct TORVColorGroup
{
    enum Id : int
    {
        NONE = 0,
        REFLECTIVITY = 1,
        VELOCITY = 2,
        WIDTH = 3,
        RAIN = 4,
        WATER = 5
    };

    const char* legend;
    const char* type;
    Id group;

    /// By raw data type, 0 to 13.
    static const std::vector<TORVColorGroup>& byDataType();
};
