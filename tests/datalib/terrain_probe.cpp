// A viewer as far as its ground goes, for tests that need it in a process of its own:
//     test_terrain_probe SOURCE CACHE LATITUDE LONGITUDE ROWS COLUMNS
// loads the blocks from that corner on and says how many are loaded, and how high the highest is.
#include "datalib/TORVTerrainDir.h"
#include "datalib/TORVTerrainFile.h"
#include "datalib/TORVTerrainSet.h"
#include "utils/TORVLog.h"

#include <QCoreApplication>
#include <QTextStream>

#include <boost/make_shared.hpp>

#include <vtkPolyData.h>

#include <algorithm>

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 7) {
        return 2;
    }
    TORVLog::Instance()->setLevel(TORVLog::LEVEL_WARNING);
    TORVLog::Instance()->logInit(QStringLiteral("test_terrain_probe"), QString());
    const double lat = arguments[3].toDouble();
    const double lon = arguments[4].toDouble();
    TORVTerrainDir directory(arguments[1], arguments[2]);
    directory.scanFiles();
    const boost::shared_ptr<TORVTerrainSet> set = directory.getTerrainSet(
        boost::make_shared<const TORVGeoProjection>(QStringLiteral("aeqd"), TORVCoordinate(lat, lon), 6378137.0,
                                                    298.257),
        TORVCoordinate(lat, lon), TORVCoordinate(lat + arguments[5].toDouble(), lon + arguments[6].toDouble()));
    set->loadFiles(std::atomic<bool>(false));
    int loaded = 0;
    double highest = 0.0;
    for (const TORVTerrainSet::BlockPtr& block : set->getBlocks()) {
        if (block->isLoaded()) {
            ++loaded;
            highest = std::max(highest, block->getPolyData()->GetBounds()[5]);
        }
    }
    QTextStream(stdout) << loaded << " of " << set->getBlocks().size() << " loaded, up to " << highest << " m\n";
    return set->isLoaded() ? 0 : 1;
}
