#include "datalib/TORV2DTop.h"

TORV2DTop::TORV2DTop(const QString& path) : TORVDirTop(path)
{
    construct();
}

bool TORV2DTop::filter(const TORVFile::CPtr& file) const
{
    return file->getDimensions() == 2 && !file->getProduct().isEmpty();
}

TORVFileLeaf::Ptr TORV2DTop::findBestMatching2DFile(const TORVFileLeaf::CPtr& file3d, const QString& product,
                                                    int timeWindow) const
{
    return findClosestTo(*file3d, product, QStringLiteral("*"), timeWindow);
}
