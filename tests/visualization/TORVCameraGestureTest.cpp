#include "CameraTest.h"
#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVWheelFilter.h"

#include <QMouseEvent>
#include <QVTKOpenGLNativeWidget.h>
#include <QWheelEvent>
#include <QtTest>

#include <gtest/gtest.h>

#include <vtkCamera.h>
#include <vtkGenericOpenGLRenderWindow.h>
#include <vtkNew.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>

#include <cmath>

namespace
{

using namespace CameraTest;

/// What a user does with mouse, wheel and keys on a widget that is on the screen.
class TORVCameraGestureTest : public testing::Test
{
protected:
    TORVCameraGestureTest()
    {
        window->AddRenderer(renderer);
        widget.setRenderWindow(window);
        widget.installEventFilter(&filter);
        widget.resize(320, 240);
        widget.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&widget));
        window->GetInteractor()->SetInteractorStyle(camera);
        camera->setRenderer(renderer);
        goHome(*camera);
        camera->applyCamera(true);
    }

    void moveTo(const QPoint& to, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
    {
        QMouseEvent move(QEvent::MouseMove, to, widget.mapToGlobal(to), Qt::NoButton, button, modifiers);
        QCoreApplication::sendEvent(&widget, &move);
    }

    // Pixels to the right and upwards.
    void drag(Qt::MouseButton button, Qt::KeyboardModifiers modifiers, int right, int up)
    {
        const QPoint from(100, 100);
        const QPoint to = from + QPoint(right, -up);
        QTest::mousePress(&widget, button, modifiers, from);
        moveTo(to, button, modifiers);
        QTest::mouseRelease(&widget, button, modifiers, to);
    }

    void turnWheel(int angle, int sideways = 0)
    {
        const QPointF at(100.0, 100.0);
        QWheelEvent event(at, widget.mapToGlobal(at.toPoint()), QPoint(), QPoint(sideways, angle), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        event.setAccepted(false);
        QCoreApplication::sendEvent(&widget, &event);
        EXPECT_TRUE(event.isAccepted());
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&widget, key, modifiers);
    }

    testing::AssertionResult isTurnedOnTheSpot(double heading, double pitch)
    {
        const testing::AssertionResult isThere = isAt(camera->getPosition(), 0.0, -3e5, 3e5);
        return isThere ? looks(heading, pitch) : isThere;
    }

    testing::AssertionResult isTurnedAboutTheOrigin(double heading, double pitch)
    {
        const double h = M_PI / 2.0 + heading;
        const double p = M_PI / 4.0 + pitch;
        const double inPlane = -Distance * std::cos(p);
        const testing::AssertionResult isThere =
            isAt(camera->getPosition(), inPlane * std::cos(h), inPlane * std::sin(h), Distance * std::sin(p));
        return isThere ? looks(heading, pitch) : isThere;
    }

    /// So far from how it looked at first.
    testing::AssertionResult looks(double heading, double pitch)
    {
        const double h = M_PI / 2.0 + heading;
        const double p = M_PI / 4.0 + pitch;
        return isNear(camera->getDirection(), {std::cos(p) * std::cos(h), std::cos(p) * std::sin(h), -std::sin(p)},
                      1e-9);
    }

    /// Metres along the direction of view.
    testing::AssertionResult isZoomed(double metres)
    {
        const testing::AssertionResult isThere =
            isAt(camera->getPosition(), 0.0, -3e5 + metres * Half, 3e5 - metres * Half);
        return isThere ? looks(0.0, 0.0) : isThere;
    }

    testing::AssertionResult isPanned(double right, double ahead)
    {
        const testing::AssertionResult isThere = isAt(camera->getPosition(), right, -3e5 + ahead, 3e5);
        return isThere ? looks(0.0, 0.0) : isThere;
    }

    vtkNew<TORVCameraInteractor> camera;
    vtkNew<vtkGenericOpenGLRenderWindow> window;
    vtkNew<vtkRenderer> renderer;
    TORVWheelFilter filter{camera};
    QVTKOpenGLNativeWidget widget;
};

} // namespace

// Arguments of rotations: 0.002 for each pixel.

TEST_F(TORVCameraGestureTest, TurnsAboutTheTargetByALeftDrag)
{
    drag(Qt::LeftButton, Qt::NoModifier, 40, 24);
    EXPECT_TRUE(isTurnedAboutTheOrigin(0.08, 0.048));
    EXPECT_TRUE(isAt(camera->getTarget(), 0.0, 0.0, 0.0));
}

TEST_F(TORVCameraGestureTest, TurnsOnTheSpotByALeftDragWithControl)
{
    drag(Qt::LeftButton, Qt::ControlModifier, 40, 24);
    EXPECT_TRUE(isTurnedOnTheSpot(-0.08, 0.048));
}

TEST_F(TORVCameraGestureTest, PansByALeftDragWithShift)
{
    drag(Qt::LeftButton, Qt::ShiftModifier, 40, 24); // 20 and 12 times 424.264 m
    EXPECT_TRUE(isPanned(8485.28137, 5091.16882));
}

TEST_F(TORVCameraGestureTest, ZoomsByAMiddleDrag)
{
    drag(Qt::MiddleButton, Qt::NoModifier, 40, 24); // 24 times a tenth of 50 km
    EXPECT_TRUE(isZoomed(-120000.0));
    goHome(*camera);
    drag(Qt::MiddleButton, Qt::NoModifier, 40, -24);
    EXPECT_TRUE(isZoomed(120000.0));
}

TEST_F(TORVCameraGestureTest, PansByARightDrag)
{
    drag(Qt::RightButton, Qt::NoModifier, 40, 24);
    EXPECT_TRUE(isPanned(8485.28137, 5091.16882));
}

TEST_F(TORVCameraGestureTest, DragsFromADoubleClick)
{
    QTest::mouseDClick(&widget, Qt::RightButton, Qt::NoModifier, QPoint(100, 100));
    moveTo(QPoint(140, 76), Qt::RightButton, Qt::NoModifier);
    QTest::mouseRelease(&widget, Qt::RightButton, Qt::NoModifier, QPoint(140, 76));
    EXPECT_EQ(camera->GetState(), VTKIS_NONE);
    EXPECT_TRUE(isPanned(8485.28137, 5091.16882));
}

TEST_F(TORVCameraGestureTest, ZoomsByTheWheel)
{
    turnWheel(120);
    EXPECT_TRUE(isZoomed(50000.0));
    turnWheel(-240);
    EXPECT_TRUE(isZoomed(-50000.0));
}

TEST_F(TORVCameraGestureTest, ZoomsByPartsOfAStepOfTheWheel)
{
    for (int i = 1; i <= 8; ++i) {
        turnWheel(15);
        EXPECT_TRUE(isZoomed(6250.0 * i));
    }
}

TEST_F(TORVCameraGestureTest, ZoomsByAllTheStepsOfOneEvent)
{
    turnWheel(480);
    EXPECT_TRUE(isZoomed(200000.0));
}

TEST_F(TORVCameraGestureTest, IgnoresTheWheelSideways)
{
    turnWheel(0, 120);
    EXPECT_TRUE(isZoomed(0.0));
    turnWheel(120, 120);
    EXPECT_TRUE(isZoomed(50000.0));
}

TEST_F(TORVCameraGestureTest, ZoomsByTheWheelWithoutTheFilterToo)
{
    widget.removeEventFilter(&filter);
    QWheelEvent event(QPointF(9.0, 9.0), widget.mapToGlobal(QPoint(9, 9)), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&widget, &event);
    EXPECT_TRUE(isZoomed(50000.0));
}

TEST_F(TORVCameraGestureTest, PansByTheArrows)
{
    const struct
    {
        Qt::Key key;
        double right;
        double ahead;
    } rows[] = {
        {Qt::Key_Left, -4242.64069, 0.0}, // 10 times 424.264 m
        {Qt::Key_Right, 4242.64069, 0.0},
        {Qt::Key_Up, 0.0, 4242.64069},
        {Qt::Key_Down, 0.0, -4242.64069},
    };
    for (const auto& row : rows) {
        goHome(*camera);
        press(row.key);
        EXPECT_TRUE(isPanned(row.right, row.ahead)) << row.key;
    }
}

TEST_F(TORVCameraGestureTest, TurnsOnTheSpotByTheArrowsWithControl)
{
    const struct
    {
        Qt::Key key;
        double heading;
        double pitch;
    } rows[] = {
        {Qt::Key_Left, -0.008, 0.0},
        {Qt::Key_Right, 0.008, 0.0},
        {Qt::Key_Up, 0.0, -0.008},
        {Qt::Key_Down, 0.0, 0.008},
    };
    for (const auto modifiers : {Qt::KeyboardModifiers(Qt::ControlModifier), Qt::ControlModifier | Qt::ShiftModifier}) {
        for (const auto& row : rows) {
            goHome(*camera);
            press(row.key, modifiers);
            EXPECT_TRUE(isTurnedOnTheSpot(row.heading, row.pitch)) << row.key;
        }
    }
}

TEST_F(TORVCameraGestureTest, TurnsAboutTheTargetByTheArrowsWithShift)
{
    const struct
    {
        Qt::Key key;
        double heading;
        double pitch;
    } rows[] = {
        {Qt::Key_Left, 0.008, 0.0}, // the other way than on the spot
        {Qt::Key_Right, -0.008, 0.0},
        {Qt::Key_Up, 0.0, -0.008},
        {Qt::Key_Down, 0.0, 0.008},
    };
    for (const auto& row : rows) {
        goHome(*camera);
        press(row.key, Qt::ShiftModifier);
        EXPECT_TRUE(isTurnedAboutTheOrigin(row.heading, row.pitch)) << row.key;
        EXPECT_TRUE(isAt(camera->getTarget(), 0.0, 0.0, 0.0)) << row.key;
    }
}

TEST_F(TORVCameraGestureTest, ZoomsByPlusAndMinus)
{
    press(Qt::Key_Plus); // a fifth of 50 km
    EXPECT_TRUE(isZoomed(10000.0));
    press(Qt::Key_Minus);
    press(Qt::Key_Minus);
    EXPECT_TRUE(isZoomed(-10000.0));
    press(Qt::Key_Plus, Qt::KeypadModifier);
    EXPECT_TRUE(isZoomed(0.0));
}

TEST_F(TORVCameraGestureTest, GoesHomeByR)
{
    press(Qt::Key_Left);
    press(Qt::Key_Up, Qt::ControlModifier);
    press(Qt::Key_R);
    EXPECT_TRUE(isTurnedOnTheSpot(0.0, 0.0));
}

TEST_F(TORVCameraGestureTest, LooksAtTheOriginByT)
{
    press(Qt::Key_Right, Qt::ControlModifier);
    press(Qt::Key_Down, Qt::ControlModifier);
    ASSERT_FALSE(isTurnedOnTheSpot(0.0, 0.0));
    press(Qt::Key_T);
    EXPECT_TRUE(isTurnedOnTheSpot(0.0, 0.0));
}

TEST_F(TORVCameraGestureTest, IgnoresTheOtherLetters)
{
    press(Qt::Key_Left, Qt::ControlModifier);
    for (const auto key : {Qt::Key_W, Qt::Key_S, Qt::Key_F, Qt::Key_E, Qt::Key_Q, Qt::Key_P, Qt::Key_U, Qt::Key_3}) {
        press(key);
        press(key, Qt::ShiftModifier);
        EXPECT_TRUE(isTurnedOnTheSpot(-0.008, 0.0)) << key;
    }
    EXPECT_EQ(window->GetStereoRender(), 0);
    EXPECT_TRUE(widget.isVisible());
}

TEST_F(TORVCameraGestureTest, ShowsWhatTheKeysDo)
{
    press(Qt::Key_Left);
    EXPECT_NEAR(renderer->GetActiveCamera()->GetPosition()[0], -4242.64069, 1e-3);
}
