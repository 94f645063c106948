#include "RendererTest.h"

#include <vtkLegendBoxActor.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindow.h>
#include <vtkRendererCollection.h>
#include <vtkTextProperty.h>

namespace
{

class TORVRendererInfoTest : public RendererTest
{
protected:
    static constexpr QRgb Strip = 0xFFCCCCCC; // 0.8 each

    void setInfo() { renderer.setInfoData(frame(Moment), observer.general); }

    vtkLegendBoxActor* legend()
    {
        vtkPropCollection* const props = renderer.getRenderer()->GetViewProps();
        props->InitTraversal();
        while (vtkProp* const prop = props->GetNextProp()) {
            if (auto* const box = vtkLegendBoxActor::SafeDownCast(prop)) {
                return box;
            }
        }
        return nullptr;
    }

    bool isScaleShown() { return scene.window()->HasRenderer(renderer.getColorScaleRenderer()); }

    TORVRenderer renderer{scene.window(), nullptr, nullptr, false};
};

} // namespace

TEST_F(TORVRendererInfoTest, ShowsNeitherUnasked)
{
    setInfo();
    EXPECT_EQ(legend(), nullptr);
    EXPECT_FALSE(isScaleShown());
}

TEST_F(TORVRendererInfoTest, ShowsEachAtOnceWhenItIsTurnedOn)
{
    setInfo();
    renderer.toggleLegend(true);
    renderer.toggleColorScale(true);
    EXPECT_NE(legend(), nullptr);
    EXPECT_TRUE(isScaleShown());
    renderer.toggleLegend(false);
    renderer.toggleColorScale(false);
    EXPECT_EQ(legend(), nullptr);
    EXPECT_FALSE(isScaleShown());
}

TEST_F(TORVRendererInfoTest, ShowsWhatIsOnWhenTheDataComes)
{
    renderer.toggleLegend(true);
    renderer.toggleColorScale(true);
    EXPECT_EQ(legend(), nullptr);
    setInfo();
    EXPECT_NE(legend(), nullptr);
    EXPECT_TRUE(isScaleShown());
}

TEST_F(TORVRendererInfoTest, WritesEachLineOfTheFramesLegend)
{
    const int mark = static_cast<int>(log.lines().size());
    setInfo();
    renderer.toggleLegend(true);
    const QStringList lines = frame(Moment)->getLegend(observer.general);
    ASSERT_EQ(legend()->GetNumberOfEntries(), lines.size());
    for (int i = 0; i < lines.size(); ++i) {
        EXPECT_EQ(QString::fromUtf8(legend()->GetEntryString(i)), lines[i]);
        const QString entry = QStringLiteral("Legend %1 %2").arg(i).arg(lines[i]);
        EXPECT_FALSE(linesSince(mark).filter(entry).isEmpty()) << qPrintable(entry);
    }
}

TEST_F(TORVRendererInfoTest, PutsTheLegendIntoTheLowerLeftCorner)
{
    setInfo();
    renderer.toggleLegend(true);
    EXPECT_EQ(legend()->GetPosition()[0], 0.01);
    EXPECT_EQ(legend()->GetPosition()[1], 0.01);
    EXPECT_FALSE(legend()->GetBorder());
}

TEST_F(TORVRendererInfoTest, DrawsTheScaleOnItsStripAtTheUpperLeft)
{
    setInfo();
    renderer.toggleColorScale(true);
    const QImage picture = scene.picture(); // 300 x 300
    EXPECT_EQ(picture.pixel(4, 120), Strip);
    EXPECT_EQ(picture.pixel(4, 130), DefaultBackground); // the strip ends at 0.59 from below
    EXPECT_EQ(picture.pixel(1, 60), DefaultBackground);
    bool isOrangeSeen = false;
    for (int y = 3; y < 123; ++y) {
        for (int x = 3; x < 100; ++x) {
            isOrangeSeen = isOrangeSeen || picture.pixel(x, y) == qRgb(0xFA, 0xAA, 0x28);
        }
    }
    EXPECT_TRUE(isOrangeSeen);
}

TEST_F(TORVRendererInfoTest, MakesTheStripAsWideAsItsTextsNeed)
{
    setInfo();
    renderer.toggleColorScale(true);
    scene.picture();
    const double at72 = renderer.getColorScaleRenderer()->GetViewport()[2];
    EXPECT_GT(at72, 0.05);
    scene.window()->SetDPI(144);
    scene.picture();
    EXPECT_GT(renderer.getColorScaleRenderer()->GetViewport()[2], 1.5 * at72);
}

TEST_F(TORVRendererInfoTest, ForgetsBothWithTheData)
{
    renderer.toggleLegend(true);
    renderer.toggleColorScale(true);
    setInfo();
    renderer.removeInfoData();
    EXPECT_EQ(legend(), nullptr);
    EXPECT_FALSE(isScaleShown());
    renderer.toggleLegend(true);
    EXPECT_EQ(legend(), nullptr);
}

TEST_F(TORVRendererInfoTest, RecoloursItsTextsWithTheMode)
{
    home.write(QStringLiteral(".config/Halmera/TORV3DVisStyles.conf"),
               "[RENDERER_NIGHT]\nlegend\\text\\color\\g=0.5\n");
    setInfo();
    renderer.toggleLegend(true);
    EXPECT_EQ(legend()->GetEntryTextProperty()->GetColor()[1], 0.0);
    TORVDisplayMode::setNight(true);
    renderer.updateLights();
    EXPECT_EQ(legend()->GetEntryTextProperty()->GetColor()[1], 0.5);
}

TEST_F(TORVRendererInfoTest, LogsWhatIsToggled)
{
    const int mark = static_cast<int>(log.lines().size());
    renderer.toggleCompass(true);
    renderer.toggleColorScale(true);
    renderer.toggleLegend(false);
    const QString all = linesSince(mark).join(QLatin1Char('\n'));
    EXPECT_TRUE(all.contains(QLatin1String("--- TORVRenderer: Compass on")));
    EXPECT_TRUE(all.contains(QLatin1String("--- TORVRenderer: Color bar on")));
    EXPECT_TRUE(all.contains(QLatin1String("--- TORVRenderer: Legend off")));
}

using TORVRendererInfoDeathTest = TORVRendererInfoTest;

TEST_F(TORVRendererInfoDeathTest, StopsWithoutAFrame)
{
    EXPECT_DEATH(renderer.setInfoData({}, observer.general), "dataFrame");
}

TEST_F(TORVRendererInfoDeathTest, StopsAtAFrameWithoutAVolume)
{
    const auto empty = boost::make_shared<TORVDataFrame>(store);
    EXPECT_DEATH(renderer.setInfoData(empty, observer.general), "getData3d");
}

TEST_F(TORVRendererInfoDeathTest, StopsWithoutSettings)
{
    const auto shown = frame(Moment);
    EXPECT_DEATH(renderer.setInfoData(shown, {}), "settings");
}
