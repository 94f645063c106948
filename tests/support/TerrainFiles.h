#pragma once

#include "utils/TORVGeoProjection.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <functional>

/**
 * Elevation files for tests, good ones and broken ones, and a cache directory that is not there yet, all in a temporary
 * directory that goes with the object.
 *
 * Thread: any thread, one at a time.
 */
class TerrainFiles final
{
public:
    static constexpr int Void = -32768;
    static constexpr int Srtm3Points = 1201;
    static constexpr int Srtm1Points = 3601;

    /// Metres at a column counted from the west and a row counted from the north.
    using Field = std::function<int(int column, int row)>;

    TerrainFiles();
    QString sourcePath() const { return _directory.filePath(QStringLiteral("source")); }
    QString path(const QString& name) const { return sourcePath() + QLatin1Char('/') + name; }
    QString cachePath() const { return _directory.filePath(QStringLiteral("cache")); }
    QString cacheFile(const QString& name) const { return cachePath() + QLatin1Char('/') + name; }

    /// Names in the cache directory, sorted.
    QStringList cacheNames(const QString& filter = QStringLiteral("*")) const;

    static Field flat(int height);

    /// Rows from the north, big-endian.
    static QByteArray srtm(const Field& field, int points = Srtm3Points);

    /// Level 1 as published, 2902642 bytes. `place` is the origin as in the first header: "0080000E0460000N".
    static QByteArray dted(const QByteArray& place, const Field& field);

    /// Each writes a source file of that name and answers its path.
    QString writeSrtm(const QString& name, const Field& field, int points = Srtm3Points) const;
    QString writeDted(const QString& name, const QByteArray& place, const Field& field) const;
    QString writeBytes(const QString& name, const QByteArray& bytes) const;

    static QByteArray read(const QString& path);
    static void overwrite(const QString& path, const QByteArray& bytes);

    /// Azimuthal equidistant on the ellipsoid of 6378137 m and 1/298.257.
    static TORVGeoProjection::CPtr projection(double lat, double lon);

private:
    QTemporaryDir _directory;
};
