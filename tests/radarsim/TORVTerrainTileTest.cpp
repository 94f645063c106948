#include "radarsim/TORVTerrainTile.h"

#include "radarsim/TORVProductWriter.h"
#include "radarsim/TORVSiteInfo.h"
#include "radarsim/TORVTerrainModel.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace
{

const TORVTerrainModel& country()
{
    static const TORVTerrainModel model(77);
    return model;
}

int bigEndian(const QByteArray& bytes, int offset)
{
    return static_cast<uint8_t>(bytes[offset]) << 8 | static_cast<uint8_t>(bytes[offset + 1]);
}

/// What GDAL reads at points of a raster; empty if it can't.
QStringList gdalHeights(const QString& path, const QStringList& columnsAndRows)
{
    int argc = 1;
    std::array<char, 5> name{"test"};
    char* argv[] = {name.data(), nullptr};
    const QCoreApplication application(argc, argv);
    QProcess process;
    process.start(QStringLiteral("gdallocationinfo"), {QStringLiteral("-valonly"), path});
    process.write(columnsAndRows.join(QLatin1Char('\n')).toLatin1() + '\n');
    process.closeWriteChannel();
    if (!process.waitForFinished()) {
        return {};
    }
    return QString::fromLatin1(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

struct TileCase
{
    const char* name;
    TORVTerrainTile::Format format;
    int points;
    qint64 size;
};

// SRTM: points x points x 2. DTED: 3428 of headers, then 1201 records of 8 + 2 x 1201 + 4 = 2414 bytes.
const TileCase Cases[] = {{"Srtm3", TORVTerrainTile::SRTM3, 1201, 2884802},
                          {"Srtm1", TORVTerrainTile::SRTM1, 3601, 25934402},
                          {"Dted1", TORVTerrainTile::DTED1, 1201, 2902642}};

class TORVTerrainTileFormat : public testing::TestWithParam<TileCase>
{
protected:
    // The south coast and the lakes behind it.
    const TORVTerrainTile tile{60, 24, GetParam().format};
};

TEST_P(TORVTerrainTileFormat, HasTheSizeOfItsFormat)
{
    EXPECT_EQ(tile.file(country()).size(), GetParam().size);
}

TEST_P(TORVTerrainTileFormat, IsReadByGdalWithTheHeightsOfTheCountry)
{
    if (QStandardPaths::findExecutable(QStringLiteral("gdallocationinfo")).isEmpty()) {
        GTEST_SKIP() << "gdallocationinfo is not on this machine";
    }
    const QTemporaryDir directory;
    const QString path = directory.filePath(tile.fileName());
    ASSERT_EQ(TORVProductWriter::write(path, tile.file(country())), QString());
    QStringList places;
    std::vector<float> expected;
    const int last = GetParam().points - 1;
    for (int i = 0; i <= 20; ++i) {
        // A diagonal and the corners beside it; row 0 is the north.
        const int column = last * i / 20;
        const int row = last * ((7 * i) % 21) / 20;
        const double latitude = 61.0 - static_cast<double>(row) / last;
        const double longitude = 24.0 + static_cast<double>(column) / last;
        const float height = country().height(latitude, longitude);
        if (!country().isVoid(latitude, longitude, height)) {
            places << QStringLiteral("%1 %2").arg(column).arg(row);
            expected.push_back(std::round(height));
        }
    }
    const QStringList heights = gdalHeights(path, places);
    ASSERT_EQ(heights.size(), static_cast<int>(expected.size()));
    for (int i = 0; i < heights.size(); ++i) {
        EXPECT_EQ(heights[i].toInt(), static_cast<int>(expected[static_cast<std::size_t>(i)])) << qPrintable(places[i]);
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, TORVTerrainTileFormat, testing::ValuesIn(Cases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(TORVTerrainTile, IsNamedAfterItsSouthWestCorner)
{
    EXPECT_EQ(TORVTerrainTile(60, 8, TORVTerrainTile::SRTM3).fileName(), QStringLiteral("N60E008.hgt"));
    EXPECT_EQ(TORVTerrainTile(68, 27, TORVTerrainTile::DTED1).fileName(), QStringLiteral("n68_e027.dt1"));
}

TEST(TORVTerrainTile, HasNoFileWhereThereIsOnlySea)
{
    EXPECT_TRUE(TORVTerrainTile(58, 24, TORVTerrainTile::SRTM3).file(country()).isEmpty());
}

TEST(TORVTerrainTile, SharesItsEdgeWithItsNeighbour)
{
    const QByteArray west = TORVTerrainTile(60, 24, TORVTerrainTile::SRTM3).file(country());
    const QByteArray east = TORVTerrainTile(60, 25, TORVTerrainTile::SRTM3).file(country());
    for (int row = 0; row < 1201; ++row) {
        ASSERT_EQ(bigEndian(west, 2 * (row * 1201 + 1200)), bigEndian(east, 2 * row * 1201)) << row;
    }
}

TEST(TORVTerrainTile, HasVoidsAndHillsAndALake)
{
    const QByteArray tile = TORVTerrainTile(68, 27, TORVTerrainTile::SRTM3).file(country());
    int voids = 0;
    int highest = 0;
    int level = 0; // points that are as high as the one to the east and the one to the south
    for (int row = 0; row < 1200; ++row) {
        for (int column = 0; column < 1200; ++column) {
            const int height = bigEndian(tile, 2 * (row * 1201 + column));
            voids += height == 0x8000 ? 1 : 0;
            highest = height < 0x8000 ? std::max(highest, height) : highest;
            level += height == bigEndian(tile, 2 * (row * 1201 + column + 1)) &&
                             height == bigEndian(tile, 2 * ((row + 1) * 1201 + column))
                         ? 1
                         : 0;
        }
    }
    EXPECT_GT(voids, 0);
    EXPECT_LT(voids, 1201 * 1201 / 50);
    EXPECT_GT(highest, 300);
    EXPECT_LT(highest, 1500);
    EXPECT_GT(level, 20000);
}

TEST(TORVTerrainTile, ClosesEachDtedRecordWithTheSumOfItsBytes)
{
    const QByteArray tile = TORVTerrainTile(60, 24, TORVTerrainTile::DTED1).file(country());
    for (const int record : {0, 600, 1200}) {
        const int start = 3428 + record * 2414;
        EXPECT_EQ(static_cast<uint8_t>(tile[start]), 0xAA);
        EXPECT_EQ(bigEndian(tile, start + 4), record);
        int sum = 0;
        for (int i = 0; i < 2410; ++i) {
            sum += static_cast<uint8_t>(tile[start + i]);
        }
        EXPECT_EQ(bigEndian(tile, start + 2410) << 16 | bigEndian(tile, start + 2412), sum);
    }
}

TEST(TORVTerrainModel, PutsEveryRadarOnLandWithSeaOrHillsInSight)
{
    for (const TORVSiteInfo& site : TORVSiteInfo::all()) {
        EXPECT_GT(country().height(site.latitude, site.longitude), 0.0F) << site.name;
    }
    EXPECT_EQ(country().height(59.3, 24.6), 0.0F); // 108 km south of the first radar
}

TEST(TORVTerrainModel, LetsEachRadarStandOnAHillOfItsOwn)
{
    const TORVTerrainModel plain(77);
    const TORVTerrainModel withHills = TORVTerrainModel::withRadarHills(77);
    for (const TORVSiteInfo& site : TORVSiteInfo::all()) {
        EXPECT_GE(withHills.height(site.latitude, site.longitude), site.hill) << site.name;
        // 0.2 degrees, 22 km, away the hill has ended.
        EXPECT_EQ(withHills.height(site.latitude + 0.2, site.longitude),
                  plain.height(site.latitude + 0.2, site.longitude));
    }
}

} // namespace
