#include "support/TerrainFiles.h"

#include <QDir>
#include <QFile>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

namespace
{

void append(QByteArray& bytes, int word)
{
    bytes.append(static_cast<char>(static_cast<unsigned int>(word) >> 8U & 0xFFU));
    bytes.append(static_cast<char>(static_cast<unsigned int>(word) & 0xFFU));
}

// Sign and magnitude; a void is all ones.
int dtedWord(int height)
{
    if (height == TerrainFiles::Void) {
        return 0xFFFF;
    }
    return height < 0 ? 0x8000 | -height : height;
}

} // namespace

TerrainFiles::TerrainFiles()
{
    EXPECT_TRUE(_directory.isValid());
    EXPECT_TRUE(QDir().mkpath(sourcePath()));
}

QStringList TerrainFiles::cacheNames(const QString& filter) const
{
    return QDir(cachePath()).entryList({filter}, QDir::Files, QDir::Name);
}

TerrainFiles::Field TerrainFiles::flat(int height)
{
    return [height](int, int) { return height; };
}

QByteArray TerrainFiles::srtm(const Field& field, int points)
{
    QByteArray bytes;
    bytes.reserve(2 * points * points);
    for (int row = 0; row < points; ++row) {
        for (int column = 0; column < points; ++column) {
            append(bytes, field(column, row));
        }
    }
    return bytes;
}

QByteArray TerrainFiles::dted(const QByteArray& place, const Field& field)
{
    QByteArray bytes = ("UHL1" + place + "00300030" + "0020U  TEST        12011201").leftJustified(80, ' ');
    bytes += QByteArray("DSIU").leftJustified(648, ' ') + QByteArray("ACC").leftJustified(2700, ' ');
    bytes.reserve(2902643);
    for (int column = 0; column < Srtm3Points; ++column) {
        append(bytes, 0xAA00);
        append(bytes, column);
        append(bytes, column);
        append(bytes, 0);
        for (int row = Srtm3Points - 1; row >= 0; --row) {
            append(bytes, dtedWord(field(column, row)));
        }
        append(bytes, 0);
        append(bytes, 0);
    }
    return bytes;
}

QString TerrainFiles::writeSrtm(const QString& name, const Field& field, int points) const
{
    return writeBytes(name, srtm(field, points));
}

QString TerrainFiles::writeDted(const QString& name, const QByteArray& place, const Field& field) const
{
    return writeBytes(name, dted(place, field));
}

QString TerrainFiles::writeBytes(const QString& name, const QByteArray& bytes) const
{
    overwrite(path(name), bytes);
    return path(name);
}

QByteArray TerrainFiles::read(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qUtf8Printable(path);
    return file.readAll();
}

void TerrainFiles::overwrite(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << qUtf8Printable(path);
    EXPECT_EQ(file.write(bytes), bytes.size());
}

TORVGeoProjection::CPtr TerrainFiles::projection(double lat, double lon)
{
    return boost::make_shared<const TORVGeoProjection>(QStringLiteral("aeqd"), TORVCoordinate(lat, lon), 6378137.0,
                                                       298.257);
}
