#include "visualization/TORVOutlinedText.h"

#include "support/OffscreenScene.h"
#include "visualization/TORVSceneFont.h"

#include <gtest/gtest.h>

#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>
#include <vtkTexture.h>

namespace
{

class TORVOutlinedTextTest : public testing::Test
{
protected:
    TORVOutlinedTextTest()
    {
        renderer->SetBackground(0.0, 0.0, 1.0);
        scene.window()->AddRenderer(renderer);
        const double red[3] = {1.0, 0.0, 0.0};
        text->SetOutlineColor(red);
        prepare(text);
        prepare(plain);
    }

    static void prepare(vtkTextActor* actor)
    {
        actor->SetInput("Halmera gq");
        TORVSceneFont::apply(actor->GetTextProperty(), 12);
        actor->GetTextProperty()->SetColor(0.0, 1.0, 0.0);
        actor->SetPosition(40.0, 100.0);
    }

    QImage pictureOf(vtkTextActor* actor)
    {
        renderer->RemoveAllViewProps();
        renderer->AddViewProp(actor);
        return scene.picture();
    }

    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
    vtkNew<TORVOutlinedText> text;
    vtkNew<vtkTextActor> plain;
};

} // namespace

TEST_F(TORVOutlinedTextTest, HasItsLettersWhereAPlainTextHasThem)
{
    const QImage bare = pictureOf(plain);
    const QImage outlined = pictureOf(text);
    int letters = 0;
    for (int y = 0; y < bare.height(); ++y) {
        for (int x = 0; x < bare.width(); ++x) {
            if (qGreen(bare.pixel(x, y)) > 250) { // wholly letter
                ++letters;
                EXPECT_GT(qGreen(outlined.pixel(x, y)), 250) << x << ", " << y;
            }
        }
    }
    EXPECT_GT(letters, 50);
}

TEST_F(TORVOutlinedTextTest, HasALineOfOnePixelRoundThem)
{
    const QImage bare = pictureOf(plain);
    const QImage outlined = pictureOf(text);
    for (int y = 1; y < bare.height() - 1; ++y) {
        for (int x = 1; x < bare.width() - 1; ++x) {
            int nearest = 0;
            for (int dy = -1; dy <= 1; ++dy) {
                for (int dx = -1; dx <= 1; ++dx) {
                    nearest = std::max(nearest, qGreen(bare.pixel(x + dx, y + dy)));
                }
            }
            const bool isInked = outlined.pixel(x, y) != qRgb(0, 0, 255);
            if (nearest > 10) {
                EXPECT_TRUE(isInked) << x << ", " << y;
            } else if (nearest == 0) {
                EXPECT_FALSE(isInked) << x << ", " << y;
            }
        }
    }
}

TEST_F(TORVOutlinedTextTest, MeasuresTheLineToo)
{
    double bare[4];
    double outlined[4];
    plain->GetBoundingBox(renderer, bare);
    text->GetBoundingBox(renderer, outlined);
    EXPECT_EQ(outlined[0], bare[0] - 1.0);
    EXPECT_EQ(outlined[1], bare[1] + 1.0);
    EXPECT_EQ(outlined[2], bare[2] - 1.0);
    EXPECT_EQ(outlined[3], bare[3] + 1.0);
    scene.window()->SetDPI(144);
    plain->GetBoundingBox(renderer, bare);
    text->GetBoundingBox(renderer, outlined);
    EXPECT_EQ(outlined[0], bare[0] - 2.0);
    EXPECT_EQ(outlined[1], bare[1] + 2.0);
}

TEST_F(TORVOutlinedTextTest, IsMadeAnewForAnotherLine)
{
    const QImage before = pictureOf(text);
    const double white[3] = {1.0, 1.0, 1.0};
    text->SetOutlineColor(white);
    EXPECT_NE(scene.picture(), before);
}

TEST_F(TORVOutlinedTextTest, IsNotMadeAnewForTheSameLine)
{
    pictureOf(text);
    scene.picture(); // VTK makes it twice at first
    const vtkMTimeType made = text->GetTexture()->GetInput()->GetMTime();
    const double red[3] = {1.0, 0.0, 0.0};
    text->SetOutlineColor(red);
    scene.picture();
    EXPECT_EQ(text->GetTexture()->GetInput()->GetMTime(), made);
}

TEST_F(TORVOutlinedTextTest, ACopyHasTheSameLine)
{
    vtkNew<TORVOutlinedText> copy;
    copy->ShallowCopy(text);
    EXPECT_EQ(pictureOf(copy), pictureOf(text));
}
