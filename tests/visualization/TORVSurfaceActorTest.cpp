#include "visualization/TORVSurfaceActor.h"

#include "support/OffscreenScene.h"
#include "visualization/TORVVolumePath.h"

#include <gtest/gtest.h>

#include <vtkNew.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSphereSource.h>

namespace
{

constexpr double Moving = 15.0;
constexpr double AtRest = 0.0001;

// A shell of half opacity.
class TORVSurfaceActorTest : public testing::Test
{
protected:
    TORVSurfaceActorTest()
    {
        vtkNew<vtkPolyDataMapper> mapper;
        vtkNew<vtkSphereSource> sphere;
        sphere->SetThetaResolution(40);
        sphere->SetPhiResolution(40);
        mapper->SetInputConnection(sphere->GetOutputPort());
        actor->SetMapper(mapper);
        actor->GetProperty()->SetColor(1.0, 1.0, 1.0);
        actor->GetProperty()->SetOpacity(0.5);
        actor->GetProperty()->LightingOff();
        renderer->AddActor(actor);
        scene.window()->AddRenderer(renderer);
        renderer->ResetCamera();
    }

    ~TORVSurfaceActorTest() override { TORVVolumePath::setSoftware(true); }

    int brightnessOfMiddle(double updateRate)
    {
        scene.window()->SetDesiredUpdateRate(updateRate);
        return qGray(scene.picture().pixel(150, 150));
    }

    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
    vtkNew<TORVSurfaceActor> actor;
};

} // namespace

TEST_F(TORVSurfaceActorTest, DrawsBothSidesAtRest)
{
    EXPECT_NEAR(brightnessOfMiddle(AtRest), 191, 2); // 255 times 1 - 0.5 times 0.5
}

TEST_F(TORVSurfaceActorTest, DrawsTheNearSideAloneOnTheMoveWithoutAGraphicsCard)
{
    EXPECT_NEAR(brightnessOfMiddle(Moving), 128, 2);
    EXPECT_NEAR(brightnessOfMiddle(AtRest), 191, 2);
}

TEST_F(TORVSurfaceActorTest, AGraphicsCardDrawsBothSidesAlways)
{
    TORVVolumePath::setSoftware(false);
    EXPECT_NEAR(brightnessOfMiddle(Moving), 191, 2);
}
