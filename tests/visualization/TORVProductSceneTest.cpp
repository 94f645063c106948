#include "visualization/TORVProductScene.h"

#include "support/ProductFiles.h"
#include "support/SharedData.h"
#include "utils/TORVLog.h"

#include <QFile>

#include <gtest/gtest.h>

#include <vtkPolyData.h>
#include <vtkPropCollection.h>
#include <vtkRenderer.h>

#include <array>

namespace
{

constexpr unsigned int Raw20 = 104; // 2 * 20 dBZ + 64

// One point of echo whose raw value is twice that of the 20 dBZ surface, so that the surface lies half a step from it.
class TORVProductSceneTest : public testing::Test
{
protected:
    static TORVProductFields grid()
    {
        TORVProductFields fields;
        fields.xPoints = 7;
        fields.yPoints = 5;
        fields.zPoints = 4;
        fields.xScale = 100000; // 1 km
        fields.yScale = 200000; // 2 km
        fields.zScale = 75000;  // 750 m
        fields.xRadar = 1000;   // over the second point
        fields.yRadar = 2500;   // between two points
        fields.groundElevation = 100;
        fields.radarHeight = 25;
        return fields;
    }

    TORVProductScene::CPtr withEchoAt(int x, int y, int z)
    {

        return build(grid(), 1, [=](int i, int j, int k) { return i == x && j == y && k == z ? 2 * Raw20 : 0; });
    }

    TORVProductScene::CPtr build(TORVProductFields fields, int itemSize, const ProductFiles::Field& field)
    {
        fields.dataType = itemSize == 1 ? 2 : 9;
        const QString path =
            files.write(QStringLiteral("HAL260714120000.CAPZ"), fields, ProductFiles::data(fields, field, itemSize));
        return TORVProductScene::build(TORVFile::openChecked(path), {{20.0, 1.0, 1.0, 1.0, 1.0}});
    }

    static void expectBounds(const double* actual, const std::array<double, 6>& expected)
    {
        for (int i = 0; i < 6; ++i) {
            EXPECT_NEAR(actual[i], expected[i], 1e-6) << i;
        }
    }

    ProductFiles files;
};

} // namespace

TEST_F(TORVProductSceneTest, StandsRoundTheRadarInMetres)
{
    const TORVProductScene::CPtr scene = withEchoAt(3, 2, 1);
    ASSERT_TRUE(scene);
    // x: (0 - 1) .. (6 - 1) km; y: (0 - 2.5) * 2 .. (4 - 2.5) * 2 km; z: 125 m and 125 + 3 * 750 m, five times as tall.
    expectBounds(scene->getBounds(), {-1000.0, 5000.0, -5000.0, 3000.0, 625.0, 11875.0});
}

TEST_F(TORVProductSceneTest, PutsTheSurfaceWhereTheEchoIs)
{
    const TORVProductScene::CPtr scene = withEchoAt(3, 2, 1);
    ASSERT_TRUE(scene);
    // x: (3 - 1) km +- 500 m; y: (2 - 2.5) * 2 km +- 1 km; z: (125 + 750 +- 375) m, five times as tall.
    expectBounds(scene->getSurface(0)->GetBounds(), {1500.0, 2500.0, -2000.0, 0.0, 2500.0, 6250.0});
}

TEST_F(TORVProductSceneTest, PutsTwoByteEchoAtTheSamePlace)
{
    // 20 dBZ is raw 34768 here and its double is beyond the type: a special code. So the point holds 65534, and the
    // surface lies at 34768 / 65534 of a step from the empty neighbour.
    const TORVProductScene::CPtr scene =
        build(grid(), 2, [](int i, int j, int k) { return i == 3 && j == 2 && k == 1 ? 65534U : 0U; });
    ASSERT_TRUE(scene);
    const double step = 1.0 - 34768.0 / 65534.0;
    const double* const bounds = scene->getSurface(0)->GetBounds();
    EXPECT_NEAR(bounds[0], 2000.0 - step * 1000.0, 0.1);
    EXPECT_NEAR(bounds[1], 2000.0 + step * 1000.0, 0.1);
    EXPECT_NEAR(bounds[3], -1000.0 + step * 2000.0, 0.1);
}

TEST_F(TORVProductSceneTest, TakesSpecialCodesForNoData)
{
    const TORVProductScene::CPtr scene =
        build(grid(), 1, [](int i, int j, int k) { return i == 3 && j == 2 && k == 1 ? 255U : 0U; });
    ASSERT_TRUE(scene);
    EXPECT_EQ(scene->getSurface(0)->GetNumberOfPoints(), 0);
}

TEST_F(TORVProductSceneTest, HasNoSurfaceWithoutEcho)
{
    const TORVProductScene::CPtr scene = build(grid(), 1, [](int, int, int) { return 0U; });
    ASSERT_TRUE(scene);
    EXPECT_EQ(scene->getSurface(0)->GetNumberOfCells(), 0);
}

TEST_F(TORVProductSceneTest, SurfacesOfReflectivityAre20And35And45)
{
    std::vector<double> values;
    for (const TORVProductScene::Surface& surface : TORVProductScene::reflectivitySurfaces()) {
        values.push_back(surface.value);
    }
    EXPECT_EQ(values, (std::vector<double>{20.0, 35.0, 45.0}));
}

TEST_F(TORVProductSceneTest, TellsTheUserOfAFileThatCannotBeRead)
{
    const QString path = files.write(QStringLiteral("HAL260714120000.CAPZ"), grid());
    // 7 * 5 * 4 items and a byte too many: a good header whose file can't be loaded.
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("x");
    file.close();
    QStringList history;
    QObject receiver;
    QObject::connect(TORVLog::Instance(), qOverload<QString const&>(&TORVLog::historyAdd), &receiver,
                     [&history](const QString& line) { history << line; });
    EXPECT_FALSE(TORVProductScene::build(TORVFile::openChecked(path), TORVProductScene::reflectivitySurfaces()));
    EXPECT_EQ(history,
              (QStringList{QStringLiteral("Visualizing 3D data failed:"), QStringLiteral(" -HAL260714120000.CAPZ")}));
}

TEST_F(TORVProductSceneTest, AddsBoxAndSurfaces)
{
    vtkNew<vtkRenderer> renderer;
    const TORVProductScene::CPtr scene = withEchoAt(3, 2, 1);
    scene->addTo(renderer);
    EXPECT_EQ(renderer->GetViewProps()->GetNumberOfItems(), 2);
}

TEST_F(TORVProductSceneTest, FindsTheHailCoreOfARealStorm)
{
    TORV_NEEDS_SHARED_DATA();
    const TORVFile::CPtr file = TORVFile::openChecked(SharedData::path(QStringLiteral("3d/LEM220628071928.CAPZ")));
    const TORVProductScene::CPtr scene = TORVProductScene::build(file, TORVProductScene::reflectivitySurfaces());
    ASSERT_TRUE(scene);
    const double* const outer = scene->getSurface(0)->GetBounds();
    const double* const core = scene->getSurface(2)->GetBounds();
    EXPECT_GT(scene->getSurface(2)->GetNumberOfPoints(), 100);
    for (int axis = 0; axis < 3; ++axis) { // a core lies within the weaker echo
        EXPECT_GE(core[2 * axis], outer[2 * axis] - 1000.0);
        EXPECT_LE(core[2 * axis + 1], outer[2 * axis + 1] + 1000.0);
    }
}
