#include "datalib/TORV3DTop.h"

#include "datalib/TORVWildcard.h"

TORV3DTop::TORV3DTop(const QString& path) : TORVDirTop(path)
{
    construct();
}

bool TORV3DTop::filter(const TORVFile::CPtr& file) const
{
    return file->getDimensions() == 3 && file->getProduct() == QLatin1String("CAPPI");
}

TORVFileLeaf::Ptr TORV3DTop::findBestMatching3DFile(const TORVFileLeaf::CPtr& file, const QString& configuration,
                                                    int timeWindow) const
{
    return findClosestTo(*file, TORVWildcard::patternFor(file->getProduct()), configuration, timeWindow);
}

TORVFileLeaf::Ptr TORV3DTop::find3DFileMatching2DFile(const TORVFileLeaf::CPtr& file2d, const QString& configuration,
                                                      int timeWindow) const
{
    return findClosestTo(*file2d, QStringLiteral("CAPPI"), configuration, timeWindow);
}
