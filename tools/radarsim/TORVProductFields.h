#pragma once

#include <QByteArray>

#include <cstdint>

/**
 * The header fields of a product file, in the units of the format; the defaults make a believable one-byte
 * reflectivity volume of 240 x 240 x 20 points at 1 km / 750 m, so that a caller sets only what it is about.
 *
 * Thread: a plain value, any thread.
 */
struct TORVProductFields
{
    static constexpr int32_t FollowsFromData = INT32_MIN;

    int16_t structureId = 27;
    int32_t totalBytes = FollowsFromData; ///< of the whole file; FollowsFromData: header plus data as written
    int16_t configStructureId = 26;
    uint16_t productType = 3; ///< 1 PPI, 3 CAPPI, 10 VIL, 16 MAX, 32 SRI
    uint32_t dataSeconds = 12 * 3600;
    uint16_t dataYear = 2026;
    uint16_t dataMonth = 7;
    uint16_t dataDay = 14;
    int32_t xScale = 100000; ///< cm
    int32_t yScale = 100000; ///< cm
    int32_t zScale = 75000;  ///< cm
    int32_t xPoints = 240;
    int32_t yPoints = 240;
    int32_t zPoints = 20;
    int32_t xRadar = 119500; ///< thousandths of a grid step, from the grid's first point
    int32_t yRadar = 119500;
    int32_t zRadar = 0;    ///< thousandths of a metre
    uint16_t dataType = 2; ///< 2/9 Z, 3/10 V, 4/11 W, 13 R; the second of a pair has two bytes
    uint8_t projectionType = 0;
    QByteArray siteName = "HALMERA";    ///< at most 16 bytes are written, blank padded
    uint32_t siteLatitude = 715827883;  ///< binary angle: 60 degrees
    uint32_t siteLongitude = 298261618; ///< binary angle: 25 degrees
    int16_t groundElevation = 100;      ///< m
    int16_t radarHeight = 25;           ///< m
    int32_t prf = 1000;                 ///< Hz
    uint16_t prfRatioCode = 0;
    int32_t wavelength = 533; ///< hundredths of a cm
    uint16_t nyquistHalvingCode = 0;
    uint32_t earthRadius = 0;        ///< cm; 0 is the format's default radius
    uint32_t earthInvFlattening = 0; ///< millionths; 0 is a sphere
};
