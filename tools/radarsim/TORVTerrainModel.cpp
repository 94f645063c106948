#include "radarsim/TORVTerrainModel.h"

#include "radarsim/TORVShapes.h"
#include "radarsim/TORVSiteInfo.h"

#include <algorithm>
#include <cmath>

using namespace TORVShapes;

namespace
{

constexpr double KmPerLatitude = 111.2;
constexpr double KmPerLongitude = 48.0; // about right between 60 and 68 degrees
constexpr double SouthCoast = 59.93;
constexpr double NorthCoast = 69.15;
constexpr double WestCoast = 21.3;
constexpr double WestCoastEnds = 65.3; // latitude
constexpr float LakeStep = 12.0F;      // m

float northernness(float latitude)
{
    return step(64.5F, 68.0F, latitude);
}

/// Metres of the ground without its hills, `inland` km from the coast.
float plain(float inland, float latitude)
{
    return 1.0F + 3.4F * std::pow(inland, 0.72F) * (1.0F + 1.3F * northernness(latitude));
}

} // namespace

/// km from an origin nearby, so that floats have room for metres.
struct TORVTerrainModel::Place
{
    float x;
    float y;
    float latitude;
    float toCoast; ///< km to the nearest smooth coast line, positive on land
};

TORVTerrainModel::TORVTerrainModel(uint32_t seed, const std::vector<Hill>& hills) : _noise(seed), _hills(hills) {}

TORVTerrainModel TORVTerrainModel::withRadarHills(uint32_t seed)
{
    std::vector<Hill> hills;
    for (const TORVSiteInfo& site : TORVSiteInfo::all()) {
        hills.push_back({site.latitude, site.longitude, site.hill});
    }
    return TORVTerrainModel(seed, hills);
}

float TORVTerrainModel::height(double latitude, double longitude) const
{
    const Place place = placeOf(latitude, longitude);
    const float distance = inland(place);
    if (distance <= 0.0F) {
        return 0.0F;
    }
    const float hill = hillAt(latitude, longitude);
    const float ground = land(place, distance) + hill;
    if (hill > 1.0F) {
        return ground;
    }
    const float basin = _noise.fractal(place.x / 17.0F + 0.5F * place.y / 17.0F, place.y / 9.0F, 9.5F, 3);
    const float lake = step(0.40F, 0.47F, basin) * step(3.0F, 9.0F, distance);
    if (lake <= 0.0F) {
        return ground;
    }
    // A lake is level: its height depends on the region only, in steps that are as rare as rapids.
    const float level = LakeStep * std::floor(plain(std::max(1.0F, place.toCoast), place.latitude) / LakeStep) + 2.0F;
    return std::max(1.0F, blend(ground, level, lake));
}

TORVTerrainModel::Place TORVTerrainModel::placeOf(double latitude, double longitude)
{
    const double south = (latitude - SouthCoast) * KmPerLatitude;
    const double north = (NorthCoast - latitude) * KmPerLatitude;
    const double west = (longitude - WestCoast) * KmPerLongitude;
    const double nearest = std::min(south, north);
    return {static_cast<float>((longitude - 20.0) * KmPerLongitude),
            static_cast<float>((latitude - 58.0) * KmPerLatitude), static_cast<float>(latitude),
            static_cast<float>(latitude < WestCoastEnds ? std::min(nearest, west) : nearest)};
}

float TORVTerrainModel::inland(const Place& place) const
{
    constexpr float NoCoastNear = 60.0F;
    if (std::fabs(place.toCoast) > NoCoastNear) {
        return place.toCoast;
    }
    return place.toCoast + 21.0F * _noise.fractal(place.x / 38.0F, place.y / 38.0F, 0.5F, 3) +
           9.0F * _noise.fractal(place.x / 6.0F, place.y / 6.0F, 3.5F, 4);
}

float TORVTerrainModel::land(const Place& place, float inland) const
{
    const float northern = northernness(place.latitude);
    const float away = step(0.0F, 16.0F, inland);
    const float rolling = _noise.fractal(place.x / 13.0F, place.y / 13.0F, 5.5F, 5);
    const float hills = away * blend(75.0F, 130.0F, northern) * (0.35F + rolling);
    const float level = plain(inland, place.latitude) + hills;
    if (northern <= 0.0F) {
        return std::max(1.0F, level);
    }
    const float ridge = 1.0F - std::fabs(_noise.fractal(place.x / 42.0F + 7.0F, place.y / 34.0F, 7.5F, 4));
    const float fells = away * northern * 480.0F * step(0.70F, 1.05F, ridge) * step(-0.25F, 0.5F, rolling);
    return std::max(1.0F, level + fells);
}

float TORVTerrainModel::hillAt(double latitude, double longitude) const
{
    constexpr double Reach = 0.12; // degrees of latitude
    constexpr float Radius = 3.2F; // km
    float sum = 0.0F;
    for (const Hill& hill : _hills) {
        if (std::fabs(latitude - hill.latitude) > Reach || std::fabs(longitude - hill.longitude) > 2.0 * Reach) {
            continue;
        }
        const auto x = static_cast<float>((longitude - hill.longitude) * KmPerLongitude);
        const auto y = static_cast<float>((latitude - hill.latitude) * KmPerLatitude);
        sum += hill.height * bell(std::hypot(x, y) / Radius);
    }
    return sum;
}

bool TORVTerrainModel::isVoid(double latitude, double longitude, float height) const
{
    constexpr float LowestHidden = 90.0F;
    if (height < LowestHidden) {
        return false;
    }
    const Place place = placeOf(latitude, longitude);
    return _noise.at(place.x / 2.5F, place.y / 2.5F, 13.0F) > 0.93F;
}
