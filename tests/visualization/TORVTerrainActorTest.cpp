#include "visualization/TORVTerrainActor.h"

#include "support/OffscreenScene.h"
#include "visualization/TORVVolumePath.h"

#include <gtest/gtest.h>

#include <vtkCamera.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPlaneSource.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTexture.h>

namespace
{

constexpr double Moving = 15.0;
constexpr double AtRest = 0.0001;

class TORVTerrainActorTest : public testing::Test
{
protected:
    TORVTerrainActorTest()
    {
        actor->SetMesh(mesh(60));
        actor->SetPicture(picture());
        renderer->AddActor(actor);
        scene.window()->AddRenderer(renderer);
        renderer->ResetCamera();
    }

    ~TORVTerrainActorTest() override { TORVVolumePath::setSoftware(true); }

    // A square of 1 at the origin, cells each way, with a hill too low to be seen.
    static vtkSmartPointer<vtkPolyData> mesh(int cells)
    {
        const vtkSmartPointer<vtkPolyData> level = levelMesh(cells);
        const vtkIdType hill = cells + 2; // second of the second row
        double place[3];
        level->GetPoint(hill, place);
        level->GetPoints()->SetPoint(hill, place[0], place[1], 1e-4);
        level->GetPoints()->Modified();
        return level;
    }

    static vtkSmartPointer<vtkPolyData> levelMesh(int cells)
    {
        vtkNew<vtkPlaneSource> plane;
        plane->SetResolution(cells, cells);
        plane->Update();
        return plane->GetOutput();
    }

    // Half red, half green, from the south.
    static vtkSmartPointer<vtkImageData> picture()
    {
        auto image = vtkSmartPointer<vtkImageData>::New();
        image->SetDimensions(16, 16, 1);
        image->AllocateScalars(VTK_UNSIGNED_CHAR, 3);
        for (int y = 0; y < 16; ++y) {
            for (int x = 0; x < 16; ++x) {
                image->SetScalarComponentFromDouble(x, y, 0, 0, y < 8 ? 255.0 : 0.0);
                image->SetScalarComponentFromDouble(x, y, 0, 1, y < 8 ? 0.0 : 255.0);
                image->SetScalarComponentFromDouble(x, y, 0, 2, 0.0);
            }
        }
        return image;
    }

    vtkIdType pointsDrawn(double updateRate)
    {
        scene.window()->SetDesiredUpdateRate(updateRate);
        scene.picture();
        return vtkPolyDataMapper::SafeDownCast(actor->GetMapper())->GetInput()->GetNumberOfPoints();
    }

    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
    vtkNew<TORVTerrainActor> actor;
};

} // namespace

TEST_F(TORVTerrainActorTest, DrawsTheWholeMeshAtRest)
{
    EXPECT_EQ(pointsDrawn(AtRest), 61 * 61);
}

TEST_F(TORVTerrainActorTest, DrawsAThirdOfThePointsEachWayOnTheMoveWithoutAGraphicsCard)
{
    EXPECT_EQ(pointsDrawn(Moving), 21 * 21);
    EXPECT_EQ(pointsDrawn(AtRest), 61 * 61);
}

TEST_F(TORVTerrainActorTest, DrawsALevelBlockOfFewPoints)
{
    actor->SetMesh(levelMesh(60));
    EXPECT_EQ(pointsDrawn(AtRest), 7 * 7);
    EXPECT_EQ(pointsDrawn(Moving), 7 * 7);
}

TEST_F(TORVTerrainActorTest, AGraphicsCardDrawsTheWholeMeshAlways)
{
    TORVVolumePath::setSoftware(false);
    EXPECT_EQ(pointsDrawn(Moving), 61 * 61);
}

TEST_F(TORVTerrainActorTest, FiltersAlongTheViewOnAGraphicsCardOnly)
{
    scene.picture();
    EXPECT_EQ(actor->GetTexture()->GetMaximumAnisotropicFiltering(), 1.0F);
    TORVVolumePath::setSoftware(false);
    scene.picture();
    EXPECT_EQ(actor->GetTexture()->GetMaximumAnisotropicFiltering(), 8.0F);
}

TEST_F(TORVTerrainActorTest, ClampsAndInterpolatesItsPicture)
{
    EXPECT_TRUE(actor->GetTexture()->GetInterpolate());
    EXPECT_TRUE(actor->GetTexture()->GetMipmap());
    EXPECT_TRUE(actor->GetTexture()->GetEdgeClamp());
    EXPECT_FALSE(actor->GetTexture()->GetRepeat());
}

TEST_F(TORVTerrainActorTest, BothMeshesHaveTheSameEdgesNormalsAndPicture)
{
    actor->GetProperty()->SetAmbient(1.0);
    actor->GetProperty()->SetDiffuse(0.0);
    const QImage whole = scene.picture();
    EXPECT_EQ(pointsDrawn(Moving), 21 * 21);
    EXPECT_EQ(scene.picture(), whole); // of a plane
    actor->GetProperty()->SetAmbient(0.0);
    actor->GetProperty()->SetDiffuse(1.0);
    const QImage lit = scene.picture();
    EXPECT_GT(qRed(lit.pixel(150, 200)), 200);
    EXPECT_GT(qGreen(lit.pixel(150, 100)), 200);
}

TEST_F(TORVTerrainActorTest, AMeshThatCantBeThinnedIsDrawnWhole)
{
    actor->SetMesh(mesh(5)); // six points each way
    EXPECT_EQ(pointsDrawn(Moving), 6 * 6);
    vtkNew<vtkPlaneSource> oblong;
    oblong->SetResolution(6, 4);
    oblong->Update();
    actor->SetMesh(oblong->GetOutput());
    EXPECT_EQ(pointsDrawn(Moving), 7 * 5);
}

TEST_F(TORVTerrainActorTest, IsNotDrawnOutsideThePicture)
{
    scene.picture();
    EXPECT_EQ(actor->RenderOpaqueGeometry(renderer), 1);
    renderer->GetActiveCamera()->SetFocalPoint(5.0, 0.0, 0.0);
    renderer->GetActiveCamera()->SetPosition(5.0, 0.0, 3.0);
    renderer->GetActiveCamera()->SetClippingRange(1.0, 10.0);
    scene.picture();
    EXPECT_EQ(actor->RenderOpaqueGeometry(renderer), 0);
    actor->SetPosition(5.0, 0.0, 0.0);
    scene.picture();
    EXPECT_EQ(actor->RenderOpaqueGeometry(renderer), 1);
}

TEST_F(TORVTerrainActorTest, IsDrawnWhereAPartOfItIsInThePicture)
{
    vtkCamera* const camera = renderer->GetActiveCamera();
    camera->SetFocalPoint(0.0, 0.0, 0.0); // in the middle of the block, which fills the picture
    camera->SetPosition(0.0, 0.0, 0.1);
    renderer->ResetCameraClippingRange();
    scene.picture();
    EXPECT_EQ(actor->RenderOpaqueGeometry(renderer), 1);
}

TEST_F(TORVTerrainActorTest, SharesTheDataOfItsMesh)
{
    const vtkSmartPointer<vtkPolyData> source = mesh(60);
    actor->SetMesh(source);
    vtkPolyData* const drawn = vtkPolyDataMapper::SafeDownCast(actor->GetMapper())->GetInput();
    EXPECT_NE(drawn, source);
    EXPECT_EQ(drawn->GetPoints(), source->GetPoints());
}

TEST_F(TORVTerrainActorTest, MayHaveNoPicture)
{
    actor->SetPicture(nullptr);
    EXPECT_FALSE(actor->GetTexture());
    EXPECT_GT(qBlue(scene.picture().pixel(150, 150)), 100);
}
