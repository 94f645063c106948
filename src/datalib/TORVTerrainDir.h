#pragma once

#include "utils/TORVCoordinate.h"
#include "utils/TORVGeoProjection.h"

#include <QMap>
#include <QString>

#include <boost/shared_ptr.hpp>

class TORVTerrainFile;
class TORVTerrainSet;

/// "N46.0408E8.8332": hemisphere and degrees with six digits, latitude first.
QString getLocString(const TORVCoordinate& location);

/**
 * The elevation files of one directory, and where the converted pair of each block lies in the cache directory.
 *
 * Ownership: sets and blocks that were handed out live on without the directory.
 *
 * Thread: main thread only.
 */
class TORVTerrainDir
{
public:
    using Ptr = boost::shared_ptr<TORVTerrainDir>;
    using CPtr = boost::shared_ptr<const TORVTerrainDir>;

    /// See `setPath`. The source directory is not read before `scanFiles`.
    TORVTerrainDir(const QString& srcPath, QString dstPath);
    virtual ~TORVTerrainDir();
    TORVTerrainDir(const TORVTerrainDir&) = delete;
    TORVTerrainDir& operator=(const TORVTerrainDir&) = delete;

    const QString& getSourcePath() const { return _srcPath; }
    const QString& getCachePath() const { return _dstPath; }

    /// Makes the cache directory if need be. A "~" that begins the cache path is the user's home.
    void setPath(const QString& srcPath, QString dstPath);

    /// Looks at every elevation file of the source directory. A directory that is missing holds none: all ground is
    /// flat.
    void scanFiles();

    /// Forgets the files and the last set.
    void resetFiles();

    int getFileCount() const { return _files.size(); }

    /// Null where no file covers the square degree whose south-west corner is given.
    boost::shared_ptr<const TORVTerrainFile> getFile(const TORVCoordinate& corner) const;

    /**
     * The blocks round a radar, not loaded yet; asked again for the same area and projection, the same object.
     * Squares that the radar can't see are left out: those beyond the area's radius and a degree where the area goes
     * round a pole, and what no radar's area reaches.
     * @param lowerLeft, upperRight  are brought to whole degrees; an upper longitude below the lower one lies beyond
     *                               the date line
     */
    boost::shared_ptr<TORVTerrainSet> getTerrainSet(const TORVGeoProjection::CPtr& projection,
                                                    const TORVCoordinate& lowerLeft, const TORVCoordinate& upperRight);

    /// One text for one kind of source, one square and one projection, its centre and its Earth to the last digit that
    /// the projection looks at.
    QString getCacheKey(const TORVGeoProjection::CPtr& projection, const TORVCoordinate& block,
                        const QString& typeText) const;

    /// Of the mesh, absolute.
    QString getCachedFilename(const TORVGeoProjection::CPtr& projection,
                              const boost::shared_ptr<const TORVTerrainFile>& block) const;

    QString getFileKey(const TORVCoordinate& corner) const;

    void createCache() const;

    /// Removes every file of the cache directory. Sets that are loaded keep what they have.
    void clearCache() const;

    void printDebug() const;

private:
    void addFile(const QString& path);
    bool isLastSet(const TORVGeoProjection& projection, const TORVCoordinate& lowerLeft,
                   const TORVCoordinate& upperRight) const;
    boost::shared_ptr<TORVTerrainFile> blockAt(const TORVCoordinate& corner) const;

    QString _srcPath;
    QString _dstPath;
    QMap<QString, boost::shared_ptr<TORVTerrainFile>> _files; // by location text of the corner
    boost::shared_ptr<TORVTerrainSet> _terrainSet;            // the last that was made
};
