// Whether the style sheets give the main window's own widgets, which they know by object name, their sizes and shapes.
#include "gui/DisplayMode.h"
#include "gui/HalmeraStyle.h"
#include "gui/TORVPalette.h"
#include "utils/TORVDisplayMode.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>

namespace
{

constexpr int Eye_px = 20;
constexpr int EyeMargin_px = 4;

class LookMainWindowTest : public testing::TestWithParam<bool>
{
protected:
    LookMainWindowTest()
    {
        QApplication::setStyle(new HalmeraStyle);
        mode.toggleDisplayMode(!GetParam());
        panel.setObjectName(QStringLiteral("panel"));
        panel.resize(264, 600);
        new QVBoxLayout(&panel);
    }

    ~LookMainWindowTest() override
    {
        qApp->setStyleSheet(QString());
        QApplication::setPalette(palette);
        TORVDisplayMode::setNight(false);
    }

    template <typename Widget>
    Widget* add(const char* name)
    {
        auto* const widget = new Widget(&panel);
        widget->setObjectName(QLatin1String(name));
        panel.layout()->addWidget(widget);
        return widget;
    }

    QPushButton* addRow(const char* name)
    {
        auto* const row = add<QPushButton>(name);
        row->setText(QStringLiteral("Row"));
        row->setCheckable(true);
        return row;
    }

    void polish()
    {
        panel.ensurePolished();
        panel.layout()->activate();
    }

    QColor color(const char* name) const { return TORVPalette::instance().color(QLatin1String(name), GetParam()); }

    // Where the pixels of that colour begin, from the left.
    static int firstColumn(const QImage& image, const QColor& color)
    {
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                const QColor pixel = image.pixelColor(x, y);
                if (std::abs(pixel.red() - color.red()) < 24 && std::abs(pixel.green() - color.green()) < 24) {
                    return x;
                }
            }
        }
        return -1;
    }

    const QPalette palette = QApplication::palette();
    DisplayMode mode;
    QWidget panel;
};

const char* const Groups[] = {"pushButton_RadarLayersVisible", "pushButton_GEOLayersVisible"};
const char* const Members[] = {"pushButton_OutlineVisible",    "pushButton_3DProductVisible",
                               "pushButton_2DProductVisible",  "pushButton_3DTerrainVisible",
                               "pushButton_LatLonGridVisible", "pushButton_RangeRingsVisible",
                               "pushButton_LandmarksVisible"};

} // namespace

TEST_P(LookMainWindowTest, MakesLayerRowsTwentySixPixelsHigh)
{
    for (const char* const name : Groups) {
        EXPECT_EQ(addRow(name)->sizeHint().height(), 26) << name;
    }
    for (const char* const name : Members) {
        EXPECT_EQ(addRow(name)->sizeHint().height(), 26) << name;
    }
}

TEST_P(LookMainWindowTest, SetsGroupsInSemiboldAndMembersFourteenPixelsIn)
{
    QPushButton* const group = addRow(Groups[0]);
    QPushButton* const member = addRow(Members[0]);
    group->setChecked(true);
    member->setChecked(true);
    polish();
    EXPECT_EQ(group->font().weight(), static_cast<int>(QFont::DemiBold));
    EXPECT_EQ(member->font().weight(), static_cast<int>(QFont::Normal));
    const int inset =
        firstColumn(member->grab().toImage(), color("text")) - firstColumn(group->grab().toImage(), color("text"));
    EXPECT_NEAR(inset, 14, 1); // the same letter is a little wider in semibold
}

TEST_P(LookMainWindowTest, PaintsAnOpenOrAShutEyeAtTheRight)
{
    for (const char* const name : Members) {
        QPushButton* const row = addRow(name);
        polish();
        const QRect eye(row->width() - Eye_px - EyeMargin_px, (row->height() - Eye_px) / 2, Eye_px, Eye_px);
        const QImage shut = row->grab(eye).toImage();
        row->setChecked(true);
        const QImage open = row->grab(eye).toImage();
        EXPECT_GE(firstColumn(shut, color("muted")), 0) << name;
        EXPECT_GE(firstColumn(open, color("muted")), 0) << name;
        EXPECT_NE(shut, open) << name;
        EXPECT_EQ(firstColumn(row->grab(eye.translated(-2 * Eye_px, 0)).toImage(), color("muted")), -1) << name;
    }
}

TEST_P(LookMainWindowTest, WritesARowThatIsOffInMuted)
{
    QPushButton* const row = addRow(Members[0]);
    polish();
    EXPECT_EQ(row->palette().color(QPalette::ButtonText), color("muted"));
    row->setChecked(true);
    const QRect text(20, 0, 60, 26);
    EXPECT_GE(firstColumn(row->grab(text).toImage(), color("text")), 0);
}

TEST_P(LookMainWindowTest, MakesThePlaybackButtonsRound)
{
    for (const auto& [name, size] : {std::pair{"pushButton_animPrev", 36}, std::pair{"pushButton_animPlay", 44},
                                     std::pair{"pushButton_animNext", 36}}) {
        auto* const button = add<QPushButton>(name);
        polish();
        EXPECT_EQ(button->sizeHint(), QSize(size, size)) << name;
        EXPECT_EQ(button->maximumSize(), QSize(size, size)) << name;
    }
}

TEST_P(LookMainWindowTest, SetsTheDataLabelInSixteenPixelsSemibold)
{
    auto* const label = add<QLabel>("label_dataId");
    polish();
    EXPECT_EQ(label->font().pixelSize(), 16);
    EXPECT_EQ(label->font().weight(), static_cast<int>(QFont::DemiBold));
}

TEST_P(LookMainWindowTest, ShowsTheLiveModeInItsColour)
{
    auto* const combo = add<QComboBox>("comboBox_liveMode");
    combo->addItem(QStringLiteral("Live"));
    polish();
    EXPECT_EQ(combo->grab().toImage().pixelColor(combo->width() / 2, 0), color("control"));
    combo->setProperty("live", true);
    combo->style()->unpolish(combo);
    combo->style()->polish(combo);
    EXPECT_EQ(combo->grab().toImage().pixelColor(combo->width() / 2, 0), color("live"));
}

TEST_P(LookMainWindowTest, SetsNumbersOfTheColourKeyInElevenPixels)
{
    auto* const key = add<QWidget>("colorKey");
    polish();
    EXPECT_EQ(key->font().pixelSize(), 11);
}

TEST_P(LookMainWindowTest, MakesTheDiskBarTenPixelsHigh)
{
    auto* const bar = add<QProgressBar>("diskSpaceBar");
    bar->setTextVisible(false);
    bar->setValue(50);
    polish();
    EXPECT_EQ(bar->height(), 10);
    EXPECT_EQ(bar->grab().toImage().pixelColor(bar->width() / 4, 5), color("ok"));
}

INSTANTIATE_TEST_SUITE_P(DayAndNight, LookMainWindowTest, testing::Bool(),
                         [](const auto& test) { return test.param ? std::string("Night") : std::string("Day"); });
