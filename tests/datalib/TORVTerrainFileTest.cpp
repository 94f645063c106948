#include "datalib/TORVTerrainFile.h"

#include "support/LogFile.h"
#include "support/TerrainFiles.h"

#include <QDir>
#include <QFile>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <filesystem>

namespace
{

const QString Dted1Name = QStringLiteral("n46_e008.dt1");
const QByteArray Dted1Place = "0080000E0460000N";

class TORVTerrainFileTest : public testing::Test
{
protected:
    TORVTerrainFile::Ptr file(const QString& name)
    {
        return boost::make_shared<TORVTerrainFile>(files.path(name), files.cachePath());
    }

    // A file of the right size without a real byte in it takes no time to write.
    TORVTerrainFile::Ptr fileOfSize(const QString& name, qint64 size)
    {
        QFile written(files.path(name));
        EXPECT_TRUE(written.open(QIODevice::WriteOnly));
        EXPECT_TRUE(written.resize(size));
        return file(name);
    }

    TORVTerrainFile::Ptr srtm(const QString& name) { return fileOfSize(name, 2884802); }

    TORVTerrainFile::Ptr dtedWithHeader(const QByteArray& uhl, const QByteArray& dsi = "DSIU")
    {
        QByteArray bytes = uhl.leftJustified(80, ' ') + dsi.leftJustified(648, ' ');
        files.writeBytes(Dted1Name, bytes.leftJustified(2902642, '\0'));
        return file(Dted1Name);
    }

    static QByteArray uhl(const QByteArray& place, const QByteArray& counts = "12011201")
    {
        return "UHL1" + place + "00300030" + "0020U  TEST        " + counts;
    }

    static void expectPlace(const TORVTerrainFile& file, double lat, double lon)
    {
        EXPECT_NEAR(file.getCorner().getLat(), lat, 1e-12);
        EXPECT_NEAR(file.getCorner().getLon(), lon, 1e-12);
    }

    void expectFailure(const TORVTerrainFile::Ptr& file, const QString& function, const QString& reason)
    {
        const LogFile log(TORVLog::LEVEL_DEBUG);
        EXPECT_FALSE(file->loadFileInfo());
        const QString prefix = QLatin1String("D: TORVTerrainFile::") + function + QLatin1String("(): ");
        EXPECT_EQ(log.lines().mid(log.lines().size() - 2),
                  QStringList({prefix + reason + file->getPath(), prefix + QLatin1String("FAILED!")}));
    }

    TerrainFiles files;
};

} // namespace

TEST_F(TORVTerrainFileTest, KnowsThreeArcSecondsBySize)
{
    const TORVTerrainFile::Ptr tile = srtm(QStringLiteral("N46E008.hgt"));
    ASSERT_TRUE(tile->loadFileInfo());
    EXPECT_EQ(tile->getType(), TORVTerrainFile::SRTM3);
    EXPECT_EQ(tile->getTypeAsString(), QLatin1String("SRTM3"));
    EXPECT_EQ(tile->getLatitudePoints(), 1201);
    EXPECT_EQ(tile->getLongitudePoints(), 1201);
    EXPECT_DOUBLE_EQ(tile->getLatitudeStep(), 1.0 / 1200.0);
    EXPECT_DOUBLE_EQ(tile->getLongitudeStep(), 1.0 / 1200.0);
    expectPlace(*tile, 46.0, 8.0);
}

TEST_F(TORVTerrainFileTest, KnowsOneArcSecondBySize)
{
    const TORVTerrainFile::Ptr tile = fileOfSize(QStringLiteral("N46E008.hgt"), 25934402);
    ASSERT_TRUE(tile->loadFileInfo());
    EXPECT_EQ(tile->getType(), TORVTerrainFile::SRTM1);
    EXPECT_EQ(tile->getTypeAsString(), QLatin1String("SRTM1"));
    EXPECT_EQ(tile->getLatitudePoints(), 3601);
    EXPECT_DOUBLE_EQ(tile->getLatitudeStep(), 1.0 / 3600.0);
}

TEST_F(TORVTerrainFileTest, PlacesTilesSouthAndWest)
{
    const TORVTerrainFile::Ptr tile = srtm(QStringLiteral("s10w020.hgt"));
    ASSERT_TRUE(tile->loadFileInfo());
    expectPlace(*tile, -10.0, -20.0);
    EXPECT_EQ(tile->getBlockName(), QLatin1String("SRTM3_S10W20"));
}

TEST_F(TORVTerrainFileTest, TakesNamesAndEndingsInAnyLetterCase)
{
    for (const char* const name : {"n10E020.hgt", "N10e020.HGT", "n10e020.Hgt", "N10E020.hGT"}) {
        const TORVTerrainFile::Ptr tile = srtm(QLatin1String(name));
        EXPECT_TRUE(tile->loadFileInfo()) << name;
        expectPlace(*tile, 10.0, 20.0);
    }
    for (const char* const name : {"a.dt1", "b.Dt1", "c.dT1", "d.DT1"}) {
        files.writeBytes(QLatin1String(name),
                         (uhl(Dted1Place).leftJustified(80, ' ') + "DSIU").leftJustified(2902642, '\0'));
        EXPECT_TRUE(file(QLatin1String(name))->loadFileInfo()) << name;
    }
}

TEST_F(TORVTerrainFileTest, BelievesTheNameOfARenamedTile)
{
    const TORVTerrainFile::Ptr tile = srtm(QStringLiteral("N46E008.hgt"));
    ASSERT_TRUE(tile->loadFileInfo());
    std::filesystem::rename(files.path(QStringLiteral("N46E008.hgt")).toStdString(),
                            files.path(QStringLiteral("S03W001.hgt")).toStdString());
    const TORVTerrainFile::Ptr renamed = file(QStringLiteral("S03W001.hgt"));
    ASSERT_TRUE(renamed->loadFileInfo());
    expectPlace(*renamed, -3.0, -1.0);
}

TEST_F(TORVTerrainFileTest, RefusesTilesOfAnyOtherSizeWhateverTheirName)
{
    for (const qint64 size : {qint64(0), qint64(1), qint64(2884801), qint64(2884803), qint64(25934401),
                              qint64(25934403), qint64(2902642), qint64(5) * 1024 * 1024 * 1024}) {
        expectFailure(fileOfSize(QStringLiteral("N46E008.hgt"), size), QStringLiteral("loadHeadersSRTM"),
                      QStringLiteral("file not correct size: "));
    }
}

TEST_F(TORVTerrainFileTest, RefusesNamesThatSayNoPlaceOnTheGlobe)
{
    for (const char* const name : {"46N008E.hgt", "NxxE008.hgt", "N46.hgt", "N46X008.hgt", "N90E000.hgt", "S91E000.hgt",
                                   "N46E181.hgt", "N46W181.hgt", "N46E99999999999.hgt", "x.hgt"}) {
        expectFailure(srtm(QLatin1String(name)), QStringLiteral("loadHeadersSRTM"),
                      QStringLiteral("Parsing location from filename failed: "));
    }
}

TEST_F(TORVTerrainFileTest, SaysWhichFileIsMissing)
{
    expectFailure(file(QStringLiteral("N46E008.hgt")), QStringLiteral("loadHeadersSRTM"),
                  QStringLiteral("file not available: "));
    expectFailure(file(Dted1Name), QStringLiteral("loadHeadersDTED1"), QStringLiteral("file not available: "));
}

TEST_F(TORVTerrainFileTest, RefusesADirectoryInPlaceOfAFile)
{
    ASSERT_TRUE(QDir().mkpath(files.path(QStringLiteral("N46E008.hgt"))));
    expectFailure(file(QStringLiteral("N46E008.hgt")), QStringLiteral("loadHeadersSRTM"),
                  QStringLiteral("file not available: "));
}

TEST_F(TORVTerrainFileTest, RefusesOtherEndings)
{
    const TORVTerrainFile::Ptr tile = srtm(QStringLiteral("N46E008.dt2"));
    EXPECT_FALSE(tile->loadFileInfo());
    EXPECT_EQ(tile->getType(), TORVTerrainFile::UNKNOWN);
    EXPECT_EQ(tile->getTypeAsString(), QLatin1String("UNKNOWN"));
}

TEST_F(TORVTerrainFileTest, ReadsTheHeaderOfLevelOne)
{
    const TORVTerrainFile::Ptr tile = dtedWithHeader(uhl("0723015W0284530S"));
    ASSERT_TRUE(tile->loadFileInfo());
    EXPECT_EQ(tile->getType(), TORVTerrainFile::DTED1);
    EXPECT_EQ(tile->getTypeAsString(), QLatin1String("DTED1"));
    EXPECT_EQ(tile->getLongitudePoints(), 1201);
    EXPECT_EQ(tile->getLatitudePoints(), 1201);
    EXPECT_DOUBLE_EQ(tile->getLongitudeStep(), 3.0 / 3600.0);
    EXPECT_DOUBLE_EQ(tile->getLatitudeStep(), 3.0 / 3600.0);
    expectPlace(*tile, -(28.0 + 45.0 / 60.0 + 30.0 / 3600.0), -(72.0 + 30.0 / 60.0 + 15.0 / 3600.0));
}

TEST_F(TORVTerrainFileTest, TakesLowerCaseHemispheres)
{
    const TORVTerrainFile::Ptr tile = dtedWithHeader(uhl("0720000w0290000s"));
    ASSERT_TRUE(tile->loadFileInfo());
    expectPlace(*tile, -29.0, -72.0);
}

TEST_F(TORVTerrainFileTest, PlacesLevelOneByItsHeaderWhateverItsName)
{
    const TORVTerrainFile::Ptr tile = dtedWithHeader(uhl("1790000E0890000N"));
    ASSERT_TRUE(tile->loadFileInfo());
    expectPlace(*tile, 89.0, 179.0);
}

TEST_F(TORVTerrainFileTest, TakesLevelOneOfBothSizesAndNoOther)
{
    const QByteArray good = (uhl(Dted1Place).leftJustified(80, ' ') + "DSIU").leftJustified(2902642, '\0');
    files.writeBytes(Dted1Name, good);
    EXPECT_TRUE(file(Dted1Name)->loadFileInfo());
    files.writeBytes(Dted1Name, good + '\0');
    EXPECT_TRUE(file(Dted1Name)->loadFileInfo());
    // The last is a tile of the zone above 50 degrees, with half the columns.
    for (const int size : {0, 80, 2902641, 2902644, 1454242}) {
        files.writeBytes(Dted1Name, good.leftJustified(size, '\0', true));
        expectFailure(file(Dted1Name), QStringLiteral("loadHeadersDTED1"), QStringLiteral("file not correct size: "));
    }
}

TEST_F(TORVTerrainFileTest, RefusesHeadersThatAreNone)
{
    const QString function = QStringLiteral("loadHeadersDTED1");
    const QString reason = QStringLiteral("DTED1 file headers not recognized: ");
    expectFailure(dtedWithHeader("UXL1"), function, reason);
    expectFailure(dtedWithHeader(uhl(Dted1Place), "DXI"), function, reason);
    expectFailure(dtedWithHeader(QByteArray(80, '\0')), function, reason);
}

TEST_F(TORVTerrainFileTest, RefusesHeadersThatCantBeMeant)
{
    const QString function = QStringLiteral("loadHeadersDTED1");
    const QString reason = QStringLiteral("DTED1 file headers not recognized: ");
    for (const char* const place : {"008000XE0460000N", "-080000E0460000N", "0080000X0460000N", "0080000E046    N",
                                    "0080000E0900000N", "0080000E0910000S", "1810000E0460000N", "9999999E9999999N"}) {
        expectFailure(dtedWithHeader(uhl(place)), function, reason);
    }
    for (const char* const counts : {"06011201", "12010601", "00000000", "99999999", "    1201", "-1201201"}) {
        expectFailure(dtedWithHeader(uhl(Dted1Place, counts)), function, reason);
    }
}

TEST_F(TORVTerrainFileTest, HasAnEmptyBlockWithoutAFile)
{
    const TORVTerrainFile block(TORVCoordinate(-1.0, 13.0), files.cachePath());
    EXPECT_EQ(block.getType(), TORVTerrainFile::EMPTY);
    EXPECT_EQ(block.getTypeAsString(), QLatin1String("EMPTY"));
    EXPECT_EQ(block.getBlockName(), QLatin1String("EMPTY_S1E13"));
    expectPlace(block, -1.0, 13.0);
    EXPECT_TRUE(block.getPath().isEmpty());
    EXPECT_FALSE(block.isLoaded());
}

TEST_F(TORVTerrainFileTest, HoldsItsSouthernAndWesternEdgeOnly)
{
    const TORVTerrainFile block(TORVCoordinate(-1.0, -98.0), files.cachePath());
    EXPECT_TRUE(block.contains({-1.0, -98.0}));
    EXPECT_TRUE(block.contains({-0.5, -97.5}));
    EXPECT_TRUE(block.contains({-1e-9, -97.0 - 1e-9}));
    EXPECT_FALSE(block.contains({0.0, -97.5}));
    EXPECT_FALSE(block.contains({-0.5, -97.0}));
    EXPECT_FALSE(block.contains({-1.0 - 1e-9, -97.5}));
    EXPECT_FALSE(block.contains({-0.5, -98.0 - 1e-9}));
}

TEST_F(TORVTerrainFileTest, MeetsItsNeighbourAtTheDateLine)
{
    const TORVTerrainFile east(TORVCoordinate(10.0, -180.0), files.cachePath());
    const TORVTerrainFile west(TORVCoordinate(10.0, 179.0), files.cachePath());
    EXPECT_TRUE(east.contains({10.5, 180.0}));
    EXPECT_TRUE(east.contains({10.5, -180.0}));
    EXPECT_TRUE(east.contains({10.5, -179.5}));
    EXPECT_TRUE(west.contains({10.5, 179.5}));
    EXPECT_FALSE(west.contains({10.5, 180.0}));
    EXPECT_FALSE(west.contains({10.5, -179.5}));
}

TEST_F(TORVTerrainFileTest, HasNoElevationBeforeItIsLoaded)
{
    const TORVTerrainFile block(TORVCoordinate(46.0, 8.0), files.cachePath());
    EXPECT_EQ(block.getElevationAtLocation({46.5, 8.5}), 0.0);
}

TEST_F(TORVTerrainFileTest, TellsAllAboutItselfForDebugging)
{
    const TORVTerrainFile::Ptr tile = srtm(QStringLiteral("N46E008.hgt"));
    ASSERT_TRUE(tile->loadFileInfo());
    const LogFile log(TORVLog::LEVEL_DEBUG);
    tile->printDebug();
    const QString text = log.lines().join(QLatin1Char('\n'));
    EXPECT_TRUE(text.contains(QLatin1String("SRTM3_N46E8")));
    EXPECT_TRUE(text.contains(tile->getPath()));
    EXPECT_TRUE(text.contains(files.cachePath()));
}

TEST_F(TORVTerrainFileTest, KeepsItsLinesUntilItsTurn)
{
    const TORVTerrainFile::Ptr tile = file(QStringLiteral("N46E008.hgt"));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const int before = log.lines().size();
    tile->holdLog();
    EXPECT_FALSE(tile->loadFileInfo());
    EXPECT_EQ(log.lines().size(), before);
    tile->releaseLog();
    EXPECT_EQ(log.lines().size(), before + 2);
    tile->releaseLog();
    EXPECT_EQ(log.lines().size(), before + 2);
}
