#include "radarsim/TORVTerrainTile.h"

#include "radarsim/TORVTerrainModel.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int UhlSize = 80;
constexpr int DsiSize = 648;
constexpr int AccSize = 2700;
constexpr int RecordHeadSize = 8;
constexpr int ChecksumSize = 4;
constexpr char RecordStart = '\xAA';
constexpr uint16_t DtedVoid = 0xFFFF;
constexpr uint16_t DtedSign = 0x8000;

QByteArray padded(const QByteArray& text, int size)
{
    return text.leftJustified(size, ' ', true);
}

QByteArray digits(int value, int width)
{
    return QByteArray::number(value).rightJustified(width, '0');
}

uint16_t signAndMagnitude(int16_t height)
{
    if (height == TORVTerrainTile::Void) {
        return DtedVoid;
    }
    return height < 0 ? static_cast<uint16_t>(DtedSign | -height) : static_cast<uint16_t>(height);
}

void appendBigEndian(QByteArray& bytes, uint16_t value)
{
    bytes.append(static_cast<char>(value >> 8));
    bytes.append(static_cast<char>(value & 0xFF));
}

} // namespace

QString TORVTerrainTile::fileName() const
{
    const QLatin1Char zero('0');
    if (_format == DTED1) {
        return QStringLiteral("n%1_e%2.dt1").arg(_latitude, 2, 10, zero).arg(_longitude, 3, 10, zero);
    }
    return QStringLiteral("N%1E%2.hgt").arg(_latitude, 2, 10, zero).arg(_longitude, 3, 10, zero);
}

QByteArray TORVTerrainTile::file(const TORVTerrainModel& model) const
{
    const std::vector<int16_t> all = heights(model);
    if (std::all_of(all.begin(), all.end(), [](int16_t height) { return height == 0; })) {
        return {};
    }
    return _format == DTED1 ? dted(all) : srtm(all);
}

std::vector<int16_t> TORVTerrainTile::heights(const TORVTerrainModel& model) const
{
    const int count = points();
    const double step = 1.0 / (count - 1);
    std::vector<int16_t> all(static_cast<std::size_t>(count) * count);
    std::size_t at = 0;
    for (int row = 0; row < count; ++row) {
        const double latitude = _latitude + 1.0 - row * step;
        for (int column = 0; column < count; ++column) {
            const double longitude = _longitude + column * step;
            const float height = model.height(latitude, longitude);
            all[at++] = model.isVoid(latitude, longitude, height) ? Void : static_cast<int16_t>(std::lround(height));
        }
    }
    return all;
}

QByteArray TORVTerrainTile::srtm(const std::vector<int16_t>& heights) const
{
    QByteArray bytes(static_cast<int>(2 * heights.size()), Qt::Uninitialized);
    qToBigEndian<int16_t>(heights.data(), static_cast<qsizetype>(heights.size()), bytes.data());
    return bytes;
}

QByteArray TORVTerrainTile::dted(const std::vector<int16_t>& heights) const
{
    const int count = points();
    QByteArray bytes = dtedHeaders();
    bytes.reserve(bytes.size() + count * (RecordHeadSize + 2 * count + ChecksumSize));
    for (int column = 0; column < count; ++column) {
        const int start = bytes.size();
        bytes.append(RecordStart).append('\0');
        appendBigEndian(bytes, static_cast<uint16_t>(column));
        appendBigEndian(bytes, static_cast<uint16_t>(column));
        appendBigEndian(bytes, 0);
        for (int row = count - 1; row >= 0; --row) {
            appendBigEndian(bytes, signAndMagnitude(heights[static_cast<std::size_t>(row) * count + column]));
        }
        uint32_t checksum = 0;
        for (int i = start; i < bytes.size(); ++i) {
            checksum += static_cast<uint8_t>(bytes[i]);
        }
        appendBigEndian(bytes, static_cast<uint16_t>(checksum >> 16));
        appendBigEndian(bytes, static_cast<uint16_t>(checksum & 0xFFFF));
    }
    return bytes;
}

QByteArray TORVTerrainTile::dtedHeaders() const
{
    const QByteArray count = digits(points(), 4);
    const QByteArray corner = digits(_longitude, 3) + "0000E" + digits(_latitude, 3) + "0000N";
    const QByteArray uhl = "UHL1" + corner + "00300030" + "0020" + "U  " + padded("TORVSIM", 12) + count + count + "0";

    const auto latitude = [](int degrees) { return digits(degrees, 2) + "0000N"; };
    const auto longitude = [](int degrees) { return digits(degrees, 3) + "0000E"; };
    QByteArray dsi = padded("DSIU", 59) + padded("DTED1TORVSIM", 28) + "01A00000000000";
    dsi = padded(dsi, 141) + "MSLWGS84";
    dsi = padded(dsi, 185) + digits(_latitude, 2) + "0000.0N" + digits(_longitude, 3) + "0000.0E";
    dsi += latitude(_latitude) + longitude(_longitude) + latitude(_latitude + 1) + longitude(_longitude) +
           latitude(_latitude + 1) + longitude(_longitude + 1) + latitude(_latitude) + longitude(_longitude + 1);
    dsi += "0000000.0" + QByteArray("00300030") + count + count + "00";
    const QByteArray acc = "ACC0020002000200020";
    return padded(uhl, UhlSize) + padded(dsi, DsiSize) + padded(acc, AccSize);
}
