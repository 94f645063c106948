#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <vector>

class TORVTerrainModel;

/**
 * One square degree of heights in the layout of a public elevation file.
 *
 * SRTM: rows from north to south, big-endian, 0x8000 where nothing is known. DTED level 1: three headers of text, then
 * a record for each meridian from west to east with heights from south to north, big-endian in sign and magnitude, a
 * sequence number before and a checksum behind; 0xFFFF where nothing is known. Edges are shared with the neighbours.
 *
 * Thread: immutable, any thread.
 */
class TORVTerrainTile final
{
public:
    enum Format : int
    {
        SRTM3, ///< 1201 x 1201
        SRTM1, ///< 3601 x 3601
        DTED1  ///< 1201 x 1201, at any latitude
    };

    /// The tile whose south-west corner is at these whole degrees, 0 <= both.
    TORVTerrainTile(int latitude, int longitude, Format format)
        : _latitude(latitude), _longitude(longitude), _format(format)
    {
    }

    QString fileName() const;

    int points() const { return _format == SRTM1 ? 3601 : 1201; } ///< along each edge

    /// The whole file; empty if the tile holds nothing but sea, which has no file.
    QByteArray file(const TORVTerrainModel& model) const;

    static constexpr int16_t Void = -32768;

private:
    std::vector<int16_t> heights(const TORVTerrainModel& model) const; // from north to south, from west to east
    QByteArray srtm(const std::vector<int16_t>& heights) const;
    QByteArray dted(const std::vector<int16_t>& heights) const;
    QByteArray dtedHeaders() const;

    int _latitude;
    int _longitude;
    Format _format;
};
