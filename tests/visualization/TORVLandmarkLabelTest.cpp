#include "visualization/TORVLandmarkLabel.h"

#include "support/OffscreenScene.h"
#include "visualization/TORVLabelRoom.h"

#include <QRect>

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCubeSource.h>
#include <vtkPolyDataMapper.h>
#include <vtkPropAssembly.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTextProperty.h>

#include <boost/make_shared.hpp>

#include <cmath>
#include <functional>

namespace
{

constexpr int Side = 300;
constexpr double EyeHeight = 500000.0;

bool isColored(QRgb pixel)
{
    return qRed(pixel) + qGreen(pixel) + qBlue(pixel) > 60;
}

class TORVLandmarkLabelTest : public testing::Test
{
protected:
    using Label = vtkSmartPointer<TORVLandmarkLabel>;

    TORVLandmarkLabelTest() : scene(Side, Side)
    {
        scene.window()->AddRenderer(renderer);
        vtkCamera* const camera = renderer->GetActiveCamera();
        camera->SetFocalPoint(0.0, 0.0, 0.0);
        camera->SetPosition(0.0, 0.0, EyeHeight);
        camera->SetViewUp(0.0, 1.0, 0.0);
        camera->SetClippingRange(1000.0, 2.0 * EyeHeight);
        metresPerPixel(1000.0);
    }

    // Seen in parallel from above.
    void metresPerPixel(double metres)
    {
        renderer->GetActiveCamera()->ParallelProjectionOn();
        renderer->GetActiveCamera()->SetParallelScale(metres * Side / 2.0);
    }

    Label add(const std::string& text = std::string(), double x = 0.0, double y = 0.0, double z = 0.0)
    {
        const auto label = Label::New();
        label->SetWorldPosition(x, y, z);
        label->SetColor(1.0, 1.0, 0.0);
        label->SetText(text);
        renderer->AddViewProp(label);
        return label;
    }

    void addCube(double x, double z, double r, double g, double b)
    {
        vtkNew<vtkCubeSource> cube;
        cube->SetCenter(x, 0.0, z);
        cube->SetXLength(60000.0);
        cube->SetYLength(60000.0);
        cube->SetZLength(1000.0);
        vtkNew<vtkPolyDataMapper> mapper;
        mapper->SetInputConnection(cube->GetOutputPort());
        vtkNew<vtkActor> actor;
        actor->SetMapper(mapper);
        actor->GetProperty()->SetColor(r, g, b);
        actor->GetProperty()->LightingOff();
        renderer->AddActor(actor);
    }

    static QRect bounds(const QImage& picture, const std::function<bool(QRgb)>& isMeant)
    {
        QRect box;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (isMeant(picture.pixel(x, y))) {
                    box |= QRect(x, y, 1, 1);
                }
            }
        }
        return box;
    }

    static int count(const QImage& picture, const std::function<bool(QRgb)>& isMeant)
    {
        int pixels = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                pixels += isMeant(picture.pixel(x, y)) ? 1 : 0;
            }
        }
        return pixels;
    }

    // Of a round dot, by its area.
    static double radiusOf(const QImage& picture) { return std::sqrt(count(picture, isColored) / M_PI); }

    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
};

} // namespace

// 1000 m and a fifth of what 10 pixels show: at m metres a pixel that is (1000 + 2 m) / m pixels.

TEST_F(TORVLandmarkLabelTest, TheDotHasTwelvePixelsSeenFromNear)
{
    add();
    metresPerPixel(100.0);
    EXPECT_NEAR(radiusOf(scene.picture()), 1000.0 / 100.0 + 2.0, 0.5);
}

TEST_F(TORVLandmarkLabelTest, TheDotHasFourAndAHalfPixelsAtFirstSight)
{
    add();
    metresPerPixel(402.5); // 10 pixels are 4025 m, the radius is 1805 m
    const QImage picture = scene.picture();
    EXPECT_NEAR(radiusOf(picture), 1805.0 / 402.5, 0.3);
    const QRect box = bounds(picture, isColored);
    EXPECT_NEAR(box.width(), 9.0, 1.0);
    EXPECT_NEAR(box.height(), 9.0, 1.0);
}

TEST_F(TORVLandmarkLabelTest, TheDotStaysAboveTwoPixelsFromAnyDistance)
{
    add();
    metresPerPixel(2000.0);
    EXPECT_NEAR(radiusOf(scene.picture()), 1000.0 / 2000.0 + 2.0, 0.3);
}

TEST_F(TORVLandmarkLabelTest, TheDotIsSizedByItsOwnDistanceInPerspective)
{
    // 300 pixels at an angle of 30 degrees: at the distance d one pixel is 2 d tan(15 deg) / 300.
    vtkCamera* const camera = renderer->GetActiveCamera();
    camera->ParallelProjectionOff();
    camera->SetViewAngle(30.0);
    const double distance = 402.5 * Side / (2.0 * std::tan(M_PI / 12.0));
    add(std::string(), 0.0, 0.0, EyeHeight - distance);
    EXPECT_NEAR(radiusOf(scene.picture()), 1805.0 / 402.5, 0.3);
}

TEST_F(TORVLandmarkLabelTest, PixelsGrowWithTheDotsOfTheScreen)
{
    add();
    scene.window()->SetDPI(144);
    metresPerPixel(402.5); // 20 device pixels are 8050 m, the radius is 2610 m
    EXPECT_NEAR(radiusOf(scene.picture()), 2610.0 / 402.5, 0.4);
}

TEST_F(TORVLandmarkLabelTest, TheDotStandsAtItsPixel)
{
    add(std::string(), 50000.0, -20000.0, 3000.0);
    const QRect box = bounds(scene.picture(), isColored);
    const QPointF pixel = OffscreenScene::pixelOf(renderer, 50000.0, -20000.0, 3000.0);
    EXPECT_NEAR(pixel.x(), 200.0, 1.0); // 1000 m a pixel
    EXPECT_NEAR(pixel.y(), 170.0, 1.0);
    EXPECT_NEAR(QRectF(box).center().x(), pixel.x(), 1.0);
    EXPECT_NEAR(QRectF(box).center().y(), pixel.y(), 1.0);
}

TEST_F(TORVLandmarkLabelTest, TheNameStandsRightOfTheDotAtItsHeight)
{
    add();
    const QRect dot = bounds(scene.picture(), isColored);
    add("Halmera");
    const QRect all = bounds(scene.picture(), isColored);
    EXPECT_EQ(all.left(), dot.left());
    EXPECT_GT(all.right(), dot.right() + 35); // seven letters of 12 pixels
    EXPECT_LT(all.right(), dot.right() + 70);
    EXPECT_LE(all.height(), 16);
    EXPECT_NEAR(QRectF(all).center().y(), QRectF(dot).center().y(), 3.0);
}

TEST_F(TORVLandmarkLabelTest, TheNameBeginsSevenPixelsFromTheMiddleOfASmallDot)
{
    add("H");
    metresPerPixel(2000.0);
    const QImage picture = scene.picture();
    const QRect letter = bounds(picture.copy(155, 0, Side - 155, Side), isColored).translated(155, 0);
    EXPECT_NEAR(letter.left(), 150 + 7, 2.0); // and the room that the letter leaves at its left
}

TEST_F(TORVLandmarkLabelTest, TheNameKeepsClearOfALargeDot)
{
    add("H");
    metresPerPixel(50.0); // the dot has 22 pixels
    const QImage picture = scene.picture();
    EXPECT_EQ(count(picture.copy(173, 100, 2, 100), isColored), 0);
    EXPECT_GT(count(picture.copy(175, 100, 20, 100), isColored), 10);
}

TEST_F(TORVLandmarkLabelTest, TheNameHasTheSameSizeAtAnyDistance)
{
    const Label label = add("Halmera");
    metresPerPixel(100.0);
    const auto widthRightOf = [](const QImage& picture, int x) {
        return bounds(picture.copy(x, 0, Side - x, Side), isColored).width();
    };
    const int fromNear = widthRightOf(scene.picture(), 150 + 14);
    metresPerPixel(2000.0);
    EXPECT_NEAR(widthRightOf(scene.picture(), 150 + 5), fromNear, 1.0);
}

TEST_F(TORVLandmarkLabelTest, ALabelLooksTheSameAtAnotherPlace)
{
    const Label label = add("Halmera");
    const QImage first = scene.picture();
    label->SetWorldPosition(20000.0, 0.0, 0.0); // twenty pixels
    const QImage second = scene.picture();
    EXPECT_EQ(second.copy(140, 120, 140, 60), first.copy(120, 120, 140, 60));
}

TEST_F(TORVLandmarkLabelTest, TheNameGrowsWithTheDotsOfTheScreen)
{
    add("Halmera");
    metresPerPixel(2000.0);
    const int small = bounds(scene.picture(), isColored).width();
    scene.window()->SetDPI(144);
    EXPECT_NEAR(bounds(scene.picture(), isColored).width(), 2.0 * small, 6.0);
}

TEST_F(TORVLandmarkLabelTest, ALineRunsRoundTheLetters)
{
    renderer->SetBackground(1.0, 1.0, 1.0);
    const Label label = add("Halmera");
    label->SetColor(1.0, 1.0, 1.0);
    const double red[3] = {0.8, 0.0, 0.0};
    label->SetTextStyle(1.0, red);
    const QImage picture = scene.picture();
    const auto isLine = [](QRgb pixel) { return qRed(pixel) > 180 && qGreen(pixel) < 90; };
    EXPECT_GT(count(picture, isLine), 100);
    // 85 of 100 parts of the line's green 0 over the ground's 255.
    int darkest = 255;
    for (int x = 150; x < 210; ++x) {
        for (int y = 140; y < 165; ++y) {
            darkest = std::min(darkest, qGreen(picture.pixel(x, y)));
        }
    }
    EXPECT_NEAR(darkest, 0.15 * 255.0, 3.0);
}

TEST_F(TORVLandmarkLabelTest, TheNameCanBeFaint)
{
    const Label label = add("HHHH");
    metresPerPixel(2000.0);
    const double black[3] = {0.0, 0.0, 0.0};
    const auto brightest = [&] {
        const QImage picture = scene.picture();
        int most = 0;
        for (int x = 156; x < 200; ++x) {
            for (int y = 135; y < 165; ++y) {
                most = std::max(most, qGreen(picture.pixel(x, y)));
            }
        }
        return most;
    };
    label->SetTextStyle(1.0, black);
    const int full = brightest();
    label->SetTextStyle(0.5, black);
    EXPECT_NEAR(brightest(), full / 2.0, 8.0);
}

TEST_F(TORVLandmarkLabelTest, ChangesWhenItIsToldAnotherColorOrName)
{
    const Label label = add("Halmera");
    const QImage before = scene.picture();
    label->SetColor(0.0, 0.0, 1.0);
    const QImage blue = scene.picture();
    EXPECT_EQ(count(blue, [](QRgb pixel) { return qRed(pixel) > 0; }), 0);
    EXPECT_GT(count(blue, isColored), 50);
    label->SetText("X");
    EXPECT_LT(bounds(scene.picture(), isColored).width(), bounds(before, isColored).width());
}

TEST_F(TORVLandmarkLabelTest, AnEmptyNameLeavesTheDotAlone)
{
    const Label label = add("Halmera");
    scene.picture();
    EXPECT_TRUE(label->IsTextShown());
    label->SetText(std::string());
    EXPECT_LT(bounds(scene.picture(), isColored).width(), 10);
    EXPECT_FALSE(label->IsTextShown());
}

TEST_F(TORVLandmarkLabelTest, NothingIsDrawnOfAPlaceBehindTheEye)
{
    renderer->GetActiveCamera()->ParallelProjectionOff();
    // Seen through the eye it would be at the same pixel as its mirror image in front.
    const Label label = add("Halmera", 0.0, 0.0, 2.0 * EyeHeight);
    EXPECT_EQ(count(scene.picture(), isColored), 0);
    EXPECT_FALSE(label->IsTextShown());
    label->SetWorldPosition(0.0, 0.0, 0.0);
    EXPECT_GT(count(scene.picture(), isColored), 0);
    EXPECT_TRUE(label->IsTextShown());
}

TEST_F(TORVLandmarkLabelTest, NothingIsDrawnOfAPlaceOutsideThePicture)
{
    const Label label = add("Halmera", -160000.0, 0.0); // ten pixels left of it
    EXPECT_EQ(count(scene.picture(), isColored), 0);
    EXPECT_FALSE(label->IsTextShown());
    label->SetWorldPosition(0.0, 1e7, 0.0);
    EXPECT_EQ(count(scene.picture(), isColored), 0);
}

TEST_F(TORVLandmarkLabelTest, TheDotIsSeenThroughWhatHidesIt)
{
    addCube(0.0, 50000.0, 0.0, 0.0, 1.0);
    add();
    const QImage picture = scene.picture();
    EXPECT_EQ(picture.pixel(150, 150), qRgb(255, 255, 0));
    EXPECT_EQ(picture.pixel(165, 150), qRgb(0, 0, 255));
}

TEST_F(TORVLandmarkLabelTest, LeavesTheDepthTestOnForWhatIsDrawnNext)
{
    addCube(0.0, 50000.0, 0.0, 0.0, 1.0);
    add();
    addCube(30000.0, 0.0, 1.0, 0.0, 0.0); // reaches under the first
    const QImage picture = scene.picture();
    EXPECT_EQ(picture.pixel(170, 150), qRgb(0, 0, 255));
    EXPECT_EQ(picture.pixel(200, 150), qRgb(255, 0, 0));
}

TEST_F(TORVLandmarkLabelTest, IsDrawnAsPartOfAnAssemblyInAnAssembly)
{
    const Label label = add("Halmera");
    const QImage alone = scene.picture();
    renderer->RemoveViewProp(label);
    vtkNew<vtkPropAssembly> inner;
    inner->AddPart(label);
    vtkNew<vtkPropAssembly> outer;
    outer->AddPart(inner);
    renderer->AddViewProp(outer);
    EXPECT_EQ(scene.picture(), alone);
    EXPECT_EQ(outer->GetBounds(), nullptr);
}

TEST_F(TORVLandmarkLabelTest, IsDrawnInItsPartOfAWindow)
{
    renderer->SetViewport(0.5, 0.0, 1.0, 1.0);
    add("Halmera");
    const QRect box = bounds(scene.picture(), isColored);
    EXPECT_NEAR(box.left(), 225 - 3, 2.0); // its middle is that of the right half
    EXPECT_GT(box.width(), 40);
}

TEST_F(TORVLandmarkLabelTest, NamesThatShareARoomDontOverlap)
{
    const auto room = boost::make_shared<TORVLabelRoom>();
    const Label first = add("Halmera");
    const Label second = add("Torvala", 5000.0, 5000.0); // five pixels to the upper right
    first->SetRoom(room, true);
    second->SetRoom(room, false);
    const QImage both = scene.picture();
    EXPECT_TRUE(first->IsTextShown());
    EXPECT_FALSE(second->IsTextShown());
    EXPECT_EQ(both.pixel(155, 144), qRgb(255, 255, 0)); // its dot stays
    EXPECT_EQ(scene.picture(), both);                   // picture after picture
}

TEST_F(TORVLandmarkLabelTest, ANameComesBackWhereThereIsRoomAgain)
{
    const auto room = boost::make_shared<TORVLabelRoom>();
    const Label first = add("Halmera");
    const Label second = add("Torvala", 5000.0, 5000.0);
    first->SetRoom(room, true);
    second->SetRoom(room, false);
    scene.picture();
    metresPerPixel(200.0); // now they are 25 pixels apart
    scene.picture();
    EXPECT_TRUE(first->IsTextShown());
    EXPECT_TRUE(second->IsTextShown());
    metresPerPixel(1000.0);
    scene.picture();
    EXPECT_FALSE(second->IsTextShown());
    first->SetWorldPosition(0.0, 0.0, 2.0 * EyeHeight);
    scene.picture();
    EXPECT_TRUE(second->IsTextShown());
}

TEST_F(TORVLandmarkLabelTest, WithoutARoomEveryNameIsWritten)
{
    const Label first = add("Halmera");
    const Label second = add("Torvala");
    scene.picture();
    EXPECT_TRUE(first->IsTextShown());
    EXPECT_TRUE(second->IsTextShown());
}

TEST_F(TORVLandmarkLabelTest, ACopyLooksTheSame)
{
    const Label label = add("Halmera", 20000.0, 10000.0, 500.0);
    const QImage original = scene.picture();
    vtkNew<TORVLandmarkLabel> copy;
    copy->ShallowCopy(label);
    EXPECT_EQ(copy->GetText(), "Halmera");
    EXPECT_EQ(copy->GetWorldPosition()[0], 20000.0);
    EXPECT_EQ(copy->GetWorldPosition()[1], 10000.0);
    EXPECT_EQ(copy->GetWorldPosition()[2], 500.0);
    EXPECT_EQ(copy->GetColor()[1], 1.0);
    renderer->RemoveViewProp(label);
    renderer->AddViewProp(copy);
    EXPECT_EQ(scene.picture(), original);
}

TEST_F(TORVLandmarkLabelTest, HasNothingTranslucent)
{
    const Label label = add("Halmera");
    scene.picture();
    EXPECT_EQ(label->HasTranslucentPolygonalGeometry(), 0);
    EXPECT_EQ(label->RenderTranslucentPolygonalGeometry(renderer), 0);
}

TEST_F(TORVLandmarkLabelTest, CanBeShownInAnotherWindowAfterwards)
{
    const Label label = add("Halmera");
    const QImage first = scene.picture();
    renderer->RemoveViewProp(label);
    label->ReleaseGraphicsResources(scene.window());
    OffscreenScene other(Side, Side);
    vtkNew<vtkRenderer> otherRenderer;
    otherRenderer->SetActiveCamera(renderer->GetActiveCamera());
    otherRenderer->AddViewProp(label);
    other.window()->AddRenderer(otherRenderer);
    EXPECT_EQ(other.picture(), first);
    otherRenderer->RemoveViewProp(label);
    label->ReleaseGraphicsResources(other.window());
}

TEST_F(TORVLandmarkLabelTest, IsNotDrawnInAWindowWithoutArea)
{
    OffscreenScene tiny(1, 1);
    const Label label = Label::New();
    label->SetText("Halmera");
    vtkNew<vtkRenderer> tinyRenderer;
    tinyRenderer->AddViewProp(label);
    tiny.window()->AddRenderer(tinyRenderer);
    tiny.picture();
    EXPECT_FALSE(label->IsTextShown());
}
