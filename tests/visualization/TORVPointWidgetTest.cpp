#include "visualization/TORVPointWidget.h"

#include "support/ImageCompare.h"
#include "visualization/CursorScene.h"
#include "visualization/TORVPointWidgetCallback.h"

#include "radarsim/TORVDemoSettings.h"

#include <QImage>

#include <vtkLight.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr double Infinity = std::numeric_limits<double>::infinity();
const double Nan = std::nan("");

class TORVPointWidgetTest : public CursorScene
{
protected:
    void setBox(double zmin, double zmax)
    {
        const double box[6] = {-100000.0, 100000.0, -100000.0, 100000.0, zmin, zmax};
        widget->setBounds(box);
    }

    void writeStyle(const QByteArray& text)
    {
        home.write(QStringLiteral(".config/Halmera/TORV3DVisStyles.conf"), text);
    }

    // Of the marker's sphere: its poles lie on the z axis.
    double markerRadius() const { return (cursorMarker()->GetBounds()[5] - cursorMarker()->GetBounds()[4]) / 2.0; }
};

void expectColor(vtkProperty* property, double r, double g, double b)
{
    EXPECT_DOUBLE_EQ(property->GetColor()[0], r);
    EXPECT_DOUBLE_EQ(property->GetColor()[1], g);
    EXPECT_DOUBLE_EQ(property->GetColor()[2], b);
}

} // namespace

TEST_F(TORVPointWidgetTest, StandsAtTheFloorOfItsFirstBox)
{
    setBox(1500.0, 11500.0);
    expectPoint(widget->getCursor(), 0.0, 0.0, 1500.0);
}

TEST_F(TORVPointWidgetTest, KeepsItsRelativeHeightInATallerBox)
{
    setBox(0.0, 10000.0);
    widget->setCursor({1000.0, -2000.0, 2500.0});
    setBox(1000.0, 51000.0); // a quarter of 50 km over 1 km
    expectPoint(widget->getCursor(), 1000.0, -2000.0, 13500.0);
    expectPlace(cursorMarker(), 1000.0, -2000.0, 13500.0);
    EXPECT_DOUBLE_EQ(widget->GetPosition()[2], 13500.0);
}

TEST_F(TORVPointWidgetTest, ComesIntoASmallerBox)
{
    setBox(0.0, 10000.0);
    widget->setCursor({90000.0, -90000.0, 10000.0});
    const double small[6] = {-50000.0, 50000.0, -40000.0, 40000.0, 0.0, 5000.0};
    widget->setBounds(small);
    expectPoint(widget->getCursor(), 50000.0, -40000.0, 5000.0);
}

TEST_F(TORVPointWidgetTest, StaysWhereItIsWhenOnlyTheBoxLeavesIt)
{
    setBox(0.0, 10000.0);
    widget->setCursor({90000.0, 0.0, 0.0}); // at the floor: its z is the same in both boxes
    const double narrow[6] = {-50000.0, 50000.0, -100000.0, 100000.0, 0.0, 10000.0};
    widget->setBounds(narrow);
    expectPoint(widget->getCursor(), 50000.0, 0.0, 0.0);
}

TEST_F(TORVPointWidgetTest, StandsAtTheOriginWithoutABox)
{
    setBox(0.0, 10000.0);
    widget->setCursor({1000.0, 2000.0, 3000.0});
    widget->setBounds(NoBox);
    expectPoint(widget->getCursor(), 0.0, 0.0, 0.0);
    EXPECT_EQ(widget->getBounds()[1], 0.0);
}

TEST_F(TORVPointWidgetTest, StandsAtTheFloorAfterHavingHadNoBox)
{
    widget->setBounds(NoBox);
    setBox(-400.0, 9600.0);
    expectPoint(widget->getCursor(), 0.0, 0.0, -400.0);
}

TEST_F(TORVPointWidgetTest, StandsInABoxWithoutHeight)
{
    setBox(0.0, 10000.0);
    widget->setCursor({1000.0, 2000.0, 3000.0});
    setBox(700.0, 700.0);
    expectPoint(widget->getCursor(), 1000.0, 2000.0, 700.0);
    setBox(0.0, 10000.0);
    expectPoint(widget->getCursor(), 1000.0, 2000.0, 0.0);
}

TEST_F(TORVPointWidgetTest, RefusesABoxThatIsNoBox)
{
    setBox(0.0, 10000.0);
    widget->setCursor({1000.0, 2000.0, 3000.0});
    for (const double bad : {Nan, Infinity, -Infinity}) {
        setBox(bad, 10000.0);
        setBox(0.0, bad);
    }
    setBox(10000.0, 0.0);
    expectPoint(widget->getCursor(), 1000.0, 2000.0, 3000.0);
    EXPECT_EQ(widget->getBounds()[4], 0.0);
    EXPECT_EQ(widget->getBounds()[5], 10000.0);
}

TEST_F(TORVPointWidgetTest, IsPutNowhereOutsideItsBox)
{
    widget->setBounds(Box);
    widget->setCursor({250000.0, -250000.0, 25000.0});
    expectPoint(widget->getCursor(), 100000.0, -100000.0, 10000.0);
    expectPlace(cursorMarker(), 100000.0, -100000.0, 10000.0);
}

TEST_F(TORVPointWidgetTest, StaysWhereItIsForAPlaceThatIsNone)
{
    widget->setBounds(Box);
    widget->setCursor({1.0, 2.0, 3.0});
    widget->setCursor({Nan, 0.0, 0.0});
    widget->setCursor({0.0, Infinity, 0.0});
    widget->setCursor({0.0, 0.0, -Infinity});
    expectPoint(widget->getCursor(), 1.0, 2.0, 3.0);
}

TEST_F(TORVPointWidgetTest, TellsNobodyWhenItIsPutSomewhere)
{
    widget->setBounds(Box);
    widget->setCursor({1.0, 2.0, 3.0});
    EXPECT_TRUE(observer.points.empty());
}

TEST_F(TORVPointWidgetTest, RaisesTheHomePointByTheVerticalScale)
{
    widget->setVerticalScale(5.0);
    widget->setHome({3000.0, -4000.0, 200.0}, QStringLiteral("HALMERA"));
    expectPlace(homeMarker(), 3000.0, -4000.0, 1000.0);
    EXPECT_DOUBLE_EQ(caption()->GetAttachmentPoint()[0], 3000.0);
    EXPECT_DOUBLE_EQ(caption()->GetAttachmentPoint()[1], -4000.0);
    EXPECT_DOUBLE_EQ(caption()->GetAttachmentPoint()[2], 1000.0);
    widget->setVerticalScale(2.0);
    expectPlace(homeMarker(), 3000.0, -4000.0, 400.0);
}

TEST_F(TORVPointWidgetTest, RefusesAVerticalScaleThatIsNone)
{
    widget->setVerticalScale(5.0);
    for (const double bad : {0.0, -1.0, Nan, Infinity}) {
        widget->setVerticalScale(bad);
    }
    widget->setHome({0.0, 0.0, 200.0}, QString());
    expectPlace(homeMarker(), 0.0, 0.0, 1000.0);
}

TEST_F(TORVPointWidgetTest, KeepsItsHomeForAPlaceThatIsNone)
{
    widget->setHome({1.0, 2.0, 3.0}, QStringLiteral("HALMERA"));
    widget->setHome({Nan, 0.0, 0.0}, QStringLiteral("LEM"));
    expectPlace(homeMarker(), 1.0, 2.0, 3.0);
    EXPECT_STREQ(caption()->GetCaption(), "Home: LEM");
}

TEST_F(TORVPointWidgetTest, NamesTheHomePoint)
{
    widget->setHome({}, QStringLiteral("Jyv\u00e4skyl\u00e4"));
    EXPECT_STREQ(caption()->GetCaption(), "Home: Jyv\u00e4skyl\u00e4");
}

TEST_F(TORVPointWidgetTest, PaintsItsMarkerInTheColourOfTheValue)
{
    widget->setMarkerColor(QColor(51, 102, 255));
    expectColor(cursorMarker()->GetProperty(), 51 / 255.0, 102 / 255.0, 255 / 255.0);
    EXPECT_EQ(cursorMarker()->GetProperty()->GetAmbient(), 1.0);
    EXPECT_EQ(cursorMarker()->GetProperty()->GetDiffuse(), 0.4);
}

TEST_F(TORVPointWidgetTest, PaintsItsMarkerAsItsLinesWithoutAValue)
{
    writeStyle("[CURSORTOOL_DAY]\nline\\selected\\color\\r=0.9\nline\\selected\\color\\g=0.8\n");
    widget->loadStyle(true);
    widget->setMarkerColor(QColor());
    expectColor(cursorMarker()->GetProperty(), 0.9, 0.8, 0.3);
}

TEST_F(TORVPointWidgetTest, LooksPlainWithoutAStyleFile)
{
    EXPECT_NEAR(markerRadius(), 5100.0, 1.0);
    expectColor(homeMarker()->GetProperty(), 0.3, 0.3, 0.3);
    EXPECT_EQ(homeMarker()->GetProperty()->GetAmbient(), 1.0);
    EXPECT_EQ(homeMarker()->GetProperty()->GetDiffuse(), 0.4);
    expectColor(widget->GetProperty(), 0.3, 0.3, 0.3);
    expectColor(widget->GetSelectedProperty(), 0.3, 0.3, 0.3);
    EXPECT_EQ(widget->GetProperty()->GetLineWidth(), 1.0F);
    EXPECT_EQ(widget->GetSelectedProperty()->GetLineWidth(), 2.0F);
    EXPECT_DOUBLE_EQ(caption()->GetCaptionTextProperty()->GetColor()[0], 0.3);
    EXPECT_EQ(caption()->GetCaptionTextProperty()->GetFontSize(), 12);
}

TEST_F(TORVPointWidgetTest, TakesTheStyleOfTheNightInPlace)
{
    writeStyle("[CURSORTOOL_DAY]\nmarker\\radius=9999\n[CURSORTOOL_NIGHT]\n"
               "line\\selected\\color\\r=0.11\nline\\selected\\color\\g=0.12\nline\\selected\\color\\b=0.13\n"
               "line\\selected\\width=3\n"
               "line\\unselected\\color\\r=0.21\nline\\unselected\\color\\g=0.22\nline\\unselected\\color\\b=0.23\n"
               "line\\unselected\\width=4\nmarker\\radius=2200\n"
               "home\\marker\\color\\r=0.31\nhome\\marker\\color\\g=0.32\nhome\\marker\\color\\b=0.33\n"
               "home\\label\\color\\r=0.41\nhome\\label\\color\\g=0.42\nhome\\label\\color\\b=0.43\n"
               "home\\label\\fontsize=17\n");
    vtkActor* const marker = homeMarker();
    widget->loadStyle(false);
    widget->resetActors();
    EXPECT_EQ(homeMarker(), marker);
    EXPECT_NEAR(markerRadius(), 2200.0, 1.0);
    expectColor(marker->GetProperty(), 0.31, 0.32, 0.33);
    expectColor(widget->GetSelectedProperty(), 0.11, 0.12, 0.13);
    expectColor(widget->GetProperty(), 0.21, 0.22, 0.23);
    EXPECT_EQ(widget->GetSelectedProperty()->GetLineWidth(), 3.0F);
    EXPECT_EQ(widget->GetProperty()->GetLineWidth(), 4.0F);
    EXPECT_DOUBLE_EQ(caption()->GetCaptionTextProperty()->GetColor()[1], 0.42);
    EXPECT_EQ(caption()->GetCaptionTextProperty()->GetFontSize(), 17);
}

TEST_F(TORVPointWidgetTest, DrawsLinesTwiceAsWideOnAScreenTwiceAsFine)
{
    scene.window()->SetDPI(144);
    show();
    EXPECT_EQ(widget->GetProperty()->GetLineWidth(), 2.0F);
    EXPECT_EQ(widget->GetSelectedProperty()->GetLineWidth(), 4.0F);
}

TEST_F(TORVPointWidgetTest, TellsWhereItIs)
{
    widget->setBounds(Box);
    widget->SetPosition(1000.0, 2000.0, 3000.0);
    widget->update();
    ASSERT_EQ(observer.points.size(), 1U);
    EXPECT_EQ(observer.widget, widget.Get());
    expectPoint(observer.points[0], 1000.0, 2000.0, 3000.0);
    expectPoint(widget->getCursor(), 1000.0, 2000.0, 3000.0);
    expectPlace(cursorMarker(), 1000.0, 2000.0, 3000.0);
}

TEST_F(TORVPointWidgetTest, UpdatesAtEachInteraction)
{
    widget->setBounds(Box);
    widget->InvokeEvent(vtkCommand::InteractionEvent);
    EXPECT_EQ(observer.points.size(), 1U);
}

TEST_F(TORVPointWidgetTest, NeedsNoObserver)
{
    widget->init(nullptr);
    widget->setBounds(Box);
    widget->SetPosition(1000.0, 2000.0, 3000.0);
    widget->update();
    EXPECT_TRUE(observer.points.empty());
    expectPoint(widget->getCursor(), 1000.0, 2000.0, 3000.0);
}

TEST_F(TORVPointWidgetTest, LetsItsCallbackServeOtherWidgetsForNothing)
{
    vtkNew<TORVPointWidgetCallback> callback;
    vtkNew<vtkPointWidget> other;
    callback->Execute(other, vtkCommand::InteractionEvent, nullptr);
    callback->Execute(nullptr, vtkCommand::InteractionEvent, nullptr);
    EXPECT_TRUE(observer.points.empty());
}

TEST_F(TORVPointWidgetTest, ShowsItsMarkerOnlyWhileItIsOn)
{
    EXPECT_FALSE(cursorMarker()->GetVisibility());
    show();
    EXPECT_TRUE(cursorMarker()->GetVisibility());
    widget->SetEnabled(0);
    EXPECT_FALSE(cursorMarker()->GetVisibility());
    EXPECT_EQ(renderer->GetViewProps()->GetNumberOfItems(), 1); // the markers, which the renderer takes out
}

TEST_F(TORVPointWidgetTest, PutsItsCrossHairBackIntoAnEmptiedScene)
{
    show();
    const int shown = renderer->GetViewProps()->GetNumberOfItems();
    renderer->RemoveAllViewProps();
    renderer->AddViewProp(widget->getActor());
    widget->SetEnabled(1);
    EXPECT_EQ(renderer->GetViewProps()->GetNumberOfItems(), shown);
    widget->SetEnabled(1);
    EXPECT_EQ(renderer->GetViewProps()->GetNumberOfItems(), shown);
}

TEST_F(TORVPointWidgetTest, LivesInItsRendererWhereverTheMouseIs)
{
    vtkNew<vtkRenderer> strip;
    strip->SetViewport(0.0, 0.0, 0.2, 1.0);
    scene.window()->AddRenderer(strip);
    mouse.move(5, 150);
    mouse.move(5, 150);
    widget->SetEnabled(1);
    EXPECT_EQ(widget->GetCurrentRenderer(), renderer.Get());
    EXPECT_EQ(strip->GetViewProps()->GetNumberOfItems(), 0);
}

TEST_F(TORVPointWidgetTest, LeavesTheDrawingToWhoSwitchesIt)
{
    show();
    int drawn = 0;
    vtkNew<vtkCallbackCommand> counter;
    counter->SetClientData(&drawn);
    counter->SetCallback([](vtkObject*, unsigned long, void* count, void*) { ++*static_cast<int*>(count); });
    scene.window()->AddObserver(vtkCommand::StartEvent, counter);
    widget->SetEnabled(0);
    widget->SetEnabled(1);
    widget->SetEnabled(1);
    EXPECT_EQ(drawn, 0);
    mouse.interactor()->Render();
    EXPECT_EQ(drawn, 1);
}

TEST_F(TORVPointWidgetTest, CantBeSwitchedByAKey)
{
    show();
    mouse.interactor()->SetKeyEventInformation(0, 0, 'i', 0, "i");
    mouse.interactor()->InvokeEvent(vtkCommand::CharEvent);
    EXPECT_TRUE(widget->GetEnabled());
}

TEST_F(TORVPointWidgetTest, LeavesTheSceneWhenItIsDestroyed)
{
    show();
    widget->destroy();
    EXPECT_EQ(widget->getActor(), nullptr);
    EXPECT_EQ(renderer->GetViewProps()->GetNumberOfItems(), 0);
    mouse.drag(150, 150, 160, 160);
    EXPECT_TRUE(observer.points.empty());
    EXPECT_EQ(mouse.passed(vtkCommand::LeftButtonPressEvent), 1);
}

TEST_F(TORVPointWidgetTest, CanBeDestroyedTwiceAndMadeAgain)
{
    widget->destroy();
    widget->destroy();
    widget->setBounds(Box);
    widget->setCursor({1000.0, 2000.0, 3000.0});
    widget->setHome({0.0, 0.0, 100.0}, QStringLiteral("HALMERA"));
    widget->setMarkerColor(Qt::red);
    widget->resetActors();
    widget->update();
    EXPECT_TRUE(observer.points.empty());
    widget->init(&observer);
    expectPlace(cursorMarker(), 1000.0, 2000.0, 3000.0);
    expectPlace(homeMarker(), 0.0, 0.0, 100.0);
    expectColor(cursorMarker()->GetProperty(), 1.0, 0.0, 0.0);
    EXPECT_STREQ(caption()->GetCaption(), "Home: HALMERA");
}

TEST_F(TORVPointWidgetTest, MayDieWhileItIsOn)
{
    {
        vtkNew<TORVPointWidget> other;
        other->SetInteractor(mouse.interactor());
        other->SetDefaultRenderer(renderer);
        other->init(&observer);
        other->SetEnabled(1);
        EXPECT_EQ(renderer->GetViewProps()->GetNumberOfItems(), 1);
    }
    EXPECT_EQ(renderer->GetViewProps()->GetNumberOfItems(), 0);
    mouse.drag(150, 150, 160, 160);
    EXPECT_TRUE(observer.points.empty());
}

TEST_F(TORVPointWidgetTest, MayOutliveItsInteractor)
{
    vtkNew<TORVPointWidget> other;
    {
        OffscreenScene window;
        vtkNew<vtkRenderer> otherRenderer;
        window.window()->AddRenderer(otherRenderer);
        const SceneMouse otherMouse(window.window());
        other->SetInteractor(otherMouse.interactor());
        other->SetDefaultRenderer(otherRenderer);
        other->init(&observer);
        other->SetEnabled(1);
    }
    EXPECT_FALSE(other->GetEnabled());
    other->destroy();
}

TEST_F(TORVPointWidgetTest, ShowsTheColourOfTheValueWhereItStands)
{
    widget->setBounds(Box);
    widget->setCursor({60000.0, 30000.0, 5000.0});
    widget->setMarkerColor(QColor(100, 150, 50));
    widget->setHome({-60000.0, -30000.0, 0.0}, QString());
    show();
    const QImage picture = scene.picture();
    // Without a light a face shows ambient and diffuse parts whole: 1.4 times its colour.
    EXPECT_EQ(picture.pixel(150 + 60 - 3, 150 - 30 - 3), qRgb(140, 210, 70));
    EXPECT_EQ(picture.pixel(150 - 60, 150 + 30), qRgb(107, 107, 107)); // 0.3 * 255 * 1.4
}

TEST_F(TORVPointWidgetTest, DrawsItsLinesInTheirOwnColourWhateverTheLight)
{
    const vtkNew<vtkLight> light;
    renderer->AddLight(light);
    widget->setBounds(Box);
    show();
    const QImage picture = scene.picture();
    const int brightest =
        std::max(qRed(picture.pixel(200, 149)), qRed(picture.pixel(200, 150))); // it is in one of them
    EXPECT_NEAR(brightest, 0.3 * 255.0, 1.0);
}

TEST_F(TORVPointWidgetTest, HidesItsHomeWhereBothStandInOnePlace)
{
    widget->setBounds(Box);
    widget->setMarkerColor(QColor(100, 150, 50));
    show();
    EXPECT_EQ(scene.picture().pixel(150 - 3, 150 - 3), qRgb(140, 210, 70));
}

namespace
{

class TORVPointWidgetLookTest : public TORVPointWidgetTest, public testing::WithParamInterface<bool>
{
};

} // namespace

TEST_P(TORVPointWidgetLookTest, LooksAsItDidBefore)
{
    const bool isDay = GetParam();
    ASSERT_EQ(TORVDemoSettings(home.path()).writeStyles(), QString());
    isDay ? renderer->SetBackground(.212, .267, .310) : renderer->SetBackground(.055, .051, .047);
    vtkCamera* const camera = renderer->GetActiveCamera();
    camera->ParallelProjectionOff();
    camera->SetPosition(-60000.0, -150000.0, 90000.0);
    camera->SetFocalPoint(20000.0, 0.0, 10000.0);
    camera->SetViewUp(0.0, 0.0, 1.0);
    vtkNew<vtkLight> light;
    light->SetPosition(0.0, -500.0, 2000.0);
    light->SetColor(.65, .63, .58);
    renderer->AddLight(light);
    widget->loadStyle(isDay);
    widget->setVerticalScale(5.0);
    const double box[6] = {-100000.0, 100000.0, -100000.0, 100000.0, 0.0, 60000.0};
    widget->setBounds(box);
    widget->setCursor({40000.0, 20000.0, 25000.0});
    widget->setHome({0.0, 0.0, 200.0}, QStringLiteral("HALMERA"));
    widget->setMarkerColor(QColor(0xFA, 0xAA, 0x28));
    show();
    const QString name = isDay ? QStringLiteral("cursor-day") : QStringLiteral("cursor-night");
    EXPECT_EQ(ImageCompare::againstBaseline(scene.picture(), name), QString());
}

INSTANTIATE_TEST_SUITE_P(Modes, TORVPointWidgetLookTest, testing::Bool());
