#include "visualization/TORVRenderer.h"

#include "RendererTest.h"
#include "support/ImageCompare.h"
#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVFramePacer.h"

#include <QColor>
#include <QPoint>

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkLight.h>
#include <vtkLightCollection.h>
#include <vtkPlaneSource.h>
#include <vtkPolyDataMapper.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>
#include <vtkRendererCollection.h>

namespace
{

using TORVRendererTest = RendererTest;

// The orange core of 45 dBZ seen through the green and teal shells is yellow; shells and background are bluer than red.
bool isCore(QRgb colour)
{
    return qRed(colour) > 140 && qRed(colour) > qBlue(colour) + 60;
}

} // namespace

TEST_F(TORVRendererTest, ShowsItsBackgroundFirst)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    EXPECT_EQ(scene.picture().pixel(30, 150), DefaultBackground);
}

TEST_F(TORVRendererTest, LooksTheSameByDayAndNightWithoutAStyleFile)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    TORVDisplayMode::setNight(true);
    renderer.updateLights();
    EXPECT_EQ(scene.picture().pixel(30, 150), DefaultBackground);
}

TEST_F(TORVRendererTest, TakesBackgroundAndLightFromTheStyleOfTheMode)
{
    writeStyle();
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    EXPECT_EQ(scene.picture().pixel(30, 150), qRgb(51, 102, 153));
    TORVDisplayMode::setNight(true);
    renderer.updateLights();
    EXPECT_EQ(scene.picture().pixel(30, 150), qRgb(0, 51, 0));
    vtkLight* const light = vtkLight::SafeDownCast(renderer.getRenderer()->GetLights()->GetItemAsObject(0));
    EXPECT_EQ(light->GetDiffuseColor()[0], 0.25);
}

TEST_F(TORVRendererTest, LightsTheSceneFromAboveAndFromTheNorth)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    vtkLightCollection* const lights = renderer.getRenderer()->GetLights();
    ASSERT_EQ(lights->GetNumberOfItems(), 2);
    vtkLight* const first = vtkLight::SafeDownCast(lights->GetItemAsObject(0));
    vtkLight* const second = vtkLight::SafeDownCast(lights->GetItemAsObject(1));
    EXPECT_TRUE(first->LightTypeIsSceneLight());
    EXPECT_FALSE(first->GetPositional());
    EXPECT_EQ(first->GetPosition()[1], -500.0);
    EXPECT_EQ(first->GetPosition()[2], 2000.0);
    EXPECT_EQ(second->GetPosition()[1], 500.0);
    EXPECT_EQ(second->GetDiffuseColor()[2], 0.25);
}

TEST_F(TORVRendererTest, LooksDownFromTwoThousandKilometresFirst)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    const double* const position = renderer.getRenderer()->GetActiveCamera()->GetPosition();
    EXPECT_EQ(position[2], 2000000.0);
    EXPECT_NEAR(renderer.getRenderer()->GetActiveCamera()->GetDirectionOfProjection()[2], -1.0, 1e-9);
}

TEST_F(TORVRendererTest, DrawsTheCoreWhereTheGridPutsIt)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    renderer.setVisualization(block());
    lookAslant(renderer);
    const QImage picture = scene.picture();
    // The block's centre: (30 - 20) * 5 km east and north, 5 km up and drawn five times as high.
    EXPECT_TRUE(isCore(at(picture, renderer, 50000.0, 50000.0, 25000.0)));
    EXPECT_EQ(at(picture, renderer, -50000.0, 50000.0, 25000.0), DefaultBackground);
}

TEST_F(TORVRendererTest, KeepsTheHueOfALitSurface)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    renderer.setVisualization(block({{45.0, 100}}));
    lookAslant(renderer);
    // The top of the block faces the light, which comes from (0, -500, 2000), a cosine of 0.97: FAAA28 times 0.7 and
    // 0.97 times the light of 0.6, 0.588 and 0.54 is (255, 216, 49) with a hue of 49 degrees. Light of full strength
    // would make it yellow, (255, 255, 63) with one of 60.
    const QColor top(at(scene.picture(), renderer, 50000.0, 50000.0, 36000.0));
    EXPECT_NEAR(top.hsvHue(), 49, 4);
    EXPECT_GT(top.hsvSaturation(), 180);
}

TEST_F(TORVRendererTest, SortsAllShellsBeforeAnOpaqueGround)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    renderer.setVisualization(block());
    vtkNew<vtkPlaneSource> plane;
    plane->SetOrigin(-300000.0, -300000.0, -1000.0);
    plane->SetPoint1(300000.0, -300000.0, -1000.0);
    plane->SetPoint2(-300000.0, 300000.0, -1000.0);
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputConnection(plane->GetOutputPort());
    vtkNew<vtkActor> ground;
    ground->SetMapper(mapper);
    renderer.getRenderer()->AddViewProp(ground);
    renderer.getCameraInteractor()->setView({50000.0, 49999.0, 330000.0}, {0.0, 1e-6, -1.0});
    renderer.getCameraInteractor()->applyCamera(false);
    renderer.renderNow();
    // Seen from straight above no shell stands before the sky: the core of 45 dBZ must be there all the same.
    EXPECT_TRUE(isCore(at(scene.picture(), renderer, 50000.0, 50000.0, 25000.0)));
}

TEST_F(TORVRendererTest, LooksAsItDidBefore)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    renderer.setVisualization(block());
    lookAslant(renderer);
    renderer.renderNow();
    EXPECT_EQ(ImageCompare::againstBaseline(scene.picture(), QStringLiteral("renderer-block")), QString());
}

TEST_F(TORVRendererTest, PutsTheMarkerWhereTheRadarIs)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    const auto item = block();
    item->setRadarPosition({0.0, 0.0, 40000.0});
    renderer.setVisualization(item);
    lookAslant(renderer);
    const QRgb marker = at(scene.picture(), renderer, 0.0, 0.0, 40000.0);
    EXPECT_NE(marker, DefaultBackground);
    EXPECT_NEAR(qRed(marker), qBlue(marker), 30); // grey, half of it lit
}

TEST_F(TORVRendererTest, ReplacesTheSceneBefore)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    const int before = renderer.getRenderer()->GetViewProps()->GetNumberOfItems();
    renderer.setVisualization(block());
    renderer.setVisualization(block());
    EXPECT_EQ(renderer.getRenderer()->GetViewProps()->GetNumberOfItems(), before + 1);
    renderer.removeVisualization();
    EXPECT_EQ(renderer.getRenderer()->GetViewProps()->GetNumberOfItems(), before);
}

TEST_F(TORVRendererTest, LeavesTheMarkerWhenTheSceneGoes)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    renderer.removeVisualization();
    EXPECT_EQ(renderer.getRenderer()->GetViewProps()->GetNumberOfItems(), 1);
}

TEST_F(TORVRendererTest, LeavesTheCameraWhereItIs)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    renderer.setVisualization(block());
    lookAslant(renderer);
    const double y = renderer.getRenderer()->GetActiveCamera()->GetPosition()[1];
    renderer.setVisualization(block());
    EXPECT_EQ(renderer.getRenderer()->GetActiveCamera()->GetPosition()[1], y);
}

TEST_F(TORVRendererTest, GoesBackToItsHomeView)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    renderer.setVisualization(block());
    lookAslant(renderer);
    renderer.resetCamera();
    EXPECT_EQ(renderer.getRenderer()->GetActiveCamera()->GetPosition()[2], 2000000.0);
}

TEST_F(TORVRendererTest, DrawsNothingByItself)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    renderer.setVisualization(block());
    renderer.toggleCompass(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(renderer.getPacer()->getDrawCount(), 0);
}

TEST_F(TORVRendererTest, DrawsOnceHoweverManyAsk)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    renderer.render();
    renderer.renderWindow();
    scene.window()->GetInteractor()->Render();
    renderer.render();
    EXPECT_EQ(renderer.getPacer()->getDrawCount(), 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(renderer.getPacer()->getDrawCount(), 1);
    EXPECT_TRUE(log.lines().last().contains(QLatin1String("..rendering took ")));
}

TEST_F(TORVRendererTest, LeavesTheWindowWhenItGoes)
{
    {
        const TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
        EXPECT_EQ(scene.window()->GetRenderers()->GetNumberOfItems(), 1);
    }
    EXPECT_EQ(scene.window()->GetRenderers()->GetNumberOfItems(), 0);
}

TEST_F(TORVRendererTest, TellsHowItIsMade)
{
    const int mark = static_cast<int>(log.lines().size());
    const TORVRenderer renderer(scene.window(), nullptr, &pointObserver, true);
    const QString all = linesSince(mark).join(QLatin1Char('\n'));
    int from = 0;
    for (const char* const words :
         {"creating VTK renderer..", "creating VTK color scale renderer..", "adding VTK renderer to render window..",
          "creating default camera..", "setting up interactions..", "setting up lighting.."}) {
        from = static_cast<int>(all.indexOf(QLatin1String(words), from));
        EXPECT_GE(from, 0) << words;
    }
}

using TORVRendererDeathTest = TORVRendererTest;

TEST_F(TORVRendererDeathTest, StopsAtNoScene)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    EXPECT_DEATH(renderer.setVisualization({}), "_currentVisualization");
}

TEST_F(TORVRendererDeathTest, StopsAtASceneThatWasNeverBuilt)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    const auto item = boost::make_shared<TORVVisualizationPipelineItem>(observer.state);
    EXPECT_DEATH(renderer.setVisualization(item), "getResults");
}

TEST_F(TORVRendererTest, DrawsASceneOnceThatWasRunAgain)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    const auto countScenes = [&renderer] {
        int count = 0;
        vtkPropCollection* const props = renderer.getRenderer()->GetViewProps();
        vtkCollectionSimpleIterator cursor = nullptr;
        props->InitTraversal(cursor);
        while (vtkProp* const prop = props->GetNextProp(cursor)) {
            count += prop->IsA("vtkPropAssembly") ? 1 : 0;
        }
        return count;
    };
    renderer.setVisualization(block());
    const int before = countScenes();
    visualization.setSourceData(visualization.getDataFrame());
    visualization.updateVisualization(false);
    ASSERT_TRUE(waitForFinished(++runs));
    renderer.setVisualization(visualization.getResultItem());
    EXPECT_EQ(countScenes(), before);
    renderer.removeVisualization();
    EXPECT_EQ(countScenes(), before - 1);
}
