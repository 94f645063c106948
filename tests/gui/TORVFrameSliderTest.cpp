#include "gui/TORVFrameSlider.h"

#include "gui/TORVPalette.h"
#include "utils/TORVDisplayMode.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <limits>

namespace
{

QColor colorOf(const char* name)
{
    return TORVPalette::instance().color(QLatin1String(name), TORVDisplayMode::isNight());
}

QString sheet()
{
    return QStringLiteral("QSlider { border: 2px solid transparent; }"
                          "QSlider::groove:horizontal { height: 4px; background: %1; }"
                          "QSlider::sub-page:horizontal { background: %2; }"
                          "QSlider::handle:horizontal { width: 14px; margin: -7px 0px; border: 2px solid %2; }")
        .arg(colorOf("line").name(), colorOf("accent").name());
}

class TORVFrameSliderTest : public testing::Test
{
protected:
    TORVFrameSliderTest()
    {
        slider.setStyleSheet(sheet());
        slider.resize(640, 32);
        slider.setRange(0, 11);
    }

    ~TORVFrameSliderTest() override { TORVDisplayMode::setNight(false); }

    // Where the marks stand, looked for in one row of their pixels.
    QVector<int> marks()
    {
        const QImage image = slider.grab().toImage();
        const int y = slider.placeOf(slider.minimum()).y() - 11;
        QVector<int> places;
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (color == colorOf("accent") || color == colorOf("control")) {
                places << x;
            }
        }
        return places;
    }

    TORVFrameSlider slider;
};

} // namespace

TEST_F(TORVFrameSliderTest, HasAMarkAboveEachFrame)
{
    QVector<int> expected;
    for (int frame = 0; frame <= 11; ++frame) {
        expected << slider.placeOf(frame).x();
    }
    EXPECT_EQ(marks(), expected);
}

TEST_F(TORVFrameSliderTest, HasNoMarkForASingleFrame)
{
    slider.setRange(0, 0);
    EXPECT_TRUE(slider.getMarkedValues().isEmpty());
    EXPECT_TRUE(marks().isEmpty());
}

TEST_F(TORVFrameSliderTest, ThinsMarksThatWouldRunTogether)
{
    // 640 px less borders and handle are about 618 px for 300 steps: 2 px each, so that every fifth has a mark.
    slider.setRange(0, 300);
    const QVector<int> values = slider.getMarkedValues();
    EXPECT_EQ(values.size(), 61);
    EXPECT_EQ(values.first(), 0);
    EXPECT_EQ(values[1], 5);
    EXPECT_EQ(values.last(), 300);
}

TEST_F(TORVFrameSliderTest, EndsWhateverTheRange)
{
    slider.setRange(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    EXPECT_LE(slider.getMarkedValues().size(), 120);
    slider.resize(1, 1);
    EXPECT_LE(slider.getMarkedValues().size(), 1);
}

TEST_F(TORVFrameSliderTest, PaintsThePassedMarksInTheAccent)
{
    slider.setValue(6);
    const QImage image = slider.grab().toImage();
    const int y = slider.placeOf(0).y() - 11;
    EXPECT_EQ(image.pixelColor(slider.placeOf(5).x(), y), colorOf("accent"));
    EXPECT_EQ(image.pixelColor(slider.placeOf(6).x(), y), colorOf("accent"));
    EXPECT_EQ(image.pixelColor(slider.placeOf(7).x(), y), colorOf("control"));
}

TEST_F(TORVFrameSliderTest, FollowsTheNight)
{
    TORVDisplayMode::setNight(true);
    EXPECT_EQ(marks().size(), 12);
}

TEST_F(TORVFrameSliderTest, FillsTheGrooveUpToTheHandle)
{
    slider.setValue(6);
    const QImage image = slider.grab().toImage();
    const int y = slider.placeOf(0).y();
    EXPECT_EQ(image.pixelColor(slider.placeOf(3).x(), y), colorOf("accent"));
    EXPECT_EQ(image.pixelColor(slider.placeOf(9).x(), y), colorOf("line"));
}

TEST_F(TORVFrameSliderTest, HasRoomForTheMarks)
{
    EXPECT_GE(slider.sizeHint().height(), 32);
    EXPECT_GE(slider.minimumSizeHint().height(), 32);
}

TEST_F(TORVFrameSliderTest, GoesToTheFrameThatIsNearestToAPress)
{
    const QPoint place = slider.placeOf(8);
    QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, QPoint(place.x() + 12, 16));
    EXPECT_EQ(slider.value(), 8);
    QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, QPoint(place.x() + 12, 16));
    EXPECT_EQ(slider.value(), 8);
}

TEST_F(TORVFrameSliderTest, IsHeldFromThePressOn)
{
    bool wasDown = false;
    QObject::connect(&slider, &QSlider::valueChanged, &slider, [&] { wasDown = slider.isSliderDown(); });
    QSignalSpy released(&slider, &QSlider::sliderReleased);
    QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, slider.placeOf(8));
    EXPECT_TRUE(wasDown);
    EXPECT_TRUE(slider.isSliderDown());
    QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, slider.placeOf(8));
    EXPECT_FALSE(slider.isSliderDown());
    EXPECT_EQ(released.count(), 1);
}

TEST_F(TORVFrameSliderTest, CanBeDraggedOnFromThePress)
{
    QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, slider.placeOf(8));
    QMouseEvent move(QEvent::MouseMove, slider.placeOf(3), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&slider, &move);
    EXPECT_EQ(slider.value(), 3);
    QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, slider.placeOf(3));
}

TEST_F(TORVFrameSliderTest, StaysWhereItIsWithoutFrames)
{
    slider.setRange(0, 0);
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, QPoint(400, 16));
    EXPECT_EQ(slider.value(), 0);
    EXPECT_FALSE(slider.isSliderDown());
}

TEST_F(TORVFrameSliderTest, KeepsTheKeysOfASlider)
{
    slider.setValue(5);
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(slider.value(), 6);
    QTest::keyClick(&slider, Qt::Key_Home);
    EXPECT_EQ(slider.value(), 0);
    QTest::keyClick(&slider, Qt::Key_End);
    EXPECT_EQ(slider.value(), 11);
}

TEST_F(TORVFrameSliderTest, LooksDisabledWhereItIs)
{
    slider.setEnabled(false);
    const QImage image = slider.grab().toImage();
    EXPECT_EQ(image.pixelColor(slider.placeOf(3).x(), slider.placeOf(3).y() - 11), colorOf("disabled"));
}
