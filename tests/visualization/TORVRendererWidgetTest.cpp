#include "RendererTest.h"
#include "visualization/TORVCameraInteractorObserver.h"
#include "visualization/TORVFramePacer.h"
#include "visualization/TORVPointWidget.h"

#include <vtkCamera.h>
#include <vtkCompassWidget.h>
#include <vtkInteractorObserver.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>

namespace
{

class TORVRendererWidgetTest : public RendererTest
{
protected:
    class CameraObserver final : public TORVCameraInteractorObserver
    {
    public:
        void cameraReset(TORVCameraInteractor* camera) override
        {
            Q_UNUSED(camera)
            ++resets;
        }
        void cameraMoved(TORVCameraInteractor* camera) override
        {
            Q_UNUSED(camera)
            ++moves;
        }
        int resets = 0;
        int moves = 0;
    };

    TORVRendererWidgetTest() { interactor->SetRenderWindow(scene.window()); }

    bool isCursorDrawn(TORVRenderer& renderer)
    {
        return renderer.getRenderer()->HasViewProp(renderer.getPointWidget()->getActor());
    }

    void drag(int fromX, int fromY, int toX, int toY)
    {
        interactor->SetEventInformation(fromX, fromY);
        interactor->InvokeEvent(vtkCommand::LeftButtonPressEvent);
        interactor->SetEventInformation(toX, toY);
        interactor->InvokeEvent(vtkCommand::MouseMoveEvent);
        interactor->InvokeEvent(vtkCommand::LeftButtonReleaseEvent);
    }

    CameraObserver cameraObserver;
    vtkNew<vtkRenderWindowInteractor> interactor;
};

} // namespace

TEST_F(TORVRendererWidgetTest, HasNoCursorWithoutAnObserver)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, true);
    EXPECT_EQ(renderer.getPointWidget(), nullptr);
    renderer.togglePointWidget(true, true);
    EXPECT_FALSE(renderer.isPointWidgetOn());
}

TEST_F(TORVRendererWidgetTest, HasNoCursorWhereNobodyOperatesIt)
{
    TORVRenderer renderer(scene.window(), nullptr, &pointObserver, false);
    EXPECT_EQ(renderer.getPointWidget(), nullptr);
}

TEST_F(TORVRendererWidgetTest, ShowsAndHidesTheCursor)
{
    TORVRenderer renderer(scene.window(), nullptr, &pointObserver, true);
    const int mark = static_cast<int>(log.lines().size());
    renderer.togglePointWidget(true, false);
    EXPECT_TRUE(isCursorDrawn(renderer));
    EXPECT_TRUE(renderer.getPointWidget()->GetEnabled());
    renderer.togglePointWidget(false, false);
    EXPECT_FALSE(isCursorDrawn(renderer));
    EXPECT_FALSE(renderer.getPointWidget()->GetEnabled());
    const QString all = linesSince(mark).join(QLatin1Char('\n'));
    EXPECT_TRUE(all.contains(QLatin1String("TORVRenderer::togglePointWidget(): enabled.")));
    EXPECT_TRUE(all.contains(QLatin1String("TORVRenderer::togglePointWidget(): disabled.")));
}

TEST_F(TORVRendererWidgetTest, DoesNothingForTheStateThatIsThere)
{
    TORVRenderer renderer(scene.window(), nullptr, &pointObserver, true);
    renderer.togglePointWidget(true, false);
    const int props = renderer.getRenderer()->GetViewProps()->GetNumberOfItems();
    const int mark = static_cast<int>(log.lines().size());
    renderer.togglePointWidget(true, true);
    QCoreApplication::processEvents();
    EXPECT_EQ(renderer.getRenderer()->GetViewProps()->GetNumberOfItems(), props);
    EXPECT_TRUE(linesSince(mark).isEmpty());
}

TEST_F(TORVRendererWidgetTest, DrawsTheCursorWhenToldSo)
{
    TORVRenderer renderer(scene.window(), nullptr, &pointObserver, true);
    renderer.togglePointWidget(true, true);
    QCoreApplication::processEvents();
    EXPECT_EQ(renderer.getPacer()->getDrawCount(), 1);
}

TEST_F(TORVRendererWidgetTest, KeepsTheCursorWhenAnotherSceneComes)
{
    TORVRenderer renderer(scene.window(), nullptr, &pointObserver, true);
    renderer.togglePointWidget(true, false);
    const int before = renderer.getRenderer()->GetViewProps()->GetNumberOfItems();
    renderer.setVisualization(block());
    EXPECT_TRUE(isCursorDrawn(renderer));
    EXPECT_EQ(renderer.getRenderer()->GetViewProps()->GetNumberOfItems(), before + 1);
    renderer.removeVisualization();
    EXPECT_EQ(renderer.getRenderer()->GetViewProps()->GetNumberOfItems(), before);
}

TEST_F(TORVRendererWidgetTest, TellsTheObserverOfTheHomeViewAndOfMotions)
{
    TORVRenderer renderer(scene.window(), &cameraObserver, nullptr, true);
    EXPECT_EQ(cameraObserver.resets, 1);
    renderer.resetCamera();
    EXPECT_EQ(cameraObserver.resets, 2);
    EXPECT_EQ(cameraObserver.moves, 0);
    drag(150, 150, 160, 150);
    EXPECT_EQ(cameraObserver.moves, 1);
}

TEST_F(TORVRendererWidgetTest, TurnsTheSceneWithTheMouse)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, true);
    lookAslant(renderer);
    vtkCamera* const camera = renderer.getRenderer()->GetActiveCamera();
    const double x = camera->GetPosition()[0];
    drag(150, 150, 200, 150);
    EXPECT_NE(camera->GetPosition()[0], x);
}

TEST_F(TORVRendererWidgetTest, IgnoresTheMouseWhereItIsNotInteractive)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, false);
    lookAslant(renderer);
    vtkCamera* const camera = renderer.getRenderer()->GetActiveCamera();
    const double x = camera->GetPosition()[0];
    drag(150, 150, 200, 150);
    EXPECT_EQ(camera->GetPosition()[0], x);
}

TEST_F(TORVRendererWidgetTest, SteersTheSceneOverTheColourScaleToo)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, true);
    renderer.setInfoData(frame(Moment), observer.general);
    renderer.toggleColorScale(true);
    scene.picture();
    lookAslant(renderer);
    vtkCamera* const camera = renderer.getRenderer()->GetActiveCamera();
    const double x = camera->GetPosition()[0];
    drag(5, 270, 50, 270); // the strip is at the upper left; VTK counts from below
    EXPECT_NE(camera->GetPosition()[0], x);
}

TEST_F(TORVRendererWidgetTest, DrawsQuickPicturesWhileTheCameraMoves)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, true);
    EXPECT_FALSE(renderer.getPacer()->isMoving());
    drag(150, 150, 160, 150);
    EXPECT_TRUE(renderer.getPacer()->isMoving());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !renderer.getPacer()->isMoving(); }, Patience_ms));
}

TEST_F(TORVRendererWidgetTest, DrawsOnePictureForABurstOfMoves)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, true);
    interactor->SetEventInformation(100, 150);
    interactor->InvokeEvent(vtkCommand::LeftButtonPressEvent);
    for (int i = 1; i <= 50; ++i) {
        interactor->SetEventInformation(100 + i, 150);
        interactor->InvokeEvent(vtkCommand::MouseMoveEvent);
    }
    EXPECT_EQ(renderer.getPacer()->getDrawCount(), 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(renderer.getPacer()->getDrawCount(), 1);
    interactor->InvokeEvent(vtkCommand::LeftButtonReleaseEvent);
}

TEST_F(TORVRendererWidgetTest, ShowsTheCompassInItsCorner)
{
    TORVRenderer renderer(scene.window(), nullptr, nullptr, true);
    const QImage without = scene.picture();
    renderer.toggleCompass(true);
    EXPECT_TRUE(renderer.isCompassOn());
    const QImage with = scene.picture();
    EXPECT_NE(with.copy(150, 0, 150, 150), without.copy(150, 0, 150, 150));
    EXPECT_EQ(with.copy(0, 150, 150, 150), without.copy(0, 150, 150, 150));
    renderer.toggleCompass(false);
    EXPECT_EQ(scene.picture(), without);
}

TEST_F(TORVRendererWidgetTest, ShowsTheCompassWithoutAnInteractor)
{
    OffscreenScene lonely;
    TORVRenderer renderer(lonely.window(), nullptr, nullptr, false);
    const QImage without = lonely.picture();
    renderer.toggleCompass(true);
    EXPECT_NE(lonely.picture(), without);
}

TEST_F(TORVRendererWidgetTest, GivesTheInteractorBackWhenItGoes)
{
    {
        TORVRenderer renderer(scene.window(), nullptr, &pointObserver, true);
        renderer.toggleCompass(true);
        renderer.togglePointWidget(true, false);
    }
    EXPECT_EQ(interactor->GetInteractorStyle(), nullptr);
    EXPECT_TRUE(interactor->GetEnableRender());
    drag(150, 150, 160, 150); // nobody is there to be hurt
}

TEST_F(TORVRendererWidgetTest, LeavesACameraThatOutlivesItAlone)
{
    vtkSmartPointer<TORVCameraInteractor> camera;
    {
        TORVRenderer renderer(scene.window(), &cameraObserver, nullptr, true);
        camera = renderer.getCameraInteractor();
    }
    camera->wheel(1.0);
    EXPECT_EQ(cameraObserver.moves, 0);
}
