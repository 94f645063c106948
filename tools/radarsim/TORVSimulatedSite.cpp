#include "radarsim/TORVSimulatedSite.h"

#include "radarsim/TORVHash.h"
#include "radarsim/TORVTerrainModel.h"
#include "utils/TORVGeoProjection.h"
#include "utils/TORVPoint3D.h"

#include <QDateTime>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr double EarthRadius_m = 6371000.0;
constexpr double Sphere = static_cast<double>(std::numeric_limits<float>::max());
constexpr int Rays = 360;
constexpr float ShortestGate = 0.25F; // km
constexpr float LongestGate = 1.0F;

uint32_t binaryAngle(double degrees)
{
    return static_cast<uint32_t>(std::llround(degrees / 360.0 * 4294967296.0));
}

int16_t groundOf(const TORVSiteInfo& info, const TORVTerrainModel& terrain)
{
    return static_cast<int16_t>(std::lround(terrain.height(info.latitude, info.longitude)));
}

TORVRadar radarOf(const TORVSiteInfo& info, int16_t ground)
{
    TORVRadar radar;
    radar.prf = info.prf;
    radar.prfRatioCode = info.prfRatioCode;
    radar.antennaHeight = 0.001F * static_cast<float>(ground + info.towerHeight);
    return radar;
}

TORVHorizon::Ground groundAround(const TORVSiteInfo& info, const TORVTerrainModel& terrain)
{
    const auto projection = boost::make_shared<TORVGeoProjection>(
        QStringLiteral("aeqd"), TORVCoordinate(info.latitude, info.longitude), EarthRadius_m, Sphere);
    return [projection, &terrain](float x, float y) {
        const TORVPoint3D point{1000.0 * static_cast<double>(x), 1000.0 * static_cast<double>(y), 0.0};
        const TORVCoordinate place = projection->projectToLatLon(point);
        return 0.001F * terrain.height(place.getLat(), place.getLon());
    };
}

/// Gates as fine as the grid, within what radars do.
float gateLength(const TORVGridShape& shape)
{
    const float finest = static_cast<float>(std::min(shape.xScale(), shape.yScale())) * 1e-5F;
    return std::clamp(finest, ShortestGate, LongestGate);
}

} // namespace

TORVSimulatedSite::TORVSimulatedSite(const TORVSiteInfo& info, const TORVGridShape& shape, uint32_t seed,
                                     const TORVTerrainModel& terrain)
    : _info(info), _seed(seed), _ground(groundOf(info, terrain)), _weather(info.scenario, seed),
      _sampler(radarOf(info, _ground), Rays, gateLength(shape), groundAround(info, terrain)), _gridder(shape, _sampler)
{
}

TORVPolarVolume TORVSimulatedSite::scan(int64_t time) const
{
    return _sampler.scan(_weather, time, TORVHash::mix(_seed, static_cast<uint32_t>(time)));
}

TORVProductFields TORVSimulatedSite::header(int64_t time) const
{
    const QDateTime moment = QDateTime::fromSecsSinceEpoch(time, Qt::UTC);
    const TORVGridShape& shape = _gridder.shape();
    TORVProductFields fields;
    fields.dataSeconds = static_cast<uint32_t>(QTime(0, 0).secsTo(moment.time()));
    fields.dataYear = static_cast<uint16_t>(moment.date().year());
    fields.dataMonth = static_cast<uint16_t>(moment.date().month());
    fields.dataDay = static_cast<uint16_t>(moment.date().day());
    fields.xScale = shape.xScale();
    fields.yScale = shape.yScale();
    fields.zScale = shape.zScale();
    fields.xPoints = shape.x;
    fields.yPoints = shape.y;
    fields.zPoints = shape.z;
    fields.xRadar = shape.xRadar();
    fields.yRadar = shape.yRadar();
    fields.siteName = _info.name;
    fields.siteLatitude = binaryAngle(_info.latitude);
    fields.siteLongitude = binaryAngle(_info.longitude);
    fields.groundElevation = _ground;
    fields.radarHeight = _info.towerHeight;
    fields.prf = _info.prf;
    fields.prfRatioCode = _info.prfRatioCode;
    fields.wavelength = _sampler.radar().wavelength;
    return fields;
}

QString TORVSimulatedSite::fileName(int64_t time, const QString& extension) const
{
    const QString stamp = QDateTime::fromSecsSinceEpoch(time, Qt::UTC).toString(QStringLiteral("yyMMddhhmmss"));
    return QLatin1String(_info.prefix) + stamp + QLatin1Char('.') + extension;
}
