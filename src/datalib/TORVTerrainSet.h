#pragma once

#include "utils/TORVCoordinate.h"
#include "utils/TORVGeoProjection.h"

#include <QStringList>
#include <QVector>

#include <boost/shared_ptr.hpp>

#include <vtkSmartPointer.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>

class TORVTerrainFile;
class vtkAssembly;

/**
 * The blocks of ground round one radar, in metres of its projection with the radar at the origin.
 *
 * A set is made without its ground; `loadFiles` reads each block's cached pair, or makes the pair first where there is
 * none, which may take minutes for a radar that was never shown. A cached pair that can't be read is made again, once,
 * with a warning; a block that can't be had at all leaves a hole.
 *
 * Ownership: the blocks belong to this set alone. Their meshes and pictures may be shared by any number of windows,
 * their actors and the assembly by none: an actor keeps the state of one window.
 *
 * Thread: `addBlock` before the set is shared; then everything from any thread. Any number of threads may ask to load
 * at once: one loads, the others wait, each watching its own flag. What the blocks hold is written by the loader and
 * stands still once `isLoaded` answers true.
 */
class TORVTerrainSet
{
public:
    using Ptr = boost::shared_ptr<TORVTerrainSet>;
    using CPtr = boost::shared_ptr<const TORVTerrainSet>;
    using BlockPtr = boost::shared_ptr<TORVTerrainFile>;

    /// The corners are on whole degrees; an upper longitude below the lower one lies beyond the date line.
    TORVTerrainSet(TORVGeoProjection::CPtr projection, const TORVCoordinate& lowerLeft,
                   const TORVCoordinate& upperRight);
    virtual ~TORVTerrainSet();
    TORVTerrainSet(const TORVTerrainSet&) = delete;
    TORVTerrainSet& operator=(const TORVTerrainSet&) = delete;

    const TORVGeoProjection::CPtr& getProjection() const { return _projection; }
    const TORVCoordinate& getLowerLeft() const { return _lowerLeft; }
    const TORVCoordinate& getUpperRight() const { return _upperRight; }
    const QVector<BlockPtr>& getBlocks() const { return _blocks; }
    const QStringList& getCacheFiles() const { return _cacheFiles; } ///< the mesh of each block, absolute

    /// Whether the ground is there. A load that was aborted leaves it false, and the set may be loaded again.
    bool isLoaded() const { return _isLoaded; }

    /// The actors of all blocks, for a single window; null until the set is loaded.
    vtkSmartPointer<vtkAssembly> getAssembly() const;

    /// Metres above sea level of the mesh that is drawn; 0 outside the area, and everywhere until the set is loaded.
    double getElevationAtLocation(const TORVCoordinate& location) const;

    void addBlock(const BlockPtr& block, const QString& cacheFile);

    /// Of the load that is going on or was the last: how many blocks have to be converted first, and how many of them
    /// were begun. Any thread; the two need not be of the same moment.
    int getConversionCount() const { return _conversionCount; }
    int getConvertedCount() const { return _convertedCount; }

    /// Returns when the set is loaded, here or by another thread, or within a fraction of a second once `abort` is set.
    /// Which ground the set stands for doesn't change by this, so those who only look at the set may ask for it.
    void loadFiles(const std::atomic<bool>& abort) const;

private:
    bool takeTurn(const std::atomic<bool>& abort) const;
    int countMissing(const std::atomic<bool>& abort) const;
    vtkSmartPointer<vtkAssembly> load(const std::atomic<bool>& abort) const;
    std::optional<int> loadBlocks(vtkAssembly& assembly, int toConvert, const std::atomic<bool>& abort) const;

    const TORVGeoProjection::CPtr _projection;
    const TORVCoordinate _lowerLeft;
    const TORVCoordinate _upperRight;
    QVector<BlockPtr> _blocks;
    QStringList _cacheFiles; // parallel to _blocks

    mutable std::mutex _mutex;
    mutable std::condition_variable _turn;
    mutable bool _isLoading = false;                // guarded by _mutex
    mutable vtkSmartPointer<vtkAssembly> _assembly; // guarded by _mutex
    mutable std::atomic<int> _conversionCount{0};
    mutable std::atomic<int> _convertedCount{0};
    mutable std::atomic<bool> _isLoaded{false}; // set last
};
