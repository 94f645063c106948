#include "support/ImageCompare.h"

#include <gtest/gtest.h>

namespace
{

QImage plain(QRgb colour)
{
    QImage image(300, 300, QImage::Format_RGB32);
    image.fill(colour);
    return image;
}

// Two neighbours of the palette for reflectivity: 45 and 50 dBZ.
const QRgb At45 = qRgb(0xFA, 0xAA, 0x28);
const QRgb At50 = qRgb(0xF7, 0x7C, 0x10);

} // namespace

TEST(ImageCompare, CallsAPictureTheSameAsItself)
{
    const ImageCompare::Result result = ImageCompare::compare(plain(At45), plain(At45));
    EXPECT_TRUE(result.isSame);
    EXPECT_EQ(result.badPixels, 0);
    EXPECT_EQ(result.meanError, 0.0);
}

TEST(ImageCompare, FailsOnePaletteStepOff)
{
    EXPECT_FALSE(ImageCompare::compare(plain(At50), plain(At45)).isSame);
}

TEST(ImageCompare, FailsAPatchOfOnePaletteStepOff)
{
    QImage image = plain(At45);
    for (int y = 100; y < 130; ++y) {
        for (int x = 100; x < 130; ++x) {
            image.setPixel(x, y, At50); // 900 of 90000 pixels: 1 %
        }
    }
    const ImageCompare::Result result = ImageCompare::compare(image, plain(At45));
    EXPECT_FALSE(result.isSame);
    EXPECT_EQ(result.badPixels, 900);
    EXPECT_EQ(result.difference.pixel(110, 110), qRgb(255, 255, 255));
    EXPECT_EQ(result.difference.pixel(10, 10), qRgb(0, 0, 0));
}

TEST(ImageCompare, ForgivesTheRoundingOfAnotherDriver)
{
    EXPECT_TRUE(ImageCompare::compare(plain(qRgb(0xFA, 0xAA, 0x28)), plain(qRgb(0xF9, 0xAB, 0x28))).isSame);
}

TEST(ImageCompare, FailsWhatIsAFaintShadeOffEverywhere)
{
    // 6 in each channel is under the limit for a pixel; the mean of 6 is over the limit for the picture.
    EXPECT_FALSE(ImageCompare::compare(plain(qRgb(100, 100, 100)), plain(qRgb(106, 106, 106))).isSame);
}

TEST(ImageCompare, FailsAnotherSizeAndNoPicture)
{
    EXPECT_FALSE(ImageCompare::compare(plain(At45).scaled(299, 300), plain(At45)).isSame);
    EXPECT_FALSE(ImageCompare::compare(QImage(), QImage()).isSame);
}

TEST(ImageCompare, FailsWithoutABaselineAndKeepsThePicture)
{
    const QString words = ImageCompare::againstBaseline(plain(At45), QStringLiteral("there-is-none"));
    EXPECT_TRUE(words.contains(QStringLiteral("there-is-none.actual.png")));
}
