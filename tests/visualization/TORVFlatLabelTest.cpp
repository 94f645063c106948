#include "visualization/TORVFlatLabel.h"

#include "support/OffscreenScene.h"
#include "visualization/TORVLineLayer.h"

#include <gtest/gtest.h>

#include <vtkCamera.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

namespace
{

// 300 rows show 2 * 50 km * tan(15 degrees) = 26.8 km, so 5 km are 56; VTK's letters are 1.1 tall.
constexpr int NearBy = 62;

// A label of 5 km at the origin, seen from straight above.
class TORVFlatLabelTest : public testing::Test
{
protected:
    TORVFlatLabelTest()
    {
        layer.addLabel(QStringLiteral("H"), {0.0, 0.0}, {0.0, 0.0});
        renderer->AddViewProp(layer.getProp());
        scene.window()->AddRenderer(renderer);
    }

    // Rows of the picture that show the letter.
    int heightFrom(double altitude)
    {
        vtkCamera* const camera = renderer->GetActiveCamera();
        camera->SetPosition(0.0, 0.0, altitude);
        camera->SetFocalPoint(0.0, 0.0, 0.0);
        camera->SetViewUp(0.0, 1.0, 0.0);
        camera->SetClippingRange(altitude / 10.0, altitude * 10.0);
        const QImage picture = scene.picture();
        int rows = 0;
        for (int y = 0; y < picture.height(); ++y) {
            bool isSeen = false;
            for (int x = 0; x < picture.width(); ++x) {
                isSeen = isSeen || qGray(picture.pixel(x, y)) > 100;
            }
            rows += isSeen ? 1 : 0;
        }
        return rows;
    }

    OffscreenScene scene; // 300 rows, 30 degrees
    vtkNew<vtkRenderer> renderer;
    TORVLineLayer layer{{{1.0, 1.0, 1.0}, 1.0, {1.0, 1.0, 1.0}, 5000.0}};
};

} // namespace

TEST_F(TORVFlatLabelTest, IsAsTallAsToldFromNearBy)
{
    EXPECT_NEAR(heightFrom(50000.0), NearBy, 3);
}

TEST_F(TORVFlatLabelTest, StaysLegibleFromFarAway)
{
    // 5 km are 1.4 rows here.
    EXPECT_NEAR(heightFrom(2000000.0), TORVFlatLabel::LeastHeight_px, 2);
}

TEST_F(TORVFlatLabelTest, IsTwiceAsManyPixelsOnAFineScreen)
{
    scene.window()->SetDPI(144);
    EXPECT_NEAR(heightFrom(2000000.0), 2 * TORVFlatLabel::LeastHeight_px, 3);
}

TEST_F(TORVFlatLabelTest, ComesBackToItsSize)
{
    heightFrom(2000000.0);
    EXPECT_NEAR(heightFrom(50000.0), NearBy, 3);
}
