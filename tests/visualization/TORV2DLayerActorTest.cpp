#include "visualization/TORV2DLayerActor.h"

#include "support/OffscreenScene.h"

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkOpenGLRenderWindow.h>
#include <vtkOpenGLState.h>
#include <vtkPlaneSource.h>
#include <vtkPolyDataMapper.h>
#include <vtkProp3DCollection.h>
#include <vtkPropAssembly.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>
#include <vtk_glew.h>

#include <array>
#include <string>

namespace
{

constexpr QRgb Black = 0xFF000000;
constexpr QRgb Red = 0xFFFF0000;
constexpr QRgb Green = 0xFF00FF00;
constexpr QRgb Blue = 0xFF0000FF;

// A part that draws nothing and remembers how it was asked to.
class Probe final : public vtkProp3D
{
public:
    static Probe* New();
    vtkTypeMacro(Probe, vtkProp3D) enum Pass { OPAQUE, TRANSLUCENT, VOLUMETRIC, OVERLAY };

    double* GetBounds() override { return nullptr; }
    vtkTypeBool HasTranslucentPolygonalGeometry() override { return 1; }
    int RenderOpaqueGeometry(vtkViewport* viewport) override { return note(OPAQUE, viewport); }
    int RenderTranslucentPolygonalGeometry(vtkViewport* viewport) override { return note(TRANSLUCENT, viewport); }
    int RenderVolumetricGeometry(vtkViewport* viewport) override { return note(VOLUMETRIC, viewport); }
    int RenderOverlay(vtkViewport* viewport) override { return note(OVERLAY, viewport); }
    void ReleaseGraphicsResources(vtkWindow*) override { ++released; }

    std::array<int, 4> calls = {0, 0, 0, 0};
    int callsWithDepthTest = 0;
    int released = 0;
    int answer = 1;
    vtkNew<vtkMatrix4x4> drawnAt;

private:
    int note(Pass pass, vtkViewport* viewport)
    {
        auto* const window = vtkOpenGLRenderWindow::SafeDownCast(viewport->GetVTKWindow());
        ++calls.at(pass);
        window->GetState()->ResetEnumState(GL_DEPTH_TEST); // asks the driver
        callsWithDepthTest += window->GetState()->GetEnumState(GL_DEPTH_TEST) ? 1 : 0;
        drawnAt->DeepCopy(GetMatrix());
        return answer;
    }
};

vtkStandardNewMacro(Probe)

    vtkSmartPointer<vtkActor> plane(QRgb color, double halfWidth, double z = 0.0)
{
    vtkNew<vtkPlaneSource> source;
    source->SetOrigin(-halfWidth, -halfWidth, z);
    source->SetPoint1(halfWidth, -halfWidth, z);
    source->SetPoint2(-halfWidth, halfWidth, z);
    source->Update();
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputDataObject(source->GetOutput());
    auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetMapper(mapper);
    actor->GetProperty()->SetColor(qRed(color) / 255.0, qGreen(color) / 255.0, qBlue(color) / 255.0);
    actor->GetProperty()->LightingOff();
    return actor;
}

class TORV2DLayerActorTest : public testing::Test
{
protected:
    using Operation = int (TORV2DLayerActor::*)(vtkViewport* viewport);
    static constexpr Operation Operations[] = {
        &TORV2DLayerActor::RenderOpaqueGeometry, &TORV2DLayerActor::RenderTranslucentPolygonalGeometry,
        &TORV2DLayerActor::RenderVolumetricGeometry, &TORV2DLayerActor::RenderOverlay};

    // Seen from 100 above the plane, 20 across: 15 pixels a unit.
    TORV2DLayerActorTest()
    {
        scene.window()->AddRenderer(renderer);
        renderer->AddViewProp(assembly);
        vtkCamera* const camera = renderer->GetActiveCamera();
        camera->ParallelProjectionOn();
        camera->SetParallelScale(10.0);
        camera->SetPosition(0.0, 0.0, 100.0);
        camera->SetClippingRange(1.0, 300.0);
    }

    QRgb pixelAt(const QImage& picture, double x, double y)
    {
        return picture.pixel(OffscreenScene::pixelOf(renderer, x, y, 0.0).toPoint());
    }

    vtkOpenGLState* state() { return vtkOpenGLRenderWindow::SafeDownCast(scene.window())->GetState(); }

    bool isDepthTestOn()
    {
        const bool isRemembered = state()->GetEnumState(GL_DEPTH_TEST);
        state()->ResetEnumState(GL_DEPTH_TEST); // asks the driver
        EXPECT_EQ(state()->GetEnumState(GL_DEPTH_TEST), isRemembered);
        return isRemembered;
    }

    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
    vtkNew<vtkPropAssembly> assembly;
    vtkNew<TORV2DLayerActor> layer;
};

} // namespace

TEST_F(TORV2DLayerActorTest, RendersNothingWithoutParts)
{
    scene.picture();
    for (const Operation operation : Operations) {
        EXPECT_EQ((layer->*operation)(renderer), 0);
    }
}

TEST_F(TORV2DLayerActorTest, LeavesDepthTestingOnAfterEachCall)
{
    scene.picture();
    for (const int parts : {0, 1, 2}) {
        state()->vtkglEnable(GL_DEPTH_TEST);
        for (const Operation operation : Operations) {
            (layer->*operation)(renderer);
            EXPECT_TRUE(isDepthTestOn()) << parts;
        }
        layer->AddPart(plane(Red, 5.0));
    }
}

TEST_F(TORV2DLayerActorTest, LeavesDepthTestingOffWhereItWasOff)
{
    scene.picture();
    layer->AddPart(plane(Red, 5.0));
    state()->vtkglDisable(GL_DEPTH_TEST); // as it is while translucent surfaces are peeled
    for (const Operation operation : Operations) {
        (layer->*operation)(renderer);
        EXPECT_FALSE(isDepthTestOn());
    }
}

TEST_F(TORV2DLayerActorTest, AddsUpWhatItsPartsAnswer)
{
    scene.picture();
    for (const int answer : {1, 2, 4}) {
        vtkNew<Probe> probe;
        probe->answer = answer;
        layer->AddPart(probe);
    }
    for (const Operation operation : Operations) {
        EXPECT_EQ((layer->*operation)(renderer), 7);
    }
}

TEST_F(TORV2DLayerActorTest, LeavesOutAPartThatIsOff)
{
    scene.picture();
    vtkNew<Probe> probe;
    probe->VisibilityOff();
    layer->AddPart(probe);
    EXPECT_EQ(layer->RenderOpaqueGeometry(renderer), 0);
    EXPECT_EQ(probe->calls[Probe::OPAQUE], 0);
}

TEST_F(TORV2DLayerActorTest, HasEachPassOfAnAssemblyGoThroughItWithoutDepthTesting)
{
    vtkNew<Probe> probe;
    layer->AddPart(probe);
    assembly->AddPart(layer);
    for (const bool peeling : {false, true}) {
        probe->calls = {0, 0, 0, 0};
        renderer->SetUseDepthPeeling(peeling);
        renderer->SetUseDepthPeelingForVolumes(peeling);
        scene.picture();
        for (const int calls : probe->calls) {
            EXPECT_GT(calls, 0) << peeling;
        }
        EXPECT_EQ(probe->callsWithDepthTest, 0) << peeling;
    }
}

TEST_F(TORV2DLayerActorTest, GivesItsPartsItsOwnScaleAndPlace)
{
    vtkNew<Probe> probe;
    probe->SetPosition(1.0, 2.0, 3.0);
    layer->AddPart(probe);
    layer->SetScale(10.0, 20.0, 1.0);
    layer->SetPosition(100.0, 200.0, 300.0);
    assembly->AddPart(layer);
    scene.picture();
    const double expected[] = {10, 0, 0, 110, 0, 20, 0, 240, 0, 0, 1, 303, 0, 0, 0, 1};
    for (int i = 0; i < 16; ++i) {
        EXPECT_NEAR(probe->drawnAt->GetData()[i], expected[i], 1e-9) << i;
    }
    const double* const place = probe->GetPosition(); // and then they are where they were
    EXPECT_EQ(place[0], 1.0);
    EXPECT_EQ(probe->GetMatrix()->GetElement(1, 3), 2.0);
}

TEST_F(TORV2DLayerActorTest, DrawsItsPartsInsideAnAssemblyWhereItStands)
{
    layer->AddPart(plane(Red, 1.0));
    layer->SetScale(2.0, 4.0, 1.0);
    layer->SetPosition(3.0, -2.0, 0.0);
    assembly->AddPart(layer);
    const QImage picture = scene.picture();
    EXPECT_EQ(pixelAt(picture, 3.0, -2.0), Red);
    EXPECT_EQ(pixelAt(picture, 4.7, 1.7), Red);
    EXPECT_EQ(pixelAt(picture, 1.3, -5.7), Red);
    EXPECT_EQ(pixelAt(picture, 5.3, -2.0), Black);
    EXPECT_EQ(pixelAt(picture, 3.0, 2.3), Black);
    EXPECT_EQ(pixelAt(picture, 0.0, 0.0), Black);
}

TEST_F(TORV2DLayerActorTest, IsNotHiddenByGroundOfItsHeight)
{
    layer->AddPart(plane(Red, 5.0));
    assembly->AddPart(plane(Green, 9.0));
    assembly->AddPart(layer);
    renderer->GetActiveCamera()->SetPosition(0.0, -90.0, 30.0); // aslant, where two planes would fight
    const QImage picture = scene.picture();
    for (double x = -4.5; x <= 4.5; x += 0.5) {
        for (double y = -4.5; y <= 4.5; y += 0.5) {
            ASSERT_EQ(pixelAt(picture, x, y), Red) << x << ' ' << y;
        }
    }
    EXPECT_EQ(pixelAt(picture, 7.0, 0.0), Green);
}

TEST_F(TORV2DLayerActorTest, CoversWhatWasDrawnBeforeAndIsCoveredByWhatComesLater)
{
    vtkNew<TORV2DLayerActor> later;
    layer->AddPart(plane(Red, 8.0, 50.0));
    layer->AddPart(plane(Blue, 6.0, 20.0));
    later->AddPart(plane(Green, 4.0, -50.0));
    assembly->AddPart(plane(Blue, 9.0, 60.0));
    assembly->AddPart(layer);
    assembly->AddPart(later);
    const QImage picture = scene.picture();
    EXPECT_EQ(pixelAt(picture, 7.0, 0.0), Red);
    EXPECT_EQ(pixelAt(picture, 5.0, 0.0), Blue);
    EXPECT_EQ(pixelAt(picture, 0.0, 0.0), Green);
}

TEST_F(TORV2DLayerActorTest, HidesNothingThatIsDrawnLater)
{
    layer->AddPart(plane(Red, 8.0, 50.0));
    assembly->AddPart(layer);
    assembly->AddPart(plane(Green, 4.0, -50.0));
    EXPECT_EQ(pixelAt(scene.picture(), 0.0, 0.0), Green);
}

TEST_F(TORV2DLayerActorTest, DrawsTranslucentPartsWithAndWithoutPeeling)
{
    const vtkSmartPointer<vtkActor> pane = plane(Red, 5.0);
    pane->GetProperty()->SetOpacity(0.5);
    layer->AddPart(pane);
    assembly->AddPart(plane(Green, 9.0, -1.0));
    assembly->AddPart(layer);
    EXPECT_TRUE(layer->HasTranslucentPolygonalGeometry());
    for (const bool peeling : {false, true}) {
        renderer->SetUseDepthPeeling(peeling);
        const QRgb pixel = pixelAt(scene.picture(), 0.0, 0.0);
        EXPECT_NEAR(qRed(pixel), 128, 3) << peeling;
        EXPECT_NEAR(qGreen(pixel), 128, 3) << peeling;
    }
}

TEST_F(TORV2DLayerActorTest, TellsThatItIsOpaque)
{
    EXPECT_FALSE(layer->HasTranslucentPolygonalGeometry());
    layer->AddPart(plane(Red, 5.0));
    EXPECT_FALSE(layer->HasTranslucentPolygonalGeometry());
}

TEST_F(TORV2DLayerActorTest, TellsItsBoundsWhereItStands)
{
    layer->AddPart(plane(Red, 1.0));
    const vtkSmartPointer<vtkActor> other = plane(Red, 1.0);
    other->SetPosition(4.0, 0.0, 5.0);
    layer->AddPart(other);
    layer->SetScale(10.0, 20.0, 1.0);
    layer->SetPosition(100.0, 200.0, 300.0);
    const double expected[] = {90.0, 150.0, 180.0, 220.0, 300.0, 305.0};
    for (int time = 0; time < 2; ++time) { // asking changes nothing
        const double* const bounds = layer->GetBounds();
        ASSERT_TRUE(bounds);
        for (int i = 0; i < 6; ++i) {
            EXPECT_NEAR(bounds[i], expected[i], 1e-9) << i;
        }
    }
    EXPECT_EQ(layer->GetScale()[1], 20.0);
}

TEST_F(TORV2DLayerActorTest, HasNoBoundsWithoutAnythingToSee)
{
    EXPECT_FALSE(layer->GetBounds());
    vtkNew<Probe> probe; // it has none
    layer->AddPart(probe);
    EXPECT_FALSE(layer->GetBounds());
}

TEST_F(TORV2DLayerActorTest, SharesItsPartsWithACopy)
{
    layer->AddPart(plane(Red, 1.0));
    layer->SetPosition(1.0, 2.0, 3.0);
    vtkNew<TORV2DLayerActor> copy;
    copy->ShallowCopy(layer);
    EXPECT_EQ(copy->GetParts()->GetNumberOfItems(), 1);
    EXPECT_EQ(copy->GetParts()->GetItemAsObject(0), layer->GetParts()->GetItemAsObject(0));
    EXPECT_EQ(copy->GetPosition()[1], 2.0);
}

TEST_F(TORV2DLayerActorTest, HasItsPartsGiveUpTheirResources)
{
    vtkNew<Probe> probe;
    layer->AddPart(probe);
    assembly->AddPart(layer);
    scene.picture();
    renderer->RemoveViewProp(assembly);
    EXPECT_GT(probe->released, 0);
}
