#include "visualization/TORV3DTerrainElement.h"

#include "datalib/TORVTerrainDir.h"
#include "datalib/TORVTerrainFile.h"
#include "datalib/TORVTerrainSet.h"
#include "support/ImageCompare.h"
#include "support/LogFile.h"
#include "support/OffscreenScene.h"
#include "support/SandboxedHome.h"
#include "support/TerrainFiles.h"
#include "utils/TORVDisplayMode.h"
#include "utils/TORVPoint3D.h"
#include "visualization/TORVVisualGroup.h"

#include <QColor>
#include <QDir>
#include <QPointF>

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkAssembly.h>
#include <vtkCamera.h>
#include <vtkLight.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProp3DCollection.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTexture.h>

#include <boost/make_shared.hpp>

#include <cmath>

namespace
{

constexpr int Last = TerrainFiles::Srtm3Points - 1;

using Set = boost::shared_ptr<TORVTerrainSet>;
using Parameters = boost::shared_ptr<TORVLayerParametersTerrain>;

// The sea, and 3000 m in the north-eastern corner.
int highCorner(int column, int row)
{
    return column > 3 * Last / 4 && row < Last / 4 ? 3000 : 0;
}

// Level ground, a slope of 6000 m in a tenth of a degree, level ground.
int ramp(int column, int)
{
    const double part = (column - 0.45 * Last) / (0.1 * Last);
    return static_cast<int>(6000.0 * std::min(1.0, std::max(0.0, part)));
}

class TORV3DTerrainElementTest : public testing::Test
{
protected:
    ~TORV3DTerrainElementTest() override { TORVDisplayMode::setNight(false); }

    // The block N46E008, with more of them to the east. Nothing is loaded.
    Set set(const TerrainFiles::Field& field, int blocks = 1)
    {
        files.writeSrtm(QStringLiteral("N46E008.hgt"), field);
        TORVTerrainDir directory(files.sourcePath(), files.cachePath());
        directory.scanFiles();
        return directory.getTerrainSet(projection, TORVCoordinate(46.0, 8.0), TORVCoordinate(47.0, 8.0 + blocks));
    }

    static Parameters parameters(const Set& set)
    {
        auto params = boost::make_shared<TORVLayerParametersTerrain>();
        params->setTerrainSet(set);
        return params;
    }

    static vtkAssembly* assembly(TORV3DTerrainElement& of) { return vtkAssembly::SafeDownCast(of.getProp()); }

    static vtkActor* actor(TORV3DTerrainElement& of, int i = 0)
    {
        return vtkActor::SafeDownCast(assembly(of)->GetParts()->GetItemAsObject(i));
    }

    void writeTints()
    {
        home.write(QStringLiteral(".config/Halmera/TORV3DVisStyles.conf"),
                   "[TERRAIN3D_DAY]\ntint\\r=0.58\ntint\\g=0.545\ntint\\b=0.575\n"
                   "[TERRAIN3D_NIGHT]\ntint\\r=0.36\ntint\\g=0.335\ntint\\b=0.34\n");
    }

    // From straight above, 200 km across, lit from there.
    QImage picture(double verticalScale = 1.0)
    {
        if (!renderer->GetRenderWindow()) {
            renderer->SetBackground(1.0, 0.0, 1.0);
            renderer->AutomaticLightCreationOff();
            vtkNew<vtkLight> light;
            light->SetLightTypeToSceneLight();
            light->SetPosition(0.0, 0.0, 1.0);
            light->SetColor(0.6, 0.6, 0.6);
            renderer->AddLight(light);
            vtkCamera* const camera = renderer->GetActiveCamera();
            camera->ParallelProjectionOn();
            camera->SetParallelScale(100000.0);
            camera->SetPosition(0.0, 0.0, 500000.0);
            camera->SetClippingRange(1000.0, 1000000.0);
            scene.window()->AddRenderer(renderer);
        }
        assembly(element)->SetScale(1.0, 1.0, verticalScale);
        renderer->RemoveAllViewProps();
        renderer->AddViewProp(assembly(element));
        return scene.picture();
    }

    QColor colorAt(const QImage& seen, double lat, double lon)
    {
        const TORVPoint3D place = projection->projectFromLatLon({lat, lon});
        return seen.pixelColor(OffscreenScene::pixelOf(renderer, place.x, place.y, 0.0).toPoint());
    }

    QStringList linesSince(int mark) const { return log.lines().mid(mark); }

    LogFile log{TORVLog::LEVEL_DEBUG};
    SandboxedHome home;
    TerrainFiles files;
    std::atomic<bool> abort{false};
    TORVVisualGroup group{40};
    TORV3DTerrainElement element{&group, 41};
    TORVGeoProjection::CPtr projection = TerrainFiles::projection(46.5, 8.5);
    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
};

using TORV3DTerrainElementDeathTest = TORV3DTerrainElementTest;

} // namespace

TEST_F(TORV3DTerrainElementTest, LoadsTheSetAndShowsEveryBlock)
{
    const Set ground = set(highCorner, 3);
    element.update(parameters(ground), true, abort);
    EXPECT_TRUE(ground->isLoaded());
    ASSERT_TRUE(assembly(element));
    ASSERT_EQ(assembly(element)->GetParts()->GetNumberOfItems(), 2); // the block and, as one, the two without data
    const double* const sea = actor(element, 1)->GetBounds();
    EXPECT_NEAR(sea[0], projection->projectFromLatLon({47.0, 9.0}).x, 1.0);
    EXPECT_NEAR(sea[1], projection->projectFromLatLon({46.0, 11.0}).x, 1.0);
    EXPECT_EQ(sea[5], 0.0);
    EXPECT_TRUE(
        log.lines().filter(QStringLiteral("TORV3DTerrainElement::update(): Creating new  visualization.")).size() == 1);
}

TEST_F(TORV3DTerrainElementTest, PutsMeshAndPictureTheRightWayUp)
{
    element.update(parameters(set(highCorner)), true, abort);
    const QImage seen = picture();
    const auto isLand = [&](double lat, double lon) {
        const QColor color = colorAt(seen, lat, lon);
        EXPECT_NE(color, QColor(255, 0, 255)) << lat << ", " << lon;
        return color.red() >= color.blue();
    };
    EXPECT_TRUE(isLand(46.88, 8.88));
    EXPECT_FALSE(isLand(46.12, 8.12));
    EXPECT_FALSE(isLand(46.88, 8.12));
    EXPECT_FALSE(isLand(46.12, 8.88));
    EXPECT_EQ(colorAt(seen, 47.1, 8.5), QColor(255, 0, 255));
}

TEST_F(TORV3DTerrainElementTest, PutsTheHighGroundWhereItIs)
{
    element.update(parameters(set(highCorner)), true, abort);
    vtkPolyData* const mesh = vtkPolyDataMapper::SafeDownCast(actor(element)->GetMapper())->GetInput();
    const auto heightAt = [&](double lat, double lon) {
        const TORVPoint3D place = projection->projectFromLatLon({lat, lon});
        return mesh->GetPoint(mesh->FindPoint(place.x, place.y, 1500.0))[2];
    };
    EXPECT_NEAR(heightAt(46.88, 8.88), 3000.0, 1.0);
    EXPECT_NEAR(heightAt(46.12, 8.12), 0.0, 1.0);
    EXPECT_NEAR(heightAt(46.88, 8.12), 0.0, 1.0);
    EXPECT_NEAR(heightAt(46.12, 8.88), 0.0, 1.0);
}

TEST_F(TORV3DTerrainElementTest, IsLitByItsSlopesAsTheyAreSeen)
{
    element.update(parameters(set(ramp)), true, abort);
    const double flat = qGray(colorAt(picture(1.0), 46.5, 8.5).rgb());
    const double steep = qGray(colorAt(picture(10.0), 46.5, 8.5).rgb());
    // 6000 m in a tenth of a degree of 76.7 km rise by 0.782; ten times as tall by 7.82. Light 0.6 from above and
    // ambient 0.3: 0.3 + 0.6 cos(atan(0.782)) = 0.773, 0.3 + 0.6 cos(atan(7.82)) = 0.376.
    EXPECT_NEAR(steep / flat, 0.376 / 0.773, 0.04);
}

TEST_F(TORV3DTerrainElementTest, HasTheCoefficientsOfTheGround)
{
    element.update(parameters(set(highCorner, 2)), true, abort);
    for (int i = 0; i < 2; ++i) {
        vtkProperty* const property = actor(element, i)->GetProperty();
        EXPECT_EQ(property->GetAmbient(), 0.3);
        EXPECT_EQ(property->GetDiffuse(), 1.0);
        EXPECT_EQ(property->GetSpecular(), 0.0);
        EXPECT_TRUE(property->GetBackfaceCulling());
        EXPECT_EQ(property->GetColor()[0], 1.0); // no style file, no tint
        EXPECT_EQ(property->GetColor()[1], 1.0);
        EXPECT_EQ(property->GetColor()[2], 1.0);
    }
}

TEST_F(TORV3DTerrainElementTest, TakesTheTintOfThePresentMode)
{
    writeTints();
    TORVDisplayMode::setNight(true);
    element.update(parameters(set(highCorner)), true, abort);
    EXPECT_DOUBLE_EQ(actor(element)->GetProperty()->GetColor()[0], 0.36);
    EXPECT_DOUBLE_EQ(actor(element)->GetProperty()->GetColor()[1], 0.335);
    EXPECT_DOUBLE_EQ(actor(element)->GetProperty()->GetColor()[2], 0.34);
}

TEST_F(TORV3DTerrainElementTest, RestylesTheTintInPlace)
{
    writeTints();
    element.update(parameters(set(highCorner, 2)), true, abort);
    const vtkSmartPointer<vtkProp> prop = element.getProp();
    vtkProperty* const property = actor(element)->GetProperty();
    EXPECT_DOUBLE_EQ(property->GetColor()[0], 0.58);
    const int day = qGray(colorAt(picture(), 46.12, 8.12).rgb());
    TORVDisplayMode::setNight(true);
    element.restyle();
    EXPECT_EQ(element.getProp(), prop);
    for (int i = 0; i < 2; ++i) {
        EXPECT_DOUBLE_EQ(actor(element, i)->GetProperty()->GetColor()[0], 0.36);
        EXPECT_DOUBLE_EQ(actor(element, i)->GetProperty()->GetColor()[1], 0.335);
        EXPECT_DOUBLE_EQ(actor(element, i)->GetProperty()->GetColor()[2], 0.34);
    }
    EXPECT_EQ(actor(element)->GetProperty(), property);
    EXPECT_NEAR(qGray(colorAt(picture(), 46.12, 8.12).rgb()) / double(day), 0.36 / 0.58, 0.03);
}

TEST_F(TORV3DTerrainElementTest, TwoElementsShareTheDataOfASetAndNothingElse)
{
    const Set ground = set(highCorner);
    TORV3DTerrainElement other(&group, 41);
    element.update(parameters(ground), true, abort);
    other.update(parameters(ground), true, abort);
    EXPECT_NE(element.getProp(), other.getProp());
    EXPECT_NE(actor(element), actor(other));
    EXPECT_NE(actor(element), ground->getBlocks().first()->getActor());
    EXPECT_NE(actor(element)->GetMapper(), actor(other)->GetMapper());
    EXPECT_NE(actor(element)->GetTexture(), actor(other)->GetTexture());
    EXPECT_NE(actor(element)->GetProperty(), actor(other)->GetProperty());
    vtkPoints* const points = ground->getBlocks().first()->getPolyData()->GetPoints();
    for (TORV3DTerrainElement* each : {&element, &other}) {
        EXPECT_EQ(vtkPolyDataMapper::SafeDownCast(actor(*each)->GetMapper())->GetInput()->GetPoints(), points);
    }
    assembly(element)->SetScale(1.0, 1.0, 7.0);
    EXPECT_EQ(assembly(other)->GetScale()[2], 1.0);
}

TEST_F(TORV3DTerrainElementTest, TheSameSetIsNoWork)
{
    const Set ground = set(highCorner);
    element.update(parameters(ground), true, abort);
    const vtkSmartPointer<vtkProp> prop = element.getProp();
    const int mark = static_cast<int>(log.lines().size());
    element.update(parameters(ground), true, abort);
    EXPECT_EQ(element.getProp(), prop);
    EXPECT_EQ(linesSince(mark).size(), 1);
    EXPECT_TRUE(linesSince(mark).last().contains(QLatin1String("TORV3DTerrainElement::update(): No need to update.")));
}

TEST_F(TORV3DTerrainElementTest, AnotherSetGivesAnotherProp)
{
    element.update(parameters(set(highCorner)), true, abort);
    const vtkSmartPointer<vtkProp> prop = element.getProp();
    element.update(parameters(set(highCorner, 2)), true, abort);
    EXPECT_NE(element.getProp(), prop);
    EXPECT_EQ(assembly(element)->GetParts()->GetNumberOfItems(), 2);
}

TEST_F(TORV3DTerrainElementTest, ABlockWithoutAPictureIsShownInTheTintAlone)
{
    set(highCorner)->loadFiles(abort);
    for (const QString& name : files.cacheNames(QStringLiteral("*.png"))) {
        ASSERT_TRUE(QFile::remove(files.cacheFile(name)));
    }
    element.update(parameters(set(highCorner)), true, abort);
    EXPECT_FALSE(actor(element)->GetTexture());
    const QColor color = colorAt(picture(), 46.12, 8.12);
    EXPECT_EQ(color.red(), color.blue());
}

TEST_F(TORV3DTerrainElementTest, AnAbortedLoadLeavesItEmptyAndALaterUpdateLoads)
{
    const Set ground = set(highCorner);
    abort = true;
    element.update(parameters(ground), true, abort);
    EXPECT_FALSE(element.getProp());
    EXPECT_FALSE(ground->isLoaded());
    EXPECT_EQ(log.lines().filter(QStringLiteral("TORV3DTerrainElement::createVTK(): ABORTED!")).size(), 1);
    EXPECT_EQ(log.lines().filter(QStringLiteral("TORV3DTerrainElement::update(): ABORTED!")).size(), 1);
    abort = false;
    const int mark = static_cast<int>(log.lines().size());
    element.update(parameters(ground), true, abort);
    EXPECT_TRUE(element.getProp());
    EXPECT_TRUE(ground->isLoaded());
    EXPECT_EQ(linesSince(mark).filter(QStringLiteral("No need to update.")).size(), 0);
}

TEST_F(TORV3DTerrainElementTest, AnAbortWhileItConvertsLeavesItEmptyAndALaterUpdateLoads)
{
    const Set ground = set(highCorner, 2);
    const QMetaObject::Connection connection = QObject::connect(
        TORVLog::Instance(), qOverload<const QString&>(&TORVLog::historyAdd),
        [this](const QString& text) { abort = abort || text.startsWith(QLatin1String("Converting")); });
    element.update(parameters(ground), true, abort);
    EXPECT_TRUE(abort);
    EXPECT_FALSE(element.getProp());
    EXPECT_EQ(log.lines().filter(QStringLiteral("TORV3DTerrainElement::createVTK(): ABORTED!")).size(), 1);
    QObject::disconnect(connection);
    abort = false;
    element.update(parameters(ground), true, abort);
    ASSERT_TRUE(assembly(element));
    EXPECT_EQ(assembly(element)->GetParts()->GetNumberOfItems(), 2);
}

TEST_F(TORV3DTerrainElementTest, BecomesEmptyWithoutParameters)
{
    element.update(parameters(set(highCorner)), true, abort);
    const vtkSmartPointer<vtkProp> prop = element.getProp();
    element.update({}, true, abort);
    EXPECT_FALSE(element.getProp());
    element.restyle();
    element.invalidate();
    EXPECT_FALSE(element.getProp());
    EXPECT_EQ(vtkAssembly::SafeDownCast(prop)->GetParts()->GetNumberOfItems(), 1); // may still be on the screen
}

TEST_F(TORV3DTerrainElementTest, LooksAsItDidByDay)
{
    writeTints();
    element.update(parameters(set(highCorner)), true, abort);
    EXPECT_EQ(ImageCompare::againstBaseline(picture(), QStringLiteral("terrain-day")), QString());
}

TEST_F(TORV3DTerrainElementTest, LooksAsItDidByNight)
{
    writeTints();
    TORVDisplayMode::setNight(true);
    element.update(parameters(set(highCorner)), true, abort);
    EXPECT_EQ(ImageCompare::againstBaseline(picture(), QStringLiteral("terrain-night")), QString());
}

TEST_F(TORV3DTerrainElementDeathTest, NeedsATerrainSet)
{
    EXPECT_DEATH(element.update(parameters({}), true, abort), "_params->getTerrainSet\\(\\)");
}
