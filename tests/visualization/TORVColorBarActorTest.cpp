#include "visualization/TORVColorBarActor.h"

#include "datalib/TORVDataType.h"
#include "visualization/TORVColormap.h"

#include "radarsim/TORVColorScale.h"
#include "radarsim/TORVDemoSettings.h"
#include "support/ImageCompare.h"
#include "support/OffscreenScene.h"
#include "visualization/ColorFile.h"

#include <gtest/gtest.h>

#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkScalarsToColors.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace
{

using Rgb = ColorFile::Rgb;

struct Mode
{
    const char* name;
    std::array<double, 3> ground;
    std::array<double, 3> text;
};

// The strip's ground and the text on it, by day and by night.
const Mode Day = {"day", {.165, .208, .243}, {.894, .918, .933}};
const Mode Night = {"night", {.094, .082, .071}, {.804, .745, .643}};

int difference(QRgb one, QRgb other)
{
    return std::max({std::abs(qRed(one) - qRed(other)), std::abs(qGreen(one) - qGreen(other)),
                     std::abs(qBlue(one) - qBlue(other))});
}

QRgb pixelOf(const std::array<double, 3>& rgb)
{
    return qRgb(static_cast<int>(std::lround(rgb[0] * 255.0)), static_cast<int>(std::lround(rgb[1] * 255.0)),
                static_cast<int>(std::lround(rgb[2] * 255.0)));
}

/// A strip with a legend in it.
class Strip
{
public:
    Strip(const TORVColormap& map, const QString& title, const Mode& mode, int width, int height)
        : scene(width, height), bar(TORVColorBarActor::SafeDownCast(map.makeBar(title, 0.1, 0.05, 0.8, 0.95)))
    {
        renderer->SetBackground(mode.ground[0], mode.ground[1], mode.ground[2]);
        bar->SetTextColor(mode.text[0], mode.text[1], mode.text[2]);
        renderer->AddActor2D(bar);
        scene.window()->AddRenderer(renderer);
        picture = scene.picture();
        bar->GetScalarBarRect(ramp, renderer);
        ground = pixelOf(mode.ground);
    }

    /// Row of the picture at a height over the ramp's lower end, 0 to 1.
    int row(double part) const
    {
        const double fromBottom = ramp[1] + part * ramp[3];
        return std::clamp(static_cast<int>(std::floor(picture.height() - fromBottom)), 0, picture.height() - 1);
    }

    QRgb rampPixel(int row) const { return picture.pixel(ramp[0] + ramp[2] / 2, row); }

    /// Rows, right of the ticks, that hold something.
    std::vector<int> textRows() const
    {
        std::vector<int> rows;
        const int from = ramp[0] + ramp[2] + TickPixels;
        for (int y = row(1.0) - RowPixels / 2; y < picture.height(); ++y) {
            for (int x = from; x < picture.width(); ++x) {
                if (difference(picture.pixel(x, std::max(y, 0)), ground) > 90) {
                    rows.push_back(y);
                    break;
                }
            }
        }
        return rows;
    }

    /// Middles of the numbers, from top to bottom.
    std::vector<double> numberRows() const
    {
        const std::vector<int> rows = textRows();
        std::vector<double> middles;
        for (std::size_t first = 0; first < rows.size();) {
            std::size_t last = first;
            while (last + 1 < rows.size() && rows[last + 1] == rows[last] + 1) {
                ++last;
            }
            middles.push_back((rows[first] + rows[last]) / 2.0);
            first = last + 1;
        }
        return middles;
    }

    int inkedPixels() const
    {
        int count = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                count += difference(picture.pixel(x, y), ground) > 40 ? 1 : 0;
            }
        }
        return count;
    }

    static constexpr int TickPixels = 6;
    static constexpr int RowPixels = 15;

    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
    vtkSmartPointer<TORVColorBarActor> bar;
    QImage picture;
    int ramp[4] = {0, 0, 0, 0};
    QRgb ground = 0;
};

class TORVColorBarActorTest : public testing::Test
{
protected:
    static TORVColormap map(int number = 1)
    {
        return TORVColormap(number, TORVDataType(2), TORVColormap::DISPLAY_VALUES);
    }

    // Colours that nothing else in the picture has.
    TORVColormap stepped()
    {
        file.scale(1, "data_units=dBZ\n", {"0", "10", "20", "30"})
            .colors(1, {{{200, 0, 0}, {200, 0, 0}}, {{0, 200, 0}, {0, 200, 0}}, {{0, 0, 200}, {0, 0, 200}}})
            .write();
        return map();
    }

    ColorFile file;
};

class DemoScaleTest : public TORVColorBarActorTest, public testing::WithParamInterface<int>
{
protected:
    DemoScaleTest() { EXPECT_EQ(TORVDemoSettings(file.home().path()).writeColors(), QString()); }

    const TORVColorScale& scale() const { return TORVColorScale::all().at(static_cast<std::size_t>(GetParam() - 1)); }

    QString title() const
    {
        for (const TORVColorGroup& group : TORVColorGroup::byDataType()) {
            if (group.group == scale().group) {
                return QString::fromLatin1(group.legend);
            }
        }
        return {};
    }

    std::vector<double> seams() const
    {
        std::vector<double> values;
        for (const TORVColorScale::Stop& stop : scale().stops) {
            values.push_back(stop.value);
        }
        values.push_back(scale().topSeam);
        return values;
    }

    void expectLegend(const Mode& mode)
    {
        const Strip strip(map(GetParam()), title(), mode, 130, 420);
        ASSERT_GT(strip.ramp[3], 300);
        expectRamp(strip);
        expectNumbers(strip);
    }

    // Each band has the same height; the colours are those that the scale was written from.
    void expectRamp(const Strip& strip)
    {
        const std::vector<double> values = seams();
        const std::size_t bands = values.size() - 1;
        for (std::size_t band = 0; band < bands; ++band) {
            const int row = strip.row((static_cast<double>(band) + 0.5) / static_cast<double>(bands));
            const uint32_t color = scale().colorAt((values[band] + values[band + 1]) / 2.0);
            EXPECT_LE(difference(strip.rampPixel(row), qRgb(0, 0, 0) | color), 8) << "band " << band;
        }
    }

    // Evenly spaced from the lowest seam on.
    void expectNumbers(const Strip& strip)
    {
        const std::vector<double> rows = strip.numberRows();
        ASSERT_GE(rows.size(), 6U);
        const auto bands = static_cast<int>(seams().size()) - 1;
        const double spacing = static_cast<double>(strip.ramp[3]) / bands;
        EXPECT_NEAR(rows.back(), strip.row(0.0), 1.5);
        for (std::size_t i = 0; i + 1 < rows.size(); ++i) {
            const double steps = (rows[i + 1] - rows[i]) / spacing;
            EXPECT_NEAR(steps, std::round(steps), 1.5 / spacing) << i;
            EXPECT_GE(rows[i + 1] - rows[i], 13.0) << i;
        }
    }
};

} // namespace

INSTANTIATE_TEST_SUITE_P(All, DemoScaleTest, testing::Range(1, static_cast<int>(TORVColorScale::all().size()) + 1));

TEST_P(DemoScaleTest, CanBeReadByDay)
{
    expectLegend(Day);
}

TEST_P(DemoScaleTest, CanBeReadByNight)
{
    expectLegend(Night);
}

TEST_P(DemoScaleTest, NeedsNoMoreRoomThanItSays)
{
    const Strip wide(map(GetParam()), title(), Day, 400, 420);
    // The box is 0.8 of the strip.
    const int width = static_cast<int>(std::ceil(wide.bar->GetNeededWidth(wide.scene.window()->GetDPI()) / 0.8));
    EXPECT_LT(width, 150);
    const Strip narrow(map(GetParam()), title(), Day, width, 420);
    EXPECT_NEAR(narrow.inkedPixels(), wide.inkedPixels(), 0.01 * wide.inkedPixels());
}

TEST_F(TORVColorBarActorTest, GivesTheTopBandItsHeight)
{
    const Strip strip(stepped(), QStringLiteral("Steps"), Day, 130, 420);
    // Steps half-way between the seams: red to 1/6, green to 1/2, blue above.
    EXPECT_EQ(strip.rampPixel(strip.row(0.10)), qRgb(200, 0, 0));
    EXPECT_EQ(strip.rampPixel(strip.row(0.20)), qRgb(0, 200, 0));
    EXPECT_EQ(strip.rampPixel(strip.row(0.47)), qRgb(0, 200, 0));
    EXPECT_EQ(strip.rampPixel(strip.row(0.53)), qRgb(0, 0, 200));
    EXPECT_EQ(strip.rampPixel(strip.row(0.97)), qRgb(0, 0, 200));
}

TEST_F(TORVColorBarActorTest, PutsANumberAtEverySeam)
{
    const Strip strip(stepped(), QStringLiteral("Steps"), Day, 130, 420);
    const std::vector<double> rows = strip.numberRows();
    ASSERT_EQ(rows.size(), 4U);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(rows[i], strip.row(1.0 - static_cast<double>(i) / 3.0), 1.5) << i;
    }
}

TEST_F(TORVColorBarActorTest, LeavesNumbersOutWhereThereIsNoRoom)
{
    const TORVColormap scale = stepped();
    EXPECT_EQ(Strip(scale, QString(), Day, 130, 100).numberRows().size(), 4U);
    EXPECT_EQ(Strip(scale, QString(), Day, 130, 70).numberRows().size(), 2U); // first and last
}

TEST_F(TORVColorBarActorTest, IsDrawnInABoxThatIsTooSmall)
{
    const TORVColormap scale = stepped();
    for (const int size : {1, 5, 20}) {
        const Strip strip(scale, QStringLiteral("Steps"), Day, size, size);
        EXPECT_GE(strip.ramp[3], 0) << size;
    }
}

TEST_F(TORVColorBarActorTest, HasTheUnitUnderTheTitle)
{
    const TORVColormap scale = stepped();
    EXPECT_STREQ(scale.makeBar(QStringLiteral("Steps"), 0, 0, 1, 1)->GetTitle(), "Steps\ndBZ");
    file.raw("[COLORSCALE 2]\npoints\\1\\seam=0\npoints\\size=1\n").write();
    EXPECT_STREQ(map().makeBar(QStringLiteral("Steps"), 0, 0, 1, 1)->GetTitle(), "Steps\ndBZ");
}

TEST_F(TORVColorBarActorTest, LeavesAMissingUnitOut)
{
    file.scale(1, "", {"0", "10"}).colors(1, {{{1, 2, 3}, {4, 5, 6}}}).write();
    EXPECT_STREQ(map().makeBar(QStringLiteral("Steps"), 0, 0, 1, 1)->GetTitle(), "Steps");
}

TEST_F(TORVColorBarActorTest, TakesAnyTextForTheTitle)
{
    const TORVColormap scale = stepped();
    for (const QString& title : {QString(), QStringLiteral("$x^2$|%s%n"), QString(5000, QLatin1Char('m')),
                                 QString::fromUtf8("Säteisnopeus °"), QStringLiteral("a\nb\nc")}) {
        const Strip strip(scale, title, Day, 130, 420);
        EXPECT_EQ(strip.numberRows().size(), 4U) << qUtf8Printable(title.left(20));
    }
}

TEST_F(TORVColorBarActorTest, ChangesItsColourInPlace)
{
    Strip strip(stepped(), QString(), Day, 130, 420);
    strip.bar->SetTextColor(1.0, 0.0, 0.0);
    strip.picture = strip.scene.picture();
    bool isRed = false;
    for (const int row : strip.textRows()) {
        for (int x = strip.ramp[0] + strip.ramp[2] + Strip::TickPixels; x < strip.picture.width(); ++x) {
            isRed = isRed || difference(strip.picture.pixel(x, row), qRgb(255, 0, 0)) < 30;
        }
    }
    EXPECT_TRUE(isRed);
}

TEST_F(TORVColorBarActorTest, FollowsTheSizeOfItsWindow)
{
    Strip strip(stepped(), QStringLiteral("Steps"), Day, 130, 420);
    strip.scene.window()->SetSize(130, 210);
    strip.picture = strip.scene.picture();
    int ramp[4];
    strip.bar->GetScalarBarRect(ramp, strip.renderer);
    EXPECT_LT(ramp[3], 210);
    std::copy(std::begin(ramp), std::end(ramp), std::begin(strip.ramp));
    EXPECT_EQ(strip.rampPixel(strip.row(0.97)), qRgb(0, 0, 200));
}

TEST_F(TORVColorBarActorTest, GrowsWithItsTexts)
{
    Strip strip(stepped(), QStringLiteral("Steps"), Day, 130, 420);
    strip.bar->GetLabelTextProperty()->SetFontSize(22); // a display of twice as many pixels
    int ramp[4];
    strip.bar->GetScalarBarRect(ramp, strip.renderer);
    EXPECT_NEAR(ramp[2], 2 * strip.ramp[2], 1);
}

TEST_F(TORVColorBarActorTest, ShowsNothingWithoutTwoSeams)
{
    file.scale(1, "", {"5"}).colors(1, {{{200, 0, 0}, {0, 0, 0}}}).write();
    const Strip strip(map(), QString(), Day, 130, 420);
    EXPECT_EQ(strip.inkedPixels(), 0);
}

TEST_F(TORVColorBarActorTest, TheMapIsNotChangedByItsLegend)
{
    const TORVColormap scale = stepped();
    scale.makeBar(QString(), 0, 0, 1, 1);
    EXPECT_EQ(scale.getColor(30.0), (Rgb{0, 0, 200}));
    EXPECT_NE(scale.getMap(), scale.makeBar(QString(), 0, 0, 1, 1)->GetLookupTable());
}

TEST_F(TORVColorBarActorTest, LooksAsItDidBefore)
{
    EXPECT_EQ(TORVDemoSettings(file.home().path()).writeColors(), QString());
    const Strip strip(map(), QStringLiteral("Reflectivity"), Night, 130, 420);
    EXPECT_EQ(ImageCompare::againstBaseline(strip.picture, QStringLiteral("color-bar")), QString());
}
