#pragma once

#include "radarsim/TORVGridShape.h"
#include "radarsim/TORVProductFields.h"
#include "radarsim/TORVRadarSampler.h"
#include "radarsim/TORVSiteInfo.h"
#include "radarsim/TORVVolumeGridder.h"
#include "radarsim/TORVWeather.h"

#include <QString>

#include <cstdint>

class TORVTerrainModel;

/**
 * One radar of the demo installation with its weather and its hills.
 *
 * Thread: immutable, any thread.
 */
class TORVSimulatedSite final
{
public:
    TORVSimulatedSite(const TORVSiteInfo& info, const TORVGridShape& shape, uint32_t seed,
                      const TORVTerrainModel& terrain);

    TORVSimulatedSite(const TORVSimulatedSite&) = delete;
    TORVSimulatedSite& operator=(const TORVSimulatedSite&) = delete;

    const TORVSiteInfo& info() const { return _info; }

    const TORVVolumeGridder& gridder() const { return _gridder; }

    /// What the radar measures at `time`, seconds since 1970 UTC.
    TORVPolarVolume scan(int64_t time) const;

    /// The header that all products of that moment share.
    TORVProductFields header(int64_t time) const;

    /// The name of a product's file: prefix, time as yymmddhhmmss, extension.
    QString fileName(int64_t time, const QString& extension) const;

private:
    const TORVSiteInfo& _info;
    uint32_t _seed;
    int16_t _ground; ///< m
    TORVWeather _weather;
    TORVRadarSampler _sampler;
    TORVVolumeGridder _gridder;
};
