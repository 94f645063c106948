#pragma once

#include "datalib/TORVDirTop.h"

/**
 * The directory of flat products: every known product of one level.
 *
 * Thread: as `TORVDirTop`.
 */
class TORV2DTop final : public TORVDirTop
{
public:
    using Ptr = boost::shared_ptr<TORV2DTop>;
    using CPtr = boost::shared_ptr<const TORV2DTop>;

    /// Reads the directory.
    explicit TORV2DTop(const QString& path);
    bool filter(const TORVFile::CPtr& file) const override;

    /// The flat file of the volume's site and of that product (a pattern) that is closest in time within the window;
    /// null if there is none.
    TORVFileLeaf::Ptr findBestMatching2DFile(const TORVFileLeaf::CPtr& file3d, const QString& product,
                                             int timeWindow) const;
};
