#pragma once

#include "radarsim/TORVWeather.h"

#include <cstdint>
#include <vector>

/// A named place near a radar. Names are UTF-8.
struct TORVPlace
{
    enum Kind : int
    {
        TOWN,
        AIRPORT,
        RADAR
    };

    const char* name;
    Kind kind;
    double latitude;
    double longitude;
    int priority; ///< 0 to 5; where labels overlap, the higher one stays
};

/**
 * The radars of the demo installation: where they stand, how they measure, what weather they get. All names are
 * invented.
 *
 * Thread: constant, any thread.
 */
struct TORVSiteInfo
{
    const char* prefix; ///< three characters, which start its files' names
    const char* name;   ///< at most 16 characters of ASCII
    double latitude;
    double longitude;
    float hill;          ///< m that its hill rises above the country
    int16_t towerHeight; ///< m
    TORVWeather::Scenario scenario;
    int32_t prf; ///< Hz
    uint16_t prfRatioCode;
    std::vector<TORVPlace> places;

    static const std::vector<TORVSiteInfo>& all();
};
