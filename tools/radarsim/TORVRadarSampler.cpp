#include "radarsim/TORVRadarSampler.h"

#include "radarsim/TORVBeam.h"
#include "radarsim/TORVHash.h"
#include "radarsim/TORVShapes.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float TwoPi = 6.2831853F;
constexpr float RadiansPerDegree = 0.01745329F;
constexpr int DbzTableSize = 80;
constexpr float MostAttenuation = 18.0F; // dB; what is weaker than that is lost anyway
constexpr float SnowFallSpeed = 1.0F;
constexpr float CalmAir = 0.6F;        // m/s
constexpr float NarrowestWidth = 0.4F; // m/s
constexpr int64_t Day = 86400;

int dbzIndex(float dbz)
{
    return std::clamp(static_cast<int>(dbz), 0, DbzTableSize - 1);
}

/// Which gates of a ray lie in a box: the ray's line cut by two pairs of walls.
struct GateInterval
{
    int first;
    int last;
};

GateInterval gatesInside(const TORVFieldBounds& box, float sine, float cosine, float gateLength, int gates)
{
    float from = 0.0F;
    float to = gateLength * static_cast<float>(gates);
    const float walls[2][3] = {{box.west, box.east, sine}, {box.south, box.north, cosine}};
    for (const auto& wall : walls) {
        if (std::fabs(wall[2]) < 1e-6F) {
            if (wall[0] > 0.0F || wall[1] < 0.0F) {
                return {0, -1};
            }
            continue;
        }
        const float a = wall[0] / wall[2];
        const float b = wall[1] / wall[2];
        from = std::max(from, std::min(a, b));
        to = std::min(to, std::max(a, b));
    }
    if (from > to) {
        return {0, -1};
    }
    return {static_cast<int>(from / gateLength), std::min(gates - 1, static_cast<int>(to / gateLength))};
}

} // namespace

/// One direction of the antenna and what it meets.
struct TORVRadarSampler::Ray
{
    int number;
    int sweep;
    float sine;
    float cosine;
    uint32_t seed;
    float time; ///< s of the day
    std::vector<TORVAirSample> samples;
};

TORVRadarSampler::TORVRadarSampler(const TORVRadar& radar, int rays, float gateLength,
                                   const TORVHorizon::Ground& ground)
    : _radar(radar), _rays(rays), _gates(std::max(1, static_cast<int>(radar.range() / gateLength))),
      _gateLength(gateLength), _horizon(rays, _gates, gateLength, radar.antennaHeight, ground)
{
    for (const float elevation : radar.elevations) {
        for (int gate = 0; gate < _gates; ++gate) {
            const float range = gateLength * (static_cast<float>(gate) + 0.5F);
            _heights.push_back(radar.antennaHeight + TORVBeam::height(elevation, range));
        }
    }
    for (int gate = 0; gate < _gates; ++gate) {
        const float range = gateLength * (static_cast<float>(gate) + 0.5F);
        _weakest.push_back(radar.weakestAt1km + 20.0F * std::log10(range));
    }
    for (int dbz = 0; dbz < DbzTableSize; ++dbz) {
        const float z = std::pow(10.0F, 0.1F * static_cast<float>(dbz));
        const float rain = std::min(150.0F, std::pow(z / 200.0F, 1.0F / 1.6F));
        _attenuationOfRain.push_back(0.0036F * std::pow(rain, 1.05F) * gateLength);
        _rainFallSpeed.push_back(2.6F * std::pow(z, 0.107F));
    }
}

TORVPolarVolume TORVRadarSampler::scan(const TORVWeather& weather, int64_t time, uint32_t seed) const
{
    const auto sweeps = static_cast<int>(_radar.elevations.size());
    TORVPolarVolume volume(_rays, _gates, sweeps, _gateLength);
    const TORVWeather::Fields fields = weather.fieldsAt(time);
    Ray ray{0,
            0,
            0.0F,
            0.0F,
            0,
            static_cast<float>(time % Day),
            std::vector<TORVAirSample>(static_cast<std::size_t>(_gates))};
    for (ray.sweep = 0; ray.sweep < sweeps; ++ray.sweep) {
        for (ray.number = 0; ray.number < _rays; ++ray.number) {
            const float azimuth = TwoPi * (static_cast<float>(ray.number) + 0.5F) / static_cast<float>(_rays);
            ray.sine = std::sin(azimuth);
            ray.cosine = std::cos(azimuth);
            ray.seed = TORVHash::mix(seed, static_cast<uint32_t>(ray.sweep), static_cast<uint32_t>(ray.number));
            collect(ray, fields);
            listen(ray, weather, volume);
        }
    }
    widenByShear(volume);
    return volume;
}

void TORVRadarSampler::collect(Ray& ray, const TORVWeather::Fields& fields) const
{
    std::fill(ray.samples.begin(), ray.samples.end(), TORVAirSample());
    const float* heights = &_heights[static_cast<std::size_t>(ray.sweep) * _gates];
    const float blurPerKm = 0.42F * _radar.beamWidth * RadiansPerDegree;
    for (const auto& field : fields) {
        const GateInterval inside = gatesInside(field->bounds(), ray.sine, ray.cosine, _gateLength, _gates);
        for (int gate = inside.first; gate <= inside.last && heights[gate] < field->bounds().top; ++gate) {
            const float range = _gateLength * (static_cast<float>(gate) + 0.5F);
            const TORVFieldPoint point{range * ray.sine, range * ray.cosine, heights[gate], blurPerKm * range};
            field->addTo(ray.samples[static_cast<std::size_t>(gate)], point);
        }
    }
}

void TORVRadarSampler::listen(Ray& ray, const TORVWeather& weather, TORVPolarVolume& volume) const
{
    const float elevation = _radar.elevations[static_cast<std::size_t>(ray.sweep)];
    const float freezing = weather.freezingLevel();
    float lost = 0.0F;
    for (int gate = 0; gate < _gates; ++gate) {
        const TORVAirSample& air = ray.samples[static_cast<std::size_t>(gate)];
        if (air.dbz <= TORVAirSample::NoEcho) {
            addSpeckle(ray, gate, volume);
            continue;
        }
        const float height = _heights[static_cast<std::size_t>(ray.sweep) * _gates + gate];
        const uint32_t noise = TORVHash::mix(ray.seed, static_cast<uint32_t>(gate));
        const float weakest = _weakest[static_cast<std::size_t>(gate)];
        const float heard = air.dbz - lost - _horizon.loss(ray.number, gate, elevation, _radar.beamWidth) +
                            0.8F * TORVHash::normal(noise);
        lost = std::min(MostAttenuation, lost + attenuation(air.dbz, height, freezing));
        if (heard < weakest) {
            continue;
        }
        const float range = _gateLength * (static_cast<float>(gate) + 0.5F);
        const TORVWindProfile::Wind eddy = weather.eddyAt(range * ray.sine, range * ray.cosine, height, ray.time);
        const TORVWindProfile::Wind wind = weather.wind().at(height);
        const float up = air.w - fallSpeed(air.dbz, height, freezing);
        const float speed = along(ray, range, wind.u + eddy.u + air.u, wind.v + eddy.v + air.v, up);
        const float doubt = 0.3F + 1.2F * TORVShapes::step(8.0F, 0.0F, heard - weakest);
        const float spread = (CalmAir + air.turbulence) * TORVWeather::patchiness(eddy) +
                             doubt * std::fabs(TORVHash::normal(TORVHash::mix(noise, 2)));
        const std::size_t at = volume.index(ray.number, gate, ray.sweep);
        volume.dbz[at] = heard;
        volume.velocity[at] = speed + doubt * TORVHash::normal(TORVHash::mix(noise, 1));
        volume.width[at] = std::max(NarrowestWidth, spread);
    }
}

float TORVRadarSampler::along(const Ray& ray, float range, float u, float v, float w) const
{
    const float angle = TORVBeam::localAngle(_radar.elevations[static_cast<std::size_t>(ray.sweep)], range);
    return (u * ray.sine + v * ray.cosine) * std::cos(angle) + w * std::sin(angle);
}

void TORVRadarSampler::addSpeckle(const Ray& ray, int gate, TORVPolarVolume& volume) const
{
    constexpr int LowSweeps = 2;
    constexpr float Share = 0.004F;
    constexpr float Reach = 110.0F; // km
    const uint32_t hash = TORVHash::mix(ray.seed, static_cast<uint32_t>(gate));
    const float thinning = 1.0F - _gateLength * static_cast<float>(gate) / Reach;
    if (ray.sweep >= LowSweeps || TORVHash::unit(hash) >= Share * thinning) {
        return;
    }
    const std::size_t at = volume.index(ray.number, gate, ray.sweep);
    volume.dbz[at] = _weakest[static_cast<std::size_t>(gate)] + TORVHash::between(TORVHash::mix(hash), 1.0F, 16.0F);
    volume.velocity[at] = 0.4F * TORVHash::normal(TORVHash::mix(hash, 1));
    volume.width[at] = NarrowestWidth;
}

void TORVRadarSampler::widenByShear(TORVPolarVolume& volume) const
{
    constexpr float ShareOfDifference = 0.28F;
    const auto difference = [&volume](std::size_t a, std::size_t b) {
        const float va = volume.velocity[a];
        const float vb = volume.velocity[b];
        return va == TORVPolarVolume::Nothing || vb == TORVPolarVolume::Nothing ? 0.0F : ShareOfDifference * (va - vb);
    };
    for (int ray = 0; ray < volume.rays; ++ray) {
        const int next = (ray + 1) % volume.rays;
        for (int gate = 0; gate < volume.gates; ++gate) {
            const int farther = std::min(gate + 1, volume.gates - 1);
            for (int sweep = 0; sweep < volume.sweeps; ++sweep) {
                const std::size_t at = volume.index(ray, gate, sweep);
                if (volume.dbz[at] == TORVPolarVolume::Nothing) {
                    continue;
                }
                const float across = difference(volume.index(next, gate, sweep), at);
                const float along = difference(volume.index(ray, farther, sweep), at);
                const float own = volume.width[at];
                volume.width[at] = std::sqrt(own * own + across * across + along * along);
            }
        }
    }
}

float TORVRadarSampler::attenuation(float dbz, float height, float freezingLevel) const
{
    return height < freezingLevel ? _attenuationOfRain[static_cast<std::size_t>(dbzIndex(dbz))] : 0.0F;
}

float TORVRadarSampler::fallSpeed(float dbz, float height, float freezingLevel) const
{
    const float melted = TORVShapes::step(freezingLevel + 0.1F, freezingLevel - 0.5F, height);
    return TORVShapes::blend(SnowFallSpeed, _rainFallSpeed[static_cast<std::size_t>(dbzIndex(dbz))], melted);
}
