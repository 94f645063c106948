#pragma once

#include "datalib/TORVDirTop.h"

/**
 * The directory of volumes: CAPPI products of more than one level.
 *
 * Thread: as `TORVDirTop`.
 */
class TORV3DTop final : public TORVDirTop
{
public:
    using Ptr = boost::shared_ptr<TORV3DTop>;
    using CPtr = boost::shared_ptr<const TORV3DTop>;

    /// Reads the directory.
    explicit TORV3DTop(const QString& path);
    bool filter(const TORVFile::CPtr& file) const override;

    /// The volume of the file's site and product, and of that configuration (a pattern), that is closest in time within
    /// the window; null if there is none.
    TORVFileLeaf::Ptr findBestMatching3DFile(const TORVFileLeaf::CPtr& file, const QString& configuration,
                                             int timeWindow) const;

    /// The same for a flat file, whose product says nothing about volumes.
    TORVFileLeaf::Ptr find3DFileMatching2DFile(const TORVFileLeaf::CPtr& file2d, const QString& configuration,
                                               int timeWindow) const;
};
