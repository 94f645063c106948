// The picture that is shown while the program starts, and the program that letters it.
#include "support/ProcessRun.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

const QColor Ground(0x18, 0x15, 0x12);
const QString Storm = QStringLiteral(TORV_SOURCE_DIR "/resources/splash/storm.png");

int brightest(const QImage& image, const QRect& area)
{
    int most = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            most = std::max(most, qGray(image.pixel(x, y)));
        }
    }
    return most;
}

int different(const QImage& one, const QImage& other)
{
    int count = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            count += one.pixel(x, y) != other.pixel(x, y) ? 1 : 0;
        }
    }
    return count;
}

class SplashMakerTest : public testing::Test
{
protected:
    ProcessRun::Outcome make(const QStringList& arguments) const
    {
        return ProcessRun(QStringLiteral(TORV_SPLASHMAKER))(arguments);
    }

    QString out() const { return directory.filePath(QStringLiteral("out")); }

    QImage made(const QString& version) const
    {
        EXPECT_EQ(make({Storm, version, out()}).exitCode, 0);
        return QImage(out() + QStringLiteral("/splash_screen.png"));
    }

    QTemporaryDir directory;
};

} // namespace

TEST(Splash, IsThereForPlainAndForDenseScreens)
{
    EXPECT_EQ(QImage(QStringLiteral(":/icons/splash_screen.png")).size(), QSize(640, 360));
    EXPECT_EQ(QImage(QStringLiteral(":/icons/splash_screen@2x.png")).size(), QSize(1280, 720));
}

TEST(Splash, HasTheGroundOfTheNightWithoutBorderOrWhite)
{
    const QImage image(QStringLiteral(":/icons/splash_screen.png"));
    for (const QPoint corner : {QPoint(0, 0), QPoint(639, 0), QPoint(0, 359)}) {
        EXPECT_EQ(image.pixelColor(corner), Ground);
    }
    EXPECT_LT(brightest(image, image.rect()), 0xD0) << "the name is the brightest, #CDBEA4";
}

TEST(Splash, CarriesTheNameAtTheUpperRight)
{
    const QImage image(QStringLiteral(":/icons/splash_screen.png"));
    EXPECT_GT(brightest(image, QRect(430, 30, 180, 50)), 0xA0);
}

TEST(Splash, ShowsTheStormLeftOfTheCentre)
{
    const QImage image(QStringLiteral(":/icons/splash_screen.png"));
    int left = 0;
    int right = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            (x < image.width() / 2 ? left : right) += image.pixelColor(x, y).hsvSaturation() > 140 ? 1 : 0;
        }
    }
    EXPECT_GT(left, 10000);
    EXPECT_LT(right, left / 4);
}

TEST_F(SplashMakerTest, WritesTheVersion)
{
    const QImage one = made(QStringLiteral("1.0.2"));
    const QImage other = made(QStringLiteral("9.8.7"));
    ASSERT_EQ(one.size(), QSize(640, 360));
    EXPECT_GT(different(one, other), 10);
    EXPECT_EQ(different(one.copy(0, 0, 640, 80), other.copy(0, 0, 640, 80)), 0) << "name and storm stay";
}

TEST_F(SplashMakerTest, RefusesWhatIsNoPicture)
{
    const ProcessRun::Outcome outcome =
        make({directory.filePath(QStringLiteral("none.png")), QStringLiteral("1"), out()});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.errors.contains(QLatin1String("no picture"))) << qUtf8Printable(outcome.errors);
}

TEST_F(SplashMakerTest, SaysWhenItCannotWrite)
{
    QFile file(out());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)); // where the directory should be
    const ProcessRun::Outcome outcome = make({Storm, QStringLiteral("1"), out()});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(outcome.errors.contains(QLatin1String("can't be written"))) << qUtf8Printable(outcome.errors);
}

TEST_F(SplashMakerTest, TellsHowItIsUsed)
{
    const ProcessRun::Outcome outcome = make({});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_TRUE(outcome.errors.contains(QLatin1String("usage"))) << qUtf8Printable(outcome.errors);
}
