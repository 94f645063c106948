#pragma once

#include <cstdint>
#include <vector>

/**
 * How one radar is built and how it scans. C band, as usual in the north.
 *
 * Thread: a plain value, any thread.
 */
struct TORVRadar
{
    int32_t prf = 1000;          ///< Hz
    uint16_t prfRatioCode = 1;   ///< 0 single rate, 1, 2, 3 widen the velocity range 2, 3, 4 times
    int32_t wavelength = 533;    ///< hundredths of a centimetre
    float beamWidth = 1.0F;      ///< degrees, between the points of half power
    float antennaHeight = 0.1F;  ///< km above the sea
    float weakestAt1km = -40.0F; ///< dBZ that is just heard at 1 km; 20 log r more at r km

    /// Degrees above the horizon, rising.
    std::vector<float> elevations = {0.5F, 1.1F,  1.8F,  2.6F,  3.5F,  4.6F,  6.0F,
                                     7.8F, 10.0F, 13.0F, 17.0F, 22.5F, 30.0F, 40.0F};

    /// m/s: speeds beyond it fold.
    float nyquist() const
    {
        return static_cast<float>(wavelength * prf) / 40000.0F * static_cast<float>(prfRatioCode + 1);
    }

    /// km: echoes from farther away arrive after the next pulse has left.
    float range() const { return 149896.0F / static_cast<float>(prf); }
};
