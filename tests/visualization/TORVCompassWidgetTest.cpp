#include "visualization/TORVCompassInteractionCallback.h"

#include "visualization/CompassScene.h"

#include <QPoint>

#include <vtkTextProperty.h>

namespace
{

class TORVCompassWidgetTest : public CompassScene
{
protected:
    TORVCompassWidgetTest()
    {
        show();
        counter->SetClientData(&moves);
        counter->SetCallback([](vtkObject*, unsigned long, void* count, void*) { ++*static_cast<int*>(count); });
        camera->AddObserver(vtkCommand::InteractionEvent, counter);
    }

    // On the ring, degrees counter-clockwise from its right.
    static QPoint ring(double degrees)
    {
        const double angle = degrees * M_PI / 180.0;
        return {static_cast<int>(std::lround(Middle + OnRing * std::cos(angle))),
                static_cast<int>(std::lround(Middle + OnRing * std::sin(angle)))};
    }

    void dragRing(double from, double to) { mouse.drag(ring(from).x(), ring(from).y(), ring(to).x(), ring(to).y()); }

    int moves = 0;
    vtkNew<vtkCallbackCommand> counter;
};

constexpr double PixelTurn = 1.5 / 43.0; // radians that a pixel more or less makes

} // namespace

TEST_F(TORVCompassWidgetTest, TurnsTheCameraToTheEastWhenNorthIsDraggedToTheLeft)
{
    dragRing(90.0, 180.0);
    EXPECT_NEAR(camera->getHeading(), 0.0, PixelTurn);
    EXPECT_NEAR(compass->GetHeading(), 0.25, PixelTurn);
}

TEST_F(TORVCompassWidgetTest, TurnsTheCameraToTheWestWhenNorthIsDraggedToTheRight)
{
    dragRing(90.0, 45.0);
    EXPECT_NEAR(camera->getHeading(), 3.0 * M_PI / 4.0, PixelTurn);
}

TEST_F(TORVCompassWidgetTest, TurnsAboutTheTargetAtTheSameDistance)
{
    dragRing(90.0, 180.0);
    EXPECT_NEAR(camera->getPitch(), M_PI / 4.0, 1e-9);
    EXPECT_NEAR(camera->getTargetDistance(), Distance, 1e-3);
    EXPECT_NEAR(camera->getPosition().x, -200000.0, 200000.0 * PixelTurn);
    EXPECT_NEAR(camera->getPosition().z, 200000.0, 1e-3);
}

TEST_F(TORVCompassWidgetTest, ComesBackAfterAFullTurn)
{
    mouse.press(ring(90.0).x(), ring(90.0).y());
    for (int degrees = 135; degrees <= 450; degrees += 45) {
        mouse.move(ring(degrees).x(), ring(degrees).y());
    }
    mouse.release(ring(90.0).x(), ring(90.0).y());
    EXPECT_NEAR(camera->getHeading(), North, 1e-5);
    EXPECT_EQ(moves, 8);
}

TEST_F(TORVCompassWidgetTest, KeepsThePitchOfACameraThatLooksUp)
{
    look(0.0, 1.0, 0.5);
    const double pitch = camera->getPitch();
    ASSERT_LT(pitch, -0.4);
    dragRing(90.0, 135.0);
    EXPECT_NEAR(camera->getHeading(), North - M_PI / 4.0, PixelTurn);
    EXPECT_NEAR(camera->getPitch(), pitch, 1e-6);
    EXPECT_GT(camera->getTargetDistance(), 1.0e6); // what it looks at is as far away as the limits let it be
}

TEST_F(TORVCompassWidgetTest, GoesNearerAtTheUpperCap)
{
    mouse.press(Middle - 70, Middle + 42);
    mouse.release(Middle - 70, Middle + 42);
    EXPECT_NEAR(camera->getTargetDistance(), 0.8 * Distance, 1.0);
    EXPECT_NEAR(compass->GetDistance(), 0.8 * Distance, 1.0);
    EXPECT_NEAR(camera->getHeading(), North, 1e-9);
    EXPECT_EQ(moves, 1);
}

TEST_F(TORVCompassWidgetTest, GoesFurtherAtTheLowerCap)
{
    mouse.press(Middle - 70, Middle - 46);
    mouse.release(Middle - 70, Middle - 46);
    EXPECT_NEAR(camera->getTargetDistance(), 1.2 * Distance, 1.0);
}

TEST_F(TORVCompassWidgetTest, ShowsWhereTheCameraReallyCouldGo)
{
    for (int click = 0; click < 40; ++click) {
        mouse.press(Middle - 70, Middle - 46);
        mouse.release(Middle - 70, Middle - 46);
    }
    EXPECT_LT(camera->getTargetDistance(), 2.0e6);
    EXPECT_NEAR(compass->GetDistance(), camera->getTargetDistance(), 1e-3);
}

namespace
{

/// With a clock of its own in place of the window system's.
class TORVCompassTimerTest : public TORVCompassWidgetTest
{
protected:
    TORVCompassTimerTest()
    {
        clock->SetClientData(this);
        clock->SetCallback([](vtkObject*, unsigned long event, void* self, void* id) {
            static_cast<TORVCompassTimerTest*>(self)->timer =
                event == vtkCommand::CreateTimerEvent ? *static_cast<int*>(id) : 0;
        });
        mouse.interactor()->AddObserver(vtkCommand::CreateTimerEvent, clock);
        mouse.interactor()->AddObserver(vtkCommand::DestroyTimerEvent, clock);
    }

    void tick() { mouse.interactor()->InvokeEvent(vtkCommand::TimerEvent, &timer); }

    vtkNew<vtkCallbackCommand> clock;
    int timer = 0;
};

} // namespace

TEST_F(TORVCompassTimerTest, GoesNearerAsLongAsItsSliderIsHeldUp)
{
    mouse.press(Middle - 70, Middle + 25);
    ASSERT_NE(timer, 0);
    tick();
    const double first = camera->getTargetDistance();
    EXPECT_LT(first, Distance);
    tick();
    const double second = camera->getTargetDistance();
    EXPECT_LT(second, first);
    mouse.release(Middle - 70, Middle + 25);
    EXPECT_EQ(timer, 0);
    EXPECT_NEAR(camera->getHeading(), North, 1e-9);
    EXPECT_NEAR(camera->getTargetDistance(), second, 1e-6);
}

TEST_F(TORVCompassTimerTest, GoesFurtherAsLongAsItsSliderIsHeldDown)
{
    mouse.press(Middle - 70, Middle - 2);
    mouse.move(Middle - 70, Middle - 35);
    tick();
    EXPECT_GT(camera->getTargetDistance(), Distance);
    mouse.release(Middle - 70, Middle - 35);
}

TEST_F(TORVCompassTimerTest, StandsStillWhenNobodyMovesIt)
{
    widget->InvokeEvent(vtkCommand::InteractionEvent);
    tick();
    EXPECT_EQ(moves, 0);
    EXPECT_NEAR(camera->getTargetDistance(), Distance, 1e-6);
}

TEST_F(TORVCompassWidgetTest, TellsOfEachMoveOnce)
{
    dragRing(90.0, 100.0);
    EXPECT_EQ(moves, 1);
}

TEST_F(TORVCompassWidgetTest, PassesATiltOnThatSomebodySets)
{
    widget->SetTilt(60.0);
    widget->InvokeEvent(vtkCommand::InteractionEvent);
    EXPECT_DOUBLE_EQ(camera->getPitch(), 60.0 * 3.14159265 / 180.0);
    EXPECT_NEAR(camera->getHeading(), North, 1e-9);
}

TEST_F(TORVCompassWidgetTest, KeepsADragForItself)
{
    dragRing(90.0, 120.0);
    EXPECT_EQ(mouse.passed(vtkCommand::LeftButtonPressEvent), 0);
    EXPECT_EQ(mouse.passed(vtkCommand::MouseMoveEvent), 0);
    EXPECT_EQ(mouse.passed(vtkCommand::LeftButtonReleaseEvent), 0);
}

TEST_F(TORVCompassWidgetTest, LeavesAPressInsideItsRingToTheCamera)
{
    mouse.drag(Middle, Middle, Middle + 10, Middle);
    EXPECT_EQ(mouse.passed(vtkCommand::LeftButtonPressEvent), 1);
    EXPECT_NEAR(std::abs(camera->getHeading() - North), 10 * 0.002, 1e-6); // as ten pixels turn it anywhere else
}

TEST_F(TORVCompassWidgetTest, LightsUpUnderTheMouse)
{
    compass->updateForegroundColor({1.0, 1.0, 1.0}, 0.5);
    home.write(QStringLiteral(".config/Halmera/TORV3DVisStyles.conf"),
               "[COMPASS_DAY]\ncompass\\opacity\\highlighted=1\ncompass\\opacity\\nonhighlighted=0.5\n");
    compass->toggleDisplayMode(true);
    EXPECT_EQ(status()->GetTextProperty()->GetOpacity(), 0.5);
    mouse.move(Middle, Middle);
    EXPECT_EQ(status()->GetTextProperty()->GetOpacity(), 1.0);
    mouse.move(20, 20);
    EXPECT_EQ(status()->GetTextProperty()->GetOpacity(), 0.5);
}

TEST_F(TORVCompassWidgetTest, MovesNothingForOtherCallers)
{
    compass->SetHeading(0.5);
    callback->Execute(nullptr, vtkCommand::InteractionEvent, nullptr);
    callback->Execute(camera, vtkCommand::InteractionEvent, nullptr);
    vtkNew<vtkCompassWidget> other; // has a compass of VTK's own, which follows nobody
    other->CreateDefaultRepresentation();
    callback->Execute(other, vtkCommand::InteractionEvent, nullptr);
    EXPECT_EQ(moves, 0);
    EXPECT_NEAR(camera->getHeading(), North, 1e-9);
}

TEST_F(TORVCompassWidgetTest, MovesNothingWithoutACamera)
{
    callback->setCamera(nullptr);
    dragRing(90.0, 180.0);
    EXPECT_EQ(moves, 0);
    EXPECT_NEAR(camera->getHeading(), North, 1e-9);
}
