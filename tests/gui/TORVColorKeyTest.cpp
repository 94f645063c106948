#include "gui/TORVColorKey.h"

#include "datalib/TORVDataType.h"
#include "gui/TORVPalette.h"
#include "utils/TORVDisplayMode.h"

#include "visualization/ColorFile.h"

#include <QApplication>
#include <QHBoxLayout>

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using Rgb = ColorFile::Rgb;
using Bands = std::vector<ColorFile::Band>;

const TORVDataType Reflectivity(2);
const Rgb Blue = {20, 60, 200};
const Rgb Green = {30, 180, 60};
const Rgb Yellow = {250, 220, 10};
const Rgb Red = {200, 20, 30};

constexpr int Width = 60;
constexpr int Height = 640;
constexpr int Apart = 2; // of 255, where two colours count as the same

Bands running(const std::vector<Rgb>& colors)
{
    Bands bands;
    for (std::size_t i = 0; i < colors.size(); ++i) {
        bands.push_back({colors[i], colors[std::min(i + 1, colors.size() - 1)]});
    }
    return bands;
}

Bands manyBands(int count)
{
    std::vector<Rgb> colors;
    for (int i = 0; i < count; ++i) {
        colors.push_back({10 + 12 * i, (90 * i) % 250, 255 - 12 * i});
    }
    return running(colors);
}

void expectNear(const QColor& color, const std::array<int, 3>& expected)
{
    EXPECT_NEAR(color.red(), expected[0], Apart);
    EXPECT_NEAR(color.green(), expected[1], Apart);
    EXPECT_NEAR(color.blue(), expected[2], Apart);
}

class TORVColorKeyTest : public testing::Test
{
protected:
    TORVColorKeyTest() { key.resize(Width, Height); }

    ~TORVColorKeyTest() override { TORVDisplayMode::setNight(false); }

    TORVColormap::Ptr load(const QList<QByteArray>& seams, const Bands& bands)
    {
        file.scale(1, "name=Default\nlabel_format=3.0f\n", seams).colors(1, bands).write();
        return boost::make_shared<TORVColormap>(1, Reflectivity, TORVColormap::DISPLAY_VALUES);
    }

    void show(const QList<QByteArray>& seams, const Bands& bands, const QVector<double>& values = {})
    {
        colormap = load(seams, bands);
        key.setColors(colormap, QStringLiteral("dBZ"), values);
    }

    QImage picture() { return key.grab().toImage(); }

    QColor onRamp(const QImage& image, double value) const
    {
        return image.pixelColor(static_cast<int>(key.getRampRect().center().x()),
                                static_cast<int>(std::floor(key.heightOf(value))));
    }

    // The rows left of the ramp that have something of the colour of texts.
    QVector<int> arrowRows(const QImage& image) const
    {
        const QColor text = TORVPalette::instance().color(QStringLiteral("text"), TORVDisplayMode::isNight());
        QVector<int> rows;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < static_cast<int>(key.getRampRect().left()); ++x) {
                if (image.pixelColor(x, y) == text) {
                    rows << y;
                    break;
                }
            }
        }
        return rows;
    }

    ColorFile file;
    TORVColormap::Ptr colormap;
    TORVColorKey key;
};

} // namespace

TEST_F(TORVColorKeyTest, ShowsEachValueInTheColourOfTheMap)
{
    show({"-30", "-10", "0", "20", "60"}, running({Blue, Green, Yellow, Red}));
    const QImage image = picture();
    // Bands are equally high: 20 dBZ of the first are as high as 10 of the second, so a row of pixels is 0.14 dBZ there
    // and 0.28 in the fourth.
    for (const double value : {-25.0, -10.5, -5.0, 5.0, 19.5, 30.0, 59.5}) {
        SCOPED_TRACE(value);
        expectNear(onRamp(image, value), colormap->getColor(value));
    }
}

TEST_F(TORVColorKeyTest, GivesEachBandTheSameHeight)
{
    show({"0.1", "1", "10", "100", "1000"}, running({Blue, Green, Yellow, Red}));
    const QRectF ramp = key.getRampRect();
    EXPECT_DOUBLE_EQ(key.heightOf(0.1), ramp.bottom());
    EXPECT_DOUBLE_EQ(key.heightOf(1.0), ramp.bottom() - ramp.height() / 4.0);
    EXPECT_DOUBLE_EQ(key.heightOf(10.0), ramp.bottom() - ramp.height() / 2.0);
    EXPECT_DOUBLE_EQ(key.heightOf(55.0), ramp.bottom() - ramp.height() * 0.625);
    EXPECT_DOUBLE_EQ(key.heightOf(1000.0), ramp.top());
}

TEST_F(TORVColorKeyTest, ShowsAStandingScaleAsSteps)
{
    show({"0", "10", "20"}, {{Blue, Blue}, {Green, Green}, {Red, Red}});
    const QImage image = picture();
    // The colour changes half-way between two seams.
    expectNear(onRamp(image, 0.5), Blue);
    expectNear(onRamp(image, 4.5), Blue);
    expectNear(onRamp(image, 5.5), Green);
    expectNear(onRamp(image, 14.5), Green);
    expectNear(onRamp(image, 15.5), Red);
}

TEST_F(TORVColorKeyTest, LeavesOutAColourThatNoSeamCloses)
{
    show({"0", "10", "20"}, running({Blue, Green, Yellow, Red}));
    EXPECT_DOUBLE_EQ(key.heightOf(20.0), key.getRampRect().top());
}

TEST_F(TORVColorKeyTest, ShowsTheBuiltInScale)
{
    const auto builtIn = boost::make_shared<TORVColormap>();
    key.setColors(builtIn, QStringLiteral("dBZ"), {});
    const QImage image = picture();
    for (const double value : {3.0, 40.0, 100.0, 250.0}) {
        SCOPED_TRACE(value);
        expectNear(onRamp(image, value), builtIn->getColor(value));
    }
}

TEST_F(TORVColorKeyTest, CarriesAnArrowAtEachSurface)
{
    show({"0", "20", "40", "60"}, running({Blue, Green, Yellow, Red}), {20.0, 35.0});
    const QVector<int> rows = arrowRows(picture());
    for (const double value : {20.0, 35.0}) {
        EXPECT_TRUE(rows.contains(static_cast<int>(std::lround(key.heightOf(value))))) << value;
    }
    EXPECT_FALSE(rows.contains(static_cast<int>(std::lround(key.heightOf(50.0)))));
    EXPECT_GE(rows.size(), 12);
    EXPECT_LE(rows.size(), 22) << "two arrows of ten pixels";
}

TEST_F(TORVColorKeyTest, PutsArrowsOfValuesBeyondTheScaleAtItsEnds)
{
    show({"0", "20", "40"}, running({Blue, Green, Red}), {-50.0, 500.0});
    const QVector<int> rows = arrowRows(picture());
    EXPECT_TRUE(rows.contains(static_cast<int>(key.getRampRect().top())));
    EXPECT_TRUE(rows.contains(static_cast<int>(key.getRampRect().bottom())));
}

TEST_F(TORVColorKeyTest, LeavesOutSurfacesAtWhatIsNoNumber)
{
    show({"0", "20", "40"}, running({Blue, Green, Red}),
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()});
    EXPECT_TRUE(arrowRows(picture()).isEmpty());
}

TEST_F(TORVColorKeyTest, NumbersEverySecondSeamFromZeroUpAndDown)
{
    show({"-30", "-10", "-5", "0", "5", "10", "15", "20", "25", "30"}, manyBands(9));
    EXPECT_EQ(key.getNumberedSeams(), (QVector<double>{-10, 0, 10, 20, 30}));
}

TEST_F(TORVColorKeyTest, NumbersAVelocityScaleAlikeOnBothSides)
{
    show({"-60", "-30", "-20", "-10", "-5", "-1", "1", "5", "10", "20", "30", "60"}, manyBands(11));
    EXPECT_EQ(key.getNumberedSeams(), (QVector<double>{-30, -10, -1, 1, 10, 30}));
}

TEST_F(TORVColorKeyTest, NumbersAScaleBelowZeroFromItsTop)
{
    show({"-90", "-80", "-70", "-60", "-50", "-40", "-30", "-20", "-10"}, manyBands(8));
    EXPECT_EQ(key.getNumberedSeams(), (QVector<double>{-90, -70, -50, -30, -10}));
}

TEST_F(TORVColorKeyTest, NumbersAllOfAFewSeams)
{
    show({"0", "20", "40", "60"}, running({Blue, Green, Red}));
    EXPECT_EQ(key.getNumberedSeams(), (QVector<double>{0, 20, 40, 60}));
}

TEST_F(TORVColorKeyTest, KeepsNumbersApartWhereThereIsLittleRoom)
{
    show({"-60", "-30", "-20", "-10", "-5", "-1", "1", "5", "10", "20", "30", "60"}, manyBands(11));
    key.resize(Width, 160);
    const QVector<double> numbered = key.getNumberedSeams();
    ASSERT_GE(numbered.size(), 2);
    for (int i = 1; i < numbered.size(); ++i) {
        EXPECT_GE(key.heightOf(numbered[i - 1]) - key.heightOf(numbered[i]), key.fontMetrics().height());
    }
}

TEST_F(TORVColorKeyTest, IsPaintedInEverySize)
{
    show({"0", "20", "40"}, running({Blue, Green, Red}), {20.0});
    for (const QSize size : {QSize(1, 1), QSize(60, 20), QSize(60, 50), QSize(200, 3000)}) {
        key.resize(size);
        EXPECT_EQ(picture().size(), size);
    }
}

TEST_F(TORVColorKeyTest, IsSixtyPixelsWideAndWiderForLongNumbers)
{
    QFont font = key.font();
    font.setPixelSize(11);
    key.setFont(font);
    show({"0", "20", "40"}, running({Blue, Green, Red}));
    EXPECT_EQ(key.sizeHint().width(), 60);
    show({"0", "2000000", "400000000"}, running({Blue, Green, Red}));
    EXPECT_GT(key.sizeHint().width(), 60);
}

TEST_F(TORVColorKeyTest, GrowsWithTheFont)
{
    show({"0", "200", "400"}, running({Blue, Green, Red}));
    const int narrow = key.sizeHint().width();
    QFont font = key.font();
    font.setPixelSize(33);
    key.setFont(font);
    EXPECT_GT(key.sizeHint().width(), narrow);
}

TEST_F(TORVColorKeyTest, IsOfThePaletteByDayAndByNight)
{
    const TORVPalette& palette = TORVPalette::instance();
    show({"0", "20", "40"}, running({Blue, Green, Red}), {20.0});
    for (const bool isNight : {false, true}) {
        TORVDisplayMode::setNight(isNight);
        const QImage image = picture();
        EXPECT_EQ(image.pixelColor(0, 0), palette.color(QStringLiteral("panel"), isNight));
        const int arrow = static_cast<int>(std::lround(key.heightOf(20.0)));
        EXPECT_EQ(image.pixelColor(4, arrow), palette.color(QStringLiteral("text"), isNight));
    }
}

TEST_F(TORVColorKeyTest, ShowsAnotherScaleWhenItIsGivenOne)
{
    show({"0", "20", "40"}, running({Blue, Blue, Blue}));
    picture();
    ColorFile other;
    other.scale(1, "name=Default\n", {"0", "20", "40"}).colors(1, running({Red, Red, Red})).write();
    key.setColors(boost::make_shared<TORVColormap>(1, Reflectivity, TORVColormap::DISPLAY_VALUES), QString(), {});
    expectNear(onRamp(picture(), 10.0), Red);
}

TEST_F(TORVColorKeyTest, KeepsItsColoursWhateverBecomesOfTheMap)
{
    show({"0", "20", "40"}, running({Blue, Green, Red}));
    colormap->setPiecewiseConstant();
    expectNear(onRamp(picture(), 10.0), {25, 120, 130}); // half-way from blue to green
}

TEST_F(TORVColorKeyTest, ShowsItsGroundOnlyWhereThereIsNoProduct)
{
    show({"0", "20", "40"}, running({Blue, Green, Red}), {20.0});
    key.clear();
    QImage ground(picture().size(), QImage::Format_RGB32);
    ground.fill(TORVPalette::instance().color(QStringLiteral("panel"), false));
    EXPECT_EQ(picture().convertToFormat(QImage::Format_RGB32), ground);
    EXPECT_TRUE(key.getRampRect().isEmpty());
    EXPECT_TRUE(key.getNumberedSeams().isEmpty());
}

TEST_F(TORVColorKeyTest, TakesAMissingMapAsNoProduct)
{
    show({"0", "20", "40"}, running({Blue, Green, Red}));
    key.setColors(nullptr, QStringLiteral("dBZ"), {20.0});
    EXPECT_TRUE(key.getRampRect().isEmpty());
}

TEST_F(TORVColorKeyTest, TellsInWordsWhatItShows)
{
    EXPECT_EQ(key.accessibleName(), QStringLiteral("Colour key"));
    EXPECT_EQ(key.accessibleDescription(), QStringLiteral("No product is shown"));
    show({"-10", "20", "40"}, running({Blue, Green, Red}), {35.0, 20.0, 20.0});
    EXPECT_EQ(key.accessibleDescription(),
              QStringLiteral("Colours from \u221210 to 40 dBZ\nArrows: surfaces at 20, 35 dBZ"));
    EXPECT_EQ(key.toolTip(), key.accessibleDescription());
}

TEST_F(TORVColorKeyTest, IsSharpOnADenseScreen)
{
    show({"0", "20"}, {{Blue, Blue}, {Red, Red}});
    QPixmap pixmap(2 * key.size());
    pixmap.setDevicePixelRatio(2.0);
    key.render(&pixmap);
    const QImage image = pixmap.toImage();
    // The step lies between two neighbouring pixels of the screen, with no shade between them.
    const int x = 2 * static_cast<int>(key.getRampRect().center().x());
    int shades = 0;
    for (int y = 2 * static_cast<int>(key.getRampRect().top()); y < 2 * static_cast<int>(key.getRampRect().bottom());
         ++y) {
        const QColor color = image.pixelColor(x, y);
        shades += std::abs(color.red() - Blue[0]) > Apart && std::abs(color.red() - Red[0]) > Apart ? 1 : 0;
    }
    EXPECT_EQ(shades, 0);
}
