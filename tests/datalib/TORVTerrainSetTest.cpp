#include "datalib/TORVTerrainSet.h"

#include "datalib/TORVTerrainDir.h"
#include "datalib/TORVTerrainFile.h"
#include "support/LogFile.h"
#include "support/TerrainFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>

#include <gtest/gtest.h>

#include <vtkAssembly.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkProp3DCollection.h>

#include <filesystem>
#include <functional>
#include <thread>
#include <vector>

namespace
{

// What the history shows, as it comes, on whatever thread.
class History final
{
public:
    explicit History(std::function<void(const QString&)> onLine = {})
        : _connection(QObject::connect(
              TORVLog::Instance(), QOverload<const QString&>::of(&TORVLog::historyAdd), TORVLog::Instance(),
              [this, onLine = std::move(onLine)](const QString& line) {
                  {
                      const QMutexLocker lock(&_mutex);
                      _lines << line;
                  }
                  if (onLine) {
                      onLine(line);
                  }
              },
              Qt::DirectConnection))
    {
    }

    ~History() { QObject::disconnect(_connection); }

    History(const History&) = delete;
    History& operator=(const History&) = delete;

    QStringList lines() const
    {
        const QMutexLocker lock(&_mutex);
        return _lines;
    }

private:
    mutable QMutex _mutex;
    QStringList _lines;
    QMetaObject::Connection _connection;
};

class TORVTerrainSetTest : public testing::Test
{
protected:
    // A tile of one height for each of `count` squares from N46 E8 eastwards.
    void addTiles(int count, const TerrainFiles::Field& field = TerrainFiles::flat(1000))
    {
        const QString first = files.writeSrtm(QStringLiteral("N46E008.hgt"), field);
        for (int i = 1; i < count; ++i) {
            std::filesystem::create_hard_link(
                first.toStdString(),
                files.path(QStringLiteral("N46E%1.hgt").arg(8 + i, 3, 10, QLatin1Char('0'))).toStdString());
        }
    }

    boost::shared_ptr<TORVTerrainSet> set(int columns, int rows = 1)
    {
        TORVTerrainDir directory(files.sourcePath(), files.cachePath());
        directory.scanFiles();
        return directory.getTerrainSet(TerrainFiles::projection(46.0408, 8.8332), TORVCoordinate(46.0, 8.0),
                                       TORVCoordinate(46.0 + rows, 8.0 + columns));
    }

    static int partCount(const TORVTerrainSet& set) { return set.getAssembly()->GetParts()->GetNumberOfItems(); }

    static QStringList linesWith(const LogFile& log, const char* text)
    {
        return log.lines().filter(QLatin1String(text));
    }

    TerrainFiles files;
    std::atomic<bool> abort{false};
};

} // namespace

TEST_F(TORVTerrainSetTest, HoldsNoGroundBeforeItIsLoaded)
{
    const boost::shared_ptr<TORVTerrainSet> terrain = set(2);
    EXPECT_FALSE(terrain->isLoaded());
    EXPECT_FALSE(terrain->getAssembly());
    EXPECT_EQ(terrain->getElevationAtLocation({46.5, 8.5}), 0.0);
    EXPECT_EQ(terrain->getBlocks().size(), 2);
}

TEST_F(TORVTerrainSetTest, LoadsAllItsBlocks)
{
    addTiles(1);
    const boost::shared_ptr<TORVTerrainSet> terrain = set(2);
    terrain->loadFiles(abort);
    ASSERT_TRUE(terrain->isLoaded());
    EXPECT_EQ(partCount(*terrain), 2);
    EXPECT_EQ(terrain->getElevationAtLocation({46.5, 8.5}), 1000.0);
    EXPECT_EQ(terrain->getElevationAtLocation({46.5, 9.5}), 0.0);
    EXPECT_EQ(terrain->getElevationAtLocation({45.5, 8.5}), 0.0); // outside
    EXPECT_EQ(terrain->getElevationAtLocation({46.5, 10.5}), 0.0);
}

TEST_F(TORVTerrainSetTest, TellsOfConversionsInTheOrderOfItsBlocks)
{
    addTiles(3);
    const boost::shared_ptr<TORVTerrainSet> terrain = set(3);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const History history;
    terrain->loadFiles(abort);
    EXPECT_EQ(history.lines(), QStringList({QStringLiteral("Converting terrain data, please wait..."),
                                            QStringLiteral("- Converting terrain block: 1/3 SRTM3_N46E8"),
                                            QStringLiteral("- Converting terrain block: 2/3 SRTM3_N46E9"),
                                            QStringLiteral("- Converting terrain block: 3/3 SRTM3_N46E10"),
                                            QStringLiteral("3  terrain files converted!")}));
    const QStringList lines = log.lines();
    ASSERT_EQ(lines.size(), 9) << qUtf8Printable(lines.join(QLatin1Char('\n')));
    EXPECT_EQ(lines.mid(0, 8), QStringList({QStringLiteral("D: numToBeConverted=3"),
                                            QStringLiteral("D: Converting terrain block data: SRTM3_N46E8(SRTM3)"),
                                            QStringLiteral("D: Loading cached block: SRTM3_N46E8"),
                                            QStringLiteral("D: Converting terrain block data: SRTM3_N46E9(SRTM3)"),
                                            QStringLiteral("D: Loading cached block: SRTM3_N46E9"),
                                            QStringLiteral("D: Converting terrain block data: SRTM3_N46E10(SRTM3)"),
                                            QStringLiteral("D: Loading cached block: SRTM3_N46E10"),
                                            QStringLiteral("D: filesConverted=3")}));
    EXPECT_TRUE(lines[8].startsWith(QLatin1String("D: 3 files loaded in "))) << qUtf8Printable(lines[8]);
}

TEST_F(TORVTerrainSetTest, CountsTheConversionsOfALoad)
{
    addTiles(2);
    const boost::shared_ptr<TORVTerrainSet> terrain = set(2);
    EXPECT_EQ(terrain->getConversionCount(), 0);
    terrain->loadFiles(abort);
    EXPECT_EQ(terrain->getConversionCount(), 2);
    EXPECT_EQ(terrain->getConvertedCount(), 2);
    const boost::shared_ptr<TORVTerrainSet> cached = set(2);
    cached->loadFiles(abort);
    EXPECT_EQ(cached->getConversionCount(), 0);
}

TEST_F(TORVTerrainSetTest, SaysNothingToTheUserWhenEveryPairIsThere)
{
    addTiles(1);
    set(2)->loadFiles(abort);
    const boost::shared_ptr<TORVTerrainSet> terrain = set(2);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const History history;
    terrain->loadFiles(abort);
    EXPECT_TRUE(terrain->isLoaded());
    EXPECT_TRUE(history.lines().isEmpty());
    EXPECT_EQ(linesWith(log, "numToBeConverted"), QStringList(QStringLiteral("D: numToBeConverted=0")));
    EXPECT_EQ(linesWith(log, "filesConverted"), QStringList(QStringLiteral("D: filesConverted=0")));
    EXPECT_EQ(linesWith(log, "Loading cached block: ").size(), 2);
    EXPECT_EQ(terrain->getElevationAtLocation({46.5, 8.5}), 1000.0);
}

TEST_F(TORVTerrainSetTest, MentionsEveryTenthFlatBlock)
{
    const History history;
    set(5, 5)->loadFiles(abort);
    EXPECT_EQ(history.lines(), QStringList({QStringLiteral("Converting terrain data, please wait..."),
                                            QStringLiteral("- Converting terrain block: 10/25 EMPTY_N47E12"),
                                            QStringLiteral("- Converting terrain block: 20/25 EMPTY_N49E12"),
                                            QStringLiteral("25  terrain files converted!")}));
}

TEST_F(TORVTerrainSetTest, LoadsOnce)
{
    const boost::shared_ptr<TORVTerrainSet> terrain = set(1);
    terrain->loadFiles(abort);
    const vtkSmartPointer<vtkAssembly> assembly = terrain->getAssembly();
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const int before = log.lines().size();
    terrain->loadFiles(abort);
    EXPECT_EQ(terrain->getAssembly(), assembly);
    EXPECT_EQ(log.lines().size(), before);
}

TEST_F(TORVTerrainSetTest, LoadsNothingWhenAbortedBeforehand)
{
    const boost::shared_ptr<TORVTerrainSet> terrain = set(2);
    abort = true;
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const History history;
    terrain->loadFiles(abort);
    EXPECT_FALSE(terrain->isLoaded());
    EXPECT_FALSE(terrain->getAssembly());
    EXPECT_TRUE(history.lines().isEmpty());
    EXPECT_EQ(linesWith(log, "ABORTED"), QStringList(QStringLiteral("D: TORVTerrainSet::loadFiles() ABORTED!")));
    EXPECT_TRUE(files.cacheNames().isEmpty());
}

TEST_F(TORVTerrainSetTest, EndsWhenAbortedInTheFirstConversion)
{
    addTiles(40);
    const boost::shared_ptr<TORVTerrainSet> terrain = set(40);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const History history([this](const QString& line) {
        if (line.startsWith(QLatin1String("- Converting terrain block: 1/"))) {
            abort = true;
        }
    });
    terrain->loadFiles(abort);
    EXPECT_FALSE(terrain->isLoaded());
    EXPECT_EQ(log.lines().constLast(), QLatin1String("D: TORVTerrainSet::loadFiles() ABORTED!"));
    EXPECT_EQ(history.lines().size(), 2);
    EXPECT_EQ(terrain->getElevationAtLocation({46.5, 8.5}), 0.0);
    // What was in work when the flag was set is all there can be; no half files are left.
    EXPECT_LT(files.cacheNames(QStringLiteral("*.vtk")).size(), 40);
    EXPECT_TRUE(files.cacheNames(QStringLiteral("*.tmp")).isEmpty());
}

TEST_F(TORVTerrainSetTest, EndsWhenAbortedBetweenBlocks)
{
    addTiles(4);
    const boost::shared_ptr<TORVTerrainSet> terrain = set(4);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const History history([this](const QString& line) {
        if (line.startsWith(QLatin1String("- Converting terrain block: 3/"))) {
            abort = true;
        }
    });
    terrain->loadFiles(abort);
    EXPECT_FALSE(terrain->isLoaded());
    EXPECT_EQ(linesWith(log, "ABORTED").size(), 1);
    EXPECT_EQ(linesWith(log, "Loading cached block: ").size(), 2);
}

TEST_F(TORVTerrainSetTest, LoadsAgainAfterAnAbort)
{
    addTiles(2);
    const boost::shared_ptr<TORVTerrainSet> terrain = set(3);
    {
        const History history([this](const QString&) { abort = true; });
        terrain->loadFiles(abort);
    }
    ASSERT_FALSE(terrain->isLoaded());
    abort = false;
    terrain->loadFiles(abort);
    ASSERT_TRUE(terrain->isLoaded());
    EXPECT_EQ(partCount(*terrain), 3);
    EXPECT_EQ(terrain->getElevationAtLocation({46.5, 9.5}), 1000.0);
}

TEST_F(TORVTerrainSetTest, IsLoadedByOneOfTwoThatAskAtOnce)
{
    addTiles(2);
    const boost::shared_ptr<TORVTerrainSet> terrain = set(4);
    const History history;
    std::vector<std::thread> pipelines;
    std::atomic<int> ready{0};
    std::atomic<int> loaded{0};
    for (int i = 0; i < 2; ++i) {
        pipelines.emplace_back([&] {
            const std::atomic<bool> ownFlag{false};
            ++ready;
            while (ready < 2) {
                std::this_thread::yield();
            }
            terrain->loadFiles(ownFlag);
            loaded += terrain->isLoaded() && terrain->getElevationAtLocation({46.5, 8.5}) == 1000.0 ? 1 : 0;
        });
    }
    // The cursor of the main thread asks all the time.
    while (loaded < 1) {
        const double elevation = terrain->getElevationAtLocation({46.5, 8.5});
        EXPECT_TRUE(elevation == 0.0 || elevation == 1000.0) << elevation;
    }
    for (std::thread& pipeline : pipelines) {
        pipeline.join();
    }
    EXPECT_EQ(loaded, 2);
    EXPECT_EQ(history.lines().filter(QLatin1String("files converted")).size(), 1);
    EXPECT_EQ(partCount(*terrain), 4);
}

TEST_F(TORVTerrainSetTest, LetsOneWhoWaitsAbortForItself)
{
    addTiles(2);
    const boost::shared_ptr<TORVTerrainSet> terrain = set(2);
    // The loader can't go on past its first line before the one who waits has given up.
    std::atomic<bool> hasBegun{false};
    std::atomic<bool> hasGivenUp{false};
    const History history([&](const QString& line) {
        if (line.startsWith(QLatin1String("Converting"))) {
            hasBegun = true;
            while (!hasGivenUp) {
                std::this_thread::yield();
            }
        }
    });
    std::thread loader([&] { terrain->loadFiles(abort); });
    while (!hasBegun) {
        std::this_thread::yield();
    }
    std::atomic<bool> ownFlag{false};
    std::thread waiting([&] {
        terrain->loadFiles(ownFlag);
        EXPECT_FALSE(terrain->isLoaded());
        hasGivenUp = true;
    });
    ownFlag = true;
    waiting.join();
    loader.join();
    EXPECT_TRUE(terrain->isLoaded());
}

TEST_F(TORVTerrainSetTest, IsTakenOverWhenTheOneThatLoadsAborts)
{
    addTiles(2);
    const boost::shared_ptr<TORVTerrainSet> terrain = set(2);
    std::atomic<bool> hasBegun{false};
    const History history([&](const QString& line) {
        if (!hasBegun && line.startsWith(QLatin1String("Converting"))) {
            hasBegun = true;
            abort = true;
        }
    });
    std::thread first([&] { terrain->loadFiles(abort); });
    while (!hasBegun) {
        std::this_thread::yield();
    }
    const std::atomic<bool> ownFlag{false};
    terrain->loadFiles(ownFlag);
    first.join();
    EXPECT_TRUE(terrain->isLoaded());
    EXPECT_EQ(partCount(*terrain), 2);
}

TEST_F(TORVTerrainSetTest, ConvertsADamagedPairOnceMoreWithOneWarning)
{
    addTiles(2);
    set(2)->loadFiles(abort);
    const QString damaged = files.cacheFile(files.cacheNames(QStringLiteral("TC04_SRTM3_*_N46E9_*.vtk")).value(0));
    const QByteArray good = TerrainFiles::read(damaged);
    for (const QByteArray& bytes :
         {QByteArray(), good.left(good.size() / 2), QByteArray(good).replace(50000, 4, "????"),
          QByteArray(1000, '\xFF'), QByteArray(5 * 1024 * 1024, 'x')}) {
        TerrainFiles::overwrite(damaged, bytes);
        const boost::shared_ptr<TORVTerrainSet> terrain = set(2);
        const LogFile log(TORVLog::LEVEL_WARNING);
        terrain->loadFiles(abort);
        ASSERT_TRUE(terrain->isLoaded());
        EXPECT_EQ(partCount(*terrain), 2);
        EXPECT_EQ(terrain->getElevationAtLocation({46.5, 9.5}), 1000.0);
        EXPECT_EQ(linesWith(log, "W: "), QStringList(QLatin1String("W: Damaged terrain cache file: ") + damaged));
        EXPECT_EQ(TerrainFiles::read(damaged), good);
    }
}

TEST_F(TORVTerrainSetTest, ShowsTheGroundWithOneWarningWhereNothingCanBeKept)
{
    addTiles(3);
    const boost::shared_ptr<TORVTerrainSet> terrain = set(3);
    ASSERT_TRUE(QDir(files.cachePath()).removeRecursively());
    TerrainFiles::overwrite(files.cachePath(), "no directory");
    const LogFile log(TORVLog::LEVEL_WARNING);
    terrain->loadFiles(abort);
    ASSERT_TRUE(terrain->isLoaded());
    EXPECT_EQ(partCount(*terrain), 3);
    EXPECT_EQ(terrain->getElevationAtLocation({46.5, 10.5}), 1000.0);
    EXPECT_EQ(linesWith(log, "W: ").size(), 1);
}

TEST_F(TORVTerrainSetTest, ShowsALostTileFlatAndTheOthersAsTheyAre)
{
    files.writeSrtm(QStringLiteral("N46E008.hgt"), TerrainFiles::flat(700));
    files.writeSrtm(QStringLiteral("N46E009.hgt"), TerrainFiles::flat(800));
    const boost::shared_ptr<TORVTerrainSet> terrain = set(2);
    ASSERT_TRUE(QFile::remove(files.path(QStringLiteral("N46E008.hgt"))));
    const LogFile log(TORVLog::LEVEL_WARNING);
    terrain->loadFiles(abort);
    ASSERT_TRUE(terrain->isLoaded());
    EXPECT_EQ(partCount(*terrain), 2);
    EXPECT_EQ(terrain->getElevationAtLocation({46.5, 8.5}), 0.0);
    EXPECT_EQ(terrain->getElevationAtLocation({46.5, 9.5}), 800.0);
    EXPECT_EQ(linesWith(log, "W: ").size(), 1);
    EXPECT_EQ(files.cacheNames(QStringLiteral("*.vtk")).size(), 1);
}

TEST_F(TORVTerrainSetTest, HasOneEdgeAndOneLightBetweenNeighbours)
{
    // Ridges that run across the common edges at 46 N..48 N and 8 E..10 E.
    const auto ridge = [](double lat, double lon) {
        return static_cast<int>(1000.0 + 800.0 * std::sin(20.0 * lat) * std::cos(25.0 * lon + 3.0 * lat));
    };
    for (const int lat : {46, 47}) {
        for (const int lon : {8, 9}) {
            files.writeSrtm(QStringLiteral("N%1E00%2.hgt").arg(lat).arg(lon), [&](int column, int row) {
                return ridge(lat + 1.0 - row / 1200.0, lon + column / 1200.0);
            });
        }
    }
    const boost::shared_ptr<TORVTerrainSet> terrain = set(2, 2);
    terrain->loadFiles(abort);
    const auto expectCommon = [&](int block, int point, int otherBlock, int otherPoint) {
        vtkPolyData* const mesh = terrain->getBlocks()[block]->getPolyData();
        vtkPolyData* const other = terrain->getBlocks()[otherBlock]->getPolyData();
        for (int axis = 0; axis < 3; ++axis) {
            ASSERT_EQ(mesh->GetPoint(point)[axis], other->GetPoint(otherPoint)[axis]) << point;
            ASSERT_NEAR(mesh->GetPointData()->GetNormals()->GetTuple(point)[axis],
                        other->GetPointData()->GetNormals()->GetTuple(otherPoint)[axis], 1e-6)
                << point;
        }
    };
    for (int i = 0; i <= 60; ++i) {
        expectCommon(0, i * 61 + 60, 1, i * 61); // east of the first, west of the second
        expectCommon(0, 60 * 61 + i, 2, i);      // north of the first, south of the third
        expectCommon(1, 60 * 61 + i, 3, i);
    }
    expectCommon(0, 3720, 3, 0); // the corner that all four have in common
}

TEST_F(TORVTerrainSetTest, AnswersBehindTheDateLine)
{
    files.writeSrtm(QStringLiteral("N10E179.hgt"), TerrainFiles::flat(179));
    files.writeSrtm(QStringLiteral("N10W180.hgt"), TerrainFiles::flat(180));
    TORVTerrainDir directory(files.sourcePath(), files.cachePath());
    directory.scanFiles();
    const boost::shared_ptr<TORVTerrainSet> terrain = directory.getTerrainSet(
        TerrainFiles::projection(10.5, 179.9), TORVCoordinate(10.0, 179.0), TORVCoordinate(11.0, 181.0));
    terrain->loadFiles(abort);
    EXPECT_EQ(terrain->getElevationAtLocation({10.5, 179.5}), 179.0);
    EXPECT_EQ(terrain->getElevationAtLocation({10.5, 180.0}), 180.0);
    EXPECT_EQ(terrain->getElevationAtLocation({10.5, -179.5}), 180.0);
    // Both sides of the line stand side by side, within a degree of 110 km from the radar.
    for (const TORVTerrainSet::BlockPtr& block : terrain->getBlocks()) {
        EXPECT_LT(std::abs(block->getPolyData()->GetBounds()[0]), 130000.0);
        EXPECT_LT(std::abs(block->getPolyData()->GetBounds()[1]), 130000.0);
    }
}
