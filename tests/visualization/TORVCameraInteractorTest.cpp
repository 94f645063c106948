#include "visualization/TORVCameraInteractor.h"

#include "CameraTest.h"
#include "support/LogFile.h"
#include "support/OffscreenScene.h"
#include "visualization/TORVCameraInteractorCallback.h"
#include "visualization/TORVCameraInteractorObserver.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkMath.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>

#include <cmath>
#include <limits>

namespace
{

using namespace CameraTest;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

class Observer final : public TORVCameraInteractorObserver
{
public:
    explicit Observer(QStringList& log) : _log(log) {}

    void cameraReset(TORVCameraInteractor* camera) override { add(QStringLiteral("reset"), camera); }
    void cameraMoved(TORVCameraInteractor* camera) override { add(QStringLiteral("moved"), camera); }

    double x = 0.0; // of the camera at the last call

private:
    void add(const QString& what, TORVCameraInteractor* camera)
    {
        _log << what;
        x = camera->getPosition().x;
    }

    QStringList& _log;
};

class TORVCameraInteractorTest : public testing::Test
{
protected:
    TORVCameraInteractorTest()
    {
        scene.window()->AddRenderer(renderer);
        interactor->SetRenderWindow(scene.window());
        interactor->SetInteractorStyle(camera);
        camera->setRenderer(renderer);
        camera->setRenderRequest([this] { log << QStringLiteral("draw"); });
        callback->setObserver(&observer);
        camera->AddObserver(TORVCameraInteractor::CameraResetEvent, callback);
        camera->AddObserver(vtkCommand::InteractionEvent, callback);
        goHome(*camera);
        camera->applyCamera(false);
        log.clear();
    }

    vtkCamera* vtk() { return renderer->GetActiveCamera(); }

    double near() { return vtk()->GetClippingRange()[0]; }

    static TORVPoint3D toPoint(const double* numbers) { return {numbers[0], numbers[1], numbers[2]}; }

    QStringList log; // of what was told to observers and asked of the window
    Observer observer{log};
    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
    vtkNew<vtkRenderWindowInteractor> interactor;
    vtkNew<TORVCameraInteractor> camera;
    vtkNew<TORVCameraInteractorCallback> callback;
};

} // namespace

TEST_F(TORVCameraInteractorTest, WritesTheModelIntoTheCamera)
{
    EXPECT_TRUE(isAt(toPoint(vtk()->GetPosition()), 0.0, -3e5, 3e5));
    EXPECT_TRUE(isAt(toPoint(vtk()->GetFocalPoint()), 0.0, 0.0, 0.0));
    EXPECT_TRUE(pointsTo(toPoint(vtk()->GetViewUp()), 0.0, Half, Half));
    EXPECT_EQ(near(), 100.0);
    EXPECT_EQ(vtk()->GetClippingRange()[1], 2e6);
}

TEST_F(TORVCameraInteractorTest, HasTheHeadingAboveStraightDown)
{
    camera->setView({4e5, 5e5, 3e5}, {1e-20, -1e-20, -1.0}); // less than VTK can tell from straight down
    camera->applyCamera(false);
    EXPECT_TRUE(pointsTo(toPoint(vtk()->GetViewUp()), Half, -Half, 0.0));
}

TEST_F(TORVCameraInteractorTest, HasZAboveAtTheHorizon)
{
    camera->setView(Position, {1.0, 2.0, 0.0});
    camera->applyCamera(false);
    EXPECT_TRUE(pointsTo(toPoint(vtk()->GetViewUp()), 0.0, 0.0, 1.0));
}

TEST_F(TORVCameraInteractorTest, LooksAlongItsDirectionWithATargetBehind)
{
    camera->setView({0.0, 0.0, 3e5}, {0.0, 0.1, 1.0});
    camera->applyCamera(false);
    const TORVPoint3D direction = camera->getDirection();
    EXPECT_TRUE(pointsTo(toPoint(vtk()->GetDirectionOfProjection()), direction.x, direction.y, direction.z));
}

TEST_F(TORVCameraInteractorTest, PutsTheNearPlaneBeforeTheScene)
{
    const double box[6] = {-1e5, 1e5, -1e5, 1e5, 0.0, 1e5};
    camera->setSceneBounds(box); // 200 km to the north and 200 km down from here
    camera->applyCamera(false);
    EXPECT_NEAR(near(), 2828.4271, 1e-3);
}

TEST_F(TORVCameraInteractorTest, KeepsTheNearPlaneNearInTheScene)
{
    const double box[6] = {-4e5, 4e5, -4e5, 4e5, 0.0, 4e5};
    camera->setSceneBounds(box);
    camera->applyCamera(false);
    EXPECT_EQ(near(), 100.0);
}

TEST_F(TORVCameraInteractorTest, KeepsTheNearPlaneNearWithoutABox)
{
    double none[6];
    vtkMath::UninitializeBounds(none);
    const double broken[6] = {-1.0, 1.0, NaN, 1.0, 0.0, 1.0};
    const double endless[6] = {-1.0, 1.0, 0.0, 1.0, 0.0, std::numeric_limits<double>::infinity()};
    const double box[6] = {-1e5, 1e5, -1e5, 1e5, 0.0, 1e5};
    for (const double* const bounds : {static_cast<const double*>(none), broken, endless}) {
        camera->setSceneBounds(box);
        camera->setSceneBounds(bounds);
        camera->applyCamera(false);
        EXPECT_EQ(near(), 100.0);
    }
}

TEST_F(TORVCameraInteractorTest, TellsOfAResetOnceItIsApplied)
{
    camera->resetCamera();
    EXPECT_EQ(log, QStringList());
    camera->applyCamera(true);
    EXPECT_EQ(log, QStringList({"reset", "draw"}));
    camera->applyCamera(false);
    EXPECT_EQ(log, QStringList({"reset", "draw"}));
}

TEST_F(TORVCameraInteractorTest, TellsOfANewHome)
{
    camera->resetCamera({1000.0, 0.0, 2e6}, Direction, 0.0, 0.0);
    camera->applyCamera(false);
    EXPECT_EQ(log, QStringList({"reset"}));
    EXPECT_EQ(observer.x, 1000.0);
}

TEST_F(TORVCameraInteractorTest, TellsNobodyOfAStoredView)
{
    camera->setView({1e5, 0.0, 3e5}, Direction);
    camera->applyCamera(false);
    EXPECT_EQ(log, QStringList());
    EXPECT_TRUE(isAt(toPoint(vtk()->GetPosition()), 1e5, 0.0, 3e5));
}

TEST_F(TORVCameraInteractorTest, TellsOfAMotionBeforeItIsDrawn)
{
    camera->panCamera(100.0, 0.0);
    camera->userMoved();
    EXPECT_EQ(log, QStringList({"moved", "draw"}));
    EXPECT_NEAR(observer.x, 42426.40687, 1e-3);
    EXPECT_NEAR(vtk()->GetPosition()[0], 42426.40687, 1e-3);
}

TEST_F(TORVCameraInteractorTest, IsHeardThroughItsCallbackOnly)
{
    vtkNew<vtkRenderer> other;
    callback->Execute(other, vtkCommand::InteractionEvent, nullptr);
    callback->Execute(nullptr, vtkCommand::InteractionEvent, nullptr);
    callback->Execute(camera, vtkCommand::ModifiedEvent, nullptr);
    callback->Execute(camera, vtkCommand::UserEvent, nullptr);
    EXPECT_EQ(log, QStringList());
    callback->setObserver(nullptr);
    callback->Execute(camera, vtkCommand::InteractionEvent, nullptr);
    EXPECT_EQ(log, QStringList());
}

TEST_F(TORVCameraInteractorTest, DrawsByItselfWithoutARequest)
{
    int drawn = 0;
    vtkNew<vtkCallbackCommand> command;
    command->SetClientData(&drawn);
    command->SetCallback([](vtkObject*, unsigned long, void* data, void*) { ++*static_cast<int*>(data); });
    interactor->AddObserver(vtkCommand::RenderEvent, command);
    camera->setRenderRequest({});
    camera->panCamera(100.0, 0.0);
    EXPECT_EQ(drawn, 0);
    camera->userMoved();
    EXPECT_EQ(drawn, 1);
    EXPECT_EQ(log, QStringList({"moved"}));
}

TEST_F(TORVCameraInteractorTest, DrawsNothingWithoutAWindow)
{
    const vtkNew<TORVCameraInteractor> alone;
    alone->render();
    EXPECT_EQ(log, QStringList());
}

TEST_F(TORVCameraInteractorTest, TakesTheCameraOfItsRenderer)
{
    vtkNew<vtkRenderer> other;
    camera->setRenderer(other);
    camera->setView({1e5, 0.0, 3e5}, Direction);
    camera->applyCamera(false);
    EXPECT_TRUE(isAt(toPoint(other->GetActiveCamera()->GetPosition()), 1e5, 0.0, 3e5));
    EXPECT_TRUE(isAt(toPoint(vtk()->GetPosition()), 0.0, -3e5, 3e5));
}

TEST_F(TORVCameraInteractorTest, KeepsItsName)
{
    camera->setName(QStringLiteral("extra"));
    EXPECT_EQ(camera->getName(), QStringLiteral("extra"));
}

TEST_F(TORVCameraInteractorTest, LogsWhereItIs)
{
    const LogFile file(TORVLog::LEVEL_DEBUG);
    camera->setView({1234567.0 / 8.0, -3e5, 3e5}, Direction);
    camera->printDebug();
    EXPECT_TRUE(file.lines().last().endsWith(
        QStringLiteral("Cam: pos=(154321, -300000, 300000), dir=(0, 0.707107, -0.707107)")));
}

TEST_F(TORVCameraInteractorTest, MovesOnlyItsModelByMotions)
{
    camera->panCamera(10.0, 10.0);
    camera->zoomCamera(0.01);
    camera->rotateCameraTarget(0.1, 0.1);
    camera->rotateCameraView(0.1, 0.1);
    camera->setCameraByHPD(0.0, 1.0, 1e5);
    camera->targetToOrigo();
    camera->calculateVectors();
    EXPECT_EQ(log, QStringList());
    EXPECT_TRUE(isAt(toPoint(vtk()->GetPosition()), 0.0, -3e5, 3e5));
}

TEST_F(TORVCameraInteractorTest, TellsWhatItsModelTells)
{
    EXPECT_TRUE(isAt(camera->getPosition(), 0.0, -3e5, 3e5));
    EXPECT_TRUE(pointsTo(camera->getDirection(), 0.0, Half, -Half));
    EXPECT_TRUE(isAt(camera->getTarget(), 0.0, 0.0, 0.0));
    EXPECT_NEAR(camera->getHeading(), M_PI / 2.0, 1e-12);
    EXPECT_NEAR(camera->getPitch(), M_PI / 4.0, 1e-12);
    EXPECT_NEAR(camera->getTargetDistance(), Distance, 1e-6);
    EXPECT_EQ(camera->getMaxDistance(), 1e6);
    EXPECT_EQ(camera->getTargetLimit(), 3e5);
    EXPECT_TRUE(camera->isTargetLegal());
}

using TORVCameraInteractorDeathTest = TORVCameraInteractorTest;

TEST_F(TORVCameraInteractorDeathTest, StopsWithoutACamera)
{
    const vtkNew<TORVCameraInteractor> alone;
    goHome(*alone.Get());
    EXPECT_DEATH(alone->applyCamera(false), "_camera");
}
