#include "datalib/TORVTerrainFile.h"

#include "support/LogFile.h"
#include "support/TerrainFiles.h"
#include "utils/TORVPoint3D.h"

#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <vtkActor.h>
#include <vtkCellArray.h>
#include <vtkDataArray.h>
#include <vtkImageData.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkTexture.h>

#include <array>
#include <cmath>

#include <malloc.h>

namespace
{

constexpr int Void = TerrainFiles::Void;

// A slope to the east and, twice as steep, to the south: 0 to 3600 m on three arc seconds.
int slope(int column, int row)
{
    return column + 2 * row;
}

// Of the heap; a sanitizer's own heap says 0.
size_t allocatedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

class TORVTerrainFileConvertTest : public testing::Test
{
protected:
    TORVTerrainFile::Ptr converted(const QString& path)
    {
        const auto file = boost::make_shared<TORVTerrainFile>(path, files.cachePath());
        EXPECT_TRUE(file->loadFileInfo());
        EXPECT_TRUE(file->convertData(projection, cacheFile, abort));
        EXPECT_TRUE(file->isLoaded());
        return file;
    }

    TORVTerrainFile::Ptr srtm(const TerrainFiles::Field& field, int points = TerrainFiles::Srtm3Points)
    {
        return converted(files.writeSrtm(QStringLiteral("N46E008.hgt"), field, points));
    }

    TORVTerrainFile::Ptr dted(const TerrainFiles::Field& field)
    {
        return converted(files.writeDted(QStringLiteral("n46_e008.dt1"), "0080000E0460000N", field));
    }

    static double height(const TORVTerrainFile& file, int column, int row)
    {
        double point[3] = {};
        file.getPolyData()->GetPoint(row * 61 + column, point);
        return point[2];
    }

    static void expectMeshAndPicture(const TORVTerrainFile& file)
    {
        EXPECT_EQ(file.getPolyData()->GetNumberOfPoints(), 61 * 61);
        int size[3] = {};
        file.getTextureImage()->GetDimensions(size);
        EXPECT_EQ(size[0], 256);
        EXPECT_EQ(size[1], 256);
        EXPECT_EQ(file.getTextureImage()->GetNumberOfScalarComponents(), 3);
    }

    static std::array<int, 3> color(const TORVTerrainFile& file, int x, int y)
    {
        const auto* const rgb = static_cast<unsigned char*>(file.getTextureImage()->GetScalarPointer(x, y, 0));
        return {rgb[0], rgb[1], rgb[2]};
    }

    // Of a slope whose cells are the means of `factor` by `factor` points, but for the edges, one point wide.
    static void expectSlope(const TORVTerrainFile& file, int points, int factor)
    {
        const int last = points - 1;
        const auto mean = [&](int step) { // counted from the west, or from the north
            return step == 0 || step == 60 ? step * last / 60.0 : step * last / 60.0 + (factor - 1) / 2.0;
        };
        for (int row = 0; row <= 60; ++row) {
            for (int column = 0; column <= 60; ++column) {
                ASSERT_NEAR(height(file, column, row), mean(column) + 2.0 * mean(60 - row), 1e-3)
                    << column << ' ' << row;
            }
        }
    }

    TerrainFiles files;
    TORVGeoProjection::CPtr projection = TerrainFiles::projection(46.0408, 8.8332);
    QString cacheFile = files.cacheFile(QStringLiteral("block.vtk"));
    std::atomic<bool> abort{false};
};

} // namespace

TEST_F(TORVTerrainFileConvertTest, ThinsThreeArcSecondsToTheMesh)
{
    const TORVTerrainFile::Ptr file = srtm(slope);
    expectMeshAndPicture(*file);
    expectSlope(*file, 1201, 2);
}

TEST_F(TORVTerrainFileConvertTest, ThinsOneArcSecondToTheMesh)
{
    const TORVTerrainFile::Ptr file = srtm(slope, TerrainFiles::Srtm1Points);
    EXPECT_EQ(file->getType(), TORVTerrainFile::SRTM1);
    expectMeshAndPicture(*file);
    expectSlope(*file, 3601, 6);
}

TEST_F(TORVTerrainFileConvertTest, ThinsLevelOneToTheMesh)
{
    const TORVTerrainFile::Ptr file = dted(slope);
    expectMeshAndPicture(*file);
    expectSlope(*file, 1201, 2);
}

TEST_F(TORVTerrainFileConvertTest, ThinsLevelOneOfThePaddedSizeAlike)
{
    const QByteArray bytes = TerrainFiles::dted("0080000E0460000N", slope) + '\0';
    expectSlope(*converted(files.writeBytes(QStringLiteral("n46_e008.dt1"), bytes)), 1201, 2);
}

TEST_F(TORVTerrainFileConvertTest, TakesHeightsBelowTheSeaForTheSea)
{
    EXPECT_EQ(height(*srtm(TerrainFiles::flat(-1)), 30, 30), 0.0); // 0xFFFF: no void in this format
    EXPECT_EQ(height(*srtm(TerrainFiles::flat(-32767)), 30, 30), 0.0);
    EXPECT_EQ(height(*dted(TerrainFiles::flat(-87)), 30, 30), 0.0);
    // Two points of -100 count as 0 beside two of 100.
    EXPECT_EQ(height(*srtm([](int column, int) { return column % 2 == 0 ? -100 : 100; }), 30, 30), 50.0);
}

TEST_F(TORVTerrainFileConvertTest, LeavesVoidsOutOfTheMean)
{
    // Of the cell's four points (600..601, 600..601) one is known.
    const auto field = [](int column, int row) { return column == 601 && row == 600 ? 40 : Void; };
    EXPECT_EQ(height(*srtm(field), 30, 30), 40.0);
    EXPECT_EQ(height(*dted(field), 30, 30), 40.0);
}

TEST_F(TORVTerrainFileConvertTest, TakesBothVoidsOfLevelOne)
{
    QByteArray bytes = TerrainFiles::dted("0080000E0460000N", TerrainFiles::flat(10));
    // Columns 600 and 601, rows 600 and 601 from the north, which is 600 and 599 from the south.
    for (const int column : {600, 601}) {
        for (const int fromSouth : {599, 600}) {
            const int at = 3428 + column * 2414 + 8 + 2 * fromSouth;
            bytes.replace(at, 2, column == 600 ? QByteArray("\x80\x00", 2) : QByteArray("\xFF\xFF", 2));
        }
    }
    // All four are void, so the cell repeats its predecessor and not -32767, 0 or 127.
    EXPECT_EQ(height(*converted(files.writeBytes(QStringLiteral("n46_e008.dt1"), bytes)), 30, 30), 10.0);
}

TEST_F(TORVTerrainFileConvertTest, RepeatsTheCellBeforeAHole)
{
    // Columns 200 to 239 are void: cells 100 to 119. Cell 99 holds columns 198 and 199.
    const auto field = [](int column, int) { return column >= 200 && column < 240 ? Void : column; };
    for (const TORVTerrainFile::Ptr& file : {srtm(field), dted(field)}) {
        EXPECT_EQ(height(*file, 9, 30), 180.5);
        EXPECT_EQ(height(*file, 10, 30), 198.5);
        EXPECT_EQ(height(*file, 11, 30), 198.5);
        EXPECT_EQ(height(*file, 12, 30), 240.5);
    }
}

TEST_F(TORVTerrainFileConvertTest, BeginsARowWithAHoleByTheRuleOfItsFormat)
{
    // The north has 300 m down to row 299, the rest 500 m; the western edge is void at rows 600 and 601.
    const auto field = [](int column, int row) {
        return column == 0 && row >= 600 && row <= 601 ? Void : row < 300 ? 300 : 500;
    };
    EXPECT_EQ(height(*srtm(field), 0, 30), 300.0); // the smallest height so far
    EXPECT_EQ(height(*dted(field), 0, 30), 500.0); // the last cell of the row before
}

TEST_F(TORVTerrainFileConvertTest, BeginsAFileWithAHoleAtTheSea)
{
    const auto field = [](int, int row) { return row < 100 ? Void : 700; };
    for (const TORVTerrainFile::Ptr& file : {srtm(field), dted(field)}) {
        EXPECT_EQ(height(*file, 0, 60), 0.0);
        EXPECT_EQ(height(*file, 60, 60), 0.0);
        EXPECT_EQ(height(*file, 30, 30), 700.0);
    }
}

TEST_F(TORVTerrainFileConvertTest, IsFlatWhereNothingIsKnownAtAll)
{
    for (const TORVTerrainFile::Ptr& file : {srtm(TerrainFiles::flat(Void)), dted(TerrainFiles::flat(Void))}) {
        double bounds[6] = {};
        file->getPolyData()->GetBounds(bounds);
        EXPECT_EQ(bounds[4], 0.0);
        EXPECT_EQ(bounds[5], 0.0);
    }
}

TEST_F(TORVTerrainFileConvertTest, KeepsThePointsInTheOrderOfTheLookUp)
{
    // Normals, triangles and strips have gone over the mesh, and it has been to the disk and back.
    const TORVTerrainFile::Ptr file = srtm(slope);
    ASSERT_TRUE(file->loadCachedData(cacheFile));
    for (int row = 0; row <= 60; ++row) {
        for (int column = 0; column <= 60; ++column) {
            const TORVPoint3D place = projection->projectFromLatLon({46.0 + row / 60.0, 8.0 + column / 60.0});
            double point[3] = {};
            file->getPolyData()->GetPoint(row * 61 + column, point);
            ASSERT_NEAR(point[0], place.x, 0.05) << column << ' ' << row;
            ASSERT_NEAR(point[1], place.y, 0.05) << column << ' ' << row;
            const double* const uv = file->getPolyData()->GetPointData()->GetTCoords()->GetTuple(row * 61 + column);
            ASSERT_FLOAT_EQ(static_cast<float>(uv[0]), static_cast<float>(column / 60.0));
            ASSERT_FLOAT_EQ(static_cast<float>(uv[1]), static_cast<float>(row / 60.0));
        }
    }
}

TEST_F(TORVTerrainFileConvertTest, CoversTheSquareWithTrianglesThatFaceUp)
{
    const TORVTerrainFile::Ptr file = srtm(slope);
    vtkPolyData* const mesh = file->getPolyData();
    EXPECT_EQ(mesh->GetNumberOfPolys(), 0);
    vtkIdType triangles = 0;
    for (vtkIdType cell = 0; cell < mesh->GetNumberOfStrips(); ++cell) {
        triangles += mesh->GetStrips()->GetCellSize(cell) - 2;
    }
    EXPECT_EQ(triangles, 2 * 60 * 60);
    vtkDataArray* const normals = mesh->GetPointData()->GetNormals();
    ASSERT_TRUE(normals);
    for (vtkIdType i = 0; i < normals->GetNumberOfTuples(); ++i) {
        ASSERT_GT(normals->GetTuple(i)[2], 0.0) << i;
    }
}

TEST_F(TORVTerrainFileConvertTest, AnswersWithTheMeshPointOfTheCell)
{
    const TORVTerrainFile::Ptr file = srtm(slope);
    // 0.3331 * 61 = 20.3 and 0.7222 * 61 = 44.1, so row 20, column 44.
    EXPECT_EQ(file->getElevationAtLocation({46.3331, 8.7222}), height(*file, 44, 20));
    EXPECT_EQ(file->getElevationAtLocation({46.0, 8.0}), height(*file, 0, 0));
    EXPECT_EQ(file->getElevationAtLocation({46.9999, 8.9999}), height(*file, 60, 60));
    EXPECT_EQ(file->getElevationAtLocation({47.0, 8.5}), 0.0);
    EXPECT_EQ(file->getElevationAtLocation({46.5, 9.0}), 0.0);
}

TEST_F(TORVTerrainFileConvertTest, AnswersTheSameSouthOfTheEquatorAndWestOfGreenwich)
{
    // Twin Lakes, Oklahoma: in the block at N35 W98, 0.3331 and 0.7222 from its corner.
    const TORVTerrainFile::Ptr west = converted(files.writeSrtm(QStringLiteral("N35W098.hgt"), slope));
    EXPECT_EQ(west->getElevationAtLocation({35.3331, -97.2778}), height(*west, 44, 20));
    // -0.5 lies in the middle of the block at -1.
    const TORVTerrainFile::Ptr south = converted(files.writeSrtm(QStringLiteral("S01W001.hgt"), slope));
    EXPECT_EQ(south->getElevationAtLocation({-0.5, -0.5}), height(*south, 30, 30));
    EXPECT_EQ(south->getElevationAtLocation({-0.9999, -0.0001}), height(*south, 60, 0));
}

TEST_F(TORVTerrainFileConvertTest, ColorsTheGroundByItsHeight)
{
    // From hue, saturation and value by hand: at 500 m (0.1, 0.25, 0.9) is 0.9, 0.81, 0.675.
    const struct
    {
        int height;
        std::array<int, 3> rgb;
    } rows[] = {{0, {191, 231, 255}},
                {500, {229, 206, 172}},
                {2500, {229, 229, 229}},
                {4000, {255, 255, 255}},
                {9000, {255, 255, 255}}};
    for (const auto& row : rows) {
        const TORVTerrainFile::Ptr file = srtm(TerrainFiles::flat(row.height));
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(color(*file, 128, 128)[i], row.rgb[i], 1) << row.height;
            EXPECT_NEAR(color(*file, 0, 0)[i], row.rgb[i], 1) << row.height;
        }
    }
}

TEST_F(TORVTerrainFileConvertTest, DarkensSteepGround)
{
    // North and south, 2 points each, differ by 2 * 2 * 20 m: a = 1 / 81, b = 1, and the 0.05th power is 0.803.
    const TORVTerrainFile::Ptr steep = srtm([](int, int row) { return 5000 + 20 * row; });
    EXPECT_NEAR(color(*steep, 128, 128)[0], 255.0 * std::pow(1.0 / 81.0, 0.05), 1.5);
    // 2 * 2 * 1000 m from west to east: 1 / 4001, whose power is 0.66, below the least of 0.75. The third channel of
    // each height differs, so all heights are above 4000 m.
    const TORVTerrainFile::Ptr cliffs =
        srtm([](int column, int) { return 5000 + (column % 8 < 4 ? column % 8 : 8 - column % 8) * 1000; });
    EXPECT_GE(color(*cliffs, 128, 128)[0], 190);
    EXPECT_LT(color(*cliffs, 128, 128)[0], 215);
}

TEST_F(TORVTerrainFileConvertTest, HasNorthAtTheTopOfThePicture)
{
    // Sea in the south west, snow elsewhere.
    const TORVTerrainFile::Ptr file = srtm([](int column, int row) { return column < 600 && row > 600 ? 0 : 5000; });
    EXPECT_NEAR(color(*file, 20, 20)[0], 191, 1);
    EXPECT_NEAR(color(*file, 235, 20)[0], 255, 1);
    EXPECT_NEAR(color(*file, 20, 235)[0], 255, 1);
    const QImage picture(cacheFile + QLatin1String(".png"));
    ASSERT_EQ(picture.size(), QSize(256, 256));
    EXPECT_NEAR(qRed(picture.pixel(20, 235)), 191, 1);
    EXPECT_NEAR(qRed(picture.pixel(20, 20)), 255, 1);
}

TEST_F(TORVTerrainFileConvertTest, MakesEmptyBlocksFlatAndOfOneColor)
{
    TORVTerrainFile block(TORVCoordinate(46.0, 8.0), files.cachePath());
    ASSERT_TRUE(block.convertData(projection, cacheFile, abort));
    expectMeshAndPicture(block);
    EXPECT_EQ(block.getPolyData()->GetBounds()[5], 0.0);
    EXPECT_EQ(color(block, 0, 0), color(block, 255, 255));
    EXPECT_NEAR(color(block, 0, 0)[2], 255, 1);
    ASSERT_TRUE(block.loadCachedData(cacheFile));
    expectMeshAndPicture(block);
}

TEST_F(TORVTerrainFileConvertTest, ReadsBackWhatItHasWritten)
{
    const TORVTerrainFile::Ptr file = srtm(slope);
    TORVTerrainFile other(TORVCoordinate(46.0, 8.0), files.cachePath());
    ASSERT_TRUE(other.loadCachedData(cacheFile));
    expectMeshAndPicture(other);
    expectSlope(other, 1201, 2);
    for (const int at : {0, 17, 128, 255}) {
        EXPECT_EQ(color(other, at, at), color(*file, at, at));
    }
}

TEST_F(TORVTerrainFileConvertTest, LoadsAMeshWithoutAPicture)
{
    srtm(slope);
    ASSERT_TRUE(QFile::remove(cacheFile + QLatin1String(".png")));
    TORVTerrainFile other(TORVCoordinate(46.0, 8.0), files.cachePath());
    ASSERT_TRUE(other.loadCachedData(cacheFile));
    EXPECT_TRUE(other.isLoaded());
    EXPECT_FALSE(other.getTextureImage());
    EXPECT_FALSE(other.getActor()->GetTexture());
    expectSlope(other, 1201, 2);
}

TEST_F(TORVTerrainFileConvertTest, LightsItsActorAsGround)
{
    const TORVTerrainFile::Ptr file = srtm(slope);
    vtkActor* const actor = file->getActor();
    ASSERT_TRUE(actor);
    EXPECT_EQ(actor->GetProperty()->GetAmbient(), 0.3);
    EXPECT_EQ(actor->GetProperty()->GetDiffuse(), 1.0);
    EXPECT_EQ(actor->GetProperty()->GetSpecular(), 0.0);
    EXPECT_FALSE(actor->GetTexture()->GetRepeat());
    EXPECT_TRUE(actor->GetTexture()->GetEdgeClamp());
    EXPECT_TRUE(actor->GetTexture()->GetInterpolate());
}

TEST_F(TORVTerrainFileConvertTest, PutsMercatorRoundTheRadar)
{
    projection = boost::make_shared<const TORVGeoProjection>(QStringLiteral("merc"), TORVCoordinate(46.5, 8.5),
                                                             6371000.0, 298.0);
    const TORVTerrainFile::Ptr file = srtm(slope);
    double point[3] = {};
    file->getPolyData()->GetPoint(30 * 61 + 30, point); // the radar itself
    EXPECT_NEAR(point[0], 0.0, 0.05);
    EXPECT_NEAR(point[1], 0.0, 0.05);
}

TEST_F(TORVTerrainFileConvertTest, ShowsALostSourceFlatAndKeepsNothingOfIt)
{
    const QString path = files.writeSrtm(QStringLiteral("N46E008.hgt"), slope);
    TORVTerrainFile file(path, files.cachePath());
    ASSERT_TRUE(file.loadFileInfo());
    TerrainFiles::overwrite(path, QByteArray(1000, '\1'));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_FALSE(file.convertData(projection, cacheFile, abort));
    EXPECT_TRUE(file.isSourceLost());
    EXPECT_TRUE(file.isLoaded());
    EXPECT_EQ(file.getPolyData()->GetBounds()[5], 0.0);
    EXPECT_TRUE(files.cacheNames().isEmpty());
    EXPECT_TRUE(
        log.lines().contains(QLatin1String("D: TORVTerrainFile::loadOriginalDataSRTM(): Accessing file failed.")));
    EXPECT_TRUE(log.lines().contains(QLatin1String("D: filename: ") + path));
    EXPECT_EQ(log.lines().filter(QLatin1String("W: ")),
              QStringList(QLatin1String("W: Terrain file can't be read, its ground is flat: ") + path));
}

TEST_F(TORVTerrainFileConvertTest, TakesAVanishedSourceForLost)
{
    const QString path = files.writeDted(QStringLiteral("n46_e008.dt1"), "0080000E0460000N", slope);
    TORVTerrainFile file(path, files.cachePath());
    ASSERT_TRUE(file.loadFileInfo());
    ASSERT_TRUE(QFile::remove(path));
    const LogFile log(TORVLog::LEVEL_DEBUG);
    EXPECT_FALSE(file.convertData(projection, cacheFile, abort));
    EXPECT_TRUE(file.isSourceLost());
    EXPECT_TRUE(
        log.lines().contains(QLatin1String("D: TORVTerrainFile::loadOriginalDataDTED1(): Accessing file failed.")));
}

TEST_F(TORVTerrainFileConvertTest, StopsAtOnceWhenAborted)
{
    const QString path = files.writeSrtm(QStringLiteral("N46E008.hgt"), slope);
    TORVTerrainFile file(path, files.cachePath());
    ASSERT_TRUE(file.loadFileInfo());
    abort = true;
    const LogFile log(TORVLog::LEVEL_WARNING);
    EXPECT_FALSE(file.convertData(projection, cacheFile, abort));
    EXPECT_FALSE(file.isLoaded());
    EXPECT_FALSE(file.isSourceLost());
    EXPECT_TRUE(files.cacheNames().isEmpty());
    EXPECT_TRUE(log.lines().filter(QLatin1String("W: ")).isEmpty());
}

TEST_F(TORVTerrainFileConvertTest, ShowsTheGroundWhereNothingCanBeKept)
{
    const QString path = files.writeSrtm(QStringLiteral("N46E008.hgt"), slope);
    TerrainFiles::overwrite(files.cachePath(), "a file where the directory should be");
    TORVTerrainFile file(path, files.cachePath());
    ASSERT_TRUE(file.loadFileInfo());
    EXPECT_FALSE(file.convertData(projection, cacheFile, abort));
    EXPECT_FALSE(file.isSourceLost());
    ASSERT_TRUE(file.isLoaded());
    expectSlope(file, 1201, 2);
}

TEST_F(TORVTerrainFileConvertTest, MakesItsCacheDirectoryAgain)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    srtm(slope);
    EXPECT_TRUE(log.lines().contains(QLatin1String("N: Creating cache directory for converted terrain files.")));
    EXPECT_EQ(files.cacheNames(), QStringList({QStringLiteral("block.vtk"), QStringLiteral("block.vtk.png")}));
}

TEST_F(TORVTerrainFileConvertTest, GivesBackTheMemoryOfTheConversion)
{
    srtm(slope); // so that what libraries keep for themselves is there
    const size_t before = allocatedBytes();
    const TORVTerrainFile::Ptr file = srtm(slope);
    // Mesh and picture are 180 and 200 KB; the grid alone would be 2.9 MB.
    EXPECT_LT(allocatedBytes(), before + 2000000);
}

TEST_F(TORVTerrainFileConvertTest, CopiesWithoutWhatIsLoaded)
{
    const TORVTerrainFile::Ptr file = srtm(slope);
    const TORVTerrainFile::Ptr copy = file->unloadedCopy();
    EXPECT_FALSE(copy->isLoaded());
    EXPECT_EQ(copy->getBlockName(), file->getBlockName());
    EXPECT_EQ(copy->getPath(), file->getPath());
    ASSERT_TRUE(copy->convertData(projection, cacheFile, abort));
    EXPECT_NE(copy->getPolyData(), file->getPolyData());
    expectSlope(*copy, 1201, 2);
}
