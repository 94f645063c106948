#include "visualization/TORVPointWidget.h"

#include "visualization/CursorScene.h"
#include "visualization/TORVCompassRepresentation.h"

#include <vtkCompassWidget.h>

namespace
{

// The cursor stands in the middle of the picture, in the middle of its box; the lines of its cross hair lie in column
// and row 150.
class TORVPointWidgetMouseTest : public CursorScene
{
protected:
    TORVPointWidgetMouseTest()
    {
        widget->setBounds(Box);
        widget->setCursor({0.0, 0.0, 5000.0});
        show();
    }
};

} // namespace

TEST_F(TORVPointWidgetMouseTest, FollowsTheLeftButton)
{
    mouse.drag(150, 150, 180, 160);
    expectPoint(widget->getCursor(), 30000.0, 10000.0, 5000.0, 1.0);
    expectPlace(cursorMarker(), widget->getCursor().x, widget->getCursor().y, widget->getCursor().z);
}

TEST_F(TORVPointWidgetMouseTest, TellsWhereItIsAtEachMove)
{
    mouse.press(150, 150);
    mouse.move(160, 150);
    mouse.move(170, 150);
    mouse.release(170, 150);
    ASSERT_EQ(observer.points.size(), 2U);
    expectPoint(observer.points[0], 10000.0, 0.0, 5000.0, 1.0);
    expectPoint(observer.points[1], 20000.0, 0.0, 5000.0, 1.0);
}

TEST_F(TORVPointWidgetMouseTest, KeepsADragForItself)
{
    mouse.drag(150, 150, 180, 160);
    EXPECT_EQ(mouse.passed(vtkCommand::LeftButtonPressEvent), 0);
    EXPECT_EQ(mouse.passed(vtkCommand::MouseMoveEvent), 0);
    EXPECT_EQ(mouse.passed(vtkCommand::LeftButtonReleaseEvent), 0);
}

TEST_F(TORVPointWidgetMouseTest, StaysInItsBox)
{
    mouse.drag(150, 150, 295, 10); // 145 km east and 140 km south, of 100
    expectPoint(widget->getCursor(), 100000.0, -100000.0, 5000.0, 1.0);
    expectPoint(observer.points.back(), 100000.0, -100000.0, 5000.0, 1.0);
}

TEST_F(TORVPointWidgetMouseTest, IsGrabbedByItsLines)
{
    mouse.drag(190, 150, 190, 170);
    expectPoint(widget->getCursor(), 0.0, 20000.0, 5000.0, 1.0);
}

TEST_F(TORVPointWidgetMouseTest, IsGrabbedByItsMarker)
{
    renderer->GetActiveCamera()->SetParallelScale(30000.0); // 200 m a pixel: the marker is 25 pixels to each side
    mouse.drag(150 + 14, 150 + 14, 150 + 24, 150 + 14);
    expectPoint(widget->getCursor(), 2000.0, 0.0, 5000.0, 1.0);
}

TEST_F(TORVPointWidgetMouseTest, GoesAlongOneAxisWithShift)
{
    mouse.press(150, 150, true);
    for (int step = 1; step <= 10; ++step) {
        mouse.move(150 + 4 * step, 150 + step, true);
    }
    mouse.release(190, 160);
    EXPECT_GT(widget->getCursor().x, 20000.0);
    EXPECT_NEAR(widget->getCursor().y, 0.0, 5000.0); // what was done before the axis was known
    EXPECT_NEAR(widget->getCursor().z, 5000.0, 1.0);
}

TEST_F(TORVPointWidgetMouseTest, LeavesAPressBesideItToTheCamera)
{
    mouse.drag(200, 200, 210, 210);
    expectPoint(widget->getCursor(), 0.0, 0.0, 5000.0);
    EXPECT_TRUE(observer.points.empty());
    EXPECT_EQ(mouse.passed(vtkCommand::LeftButtonPressEvent), 1);
    EXPECT_EQ(mouse.passed(vtkCommand::MouseMoveEvent), 1);
    EXPECT_EQ(mouse.passed(vtkCommand::LeftButtonReleaseEvent), 1);
}

TEST_F(TORVPointWidgetMouseTest, LeavesTheEdgesOfItsBoxToTheCamera)
{
    // Edges, corners and the ends of where shadows of the cross hair would be.
    for (const QPoint& place : {QPoint(250, 200), QPoint(200, 250), QPoint(50, 50), QPoint(250, 250)}) {
        mouse.drag(place.x(), place.y(), place.x() + 10, place.y());
    }
    EXPECT_TRUE(observer.points.empty());
    EXPECT_EQ(mouse.passed(vtkCommand::LeftButtonPressEvent), 4);
}

TEST_F(TORVPointWidgetMouseTest, LeavesTheOtherButtonsToTheCamera)
{
    for (const auto& [press, release] :
         {std::pair{vtkCommand::MiddleButtonPressEvent, vtkCommand::MiddleButtonReleaseEvent},
          std::pair{vtkCommand::RightButtonPressEvent, vtkCommand::RightButtonReleaseEvent}}) {
        mouse.send(press, 150, 150);
        mouse.send(vtkCommand::MouseMoveEvent, 170, 170);
        mouse.send(release, 170, 170);
        EXPECT_EQ(mouse.passed(press), 1);
        EXPECT_EQ(mouse.passed(release), 1);
    }
    EXPECT_EQ(mouse.passed(vtkCommand::MouseMoveEvent), 2);
    expectPoint(widget->getCursor(), 0.0, 0.0, 5000.0);
    EXPECT_EQ(widget->GetCurrentRenderer(), renderer.Get());
}

TEST_F(TORVPointWidgetMouseTest, LeavesAPressOnTheCompassToIt)
{
    const vtkNew<TORVCompassRepresentation> compass;
    vtkNew<vtkCompassWidget> compassWidget;
    compassWidget->SetInteractor(mouse.interactor());
    compassWidget->SetDefaultRenderer(renderer);
    compassWidget->SetRepresentation(compass);
    compassWidget->SetEnabled(1);
    widget->SetEnabled(0);
    widget->SetEnabled(1);                         // the last to be switched on would be the first to be asked
    widget->setCursor({84000.0, 84000.0, 5000.0}); // in the middle of the ring, its lines go across
    mouse.drag(234 + 43, 234, 234 + 43, 234 + 10);
    EXPECT_TRUE(observer.points.empty());
    EXPECT_NE(compass->GetHeading(), 0.0);
    compassWidget->SetEnabled(0);
}

TEST_F(TORVPointWidgetMouseTest, IsGrabbedFromTwiceAsFarOnAScreenTwiceAsFine)
{
    mouse.drag(200, 160, 210, 160); // ten pixels from a line
    EXPECT_TRUE(observer.points.empty());
    scene.window()->SetDPI(144);
    mouse.drag(200, 160, 210, 160);
    EXPECT_EQ(observer.points.size(), 1U);
}

TEST_F(TORVPointWidgetMouseTest, ShowsThatItIsHeld)
{
    const auto cursorLines = [&] {
        // The cross hair is the prop of the widget's own, after the markers.
        return vtkActor::SafeDownCast(renderer->GetViewProps()->GetLastProp());
    };
    EXPECT_EQ(cursorLines()->GetProperty(), widget->GetProperty());
    mouse.press(150, 150);
    EXPECT_EQ(cursorLines()->GetProperty(), widget->GetSelectedProperty());
    mouse.release(150, 150);
    EXPECT_EQ(cursorLines()->GetProperty(), widget->GetProperty());
}

TEST_F(TORVPointWidgetMouseTest, GoesOnWithADragInANewScene)
{
    mouse.press(150, 150);
    mouse.move(160, 150);
    renderer->RemoveAllViewProps();
    renderer->AddViewProp(widget->getActor());
    widget->SetEnabled(1);
    mouse.move(170, 150);
    mouse.release(170, 150);
    expectPoint(widget->getCursor(), 20000.0, 0.0, 5000.0, 1.0);
}

TEST_F(TORVPointWidgetMouseTest, LetsGoWhenItIsSwitchedOff)
{
    mouse.press(150, 150);
    widget->SetEnabled(0);
    widget->SetEnabled(1);
    mouse.move(170, 150);
    expectPoint(widget->getCursor(), 0.0, 0.0, 5000.0);
    EXPECT_EQ(mouse.passed(vtkCommand::MouseMoveEvent), 1);
}

TEST_F(TORVPointWidgetMouseTest, MayBeSetElsewhereByWhoIsTold)
{
    class Mover final : public TORVPointWidgetObserver
    {
    public:
        void pointWidgetUpdated(TORVPointWidget* widget, const TORVPoint3D&) override
        {
            widget->setMarkerColor(Qt::red);
            widget->setHome({1000.0, 2000.0, 3000.0}, QStringLiteral("LEM"));
            widget->setCursor({4000.0, 5000.0, 6000.0});
        }
    } mover;
    widget->init(&mover);
    show();
    mouse.drag(150, 150, 180, 160);
    expectPoint(widget->getCursor(), 4000.0, 5000.0, 6000.0);
    expectPlace(cursorMarker(), 4000.0, 5000.0, 6000.0);
    expectPlace(homeMarker(), 1000.0, 2000.0, 3000.0);
    EXPECT_EQ(cursorMarker()->GetProperty()->GetColor()[0], 1.0);
}
