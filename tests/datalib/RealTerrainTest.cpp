// Real tiles against GDAL and PROJ's own programs.
#include "datalib/TORVTerrainFile.h"

#include "support/SharedData.h"
#include "support/TerrainFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <vtkPolyData.h>

#include <cmath>
#include <vector>

namespace
{

constexpr int Steps = 60; // between two corners of the mesh

struct Tile
{
    const char* name;
    TORVTerrainFile::Type type;
    double lat;
    double lon;
};

const Tile Tiles[] = {
    {"srtm/N46E008.hgt", TORVTerrainFile::SRTM3, 46, 8},          // the Alps
    {"srtm/N45E010.hgt", TORVTerrainFile::SRTM3, 45, 10},         // with voids
    {"srtm/N57E011.hgt", TORVTerrainFile::SRTM3, 57, 11},         // a coast, some of it below 0
    {"srtm/S29W072.hgt", TORVTerrainFile::SRTM3, -29, -72},       // the Andes
    {"srtm/N38W028.hgt", TORVTerrainFile::SRTM3, 38, -28},        // an island
    {"srtm/N48W125.hgt", TORVTerrainFile::SRTM1, 48, -125},       // half of it void
    {"dted/n46_e008.dt1", TORVTerrainFile::DTED1, 46, 8},         // by GDAL
    {"dted/s29_w072.dt1", TORVTerrainFile::DTED1, -29, -72},      // by GDAL
    {"dted/n00_e006_3arc_v2.dt1", TORVTerrainFile::DTED1, 0, 6}}; // a publisher's own, with heights below 0

QByteArray ask(const QString& program, const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForStarted()) << qUtf8Printable(program);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished()) << qUtf8Printable(program);
    return process.readAllStandardOutput();
}

// The source points that a mesh point is the mean of, along one axis.
std::vector<int> sourcePoints(int step, int last)
{
    const int first = step * last / Steps;
    const int factor = last / 600;
    std::vector<int> points;
    for (int i = 0; i < (step == 0 || step == Steps ? 1 : factor); ++i) {
        points.push_back(first + i);
    }
    return points;
}

// 200 places spread over the mesh, edges among them.
std::vector<std::pair<int, int>> meshPlaces()
{
    std::vector<std::pair<int, int>> places = {{0, 0},  {0, 60},  {60, 0}, {60, 60},
                                               {0, 31}, {60, 17}, {29, 0}, {44, 60}};
    for (int i = 0; places.size() < 200; ++i) {
        places.emplace_back(i * 37 % 61, i * 23 % 61);
    }
    return places;
}

class RealTerrain : public testing::TestWithParam<Tile>
{
protected:
    void SetUp() override { TORV_NEEDS_SHARED_DATA(); }

    TORVTerrainFile::Ptr converted()
    {
        const auto file = boost::make_shared<TORVTerrainFile>(
            SharedData::path(QLatin1String("terrain/") + QLatin1String(GetParam().name)), files.cachePath());
        EXPECT_TRUE(file->loadFileInfo());
        EXPECT_EQ(file->getType(), GetParam().type);
        EXPECT_TRUE(file->convertData(TerrainFiles::projection(GetParam().lat + 0.4, GetParam().lon + 0.6),
                                      files.cacheFile(QStringLiteral("a.vtk")), std::atomic<bool>(false)));
        EXPECT_TRUE(file->loadCachedData(files.cacheFile(QStringLiteral("a.vtk"))));
        return file;
    }

    TerrainFiles files;
};

// The mean of known heights, those below the sea taken for it; -1 if none is known.
double meanOf(const QList<QByteArray>& values, int first, std::size_t count)
{
    double sum = 0.0;
    int known = 0;
    for (int i = first; i < first + static_cast<int>(count); ++i) {
        const int value = values[i].toInt();
        if (value > -32767) {
            sum += std::max(value, 0);
            ++known;
        }
    }
    return known > 0 ? sum / known : -1.0;
}

} // namespace

TEST_P(RealTerrain, HasTheHeightsThatGdalReads)
{
    const TORVTerrainFile::Ptr file = converted();
    const int last = file->getLongitudePoints() - 1;
    QByteArray questions;
    for (const auto& [column, row] : meshPlaces()) {
        for (const int y : sourcePoints(Steps - row, last)) {
            for (const int x : sourcePoints(column, last)) {
                questions += QByteArray::number(x) + ' ' + QByteArray::number(y) + '\n';
            }
        }
    }
    const QList<QByteArray> answers =
        ask(QStringLiteral("gdallocationinfo"), {QStringLiteral("-valonly"), file->getPath()}, questions).split('\n');
    ASSERT_EQ(answers.size(), questions.count('\n') + 1);
    int at = 0;
    int compared = 0;
    for (const auto& [column, row] : meshPlaces()) {
        const std::size_t count = sourcePoints(Steps - row, last).size() * sourcePoints(column, last).size();
        const double expected = meanOf(answers, at, count);
        at += static_cast<int>(count);
        if (expected >= 0.0) {
            double point[3] = {};
            file->getPolyData()->GetPoint(row * (Steps + 1) + column, point);
            EXPECT_FLOAT_EQ(static_cast<float>(point[2]), static_cast<float>(expected)) << column << ' ' << row;
            ++compared;
        }
    }
    EXPECT_GE(compared, 90); // of the one that is half void
}

TEST_P(RealTerrain, StandsWhereProjPutsIt)
{
    const TORVTerrainFile::Ptr file = converted();
    QByteArray questions;
    for (const auto& [column, row] : meshPlaces()) {
        questions += QByteArray::number(GetParam().lon + column / 60.0, 'f', 12) + ' ' +
                     QByteArray::number(GetParam().lat + row / 60.0, 'f', 12) + '\n';
    }
    const QString ellipsoid = QStringLiteral("+a=6378137 +rf=298.257 +no_defs");
    const QString definition = QStringLiteral("+proj=aeqd +lat_0=%1 +lon_0=%2 ")
                                   .arg(GetParam().lat + 0.4, 0, 'f', 6)
                                   .arg(GetParam().lon + 0.6, 0, 'f', 6);
    const QList<QByteArray> answers =
        ask(QStringLiteral("cs2cs"),
            QStringList{QStringLiteral("-f"), QStringLiteral("%.4f")} +
                (QLatin1String("+proj=longlat ") + ellipsoid + QLatin1String(" +to ") + definition + ellipsoid)
                    .split(QLatin1Char(' ')),
            questions)
            .split('\n');
    int at = 0;
    for (const auto& [column, row] : meshPlaces()) {
        const QList<QByteArray> answer = answers[at++].simplified().split(' ');
        ASSERT_EQ(answer.size(), 3);
        double point[3] = {};
        file->getPolyData()->GetPoint(row * (Steps + 1) + column, point);
        // A mesh holds floats: 8 mm at 100 km. The program's pi moves the ends of the Earth by 14 mm.
        EXPECT_NEAR(point[0], answer[0].toDouble(), 0.03) << column << ' ' << row;
        EXPECT_NEAR(point[1], answer[1].toDouble(), 0.03) << column << ' ' << row;
    }
}

INSTANTIATE_TEST_SUITE_P(Tiles, RealTerrain, testing::ValuesIn(Tiles));

TEST(RealTerrainFiles, TakesLevelOneOfGdalAndOfOneByteMore)
{
    TORV_NEEDS_SHARED_DATA();
    const TerrainFiles files;
    const QString written = files.path(QStringLiteral("n46_e009.dt1"));
    ask(QStringLiteral("gdal_translate"),
        {QStringLiteral("-q"), QStringLiteral("-of"), QStringLiteral("DTED"),
         SharedData::path(QStringLiteral("terrain/srtm/N46E009.hgt")), written},
        {});
    TORVTerrainFile file(written, files.cachePath());
    EXPECT_TRUE(file.loadFileInfo());
    EXPECT_EQ(file.getBlockName(), QLatin1String("DTED1_N46E9"));
    EXPECT_EQ(QFileInfo(written).size(), 2902642);
    TerrainFiles::overwrite(written, TerrainFiles::read(written) + '\0');
    EXPECT_TRUE(file.loadFileInfo());
}

TEST(RealTerrainFiles, RefusesTheZoneOfHalfTheColumns)
{
    TORV_NEEDS_SHARED_DATA();
    TORVTerrainFile file(SharedData::path(QStringLiteral("terrain/dted/n57_e011.dt1")), QString());
    EXPECT_FALSE(file.loadFileInfo());
}

TEST(RealTerrainFiles, HasNoSlabWhereHalfATileIsUnknown)
{
    TORV_NEEDS_SHARED_DATA();
    const TerrainFiles files;
    TORVTerrainFile file(SharedData::path(QStringLiteral("terrain/srtm/N48W125.hgt")), files.cachePath());
    ASSERT_TRUE(file.loadFileInfo());
    ASSERT_TRUE(file.convertData(TerrainFiles::projection(48.0, -124.0), files.cacheFile(QStringLiteral("a.vtk")),
                                 std::atomic<bool>(false)));
    EXPECT_LT(file.getPolyData()->GetBounds()[5], 2500.0); // the Olympic Mountains have 2432 m
}
