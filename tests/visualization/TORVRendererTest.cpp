#include "visualization/TORVRenderer.h"

#include "support/ImageCompare.h"
#include "support/OffscreenScene.h"
#include "support/ProductFiles.h"

#include <QPoint>

#include <gtest/gtest.h>

#include <vtkCamera.h>
#include <vtkInteractorStyle.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>
#include <vtkRendererCollection.h>

#include <cmath>

namespace
{

const QRgb Background = qRgb(54, 68, 79);

class TORVRendererTest : public testing::Test
{
protected:
    // 41 x 41 x 11 points of 5 km and 1 km, the radar in the middle, a block of 50 dBZ 5 points wide round (30, 30, 5).
    TORVProductScene::CPtr block()
    {
        TORVProductFields fields;
        fields.xPoints = fields.yPoints = 41;
        fields.zPoints = 11;
        fields.xScale = fields.yScale = 500000;
        fields.zScale = 100000;
        fields.xRadar = fields.yRadar = 20000;
        fields.groundElevation = fields.radarHeight = 0;
        const auto field = [](int x, int y, int z) {
            return std::abs(x - 30) <= 2 && std::abs(y - 30) <= 2 && std::abs(z - 5) <= 2 ? 164U : 0U;
        };
        const QString path =
            files.write(QStringLiteral("HAL260714120000.CAPZ"), fields, ProductFiles::data(fields, field));
        return TORVProductScene::build(TORVFile::openChecked(path), TORVProductScene::reflectivitySurfaces());
    }

    QRgb at(const QImage& picture, TORVRenderer& renderer, double x, double y, double z)
    {
        return picture.pixel(OffscreenScene::pixelOf(renderer.getRenderer(), x, y, z).toPoint());
    }

    ProductFiles files;
    OffscreenScene scene;
};

// The orange core of 45 dBZ seen through the green and teal shells is yellow; shells and background are bluer than red.
bool isCore(QRgb colour)
{
    return qRed(colour) > 140 && qRed(colour) > qBlue(colour) + 60;
}

} // namespace

TEST_F(TORVRendererTest, ShowsItsBackgroundFirst)
{
    TORVRenderer renderer(scene.window());
    EXPECT_EQ(scene.picture().pixel(150, 150), Background);
}

TEST_F(TORVRendererTest, DrawsTheCoreWhereTheGridPutsIt)
{
    TORVRenderer renderer(scene.window());
    renderer.setScene(block());
    const QImage picture = scene.picture();
    // The block's centre: (30 - 20) * 5 km east and north, 5 km up and drawn five times as high.
    EXPECT_TRUE(isCore(at(picture, renderer, 50000.0, 50000.0, 25000.0)));
    EXPECT_EQ(at(picture, renderer, -50000.0, -50000.0, 25000.0), Background);
    EXPECT_EQ(at(picture, renderer, 0.0, 0.0, 25000.0), Background);
}

TEST_F(TORVRendererTest, LooksAsItDidBefore)
{
    TORVRenderer renderer(scene.window());
    renderer.setScene(block());
    EXPECT_EQ(ImageCompare::againstBaseline(scene.picture(), QStringLiteral("renderer-block")), QString());
}

TEST_F(TORVRendererTest, SeesTheWholeGridAtFirst)
{
    TORVRenderer renderer(scene.window());
    renderer.setScene(block());
    scene.picture();
    for (const double x : {-100000.0, 100000.0}) {
        for (const double y : {-100000.0, 100000.0}) {
            for (const double z : {0.0, 50000.0}) {
                const QPointF pixel = OffscreenScene::pixelOf(renderer.getRenderer(), x, y, z);
                EXPECT_TRUE(QRectF(0, 0, 300, 300).contains(pixel)) << x << ' ' << y << ' ' << z;
            }
        }
    }
}

TEST_F(TORVRendererTest, ReplacesTheSceneBefore)
{
    TORVRenderer renderer(scene.window());
    renderer.setScene(block());
    renderer.setScene(block());
    EXPECT_EQ(renderer.getRenderer()->GetViewProps()->GetNumberOfItems(), 4); // box and three surfaces
}

TEST_F(TORVRendererTest, KeepsTheCameraForTheSameSite)
{
    TORVRenderer renderer(scene.window());
    renderer.setScene(block());
    renderer.getRenderer()->GetActiveCamera()->SetPosition(1.0, 2.0, 300000.0);
    renderer.setScene(block());
    EXPECT_EQ(renderer.getRenderer()->GetActiveCamera()->GetPosition()[1], 2.0);
}

TEST_F(TORVRendererTest, SortsTranslucentSurfacesOnlyAtRest)
{
    vtkNew<vtkRenderWindowInteractor> interactor;
    interactor->SetRenderWindow(scene.window());
    TORVRenderer renderer(scene.window());
    vtkInteractorObserver* const style = interactor->GetInteractorStyle();
    EXPECT_TRUE(renderer.getRenderer()->GetUseDepthPeeling());
    style->InvokeEvent(vtkCommand::StartInteractionEvent);
    EXPECT_FALSE(renderer.getRenderer()->GetUseDepthPeeling());
    style->InvokeEvent(vtkCommand::EndInteractionEvent);
    EXPECT_TRUE(renderer.getRenderer()->GetUseDepthPeeling());
}

TEST_F(TORVRendererTest, LeavesTheWindowWhenItGoes)
{
    {
        const TORVRenderer renderer(scene.window());
        EXPECT_EQ(scene.window()->GetRenderers()->GetNumberOfItems(), 1);
    }
    EXPECT_EQ(scene.window()->GetRenderers()->GetNumberOfItems(), 0);
}

using TORVRendererDeathTest = TORVRendererTest;

TEST_F(TORVRendererDeathTest, StopsAtNoScene)
{
    TORVRenderer renderer(scene.window());
    EXPECT_DEATH(renderer.setScene({}), "scene");
}
