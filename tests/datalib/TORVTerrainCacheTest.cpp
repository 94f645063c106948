#include "datalib/TORVTerrainCache.h"

#include "support/ProcessRun.h"
#include "support/TerrainFiles.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QtEndian>

#include <gtest/gtest.h>

#include <vtkCellArray.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>

#include <limits>

namespace
{

const QString Probe = QStringLiteral(TORV_TERRAIN_PROBE);

// A mesh of one strip for each row of squares.
vtkSmartPointer<vtkPolyData> mesh(int side = TORVTerrainCache::MeshSide)
{
    vtkNew<vtkPoints> points;
    vtkNew<vtkFloatArray> normals;
    normals->SetName("Normals");
    normals->SetNumberOfComponents(3);
    vtkNew<vtkFloatArray> places;
    places->SetName("TextureCoordinates");
    places->SetNumberOfComponents(2);
    for (int row = 0; row < side; ++row) {
        for (int column = 0; column < side; ++column) {
            points->InsertNextPoint(1000.0 * column, 2000.0 * row, column + row);
            normals->InsertNextTuple3(0.0, 0.0, 1.0);
            places->InsertNextTuple2(column / 60.0, row / 60.0);
        }
    }
    vtkNew<vtkCellArray> strips;
    for (int row = 0; row + 1 < side; ++row) {
        strips->InsertNextCell(2 * side);
        for (int column = 0; column < side; ++column) {
            strips->InsertCellPoint(vtkIdType(row) * side + column);
            strips->InsertCellPoint(vtkIdType(row + 1) * side + column);
        }
    }
    const auto mesh = vtkSmartPointer<vtkPolyData>::New();
    mesh->SetPoints(points);
    mesh->SetStrips(strips);
    mesh->GetPointData()->SetNormals(normals);
    mesh->GetPointData()->SetTCoords(places);
    return mesh;
}

vtkSmartPointer<vtkImageData> picture(int side = TORVTerrainCache::PictureSide, int channels = 3,
                                      int scalarType = VTK_UNSIGNED_CHAR)
{
    const auto image = vtkSmartPointer<vtkImageData>::New();
    image->SetDimensions(side, side, 1);
    image->AllocateScalars(scalarType, channels);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            for (int channel = 0; channel < channels; ++channel) {
                image->SetScalarComponentFromDouble(x, y, 0, channel, (x + 3 * y + 50 * channel) % 256);
            }
        }
    }
    return image;
}

class TORVTerrainCacheTest : public testing::Test
{
protected:
    TORVTerrainCacheTest() { QDir().mkpath(files.cachePath()); }

    // What follows the title, changed, under a title with the checksum of the change.
    static QByteArray withBody(const QByteArray& contents, const QByteArray& before, const QByteArray& after)
    {
        QByteArray body = contents.mid(contents.indexOf("BINARY"));
        const int at = body.indexOf(before);
        EXPECT_GE(at, 0) << before.constData();
        body.replace(at, before.size(), after);
        return TORVTerrainCache::checksummedTitle(body) + body;
    }

    // The number that stands `bytes` behind a line.
    template <typename Number>
    static QByteArray withNumber(const QByteArray& contents, const QByteArray& line, int bytes, Number number)
    {
        QByteArray body = contents.mid(contents.indexOf("BINARY"));
        const int at = body.indexOf(line) + line.size() + bytes;
        qToBigEndian(number, body.data() + at);
        return TORVTerrainCache::checksummedTitle(body) + body;
    }

    TerrainFiles files;
    QString meshFile = files.cacheFile(QStringLiteral("block.vtk"));
    QString pictureFile = meshFile + QLatin1String(".png");
    QByteArray goodMesh = TORVTerrainCache::fromMesh(mesh());
    QByteArray goodPicture = TORVTerrainCache::fromPicture(picture());
};

} // namespace

TEST_F(TORVTerrainCacheTest, ReadsBackAMesh)
{
    const vtkSmartPointer<vtkPolyData> read = TORVTerrainCache::toMesh(goodMesh);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->GetNumberOfPoints(), 3721);
    EXPECT_EQ(read->GetNumberOfStrips(), 60);
    double point[3] = {};
    read->GetPoint(62, point);
    EXPECT_EQ(point[0], 1000.0);
    EXPECT_EQ(point[1], 2000.0);
    EXPECT_EQ(point[2], 2.0);
    EXPECT_TRUE(read->GetPointData()->GetNormals());
    EXPECT_TRUE(read->GetPointData()->GetTCoords());
}

TEST_F(TORVTerrainCacheTest, WritesALegacyFileInBinary)
{
    EXPECT_TRUE(goodMesh.startsWith("# vtk DataFile Version 5.1\n"));
    EXPECT_TRUE(goodMesh.contains("\nBINARY\nDATASET POLYDATA\nPOINTS 3721 float\n"));
    EXPECT_LE(goodMesh.indexOf('\n', 27) - 27, 256); // a title has no more
}

TEST_F(TORVTerrainCacheTest, ReadsBackAPicture)
{
    const vtkSmartPointer<vtkImageData> read = TORVTerrainCache::toPicture(goodPicture);
    ASSERT_TRUE(read);
    for (const int at : {0, 100, 255}) {
        EXPECT_EQ(read->GetScalarComponentAsDouble(at, 7, 0, 1), (at + 21 + 50) % 256);
    }
}

TEST_F(TORVTerrainCacheTest, RefusesAMeshThatIsCutOff)
{
    for (int size = 0; size < goodMesh.size(); size += size < 300 ? 1 : 997) {
        EXPECT_FALSE(TORVTerrainCache::toMesh(goodMesh.left(size))) << size;
    }
    EXPECT_FALSE(TORVTerrainCache::toMesh(goodMesh.left(goodMesh.size() - 1)));
}

TEST_F(TORVTerrainCacheTest, RefusesAMeshWithAnyByteChanged)
{
    for (int at = 0; at < goodMesh.size(); at += at < 300 ? 1 : 997) {
        QByteArray changed = goodMesh;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        EXPECT_FALSE(TORVTerrainCache::toMesh(changed)) << at;
    }
}

TEST_F(TORVTerrainCacheTest, RefusesAMeshThatGoesOn)
{
    EXPECT_FALSE(TORVTerrainCache::toMesh(goodMesh + '\n'));
    EXPECT_FALSE(TORVTerrainCache::toMesh(withBody(goodMesh, "BINARY", "BINARY\n")));
    const QByteArray longer = goodMesh.mid(goodMesh.indexOf("BINARY")) + "METADATA\n";
    EXPECT_FALSE(TORVTerrainCache::toMesh(TORVTerrainCache::checksummedTitle(longer) + longer));
}

TEST_F(TORVTerrainCacheTest, RefusesOtherCountsBeforeTheReaderSeesThem)
{
    ASSERT_TRUE(TORVTerrainCache::toMesh(withBody(goodMesh, "BINARY", "BINARY"))); // the change alone is none
    for (const char* const points : {"POINTS 3720 float", "POINTS -1 float", "POINTS 999999999999999 float",
                                     "POINTS 3721 double", "POINTS 3721"}) {
        EXPECT_FALSE(TORVTerrainCache::toMesh(withBody(goodMesh, "POINTS 3721 float", points))) << points;
    }
    const QByteArray strips = "TRIANGLE_STRIPS 61 7320";
    for (const char* const counts :
         {"TRIANGLE_STRIPS 62 7320", "TRIANGLE_STRIPS 61 7321", "TRIANGLE_STRIPS 61 -1", "TRIANGLE_STRIPS 0 0",
          "TRIANGLE_STRIPS 9223372036854775807 9223372036854775807", "TRIANGLE_STRIPS 61 99999999999999999999",
          "TRIANGLE_STRIPS 61", "POLYGONS 61 7320"}) {
        EXPECT_FALSE(TORVTerrainCache::toMesh(withBody(goodMesh, strips, counts))) << counts;
    }
    EXPECT_FALSE(TORVTerrainCache::toMesh(withBody(goodMesh, "POINT_DATA 3721", "POINT_DATA 3722")));
    EXPECT_FALSE(TORVTerrainCache::toMesh(withBody(goodMesh, "NORMALS Normals", "NORMALS No rmals")));
    EXPECT_FALSE(TORVTerrainCache::toMesh(withBody(goodMesh, "BINARY", "ASCII")));
    EXPECT_FALSE(TORVTerrainCache::toMesh(TORVTerrainCache::fromMesh(mesh(60))));
    EXPECT_FALSE(TORVTerrainCache::toMesh(TORVTerrainCache::fromMesh(mesh(62))));
}

TEST_F(TORVTerrainCacheTest, RefusesPointNumbersOutsideTheMesh)
{
    const QByteArray line = "CONNECTIVITY vtktypeint64\n";
    ASSERT_TRUE(TORVTerrainCache::toMesh(withNumber<qint64>(goodMesh, line, 8 * 100, 3720)));
    for (const qint64 number :
         {qint64(3721), qint64(-1), std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min()}) {
        EXPECT_FALSE(TORVTerrainCache::toMesh(withNumber<qint64>(goodMesh, line, 8 * 100, number))) << number;
    }
}

TEST_F(TORVTerrainCacheTest, RefusesStripsThatEndNowhere)
{
    const QByteArray line = "OFFSETS vtktypeint64\n";
    for (const qint64 number : {qint64(0), qint64(-1), qint64(7321), std::numeric_limits<qint64>::max()}) {
        EXPECT_FALSE(TORVTerrainCache::toMesh(withNumber<qint64>(goodMesh, line, 8 * 5, number))) << number;
    }
    EXPECT_FALSE(TORVTerrainCache::toMesh(withNumber<qint64>(goodMesh, line, 0, 1)));
}

TEST_F(TORVTerrainCacheTest, RefusesPlacesThatAreNoNumbers)
{
    for (const float number : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        EXPECT_FALSE(TORVTerrainCache::toMesh(withNumber(goodMesh, "POINTS 3721 float\n", 4 * 1000, number)));
        EXPECT_FALSE(TORVTerrainCache::toMesh(withNumber(goodMesh, "NORMALS Normals float\n", 4 * 1000, number)));
    }
}

TEST_F(TORVTerrainCacheTest, RefusesAPictureThatIsCutOffOrChanged)
{
    for (int at = 0; at < goodPicture.size(); at += at < 100 ? 1 : 997) {
        EXPECT_FALSE(TORVTerrainCache::toPicture(goodPicture.left(at))) << at;
        QByteArray changed = goodPicture;
        changed[at] = static_cast<char>(changed[at] ^ 1);
        EXPECT_FALSE(TORVTerrainCache::toPicture(changed)) << at;
    }
    EXPECT_FALSE(TORVTerrainCache::toPicture(goodPicture + '\0'));
}

TEST_F(TORVTerrainCacheTest, RefusesPicturesOfAnotherSizeOrKind)
{
    EXPECT_FALSE(TORVTerrainCache::toPicture(TORVTerrainCache::fromPicture(picture(255))));
    EXPECT_FALSE(TORVTerrainCache::toPicture(TORVTerrainCache::fromPicture(picture(512))));
    EXPECT_FALSE(TORVTerrainCache::toPicture(TORVTerrainCache::fromPicture(picture(256, 4))));
    EXPECT_FALSE(TORVTerrainCache::toPicture(TORVTerrainCache::fromPicture(picture(256, 1))));
    EXPECT_FALSE(TORVTerrainCache::toPicture(TORVTerrainCache::fromPicture(picture(256, 3, VTK_UNSIGNED_SHORT))));
}

TEST_F(TORVTerrainCacheTest, WritesThePairAndNothingElse)
{
    ASSERT_TRUE(TORVTerrainCache::write(meshFile, goodMesh, goodPicture));
    EXPECT_EQ(files.cacheNames(), QStringList({QStringLiteral("block.vtk"), QStringLiteral("block.vtk.png")}));
    const auto pair = TORVTerrainCache::read(meshFile);
    ASSERT_TRUE(pair);
    EXPECT_TRUE(pair->mesh);
    EXPECT_TRUE(pair->picture);
}

TEST_F(TORVTerrainCacheTest, ReplacesADamagedPair)
{
    TerrainFiles::overwrite(meshFile, goodMesh.left(1000));
    TerrainFiles::overwrite(pictureFile, goodPicture.left(1000));
    ASSERT_FALSE(TORVTerrainCache::read(meshFile));
    ASSERT_TRUE(TORVTerrainCache::write(meshFile, goodMesh, goodPicture));
    EXPECT_TRUE(TORVTerrainCache::read(meshFile));
}

TEST_F(TORVTerrainCacheTest, WritesNothingIntoADirectoryThatIsNotThere)
{
    ASSERT_TRUE(QDir(files.cachePath()).removeRecursively());
    EXPECT_FALSE(TORVTerrainCache::write(meshFile, goodMesh, goodPicture));
    EXPECT_FALSE(TORVTerrainCache::read(meshFile));
}

TEST_F(TORVTerrainCacheTest, LeavesNoMeshWithoutItsPicture)
{
    ASSERT_TRUE(QDir().mkpath(pictureFile)); // so that the picture can't get there
    EXPECT_FALSE(TORVTerrainCache::write(meshFile, goodMesh, goodPicture));
    EXPECT_TRUE(files.cacheNames().isEmpty());
}

TEST_F(TORVTerrainCacheTest, WritesNoHalfPairs)
{
    EXPECT_FALSE(TORVTerrainCache::write(meshFile, {}, goodPicture));
    EXPECT_FALSE(TORVTerrainCache::write(meshFile, goodMesh, {}));
    EXPECT_TRUE(files.cacheNames().isEmpty());
}

TEST_F(TORVTerrainCacheTest, RefusesHugeAndEmptyFilesAndDirectories)
{
    for (const qint64 size : {qint64(0), qint64(4) * 1024 * 1024 + 1, qint64(8) * 1024 * 1024 * 1024}) {
        QFile file(meshFile);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_TRUE(file.resize(size));
        EXPECT_FALSE(TORVTerrainCache::read(meshFile)) << size;
    }
    ASSERT_TRUE(QFile::remove(meshFile));
    ASSERT_TRUE(QDir().mkpath(meshFile));
    EXPECT_FALSE(TORVTerrainCache::read(meshFile));
}

TEST_F(TORVTerrainCacheTest, RefusesAPairWhosePictureIsDamaged)
{
    ASSERT_TRUE(TORVTerrainCache::write(meshFile, goodMesh, goodPicture));
    TerrainFiles::overwrite(pictureFile, goodPicture.left(goodPicture.size() / 2));
    EXPECT_FALSE(TORVTerrainCache::read(meshFile));
}

TEST_F(TORVTerrainCacheTest, MakesItsDirectoryOnce)
{
    const QString path = files.cachePath() + QLatin1String("/a/b/c");
    EXPECT_TRUE(TORVTerrainCache::createDirectory(path));
    EXPECT_TRUE(QDir(path).exists());
    EXPECT_FALSE(TORVTerrainCache::createDirectory(path));
    EXPECT_FALSE(TORVTerrainCache::createDirectory(QString()));
}

TEST_F(TORVTerrainCacheTest, SurvivesTwoViewersThatConvertTheSameBlocks)
{
    files.writeSrtm(QStringLiteral("N46E008.hgt"), TerrainFiles::flat(1234));
    files.writeSrtm(QStringLiteral("N46E009.hgt"), TerrainFiles::flat(567));
    const QStringList arguments = {files.sourcePath(),  files.cachePath(),   QStringLiteral("46"),
                                   QStringLiteral("8"), QStringLiteral("2"), QStringLiteral("3")};
    QProcess viewers[2];
    for (QProcess& viewer : viewers) {
        viewer.start(Probe, arguments);
    }
    for (QProcess& viewer : viewers) {
        ASSERT_TRUE(viewer.waitForFinished(120000));
        EXPECT_EQ(viewer.exitCode(), 0);
        EXPECT_EQ(viewer.readAllStandardOutput(), "6 of 6 loaded, up to 1234 m\n");
        EXPECT_FALSE(viewer.readAllStandardError().contains("W: "));
    }
    EXPECT_EQ(files.cacheNames().size(), 12);
    for (const QString& name : files.cacheNames(QStringLiteral("*.vtk"))) {
        EXPECT_TRUE(TORVTerrainCache::read(files.cacheFile(name))) << qUtf8Printable(name);
    }
}

TEST_F(TORVTerrainCacheTest, LeavesOnlyWholePairsOnAFullDisk)
{
    TORV_NEEDS_PRIVATE_MOUNTS();
    files.writeSrtm(QStringLiteral("N46E008.hgt"), TerrainFiles::flat(1234));
    // 300 KB hold one pair of 180 KB and one of 1 KB, and a part of another; what is left is copied out for a look.
    const QString kept = files.path(QStringLiteral("kept"));
    ASSERT_TRUE(QDir().mkpath(kept));
    const QString script = QStringLiteral("'%1' '%2' '%3' 46 8 2 3 && cp -r '%3'/. '%4'")
                               .arg(Probe, files.sourcePath(), files.cachePath(), kept);
    const ProcessRun::Outcome outcome =
        ProcessRun(QStringLiteral("/bin/sh"))
            .privately(QStringLiteral("mount -t tmpfs -o size=300k tmpfs '%1'").arg(files.cachePath()))(
                {QStringLiteral("-c"), script});
    ASSERT_EQ(outcome.exitCode, 0) << qUtf8Printable(outcome.errors);
    EXPECT_EQ(outcome.output, QLatin1String("6 of 6 loaded, up to 1234 m\n"));
    EXPECT_EQ(outcome.logLines().filter(QLatin1String("W: ")).size(), 1) << qUtf8Printable(outcome.errors);
    const QDir directory(kept);
    EXPECT_TRUE(directory.entryList({QStringLiteral("*.tmp")}).isEmpty());
    for (const QString& name : directory.entryList({QStringLiteral("*.vtk")})) {
        EXPECT_TRUE(TORVTerrainCache::read(directory.filePath(name))) << qUtf8Printable(name);
    }
}

TEST_F(TORVTerrainCacheTest, ShowsTheGroundFromAReadOnlyCache)
{
    TORV_NEEDS_PRIVATE_MOUNTS();
    files.writeSrtm(QStringLiteral("N46E008.hgt"), TerrainFiles::flat(1234));
    const ProcessRun::Outcome outcome =
        ProcessRun(Probe).privately(QStringLiteral("mount -t tmpfs -o ro tmpfs '%1'").arg(files.cachePath()))(
            {files.sourcePath(), files.cachePath(), QStringLiteral("46"), QStringLiteral("8"), QStringLiteral("1"),
             QStringLiteral("2")});
    ASSERT_EQ(outcome.exitCode, 0) << qUtf8Printable(outcome.errors);
    EXPECT_EQ(outcome.output, QLatin1String("2 of 2 loaded, up to 1234 m\n"));
    EXPECT_EQ(outcome.logLines().filter(QLatin1String("W: ")).size(), 1) << qUtf8Printable(outcome.errors);
}
