#pragma once

#include "datalib/TORVTerrainFile.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <boost/make_shared.hpp>

#include <atomic>

/// What the harnesses of the elevation formats have in common.
class TerrainFuzz final
{
public:
    TerrainFuzz() = delete;

    /// A name that the file system takes, whatever the input says.
    static QString fileName(QByteArray name, const char* ending)
    {
        for (char& letter : name) {
            letter = letter == '/' || letter == '\0' ? '_' : letter;
        }
        return QFile::decodeName("x" + name.left(100)).mid(1) + QLatin1String(ending);
    }

    /// Takes the file as the viewer does: headers, then the whole way to a mesh.
    static void convert(const QString& name, const QByteArray& content, int fullSize)
    {
        static const QTemporaryDir directory;
        static const auto projection = boost::make_shared<const TORVGeoProjection>(
            QStringLiteral("aeqd"), TORVCoordinate(46.0, 8.0), 6378137.0, 298.257);
        const QString path = directory.filePath(name);
        {
            QFile file(path);
            if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
                return; // a name that is a directory's, or too long
            }
            file.write(content);
            file.resize(fullSize);
        }
        TORVTerrainFile file(path, directory.filePath(QStringLiteral("cache")));
        if (file.loadFileInfo()) {
            file.getBlockName();
            file.convertData(projection, directory.filePath(QStringLiteral("cache/block.vtk")),
                             std::atomic<bool>(false));
            file.getElevationAtLocation({file.getCorner().getLat() + 0.5, file.getCorner().getLon() + 0.5});
        }
        QFile::remove(path);
    }
};
