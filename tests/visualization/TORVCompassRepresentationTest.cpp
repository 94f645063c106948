#include "visualization/TORVCompassRepresentation.h"

#include "radarsim/TORVDemoSettings.h"
#include "support/ImageCompare.h"
#include "visualization/CompassScene.h"

#include <vtkProperty2D.h>
#include <vtkTextProperty.h>

namespace
{

using TORVCompassRepresentationTest = CompassScene;

struct Look
{
    const char* name;
    double x;
    double y;
    double fraction; // of a turn, clockwise from north
    double labelX;   // where N is, in radii of the inner edge of the ring
    double labelY;
    const char* status;
};

// A turn is divided by twice pi in single precision, so the fractions are a few parts in 10^8 off.
const Look Looks[] = {
    {"North", 0.0, 1.0, 0.0, 0.0, 1.0, "Heading 0"},
    {"East", 1.0, 0.0, 0.25, -1.0, 0.0, "Heading 90"},
    {"South", 0.0, -1.0, 0.5, 0.0, -1.0, "Heading 180"},
    {"West", -1.0, 0.0, 0.75, 1.0, 0.0, "Heading 270"},
    {"NorthWest", -1.0, 1.0, 0.875, M_SQRT1_2, M_SQRT1_2, "Heading 315"},
    {"SouthEast", 1.0, -1.0, 0.375, -M_SQRT1_2, -M_SQRT1_2, "Heading 135"},
};

class TORVCompassHeadingTest : public CompassScene, public testing::WithParamInterface<Look>
{
};

void writeStyle(const SandboxedHome& home)
{
    home.write(QStringLiteral(".config/Halmera/TORV3DVisStyles.conf"),
               "[COMPASS_DAY]\ncompass\\color\\r=0.1\ncompass\\color\\g=0.2\ncompass\\color\\b=0.4\n"
               "compass\\opacity\\highlighted=0.9\ncompass\\opacity\\nonhighlighted=0.8\n"
               "[COMPASS_NIGHT]\ncompass\\color\\r=0.5\ncompass\\color\\g=0.6\ncompass\\color\\b=0.7\n"
               "compass\\opacity\\highlighted=0.65\ncompass\\opacity\\nonhighlighted=0.35\n");
}

template <typename Property>
void expectColor(Property* property, double r, double g, double b, double opacity)
{
    EXPECT_DOUBLE_EQ(property->GetColor()[0], r);
    EXPECT_DOUBLE_EQ(property->GetColor()[1], g);
    EXPECT_DOUBLE_EQ(property->GetColor()[2], b);
    EXPECT_DOUBLE_EQ(property->GetOpacity(), opacity);
}

} // namespace

TEST_P(TORVCompassHeadingTest, PointsItsLetterToTheNorth)
{
    const Look& expected = GetParam();
    look(expected.x, expected.y, -1.0);
    show();
    EXPECT_NEAR(compass->GetHeading(), expected.fraction, 1e-7);
    EXPECT_EQ(statusText(), expected.status);
    EXPECT_NEAR(label()->GetPosition()[0], Middle + 39.0 * expected.labelX, 1.5);
    EXPECT_NEAR(label()->GetPosition()[1], Middle + 39.0 * expected.labelY, 1.5);
}

INSTANTIATE_TEST_SUITE_P(Headings, TORVCompassHeadingTest, testing::ValuesIn(Looks),
                         [](const auto& test) { return test.param.name; });

TEST_F(TORVCompassRepresentationTest, DividesATurnByTwicePiInSinglePrecision)
{
    look(1.0, 0.0, -1.0);
    EXPECT_DOUBLE_EQ(compass->GetHeading(), M_PI / 2.0 / 6.2831854820251465);
}

TEST_F(TORVCompassRepresentationTest, ShowsAFullTurnAsSuch)
{
    show();
    compass->SetHeading(1.0);
    EXPECT_EQ(compass->GetHeading(), 1.0);
    EXPECT_EQ(statusText(), "Heading 360");
}

TEST_F(TORVCompassRepresentationTest, TellsTheHeadingInTheDigitsOfAStream)
{
    show();
    compass->SetHeading(0.123456789);
    EXPECT_EQ(statusText(), "Heading 44.4444"); // 0.123456789 * 360 = 44.44444404
}

TEST_F(TORVCompassRepresentationTest, ShowsNorthAsZeroWhateverTheArithmeticLeaves)
{
    for (const double x : {1e-12, -1e-12}) {
        look(x, 1.0, -1.0);
        show();
        EXPECT_EQ(statusText(), "Heading 0");
    }
}

TEST_F(TORVCompassRepresentationTest, ShowsHowFarTheCameraLooksDown)
{
    EXPECT_NEAR(compass->GetTilt(), 45.0, 1e-6);
    look(0.0, 1.0, -M_SQRT1_2 * std::sqrt(2.0 / 3.0)); // tan 30 degrees
    EXPECT_NEAR(compass->GetTilt(), 30.0, 1e-6);
}

TEST_F(TORVCompassRepresentationTest, ShowsNoTiltOfACameraThatLooksUp)
{
    look(0.0, 1.0, 0.5);
    EXPECT_EQ(compass->GetTilt(), 0.0);
}

TEST_F(TORVCompassRepresentationTest, ShowsTheDistanceOfTheTarget)
{
    EXPECT_NEAR(compass->GetDistance(), Distance, 1e-3);
}

TEST_F(TORVCompassRepresentationTest, ShowsAFixedDistanceWhereThereIsNone)
{
    const vtkNew<TORVCameraInteractor> idle;
    compass->cameraMoved(idle);
    EXPECT_EQ(compass->GetDistance(), 9999.9);
}

TEST_F(TORVCompassRepresentationTest, DoesNothingWithoutACamera)
{
    compass->cameraMoved(nullptr);
    compass->cameraReset(nullptr);
    EXPECT_NEAR(compass->GetDistance(), Distance, 1e-3);
    EXPECT_NEAR(compass->GetTilt(), 45.0, 1e-6);
}

TEST_F(TORVCompassRepresentationTest, FollowsAResetAsAMotion)
{
    const vtkNew<TORVCompassRepresentation> other;
    other->cameraReset(camera);
    EXPECT_EQ(other->GetDistance(), compass->GetDistance());
    EXPECT_EQ(other->GetHeading(), compass->GetHeading());
    EXPECT_EQ(other->GetTilt(), compass->GetTilt());
}

TEST_F(TORVCompassRepresentationTest, RemembersWhatItWasToldLast)
{
    compass->SetDistance(123.0);
    EXPECT_NEAR(compass->getShown().distance, Distance, 1e-3);
    EXPECT_NEAR(compass->getShown().tilt, 45.0, 1e-6);
    EXPECT_NEAR(compass->getShown().heading, 0.0, 1e-9);
}

TEST_F(TORVCompassRepresentationTest, IsGreyAndOpaqueByDayWithoutAStyleFile)
{
    EXPECT_TRUE(compass->isDay());
    expectColor(compass->GetRingProperty(), 0.3, 0.3, 0.3, 1.0);
}

TEST_F(TORVCompassRepresentationTest, IsOfOneColour)
{
    compass->updateForegroundColor({0.1, 0.2, 0.3}, 0.4);
    expectColor(compass->GetRingProperty(), 0.1, 0.2, 0.3, 0.4);
    expectColor(compass->GetSelectedProperty(), 0.1, 0.2, 0.3, 0.4);
    expectColor(compass->GetLabelProperty(), 0.1, 0.2, 0.3, 0.4);
    vtkNew<vtkPropCollection> parts;
    compass->GetActors(parts);
    for (int index = 0; index < parts->GetNumberOfItems(); ++index) {
        vtkObject* const part = parts->GetItemAsObject(index);
        if (auto* const text = vtkTextActor::SafeDownCast(part)) {
            expectColor(text->GetTextProperty(), 0.1, 0.2, 0.3, 0.4);
        } else {
            expectColor(vtkActor2D::SafeDownCast(part)->GetProperty(), 0.1, 0.2, 0.3, 0.4);
        }
    }
    EXPECT_EQ(parts->GetNumberOfItems(), 6); // ring, letter, status; bar, knob and title of the slider
}

TEST_F(TORVCompassRepresentationTest, TakesTheColoursOfTheModeInPlace)
{
    writeStyle(home);
    compass->toggleDisplayMode(false);
    EXPECT_FALSE(compass->isDay());
    expectColor(compass->GetRingProperty(), 0.5, 0.6, 0.7, 0.35);
    compass->toggleDisplayMode(true);
    EXPECT_TRUE(compass->isDay());
    expectColor(compass->GetRingProperty(), 0.1, 0.2, 0.4, 0.8);
}

TEST_F(TORVCompassRepresentationTest, ReadsAStyleWithoutShowingIt)
{
    writeStyle(home);
    compass->loadStyle(false);
    expectColor(compass->GetRingProperty(), 0.3, 0.3, 0.3, 1.0);
    compass->updateColors();
    expectColor(compass->GetRingProperty(), 0.5, 0.6, 0.7, 0.35);
}

TEST_F(TORVCompassRepresentationTest, IsMoreOpaqueUnderTheMouse)
{
    writeStyle(home);
    compass->toggleDisplayMode(false);
    compass->Highlight(1);
    expectColor(compass->GetSelectedProperty(), 0.5, 0.6, 0.7, 0.65);
    show();
    expectColor(status()->GetTextProperty(), 0.5, 0.6, 0.7, 0.65);
    compass->Highlight(0);
    expectColor(compass->GetRingProperty(), 0.5, 0.6, 0.7, 0.35);
}

TEST_F(TORVCompassRepresentationTest, BuildsNothingWithoutARenderer)
{
    const vtkNew<TORVCompassRepresentation> other;
    other->BuildRepresentation();
    EXPECT_EQ(other->ComputeInteractionState(1, 1), vtkCompassRepresentation::Outside);
}

namespace
{

// The smallest rectangle round all that is drawn, rows from the top.
QRect drawnIn(const QImage& picture)
{
    QRect box;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qRed(picture.pixel(x, y)) > 40) {
                box |= QRect(x, y, 1, 1);
            }
        }
    }
    return box;
}

} // namespace

TEST_F(TORVCompassRepresentationTest, KeepsItsPlaceInTheCornerOfAnyWindow)
{
    compass->updateForegroundColor({1.0, 1.0, 1.0}, 1.0);
    for (const QSize& size : {QSize(300, 300), QSize(900, 400), QSize(400, 1000)}) {
        scene.window()->SetSize(size.width(), size.height());
        widget->SetEnabled(1);
        const QRect box = drawnIn(scene.picture());
        EXPECT_NEAR(box.right(), size.width() - 14, 4) << size.width();
        EXPECT_NEAR(box.top(), 14, 6) << size.width();
        EXPECT_LT(box.height(), 135);
    }
}

TEST_F(TORVCompassRepresentationTest, IsTwiceAsLargeOnAScreenTwiceAsFine)
{
    scene.window()->SetSize(600, 600);
    scene.window()->SetDPI(144);
    show();
    EXPECT_NEAR(label()->GetPosition()[0], 600.0 - 28.0 - 104.0, 2.0);
    EXPECT_NEAR(label()->GetPosition()[1], 600.0 - 28.0 - 104.0 + 78.0, 2.0);
    EXPECT_EQ(compass->GetRingProperty()->GetLineWidth(), 3.0F);
    EXPECT_EQ(label()->GetTextProperty()->GetFontSize(), 13); // VTK makes this one larger by itself
}

TEST_F(TORVCompassRepresentationTest, IsAsLargeUnderTheMouseAsElsewhere)
{
    scene.window()->SetSize(600, 600);
    scene.window()->SetDPI(144);
    show();
    const double before = label()->GetPosition()[1];
    compass->Highlight(1);
    scene.window()->Render();
    EXPECT_EQ(label()->GetPosition()[1], before);
}

TEST_F(TORVCompassRepresentationTest, FitsIntoASmallWindow)
{
    scene.window()->SetSize(80, 60); // 60 - 2 * 14 = 32 pixels are left for the ring
    show();
    EXPECT_NEAR(label()->GetPosition()[0], 80.0 - 14.0 - 16.0, 1.5);
    EXPECT_NEAR(label()->GetPosition()[1], 60.0 - 14.0 - 16.0 + 12.0, 1.5);
    EXPECT_EQ(statusText(), ""); // for which there is no room
    scene.window()->SetSize(10, 10);
    scene.window()->Render();
}

namespace
{

struct Spot
{
    const char* name;
    int x; // from the middle of the ring
    int y;
    int state;
};

// The slider goes from 78 to 62 pixels left of the middle. From 68 pixels below it to 47 above: 15 % for the title, 8 %
// a cap, 69 % the bar with the knob in the middle of it, 8 % a cap.
const Spot Spots[] = {
    {"RingAbove", 0, 43, vtkCompassRepresentation::Adjusting},
    {"RingBeside", -43, 0, vtkCompassRepresentation::Adjusting},
    {"InsideTheRing", 0, 0, vtkCompassRepresentation::Inside},
    {"UpperCap", -70, 42, vtkCompassRepresentation::DistanceIn},
    {"LowerCap", -70, -46, vtkCompassRepresentation::DistanceOut},
    {"Knob", -70, -2, vtkCompassRepresentation::DistanceAdjusting},
    {"UpperBar", -70, 25, vtkCompassRepresentation::DistanceAdjusting},
    {"LowerBar", -70, -28, vtkCompassRepresentation::DistanceAdjusting},
    {"FormerSlider", -92, 8, vtkCompassRepresentation::Outside},
    {"Below", 0, -75, vtkCompassRepresentation::Outside},
    {"FarAway", -200, -200, vtkCompassRepresentation::Outside},
};

class TORVCompassSpotTest : public CompassScene, public testing::WithParamInterface<Spot>
{
};

} // namespace

TEST_P(TORVCompassSpotTest, FeelsTheMouseWhereItIsDrawn)
{
    show();
    const Spot& spot = GetParam();
    // The state before must not show through.
    compass->ComputeInteractionState(Middle - 70, Middle + 42);
    EXPECT_EQ(compass->ComputeInteractionState(Middle + spot.x, Middle + spot.y), spot.state);
    compass->Highlight(1);
    EXPECT_EQ(compass->ComputeInteractionState(Middle + spot.x, Middle + spot.y), spot.state);
}

INSTANTIATE_TEST_SUITE_P(Spots, TORVCompassSpotTest, testing::ValuesIn(Spots),
                         [](const auto& test) { return test.param.name; });

TEST_F(TORVCompassRepresentationTest, HasNoSliderForTheTilt)
{
    show();
    for (int x = 0; x < 300; x += 2) {
        for (int y = 100; y < 300; y += 2) {
            const int state = compass->ComputeInteractionState(x, y);
            EXPECT_TRUE(state != vtkCompassRepresentation::TiltUp && state != vtkCompassRepresentation::TiltDown &&
                        state != vtkCompassRepresentation::TiltAdjusting)
                << x << ' ' << y;
        }
    }
    double place[2] = {Middle - 70.0, Middle + 42.0};
    compass->TiltWidgetInteraction(place);
    compass->UpdateTilt(1.0);
    EXPECT_NEAR(compass->GetTilt(), 45.0, 1e-6);
}

TEST_F(TORVCompassRepresentationTest, CountsALongPauseAsAShortOne)
{
    show();
    double top[2] = {Middle - 70.0, Middle + 37.0};
    compass->DistanceWidgetInteraction(top);
    compass->UpdateDistance(3600.0);
    // At the top of the slider a second takes 1 - 1 / 1.4 of the distance; half a second counts.
    EXPECT_NEAR(compass->GetDistance(), Distance * (1.0 - 0.5 * (1.0 - 1.0 / 1.4)), 0.02 * Distance);
}

namespace
{

class TORVCompassLookTest : public CompassScene, public testing::WithParamInterface<bool>
{
};

} // namespace

TEST_P(TORVCompassLookTest, LooksAsItDidBefore)
{
    const bool isDay = GetParam();
    ASSERT_EQ(TORVDemoSettings(home.path()).writeStyles(), QString());
    isDay ? renderer->SetBackground(.212, .267, .310) : renderer->SetBackground(.055, .051, .047);
    compass->toggleDisplayMode(isDay);
    look(1.0, isDay ? 2.0 : -0.5, -1.0);
    compass->Highlight(!isDay);
    show();
    const QString name = isDay ? QStringLiteral("compass-day") : QStringLiteral("compass-night");
    EXPECT_EQ(ImageCompare::againstBaseline(scene.picture(), name), QString());
}

INSTANTIATE_TEST_SUITE_P(Modes, TORVCompassLookTest, testing::Bool());
