#pragma once

#include "radarsim/TORVHorizon.h"
#include "radarsim/TORVPolarVolume.h"
#include "radarsim/TORVRadar.h"
#include "radarsim/TORVWeather.h"

#include <cstdint>
#include <vector>

/**
 * Looks at the weather as a radar does: along rays that climb and widen, weakened by heavy rain on the way, hidden by
 * hills, deaf to echo that is too weak for its distance, and a little noisy, with specks of what its clutter filter
 * left.
 *
 * Attenuation at C band: 0.0036 R^1.05 dB/km both ways, R in mm/h, in rain. Rain falls at 2.6 Z^0.107 m/s, snow at 1
 * m/s. The width is what turbulence and the change of the speed from beam to beam add up to.
 *
 * Thread: immutable, any thread; each call works on memory of its own.
 */
class TORVRadarSampler final
{
public:
    /// `gateLength` in km; `rays` a turn.
    TORVRadarSampler(const TORVRadar& radar, int rays, float gateLength, const TORVHorizon::Ground& ground);

    const TORVRadar& radar() const { return _radar; }

    int rays() const { return _rays; }

    int gates() const { return _gates; }

    float gateLength() const { return _gateLength; }

    /// `seed` decides the noise of this one scan.
    TORVPolarVolume scan(const TORVWeather& weather, int64_t time, uint32_t seed) const;

private:
    struct Ray;

    void collect(Ray& ray, const TORVWeather::Fields& fields) const;
    void listen(Ray& ray, const TORVWeather& weather, TORVPolarVolume& volume) const;
    float along(const Ray& ray, float range, float u, float v, float w) const;
    void addSpeckle(const Ray& ray, int gate, TORVPolarVolume& volume) const;
    void widenByShear(TORVPolarVolume& volume) const;
    float attenuation(float dbz, float height, float freezingLevel) const;
    float fallSpeed(float dbz, float height, float freezingLevel) const;

    TORVRadar _radar;
    int _rays;
    int _gates;
    float _gateLength;
    TORVHorizon _horizon;
    std::vector<float> _heights;           ///< km above the sea, by sweep and gate
    std::vector<float> _weakest;           ///< dBZ, by gate
    std::vector<float> _attenuationOfRain; ///< dB a gate, by dBZ
    std::vector<float> _rainFallSpeed;     ///< m/s, by dBZ
};
