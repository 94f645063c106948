#include "visualization/TORVHomeCaption.h"

#include "visualization/CursorScene.h"

#include <QImage>

namespace
{

// What is as bright as text, below `fromRow`.
QRectF textIn(const QImage& picture, int fromRow)
{
    QRect box;
    for (int y = fromRow; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qRed(picture.pixel(x, y)) > 40) {
                box |= QRect(x, y, 1, 1);
            }
        }
    }
    return box;
}

using TORVHomeCaptionTest = CursorScene;

} // namespace

TEST_F(TORVHomeCaptionTest, WritesTheNameUnderItsHome)
{
    widget->setHome({20000.0, 30000.0, 0.0}, QStringLiteral("HAL"));
    renderer->AddViewProp(widget->getActor());
    const QPointF centre = textIn(scene.picture(), 130).center(); // the marker ends at row 126
    EXPECT_NEAR(centre.x(), 170.0, 2.0);
    EXPECT_NEAR(centre.y(), 120.0 + 26.0, 3.0);
}

TEST_F(TORVHomeCaptionTest, WritesTheNameAsFarBelowOnAScreenTwiceAsFine)
{
    scene.window()->SetDPI(144);
    widget->setHome({20000.0, 30000.0, 0.0}, QStringLiteral("HAL"));
    renderer->AddViewProp(widget->getActor());
    const QPointF centre = textIn(scene.picture(), 130).center();
    EXPECT_NEAR(centre.x(), 170.0, 3.0);
    EXPECT_NEAR(centre.y(), 120.0 + 52.0, 6.0);
}

TEST_F(TORVHomeCaptionTest, WritesNoNameOfAHomeBehindTheCamera)
{
    widget->setHome({0.0, -50000.0, 0.0}, QStringLiteral("HALMERA"));
    renderer->AddViewProp(widget->getActor());
    vtkCamera* const camera = renderer->GetActiveCamera();
    camera->ParallelProjectionOff();
    camera->SetPosition(0.0, 0.0, 5000.0);
    camera->SetViewUp(0.0, 0.0, 1.0);
    for (const bool isInFront : {true, false}) {
        camera->SetFocalPoint(0.0, isInFront ? -100000.0 : 100000.0, 5000.0);
        homeMarker()->SetVisibility(0);
        EXPECT_EQ(textIn(scene.picture(), 0).isEmpty(), !isInFront);
    }
}
