#include "CameraTest.h"
#include "support/OffscreenScene.h"
#include "visualization/TORVCameraInteractor.h"

#include <QtTest>

#include <gtest/gtest.h>

#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>

#include <cmath>
#include <string>

namespace
{

using namespace CameraTest;

/// Events of VTK's interactor at a window of 300 x 300 pixels.
class TORVCameraDragTest : public testing::Test
{
protected:
    static constexpr int Patience_ms = 60000;

    TORVCameraDragTest()
    {
        scene.window()->AddRenderer(renderer);
        interactor->SetRenderWindow(scene.window());
        interactor->SetInteractorStyle(camera);
        camera->setRenderer(renderer);
        camera->setRenderRequest([this] { ++draws; });
        goHome(*camera);
        count(vtkCommand::StartInteractionEvent, starts);
        count(vtkCommand::EndInteractionEvent, ends);
        count(vtkCommand::InteractionEvent, moves);
    }

    void count(unsigned long event, int& counter)
    {
        vtkNew<vtkCallbackCommand> command;
        command->SetClientData(&counter);
        command->SetCallback([](vtkObject*, unsigned long, void* data, void*) { ++*static_cast<int*>(data); });
        camera->AddObserver(event, command);
    }

    void send(unsigned long event, int x, int y, bool isControl = false, bool isShift = false)
    {
        interactor->SetEventInformation(x, y, isControl, isShift);
        interactor->InvokeEvent(event);
    }

    void key(const char* symbol, char character = '\0')
    {
        interactor->SetKeyEventInformation(0, 0, character, 0, symbol);
        interactor->InvokeEvent(vtkCommand::KeyPressEvent);
        interactor->InvokeEvent(vtkCommand::CharEvent);
        interactor->InvokeEvent(vtkCommand::KeyReleaseEvent);
    }

    bool isHome() { return camera->getPosition().y == -3e5 && camera->getPosition().x == 0.0; }

    int starts = 0;
    int ends = 0;
    int moves = 0;
    int draws = 0;
    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
    vtkNew<vtkRenderWindowInteractor> interactor;
    vtkNew<TORVCameraInteractor> camera;
};

} // namespace

TEST_F(TORVCameraDragTest, MovesOnlyWhileAButtonIsDown)
{
    send(vtkCommand::MouseMoveEvent, 100, 100);
    send(vtkCommand::MouseMoveEvent, 200, 200);
    EXPECT_EQ(moves, 0);
    send(vtkCommand::LeftButtonPressEvent, 200, 200);
    send(vtkCommand::MouseMoveEvent, 210, 200);
    EXPECT_EQ(moves, 1);
    send(vtkCommand::LeftButtonReleaseEvent, 210, 200);
    send(vtkCommand::MouseMoveEvent, 220, 200);
    EXPECT_EQ(moves, 1);
    EXPECT_NEAR(camera->getHeading(), M_PI / 2.0 + 0.02, 1e-9); // ten pixels
}

TEST_F(TORVCameraDragTest, TellsWhenADragBeginsAndEnds)
{
    const struct
    {
        unsigned long press;
        unsigned long release;
    } rows[] = {
        {vtkCommand::LeftButtonPressEvent, vtkCommand::LeftButtonReleaseEvent},
        {vtkCommand::MiddleButtonPressEvent, vtkCommand::MiddleButtonReleaseEvent},
        {vtkCommand::RightButtonPressEvent, vtkCommand::RightButtonReleaseEvent},
    };
    int drags = 0;
    for (const auto& row : rows) {
        send(row.press, 100, 100);
        EXPECT_NE(camera->GetState(), VTKIS_NONE);
        EXPECT_EQ(starts, ++drags);
        send(vtkCommand::MouseMoveEvent, 110, 110);
        send(vtkCommand::MouseMoveEvent, 120, 120);
        EXPECT_EQ(ends, drags - 1);
        const int drawn = draws;
        send(row.release, 120, 120);
        EXPECT_EQ(camera->GetState(), VTKIS_NONE);
        EXPECT_EQ(starts, drags);
        EXPECT_EQ(ends, drags);
        EXPECT_EQ(draws, drawn + 1); // at rest again
    }
}

TEST_F(TORVCameraDragTest, AsksForAPictureWithEachMove)
{
    send(vtkCommand::LeftButtonPressEvent, 100, 100);
    for (int i = 1; i <= 20; ++i) {
        send(vtkCommand::MouseMoveEvent, 100 + i, 100);
    }
    EXPECT_EQ(draws, 20);
    EXPECT_EQ(moves, 20);
    EXPECT_NEAR(camera->getHeading(), M_PI / 2.0 + 0.04, 1e-9);
    EXPECT_NEAR(renderer->GetActiveCamera()->GetPosition()[0], camera->getPosition().x, 1e-6);
}

TEST_F(TORVCameraDragTest, KeepsItsDragWhenAnotherButtonIsPressed)
{
    send(vtkCommand::LeftButtonPressEvent, 100, 100);
    send(vtkCommand::RightButtonPressEvent, 100, 100);
    send(vtkCommand::MiddleButtonPressEvent, 100, 100);
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(camera->GetState(), VTKIS_ROTATE);
    send(vtkCommand::RightButtonReleaseEvent, 100, 100);
    send(vtkCommand::MiddleButtonReleaseEvent, 100, 100);
    EXPECT_EQ(ends, 0);
    send(vtkCommand::MouseMoveEvent, 110, 100);
    EXPECT_NEAR(camera->getHeading(), M_PI / 2.0 + 0.02, 1e-9);
    send(vtkCommand::LeftButtonReleaseEvent, 110, 100);
    EXPECT_EQ(ends, 1);
}

TEST_F(TORVCameraDragTest, IgnoresAReleaseWithoutItsPress)
{
    send(vtkCommand::LeftButtonReleaseEvent, 100, 100);
    send(vtkCommand::MiddleButtonReleaseEvent, 100, 100);
    send(vtkCommand::RightButtonReleaseEvent, 100, 100);
    EXPECT_EQ(ends, 0);
    EXPECT_EQ(draws, 0);
}

TEST_F(TORVCameraDragTest, EndsWhenTheMouseLeavesWithTheReleaseLost)
{
    send(vtkCommand::MiddleButtonPressEvent, 100, 100);
    send(vtkCommand::LeaveEvent, 100, 100);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(camera->GetState(), VTKIS_NONE);
    send(vtkCommand::MouseMoveEvent, 150, 150);
    EXPECT_TRUE(isHome());
    send(vtkCommand::LeaveEvent, 100, 100);
    EXPECT_EQ(ends, 1);
}

TEST_F(TORVCameraDragTest, BeginsAnewWhenTheReleaseWasLost)
{
    send(vtkCommand::LeftButtonPressEvent, 100, 100, true);
    send(vtkCommand::LeftButtonPressEvent, 100, 100);
    EXPECT_EQ(starts, 2);
    EXPECT_EQ(ends, 1);
    send(vtkCommand::MouseMoveEvent, 110, 100); // no Control at the second press: about the target
    EXPECT_NEAR(camera->getHeading(), M_PI / 2.0 + 0.02, 1e-9);
}

TEST_F(TORVCameraDragTest, DragsFromTheSecondPressOfADoubleClick)
{
    send(vtkCommand::LeftButtonDoubleClickEvent, 100, 100);
    send(vtkCommand::MouseMoveEvent, 110, 100);
    send(vtkCommand::LeftButtonReleaseEvent, 110, 100);
    EXPECT_NEAR(camera->getHeading(), M_PI / 2.0 + 0.02, 1e-9);
    send(vtkCommand::MiddleButtonDoubleClickEvent, 100, 100);
    EXPECT_EQ(camera->GetState(), VTKIS_DOLLY);
    send(vtkCommand::MiddleButtonReleaseEvent, 100, 100);
    send(vtkCommand::RightButtonDoubleClickEvent, 100, 100);
    EXPECT_EQ(camera->GetState(), VTKIS_PAN);
}

TEST_F(TORVCameraDragTest, TakesControlAsItWasAtThePress)
{
    send(vtkCommand::LeftButtonPressEvent, 100, 100, true);
    send(vtkCommand::MouseMoveEvent, 110, 100, false);
    EXPECT_NEAR(camera->getHeading(), M_PI / 2.0 - 0.02, 1e-9);
    EXPECT_TRUE(isHome());
    send(vtkCommand::LeftButtonReleaseEvent, 110, 100);
    goHome(*camera);
    send(vtkCommand::LeftButtonPressEvent, 100, 100, false);
    send(vtkCommand::MouseMoveEvent, 110, 100, true);
    EXPECT_NEAR(camera->getHeading(), M_PI / 2.0 + 0.02, 1e-9);
    EXPECT_FALSE(isHome());
}

TEST_F(TORVCameraDragTest, TakesShiftAsItIsNow)
{
    send(vtkCommand::LeftButtonPressEvent, 100, 100, true, false);
    send(vtkCommand::MouseMoveEvent, 110, 100, true, true);
    EXPECT_NEAR(camera->getPosition().x, 2121.3203, 1e-3); // 5 times 424.26 m
    EXPECT_NEAR(camera->getHeading(), M_PI / 2.0, 1e-9);
}

TEST_F(TORVCameraDragTest, TurnsOnTheSpotWithATargetBeyondTheLimit)
{
    camera->setView(Position, {0.0, 1.0, -0.4}); // target 450 km north of the origin
    ASSERT_FALSE(camera->isTargetLegal());
    send(vtkCommand::LeftButtonPressEvent, 100, 100);
    send(vtkCommand::MouseMoveEvent, 110, 105);
    EXPECT_TRUE(isHome());
    EXPECT_NEAR(camera->getHeading(), M_PI / 2.0 - 0.02, 1e-9);
    EXPECT_NEAR(camera->getPitch(), std::atan(0.4) + 0.01, 1e-9);
}

TEST_F(TORVCameraDragTest, CountsMouseMovesInPixelsOf72Dpi)
{
    for (const int dpi : {72, 90, 108, 144}) {
        goHome(*camera);
        scene.window()->SetDPI(dpi);
        send(vtkCommand::LeftButtonPressEvent, 0, 0);
        send(vtkCommand::MouseMoveEvent, 40 * dpi / 72, 20 * dpi / 72); // as far on each screen
        send(vtkCommand::LeftButtonReleaseEvent, 0, 0);
        EXPECT_NEAR(camera->getHeading(), M_PI / 2.0 + 0.08, 1e-9) << dpi;
        EXPECT_NEAR(camera->getPitch(), M_PI / 4.0 + 0.04, 1e-9) << dpi;
    }
}

TEST_F(TORVCameraDragTest, MovesItsOwnRendererWhereverThePressIs)
{
    vtkNew<vtkRenderer> strip;
    strip->SetViewport(0.0, 0.5, 0.2, 1.0);
    scene.window()->AddRenderer(strip);
    const double before = strip->GetActiveCamera()->GetPosition()[0];
    send(vtkCommand::RightButtonPressEvent, 20, 250); // over the strip
    send(vtkCommand::MouseMoveEvent, 30, 250);
    EXPECT_NEAR(renderer->GetActiveCamera()->GetPosition()[0], 2121.3203, 1e-3);
    EXPECT_EQ(strip->GetActiveCamera()->GetPosition()[0], before);
}

TEST_F(TORVCameraDragTest, IgnoresAPressOutsideItsRenderer)
{
    renderer->SetViewport(0.0, 0.0, 0.5, 1.0);
    send(vtkCommand::LeftButtonPressEvent, 200, 100);
    send(vtkCommand::MouseMoveEvent, 210, 100);
    EXPECT_EQ(starts, 0);
    EXPECT_TRUE(isHome());
}

TEST_F(TORVCameraDragTest, IgnoresAPressOverNoRenderer)
{
    camera->setRenderer(nullptr);
    scene.window()->RemoveRenderer(renderer);
    send(vtkCommand::LeftButtonPressEvent, 100, 100);
    send(vtkCommand::MouseMoveEvent, 110, 100);
    send(vtkCommand::LeftButtonReleaseEvent, 110, 100);
    EXPECT_EQ(starts + moves + ends, 0);
}

TEST_F(TORVCameraDragTest, TakesTheRendererUnderTheMouseWithoutOneOfItsOwn)
{
    camera->setRenderer(nullptr);
    send(vtkCommand::RightButtonPressEvent, 100, 100);
    send(vtkCommand::MouseMoveEvent, 110, 100);
    EXPECT_NEAR(renderer->GetActiveCamera()->GetPosition()[0], 2121.3203, 1e-3);
}

TEST_F(TORVCameraDragTest, ZoomsByTheWheelExceptInAMiddleDrag)
{
    send(vtkCommand::MouseWheelForwardEvent, 100, 100);
    EXPECT_TRUE(isAt(camera->getPosition(), 0.0, -3e5 + 35355.33906, 3e5 - 35355.33906));
    send(vtkCommand::MouseWheelBackwardEvent, 100, 100);
    EXPECT_TRUE(isAt(camera->getPosition(), 0.0, -3e5, 3e5));
    EXPECT_EQ(moves, 2);
    send(vtkCommand::MiddleButtonPressEvent, 100, 100);
    send(vtkCommand::MouseWheelForwardEvent, 100, 100);
    EXPECT_TRUE(isAt(camera->getPosition(), 0.0, -3e5, 3e5));
    EXPECT_EQ(moves, 2);
    send(vtkCommand::MiddleButtonReleaseEvent, 100, 100);
    send(vtkCommand::LeftButtonPressEvent, 100, 100);
    send(vtkCommand::MouseWheelForwardEvent, 100, 100);
    EXPECT_EQ(moves, 3);
}

TEST_F(TORVCameraDragTest, GoesToJustAboveTheLowestAltitudeByTheWheel)
{
    for (int i = 0; i < 20; ++i) {
        send(vtkCommand::MouseWheelForwardEvent, 100, 100);
    }
    EXPECT_GT(camera->getPosition().z, 2000.0);
    EXPECT_LT(camera->getPosition().z, 2000.01);
    EXPECT_TRUE(isNear(camera->getTarget(), {0.0, 0.0, 0.0}, 0.01));
}

TEST_F(TORVCameraDragTest, TakesNoWheelThatIsNotFinite)
{
    camera->wheel(std::nan(""));
    EXPECT_EQ(moves, 0);
    EXPECT_TRUE(isHome());
}

TEST_F(TORVCameraDragTest, TellsOfEachStepOfWheelAndKeysAndShowsIt)
{
    int steps = 0;
    for (const char* const symbol : {"Left", "Right", "Up", "Down", "plus", "minus"}) {
        key(symbol);
        EXPECT_EQ(moves, ++steps) << symbol;
    }
    for (const char character : {'r', 't'}) {
        key("", character);
        EXPECT_EQ(moves, ++steps) << character;
    }
    send(vtkCommand::MouseWheelForwardEvent, 100, 100);
    EXPECT_EQ(moves, ++steps);
    EXPECT_EQ(draws, steps);
    EXPECT_NEAR(renderer->GetActiveCamera()->GetPosition()[2], camera->getPosition().z, 1e-6);
}

TEST_F(TORVCameraDragTest, TellsOfTheHomeViewByR)
{
    int resets = 0;
    count(TORVCameraInteractor::CameraResetEvent, resets);
    camera->applyCamera(false); // of the home view that this test starts with
    EXPECT_EQ(resets, 1);
    key("r", 'r');
    EXPECT_EQ(resets, 2);
    key("t", 't');
    EXPECT_EQ(resets, 2);
}

TEST_F(TORVCameraDragTest, IgnoresKeysWithAlt)
{
    interactor->SetAltKey(1);
    key("Left");
    EXPECT_TRUE(isHome());
    EXPECT_EQ(moves, 0);
}

TEST_F(TORVCameraDragTest, IgnoresKeysWithoutAName)
{
    key(nullptr);
    key(nullptr, 'x');
    EXPECT_EQ(moves, 0);
}

TEST_F(TORVCameraDragTest, KeepsTheBaseClassFromItsCharacters)
{
    int exits = 0;
    int calls = 0;
    int picks = 0;
    const struct
    {
        unsigned long event;
        int& counter;
    } rows[] = {{vtkCommand::ExitEvent, exits}, {vtkCommand::UserEvent, calls}, {vtkCommand::StartPickEvent, picks}};
    for (const auto& row : rows) {
        vtkNew<vtkCallbackCommand> command;
        command->SetClientData(&row.counter);
        command->SetCallback([](vtkObject*, unsigned long, void* data, void*) { ++*static_cast<int*>(data); });
        interactor->AddObserver(row.event, command);
    }
    for (const char character : std::string("rRsSwWfFeEqQuUpPmM3jJtTcCaAlL")) {
        key(std::string(1, character).c_str(), character);
    }
    EXPECT_EQ(exits + calls + picks, 0);
    EXPECT_EQ(scene.window()->GetStereoRender(), 0);
    EXPECT_EQ(moves, 2); // r and t
}

TEST_F(TORVCameraDragTest, HandsOtherCharactersToTheBaseClass)
{
    int chars = 0;
    int presses = 0;
    int releases = 0;
    count(vtkCommand::CharEvent, chars);
    count(vtkCommand::KeyPressEvent, presses);
    count(vtkCommand::KeyReleaseEvent, releases);
    for (const char character : {'x', 'q'}) {
        interactor->SetKeyEventInformation(0, 0, character, 0, "x");
        camera->OnChar();
        camera->OnKeyPress();
        camera->OnKeyRelease();
    }
    EXPECT_EQ(chars, 1);
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(releases, 1);
}
