#include "gui/TORVColorStrip.h"

#include "visualization/ColorFile.h"
#include "visualization/TORVColormap.h"

#include "datalib/TORVDataType.h"

#include <QImage>

#include <gtest/gtest.h>

namespace
{

const TORVDataType Reflectivity(2);

class TORVColorStripTest : public testing::Test
{
protected:
    TORVColorStripTest() { font.setPixelSize(12); }

    // A scale of that many seams, black but for the last band.
    TORVColormap colormap(const QList<QByteArray>& seams)
    {
        std::vector<ColorFile::Band> bands(static_cast<std::size_t>(seams.size()), {{0, 0, 0}, {0, 0, 0}});
        bands.back() = {{250, 250, 250}, {250, 250, 250}};
        file.scale(1, "name=Default\nlabel_format=%3.0f\n", seams).colors(1, bands).write();
        return TORVColormap(1, Reflectivity, TORVColormap::DISPLAY_VALUES);
    }

    QImage drawn(const TORVColormap& map, int width, double ratio = 1.0) const
    {
        return TORVColorStrip::draw(map, width, font, Qt::red, ratio).toImage();
    }

    // How many numbers stand below the ramp, as groups of columns with ink that lie 4 pixels apart or more.
    static int numbersIn(const QImage& strip)
    {
        int count = 0;
        int blank = 4;
        for (int x = 0; x < strip.width(); ++x) {
            bool hasInk = false;
            for (int y = TORVColorStrip::Ramp_px + 1; y < strip.height(); ++y) {
                hasInk = hasInk || strip.pixelColor(x, y).alpha() > 60;
            }
            count += hasInk && blank >= 4 ? 1 : 0;
            blank = hasInk ? 0 : blank + 1;
        }
        return count;
    }

    QFont font;
    ColorFile file;
};

} // namespace

TEST_F(TORVColorStripTest, IsAsWideAsItIsTold)
{
    const QImage strip = drawn(colormap({"0", "10", "20"}), 300);
    EXPECT_EQ(strip.size(), QSize(300, TORVColorStrip::heightFor(font)));
}

TEST_F(TORVColorStripTest, HasThePixelsOfTheScreen)
{
    const TORVColormap map = colormap({"0", "10", "20"});
    EXPECT_EQ(drawn(map, 300, 2.0).size(), QSize(600, 2 * TORVColorStrip::heightFor(font)));
    EXPECT_EQ(TORVColorStrip::draw(map, 300, font, Qt::red, 2.0).devicePixelRatio(), 2.0);
}

TEST_F(TORVColorStripTest, EachBandIsAsWideAsTheOthers)
{
    // From black to white in the second of two bands, whatever the values.
    const QImage strip = drawn(colormap({"0", "10", "1000"}), 300);
    EXPECT_EQ(strip.pixelColor(140, 6), QColor(Qt::black));
    EXPECT_GT(strip.pixelColor(220, 6).red(), 100);
}

TEST_F(TORVColorStripTest, NumbersStandAtAsManySeamsAsThereIsRoomFor)
{
    const TORVColormap map = colormap({"0", "10", "20", "30", "40", "50", "60", "70", "80"});
    EXPECT_EQ(numbersIn(drawn(map, 400)), 9);
    EXPECT_EQ(numbersIn(drawn(map, 140)), 5);
}

TEST_F(TORVColorStripTest, AStripTooNarrowForItsNumbersStillEnds)
{
    const TORVColormap map = colormap({"-10", "-1", "1", "10"});
    EXPECT_LE(numbersIn(drawn(map, 30)), 1);
    EXPECT_TRUE(TORVColorStrip::draw(map, 3, font, Qt::red, 1.0).isNull());
}

TEST_F(TORVColorStripTest, AScaleOfOneSeamIsOneColour)
{
    const QImage strip = drawn(colormap({"20"}), 100);
    EXPECT_EQ(strip.pixelColor(20, 6), strip.pixelColor(80, 6));
}
