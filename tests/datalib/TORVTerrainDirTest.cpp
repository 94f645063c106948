#include "datalib/TORVTerrainDir.h"

#include "datalib/TORVTerrainFile.h"
#include "datalib/TORVTerrainSet.h"
#include "support/LogFile.h"
#include "support/SandboxedHome.h"
#include "support/TerrainFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{

class TORVTerrainDirTest : public testing::Test
{
protected:
    void addTile(const QString& name)
    {
        QFile file(files.path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_TRUE(file.resize(2884802));
    }

    static boost::shared_ptr<TORVTerrainSet> setRound(TORVTerrainDir& directory,
                                                      const TORVGeoProjection::CPtr& projection, double south,
                                                      double west, double north, double east)
    {
        return directory.getTerrainSet(projection, TORVCoordinate(south, west), TORVCoordinate(north, east));
    }

    static QStringList names(const TORVTerrainSet& set)
    {
        QStringList names;
        for (const TORVTerrainSet::BlockPtr& block : set.getBlocks()) {
            names << block->getBlockName();
        }
        return names;
    }

    static TORVGeoProjection::CPtr projection(const char* type, double lat, double lon, double radius = 6371000.0,
                                              double invFlattening = 298.257)
    {
        return boost::make_shared<const TORVGeoProjection>(QLatin1String(type), TORVCoordinate(lat, lon), radius,
                                                           invFlattening);
    }

    TerrainFiles files;
    TORVTerrainDir directory{files.sourcePath(), files.cachePath()};
    TORVGeoProjection::CPtr radar = TerrainFiles::projection(46.0408, 8.8332);
};

} // namespace

TEST_F(TORVTerrainDirTest, WritesPlacesAsHemispheresAndDegrees)
{
    EXPECT_EQ(getLocString({46.0, 8.0}), QLatin1String("N46E8"));
    EXPECT_EQ(getLocString({-29.0, -72.0}), QLatin1String("S29W72"));
    EXPECT_EQ(getLocString({46.04081234, 8.83321234}), QLatin1String("N46.0408E8.83321"));
    EXPECT_EQ(getLocString({0.0, 0.0}), QLatin1String("N0E0"));
    EXPECT_EQ(getLocString({-0.5, -120.25}), QLatin1String("S0.5W120.25"));
}

TEST_F(TORVTerrainDirTest, KeysAFileByItsCorner)
{
    EXPECT_EQ(directory.getFileKey({-10.0, -20.0}), QLatin1String("S10W20"));
}

TEST_F(TORVTerrainDirTest, MakesItsCacheDirectoryAndSaysSo)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const QString path = files.cachePath() + QLatin1String("/deep/down");
    TORVTerrainDir other(files.sourcePath(), path);
    EXPECT_TRUE(QDir(path).exists());
    EXPECT_TRUE(log.lines().contains(QLatin1String("D: srcPath=") + files.sourcePath()));
    EXPECT_TRUE(log.lines().contains(QLatin1String("D: dstPath=") + path));
    EXPECT_TRUE(log.lines().contains(QLatin1String("N: Creating cache directory for converted terrain files.")));
}

TEST_F(TORVTerrainDirTest, PutsATildeInTheHomeDirectory)
{
    const SandboxedHome home;
    const TORVTerrainDir other(files.sourcePath(), QStringLiteral("~/.torv3d/cache/terrain"));
    EXPECT_EQ(other.getCachePath(), home.filePath(QStringLiteral(".torv3d/cache/terrain")));
    EXPECT_TRUE(QDir(home.filePath(QStringLiteral(".torv3d/cache/terrain"))).exists());
}

TEST_F(TORVTerrainDirTest, FindsTheFilesOfItsDirectory)
{
    addTile(QStringLiteral("N46E008.hgt"));
    addTile(QStringLiteral("S10W020.HGT"));
    addTile(QStringLiteral("readme.txt"));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    directory.scanFiles();
    EXPECT_EQ(directory.getFileCount(), 2);
    ASSERT_TRUE(directory.getFile({46.0, 8.0}));
    EXPECT_EQ(directory.getFile({46.0, 8.0})->getBlockName(), QLatin1String("SRTM3_N46E8"));
    EXPECT_TRUE(directory.getFile({-10.0, -20.0}));
    EXPECT_FALSE(directory.getFile({46.0, 9.0}));
    EXPECT_TRUE(log.lines().contains(QLatin1String("D: Scanning 2 terrain files..")));
    const QRegularExpression end(QStringLiteral("^D: 2 files scanned in [0-9.e+-]+s \\([0-9.e+-]+ s/file\\)$"));
    EXPECT_TRUE(end.match(log.lines().constLast()).hasMatch()) << qUtf8Printable(log.lines().constLast());
}

TEST_F(TORVTerrainDirTest, SkipsWhatIsNoTerrainWithAnError)
{
    addTile(QStringLiteral("N46E008.hgt"));
    files.writeBytes(QStringLiteral("broken.hgt"), "too short");
    files.writeBytes(QStringLiteral("broken.dt1"), "too short");
    const LogFile log(TORVLog::LEVEL_ERROR);
    directory.scanFiles();
    EXPECT_EQ(directory.getFileCount(), 1);
    EXPECT_EQ(log.lines(),
              QStringList({QLatin1String("E: Skipped terrain file: ") + files.path(QStringLiteral("broken.dt1")),
                           QLatin1String("E: Skipped terrain file: ") + files.path(QStringLiteral("broken.hgt"))}));
}

TEST_F(TORVTerrainDirTest, TakesTheLaterOfTwoFilesForOneSquare)
{
    addTile(QStringLiteral("N46E008.hgt"));
    addTile(QStringLiteral("n46e8.hgt"));
    directory.scanFiles();
    EXPECT_EQ(directory.getFileCount(), 1);
    EXPECT_EQ(QFileInfo(directory.getFile({46.0, 8.0})->getPath()).fileName(), QLatin1String("n46e8.hgt"));
}

TEST_F(TORVTerrainDirTest, ForgetsFilesThatHaveGone)
{
    addTile(QStringLiteral("N46E008.hgt"));
    directory.scanFiles();
    ASSERT_TRUE(QFile::remove(files.path(QStringLiteral("N46E008.hgt"))));
    directory.scanFiles();
    EXPECT_EQ(directory.getFileCount(), 0);
}

TEST_F(TORVTerrainDirTest, HasNothingWhereThereIsNoDirectory)
{
    for (const QString& path : {files.path(QStringLiteral("missing")), QString()}) {
        TORVTerrainDir other(path, files.cachePath());
        const LogFile log(TORVLog::LEVEL_DEBUG);
        other.scanFiles();
        EXPECT_EQ(other.getFileCount(), 0);
        EXPECT_TRUE(log.lines().contains(QLatin1String("N: Path does not exist: ") + path));
        EXPECT_EQ(names(*setRound(other, radar, 46.0, 8.0, 47.0, 10.0)),
                  QStringList({QStringLiteral("EMPTY_N46E8"), QStringLiteral("EMPTY_N46E9")}));
    }
}

TEST_F(TORVTerrainDirTest, CoversTheAreaRowByRow)
{
    addTile(QStringLiteral("N46E009.hgt"));
    directory.scanFiles();
    const boost::shared_ptr<TORVTerrainSet> set = setRound(directory, radar, 45.6, 7.7, 48.4, 9.6);
    EXPECT_EQ(set->getLowerLeft().getLat(), 46.0);
    EXPECT_EQ(set->getLowerLeft().getLon(), 8.0);
    EXPECT_EQ(set->getUpperRight().getLat(), 48.0);
    EXPECT_EQ(set->getUpperRight().getLon(), 10.0);
    EXPECT_EQ(names(*set), QStringList({QStringLiteral("EMPTY_N46E8"), QStringLiteral("SRTM3_N46E9"),
                                        QStringLiteral("EMPTY_N47E8"), QStringLiteral("EMPTY_N47E9")}));
    EXPECT_EQ(set->getCacheFiles().size(), 4);
}

TEST_F(TORVTerrainDirTest, GivesTheSameSetForTheSameArea)
{
    const boost::shared_ptr<TORVTerrainSet> set = setRound(directory, radar, 46.0, 8.0, 47.0, 9.0);
    EXPECT_EQ(setRound(directory, TerrainFiles::projection(46.0408, 8.8332), 46.2, 8.3, 46.8, 8.9), set);
}

TEST_F(TORVTerrainDirTest, GivesAnotherSetForAnotherAreaOrProjection)
{
    const boost::shared_ptr<TORVTerrainSet> first =
        setRound(directory, projection("aeqd", 46.5, 8.5), 46.0, 8.0, 47.0, 9.0);
    const TORVGeoProjection::CPtr others[] = {projection("aeqd", 46.5, 8.6), projection("aeqd", 46.4, 8.5),
                                              projection("merc", 46.5, 8.5), projection("aeqd", 46.5, 8.5, 6378137.0),
                                              projection("aeqd", 46.5, 8.5, 6371000.0, 300.0)};
    for (const TORVGeoProjection::CPtr& other : others) {
        const boost::shared_ptr<TORVTerrainSet> set = setRound(directory, other, 46.0, 8.0, 47.0, 9.0);
        EXPECT_NE(set, first);
        EXPECT_NE(set->getCacheFiles(), first->getCacheFiles());
    }
    const boost::shared_ptr<TORVTerrainSet> again =
        setRound(directory, projection("aeqd", 46.5, 8.5), 46.0, 8.0, 47.0, 9.0);
    EXPECT_NE(setRound(directory, projection("aeqd", 46.5, 8.5), 46.0, 8.0, 47.0, 10.0), again);
}

TEST_F(TORVTerrainDirTest, ForgetsItsSetWhenItScans)
{
    const boost::shared_ptr<TORVTerrainSet> set = setRound(directory, radar, 46.0, 8.0, 47.0, 9.0);
    addTile(QStringLiteral("N46E008.hgt"));
    directory.scanFiles();
    EXPECT_EQ(names(*setRound(directory, radar, 46.0, 8.0, 47.0, 9.0)), QStringList(QStringLiteral("SRTM3_N46E8")));
}

TEST_F(TORVTerrainDirTest, GivesEachSetBlocksOfItsOwn)
{
    addTile(QStringLiteral("N46E008.hgt"));
    directory.scanFiles();
    const boost::shared_ptr<TORVTerrainSet> one = setRound(directory, radar, 46.0, 8.0, 47.0, 9.0);
    const boost::shared_ptr<TORVTerrainSet> two =
        setRound(directory, TerrainFiles::projection(46.5, 8.5), 46.0, 8.0, 47.0, 9.0);
    EXPECT_NE(one->getBlocks().first(), two->getBlocks().first());
    EXPECT_EQ(one->getBlocks().first()->getPath(), two->getBlocks().first()->getPath());
}

TEST_F(TORVTerrainDirTest, LeavesItsSetsAliveWhenItGoes)
{
    boost::shared_ptr<TORVTerrainSet> set;
    {
        TORVTerrainDir other(files.sourcePath(), files.cachePath());
        set = setRound(other, radar, 46.0, 8.0, 47.0, 9.0);
    }
    set->loadFiles(std::atomic<bool>(false));
    EXPECT_TRUE(set->isLoaded());
}

TEST_F(TORVTerrainDirTest, NamesACachePairAfterSourceProjectionAndPlace)
{
    const QString key = directory.getCacheKey(radar, {46.0, 8.0}, QStringLiteral("SRTM3"));
    EXPECT_TRUE(key.startsWith(QLatin1String("TC04_SRTM3_aeqd_N46.0408E8.8332_N46E8_"))) << qUtf8Printable(key);
    const boost::shared_ptr<TORVTerrainFile> block =
        boost::make_shared<TORVTerrainFile>(TORVCoordinate(46.0, 8.0), files.cachePath());
    EXPECT_EQ(
        directory.getCachedFilename(radar, block),
        files.cacheFile(directory.getCacheKey(radar, {46.0, 8.0}, QStringLiteral("EMPTY")) + QLatin1String(".vtk")));
}

TEST_F(TORVTerrainDirTest, TellsRadarsApartThatStandAMetreApart)
{
    // 1e-5 degrees; six digits of a longitude of 151 degrees are 100 m.
    const TORVCoordinate block(-34.0, 151.0);
    EXPECT_NE(directory.getCacheKey(projection("aeqd", -33.7, 151.21), block, QStringLiteral("SRTM3")),
              directory.getCacheKey(projection("aeqd", -33.7, 151.21001), block, QStringLiteral("SRTM3")));
}

TEST_F(TORVTerrainDirTest, TellsEarthsApart)
{
    const TORVCoordinate block(46.0, 8.0);
    const QString type = QStringLiteral("SRTM3");
    const QString key = directory.getCacheKey(projection("aeqd", 46.5, 8.5), block, type);
    EXPECT_NE(directory.getCacheKey(projection("aeqd", 46.5, 8.5, 6378137.0), block, type), key);
    EXPECT_NE(directory.getCacheKey(projection("aeqd", 46.5, 8.5, 6371000.0, 300.0), block, type), key);
    EXPECT_NE(directory.getCacheKey(projection("merc", 46.5, 8.5), block, type), key);
    EXPECT_EQ(directory.getCacheKey(projection("aeqd", 46.5, 8.5), block, type), key);
}

TEST_F(TORVTerrainDirTest, GoesOnBehindTheDateLine)
{
    addTile(QStringLiteral("N10E179.hgt"));
    addTile(QStringLiteral("N10W180.hgt"));
    addTile(QStringLiteral("N10W179.hgt"));
    directory.scanFiles();
    // 178 to 183 degrees; the upper corner reads as -177.
    const boost::shared_ptr<TORVTerrainSet> set =
        setRound(directory, TerrainFiles::projection(10.5, 180.0), 10.0, 178.0, 11.0, 183.0);
    EXPECT_EQ(names(*set), QStringList({QStringLiteral("EMPTY_N10E178"), QStringLiteral("SRTM3_N10E179"),
                                        QStringLiteral("SRTM3_N10W180"), QStringLiteral("SRTM3_N10W179"),
                                        QStringLiteral("EMPTY_N10W178")}));
}

TEST_F(TORVTerrainDirTest, FindsATileThatIsNamedForTheDateLineItself)
{
    addTile(QStringLiteral("N10E180.hgt"));
    directory.scanFiles();
    EXPECT_TRUE(directory.getFile({10.0, -180.0}));
}

TEST_F(TORVTerrainDirTest, LeavesOutTheFarSideOfAPole)
{
    // A radar at 86 degrees and an area of 4 degrees round it, which touches the pole and so goes round the globe.
    const boost::shared_ptr<TORVTerrainSet> set =
        setRound(directory, projection("aeqd", 86.0, 20.0), 82.0, -180.0, 90.0, 180.0);
    const QStringList all = names(*set);
    EXPECT_LT(all.size(), 8 * 360 * 6 / 10);
    EXPECT_TRUE(all.contains(QLatin1String("EMPTY_N89W160"))); // over the pole, 4.5 degrees away
    EXPECT_TRUE(all.contains(QLatin1String("EMPTY_N82E20")));
    EXPECT_FALSE(all.contains(QLatin1String("EMPTY_N82W160"))); // over the pole, 11 degrees away
    EXPECT_FALSE(all.contains(QLatin1String("EMPTY_N84E120")));
}

TEST_F(TORVTerrainDirTest, LeavesNothingOutOfAnOrdinaryArea)
{
    EXPECT_EQ(setRound(directory, radar, 42.0, 2.0, 50.0, 16.0)->getBlocks().size(), 8 * 14);
}

TEST_F(TORVTerrainDirTest, CoversNoMoreThanARadarCanSee)
{
    // What a header of nonsense would ask for: the whole globe, of 64800 squares.
    const boost::shared_ptr<TORVTerrainSet> set =
        setRound(directory, projection("aeqd", 0.5, 0.5), -90.0, -180.0, 90.0, 180.0);
    EXPECT_LT(set->getBlocks().size(), 2000);
    EXPECT_GT(set->getBlocks().size(), 1000);
}

TEST_F(TORVTerrainDirTest, AsksMercatorForNoPole)
{
    const boost::shared_ptr<TORVTerrainSet> set =
        setRound(directory, projection("merc", 86.0, 20.0), 82.0, -180.0, 90.0, 180.0);
    const QVector<TORVTerrainSet::BlockPtr>& blocks = set->getBlocks();
    EXPECT_FALSE(blocks.isEmpty());
    EXPECT_TRUE(std::none_of(blocks.begin(), blocks.end(), [](const TORVTerrainSet::BlockPtr& block) {
        return block->getCorner().getLat() >= 89.0;
    }));
}

TEST_F(TORVTerrainDirTest, ClearsItsCache)
{
    directory.createCache();
    TerrainFiles::overwrite(files.cacheFile(QStringLiteral("TC04_a.vtk")), "a");
    TerrainFiles::overwrite(files.cacheFile(QStringLiteral("TC04_a.vtk.png")), "a");
    TerrainFiles::overwrite(files.cacheFile(QStringLiteral("TC04_a.vtk.123-1.tmp")), "a");
    const LogFile log(TORVLog::LEVEL_DEBUG);
    directory.clearCache();
    EXPECT_TRUE(files.cacheNames().isEmpty());
    EXPECT_TRUE(QDir(files.cachePath()).exists());
    EXPECT_TRUE(log.lines().contains(QLatin1String("N: Clearing cache directory.")));
}

TEST_F(TORVTerrainDirTest, ClearsNothingWhereThereIsNoCache)
{
    ASSERT_TRUE(QDir(files.cachePath()).removeRecursively());
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const int before = log.lines().size();
    directory.clearCache();
    EXPECT_EQ(log.lines().size(), before);
}

TEST_F(TORVTerrainDirTest, NeverTakesAnEmptyPathForTheWorkingDirectory)
{
    const QString working = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(files.sourcePath()));
    addTile(QStringLiteral("N46E008.hgt"));
    TORVTerrainDir other{QString(), QString()};
    other.scanFiles();
    other.clearCache();
    EXPECT_EQ(other.getFileCount(), 0);
    EXPECT_TRUE(QFile::exists(files.path(QStringLiteral("N46E008.hgt"))));
    QDir::setCurrent(working);
}

TEST_F(TORVTerrainDirTest, ListsItsFilesForDebugging)
{
    addTile(QStringLiteral("N46E008.hgt"));
    directory.scanFiles();
    const LogFile log(TORVLog::LEVEL_DEBUG);
    directory.printDebug();
    EXPECT_TRUE(log.lines().contains(QLatin1String("D: N46E8: ") + files.path(QStringLiteral("N46E008.hgt"))));
}
