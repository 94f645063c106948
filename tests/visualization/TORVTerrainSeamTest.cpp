// Whether ground that is made block by block is seen as one piece.
#include "datalib/TORVTerrainSeam.h"

#include "datalib/TORVTerrainDir.h"
#include "datalib/TORVTerrainFile.h"
#include "datalib/TORVTerrainSet.h"
#include "support/OffscreenScene.h"
#include "support/TerrainFiles.h"
#include "utils/TORVPoint3D.h"

#include <QColor>
#include <QImage>
#include <QPointF>

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkActorCollection.h>
#include <vtkCamera.h>
#include <vtkImageData.h>
#include <vtkLight.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTexture.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace
{

constexpr int Side = 8; // blocks
constexpr int South = 42;
constexpr int West = 5;
constexpr int PictureSide = 800;
constexpr double VerticalScale = 5.0;

// A round lake at the height of the sea.
constexpr double LakeLat = 45.5;
constexpr double LakeLon = 10.5;
constexpr double LakeRadius = 0.3;

// Hills some 30 km wide with ridges of 7 km on them, alike on both sides of every edge.
double hills(double lat, double lon)
{
    if (std::hypot(lat - LakeLat, lon - LakeLon) < LakeRadius) {
        return 0.0;
    }
    return 1100.0 + 300.0 * std::sin(21.0 * lat) + 300.0 * std::cos(17.0 * lon + 9.0 * std::sin(lat)) +
           200.0 * std::sin(95.0 * lat + 2.0 * lon) * std::cos(83.0 * lon - lat);
}

// A tile of them. Worked out at one of ten points along each axis, straight between: 64 tiles have 92 million points.
class HillTile final
{
public:
    HillTile(int lat, int lon)
    {
        for (int row = 0; row <= Steps; ++row) {
            for (int column = 0; column <= Steps; ++column) {
                _heights.push_back(static_cast<int>(
                    hills(lat + 1.0 - static_cast<double>(row) / Steps, lon + static_cast<double>(column) / Steps)));
            }
        }
    }

    int operator()(int column, int row) const
    {
        const int x = std::min(column / Step, Steps - 1);
        const int y = std::min(row / Step, Steps - 1);
        const int right = column - x * Step;
        const int down = row - y * Step;
        const int upper = at(x, y) * (Step - right) + at(x + 1, y) * right;
        const int lower = at(x, y + 1) * (Step - right) + at(x + 1, y + 1) * right;
        return (upper * (Step - down) + lower * down) / (Step * Step);
    }

private:
    static constexpr int Step = 10;
    static constexpr int Steps = 120;

    int at(int x, int y) const { return _heights[static_cast<std::size_t>(y * (Steps + 1) + x)]; }

    std::vector<int> _heights;
};

class TORVTerrainSeamTest : public testing::Test
{
protected:
    // The ground of 64 blocks, once for all tests.
    static void SetUpTestSuite()
    {
        files = std::make_unique<TerrainFiles>();
        for (int lat = South; lat < South + Side; ++lat) {
            for (int lon = West; lon < West + Side; ++lon) {
                const QString name = QStringLiteral("N%1E%2.hgt").arg(lat).arg(lon, 3, 10, QLatin1Char('0'));
                files->writeSrtm(name, HillTile(lat, lon));
            }
        }
        TORVTerrainDir directory(files->sourcePath(), files->cachePath());
        directory.scanFiles();
        projection = TerrainFiles::projection(South + Side / 2.0, West + Side / 2.0);
        set = directory.getTerrainSet(projection, TORVCoordinate(double(South), double(West)),
                                      TORVCoordinate(double(South + Side), double(West + Side)));
        set->loadFiles(std::atomic<bool>(false));
    }

    static void TearDownTestSuite()
    {
        set.reset();
        projection.reset();
        files.reset();
    }

    TORVTerrainSeamTest() : scene(PictureSide, PictureSide)
    {
        renderer->SetBackground(1.0, 0.0, 1.0); // no ground has that colour
        renderer->AutomaticLightCreationOff();
        vtkNew<vtkLight> light;
        light->SetLightTypeToSceneLight();
        light->SetPosition(-1.0, -0.5, 1.2);
        renderer->AddLight(light);
        scene.window()->AddRenderer(renderer);
        for (const TORVTerrainSet::BlockPtr& block : set->getBlocks()) {
            renderer->AddActor(actorOf(*block));
        }
    }

    // As a window does: its own actor and texture over the block's mesh and picture.
    static vtkSmartPointer<vtkActor> actorOf(const TORVTerrainFile& block)
    {
        vtkNew<vtkPolyDataMapper> mapper;
        mapper->SetInputData(block.getPolyData());
        vtkNew<vtkTexture> texture;
        texture->SetInputData(block.getTextureImage());
        texture->InterpolateOn();
        texture->EdgeClampOn();
        texture->RepeatOff();
        const auto actor = vtkSmartPointer<vtkActor>::New();
        actor->SetMapper(mapper);
        actor->SetTexture(texture);
        actor->SetScale(1.0, 1.0, VerticalScale);
        actor->GetProperty()->SetColor(0.6, 0.6, 0.6); // leaves room for the light
        actor->GetProperty()->SetAmbient(0.3);
        actor->GetProperty()->SetSpecular(0.0);
        actor->GetProperty()->BackfaceCullingOn();
        return actor;
    }

    QImage lookFrom(double x, double y, double z, double upY, double upZ, double angle = 30.0)
    {
        vtkCamera* const camera = renderer->GetActiveCamera();
        camera->SetFocalPoint(0.0, 0.0, 0.0);
        camera->SetPosition(x, y, z);
        camera->SetViewUp(0.0, upY, upZ);
        camera->SetViewAngle(angle);
        renderer->ResetCameraClippingRange();
        return scene.picture();
    }

    QPointF pixelOf(double lat, double lon)
    {
        const TORVPoint3D place = projection->projectFromLatLon({lat, lon});
        return OffscreenScene::pixelOf(renderer, place.x, place.y, VerticalScale * hills(lat, lon));
    }

    static void keep(const QImage& picture, const char* name)
    {
        const QByteArray directory = qgetenv("TORV_TEST_PICTURES");
        if (!directory.isEmpty()) {
            picture.save(QString::fromLocal8Bit(directory) + QLatin1Char('/') + QLatin1String(name));
        }
    }

    static int holesBetween(const QImage& picture, const QPointF& lowerLeft, const QPointF& upperRight)
    {
        int holes = 0;
        for (int y = static_cast<int>(upperRight.y()); y <= static_cast<int>(lowerLeft.y()); ++y) {
            for (int x = static_cast<int>(lowerLeft.x()); x <= static_cast<int>(upperRight.x()); ++x) {
                holes += picture.pixel(x, y) == qRgb(255, 0, 255) ? 1 : 0;
            }
        }
        return holes;
    }

    // The mean step of brightness between the pixels on both sides of a meridian near the middle of the ground.
    double stepAcross(const QImage& picture, double lon)
    {
        double sum = 0.0;
        int count = 0;
        for (double lat = South + 3.4; lat < South + 4.6; lat += 0.005, ++count) {
            const QPoint at = pixelOf(lat, lon).toPoint();
            sum += std::abs(qGray(picture.pixel(at.x() - 2, at.y())) - qGray(picture.pixel(at.x() + 2, at.y())));
        }
        return sum / count;
    }

    static std::unique_ptr<TerrainFiles> files;
    static TORVGeoProjection::CPtr projection;
    static boost::shared_ptr<TORVTerrainSet> set;
    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
};

std::unique_ptr<TerrainFiles> TORVTerrainSeamTest::files;
TORVGeoProjection::CPtr TORVTerrainSeamTest::projection;
boost::shared_ptr<TORVTerrainSet> TORVTerrainSeamTest::set;

} // namespace

TEST_F(TORVTerrainSeamTest, ShowsNoGapFromAbove)
{
    const QImage picture = lookFrom(0.0, 0.0, 1800000.0, 1.0, 0.0);
    keep(picture, "terrain-above.png");
    // A quarter of a degree inside the outline, which is no straight line.
    EXPECT_EQ(
        holesBetween(picture, pixelOf(South + 0.25, West + 0.75), pixelOf(South + Side - 0.25, West + Side - 0.75)), 0);
    EXPECT_EQ(picture.pixel(2, 2), qRgb(255, 0, 255)); // and what is not ground is seen as such
}

TEST_F(TORVTerrainSeamTest, ShowsNoGapAtALowAngle)
{
    const QImage picture = lookFrom(0.0, -700000.0, 90000.0, 0.0, 1.0, 25.0);
    keep(picture, "terrain-low.png");
    const QPointF nearLeft = pixelOf(South + 2.0, West + 3.0);
    const QPointF farRight = pixelOf(South + Side - 1.0, West + 5.0);
    EXPECT_GT(nearLeft.y() - farRight.y(), 50.0);
    EXPECT_EQ(holesBetween(picture, nearLeft, farRight), 0);
}

TEST_F(TORVTerrainSeamTest, ShowsNoLineWhereBlocksMeet)
{
    vtkActorCollection* const actors = renderer->GetActors(); // in the light alone
    for (int i = 0; i < actors->GetNumberOfItems(); ++i) {
        vtkActor::SafeDownCast(actors->GetItemAsObject(i))->SetTexture(nullptr);
    }
    const QImage picture = lookFrom(0.0, 0.0, 300000.0, 1.0, 0.0);
    keep(picture, "terrain-light.png");
    double inside = 0.0;
    for (const double lon : {-0.5, -0.25, 0.25, 0.5}) {
        inside += stepAcross(picture, West + 4.0 + lon) / 4.0;
    }
    EXPECT_GT(inside, 1.0); // there is something to see at all
    EXPECT_LT(stepAcross(picture, West + 4.0), 1.4 * inside);
}

TEST_F(TORVTerrainSeamTest, PutsMeshAndPictureWhereTheProjectionSays)
{
    const QImage picture = lookFrom(0.0, 0.0, 1800000.0, 1.0, 0.0);
    const auto isWater = [&](double lat, double lon) {
        const QColor color = picture.pixelColor(pixelOf(lat, lon).toPoint());
        return color.blue() > color.red();
    };
    for (int direction = 0; direction < 8; ++direction) {
        const double north = std::sin(direction * M_PI / 4.0);
        const double east = std::cos(direction * M_PI / 4.0);
        EXPECT_TRUE(isWater(LakeLat + 0.25 * north, LakeLon + 0.25 * east)) << direction;
        EXPECT_FALSE(isWater(LakeLat + 0.35 * north, LakeLon + 0.35 * east)) << direction;
    }
}
