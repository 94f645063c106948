#pragma once

#include "radarsim/TORVNoise.h"
#include "radarsim/TORVStormField.h"
#include "radarsim/TORVWindProfile.h"

#include <cstdint>
#include <memory>
#include <vector>

/**
 * What happens in the sky round one radar, for all time: storms are born again and again at fixed periods, each unlike
 * the last, and any moment can be asked for directly.
 *
 * Thread: immutable, any thread.
 */
class TORVWeather final
{
public:
    enum Scenario : int
    {
        SUPERCELLS, ///< a supercell every three hours among single cells, clear air return by day
        FRONTS      ///< every six hours a squall line, and between them an area of widespread rain
    };

    using Fields = std::vector<std::unique_ptr<TORVStormField>>;

    TORVWeather(Scenario scenario, uint32_t seed);

    const TORVWindProfile& wind() const { return _wind; }

    /// km above the sea.
    float freezingLevel() const;

    /// The small eddies that every wind is full of, m/s, at a place in km and a time in s. Turbulence is patchy as they
    /// are: multiply it by `patchiness` of the eddy.
    TORVWindProfile::Wind eddyAt(float x, float y, float z, float time) const;

    static float patchiness(TORVWindProfile::Wind eddy);

    /// All that lives at `time`, seconds since 1970 UTC; it borrows from this object.
    Fields fieldsAt(int64_t time) const;

private:
    void addSupercells(Fields& fields, int64_t time) const;
    void addSingleCells(Fields& fields, int64_t time) const;
    void addSquallLines(Fields& fields, int64_t time) const;
    void addWidespreadRain(Fields& fields, int64_t time) const;
    void addClearAir(Fields& fields, int64_t time) const;

    Scenario _scenario;
    uint32_t _seed;
    TORVNoise _noise;
    TORVWindProfile _wind;
};
