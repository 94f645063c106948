#include "support/OffscreenScene.h"

#include <QPointF>

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCubeSource.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

TEST(OffscreenScene, ShowsARedCubeWhereItStands)
{
    OffscreenScene scene;
    vtkNew<vtkCubeSource> cube;
    cube->SetCenter(1.0, 0.5, 0.0);
    cube->SetXLength(0.5);
    cube->SetYLength(0.5);
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputConnection(cube->GetOutputPort());
    vtkNew<vtkActor> actor;
    actor->SetMapper(mapper);
    actor->GetProperty()->SetColor(1.0, 0.0, 0.0);
    actor->GetProperty()->LightingOff();
    vtkNew<vtkRenderer> renderer;
    renderer->SetBackground(0.0, 0.0, 1.0);
    renderer->AddActor(actor);
    scene.window()->AddRenderer(renderer);
    // Looking down from 4 on a plane 4 high: the cube's centre is 1/4 of the picture right of the middle, 1/8 above it.
    vtkCamera* const camera = renderer->GetActiveCamera();
    camera->ParallelProjectionOn();
    camera->SetParallelScale(2.0);
    camera->SetPosition(0.0, 0.0, 4.0);

    const QImage picture = scene.picture();
    ASSERT_EQ(picture.size(), QSize(300, 300));
    EXPECT_EQ(picture.pixel(150 + 75, 150 - 37), qRgb(255, 0, 0));
    EXPECT_EQ(picture.pixel(150 - 75, 150 - 37), qRgb(0, 0, 255));
    EXPECT_EQ(picture.pixel(150 + 75, 150 + 37), qRgb(0, 0, 255));
    const QPointF pixel = OffscreenScene::pixelOf(renderer, 1.0, 0.5, 0.0);
    EXPECT_NEAR(pixel.x(), 225.0, 1.0);
    EXPECT_NEAR(pixel.y(), 112.5, 1.0);
}
