#include "visualization/TORVRenderer.h"

#include "SceneTest.h"
#include "support/ImageCompare.h"
#include "support/OffscreenScene.h"

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

class TORVRendererTest : public SceneTest
{
protected:
    TORVRendererTest() : SceneTest({{20.0, 18}, {35.0, 32}, {45.0, 100}})
    {
        writeColours();
        writeBlock();
    }

    // 41 x 41 x 11 points of 5 km and 1 km, the radar in the middle, a block of 50 dBZ 5 points wide round (30, 30, 5).
    void writeBlock()
    {
        TORVProductFields fields;
        fields.siteName = "HALMERA";
        fields.xPoints = fields.yPoints = 41;
        fields.zPoints = 11;
        fields.xScale = fields.yScale = 500000;
        fields.zScale = 100000;
        fields.xRadar = fields.yRadar = 20000;
        fields.groundElevation = fields.radarHeight = 0;
        add("260714120000", fields, [](int x, int y, int z) {
            return std::abs(x - 30) <= 2 && std::abs(y - 30) <= 2 && std::abs(z - 5) <= 2 ? 164U : 0U;
        });
    }

    // Bands of teal from 20, green from 35 and orange from 45 dBZ.
    void writeColours()
    {
        QByteArray file = "[DATAMAPPING]\ndata\\size=3\ndata\\3\\data_index=1\n\n"
                          "[COLORSCALE%201]\nname=Default\ncolorset_index=1\ndata_index=1\npoints\\size=3\n"
                          "points\\1\\seam=20\npoints\\2\\seam=35\npoints\\3\\seam=45\n\n"
                          "[COLORSET%201]\npoints\\size=3\n";
        const int colours[3][3] = {{0x0A, 0x83, 0x8C}, {0x7B, 0xD5, 0x50}, {0xFA, 0xAA, 0x28}};
        for (int band = 0; band < 3; ++band) {
            for (int channel = 0; channel < 3; ++channel) {
                for (const char* const end : {"lower", "upper"}) {
                    file += "points\\" + QByteArray::number(band + 1) + '\\' + end + '\\' + "rgb"[channel] + '=' +
                            QByteArray::number(colours[band][channel]) + '\n';
                }
            }
        }
        home.write(QStringLiteral(".config/Halmera/TORV3DColors.conf"), file);
    }

    const TORVVisualization& block()
    {
        visualization.setSourceData(frame("260714120000"));
        visualization.updateVisualization(true);
        EXPECT_TRUE(waitForFinished(++runs));
        return visualization;
    }

    QRgb at(const QImage& picture, TORVRenderer& renderer, double x, double y, double z)
    {
        return picture.pixel(OffscreenScene::pixelOf(renderer.getRenderer(), x, y, z).toPoint());
    }

    int runs = 0;
    TORVVisualization visualization{&observer};
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
    EXPECT_EQ(renderer.getRenderer()->GetViewProps()->GetNumberOfItems(), 2); // box and scene
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
    EXPECT_DEATH(renderer.setScene(visualization), "scene");
}
