#include "gui/HalmeraStyle.h"

#include <QApplication>
#include <QComboBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOptionComplex>

#include <gtest/gtest.h>

#include <memory>

namespace
{

QImage draw(const QStyle& style, QStyle::PrimitiveElement element, const QStyleOption& option, const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    style.drawPrimitive(element, &option, &painter);
    return image;
}

QStyleOption optionOf(const QRect& rect, QStyle::State state = QStyle::State_Enabled)
{
    QStyleOption option;
    option.rect = rect;
    option.state = state;
    return option;
}

class HalmeraStyleTest : public testing::Test
{
protected:
    HalmeraStyle style;
    std::unique_ptr<QStyle> fusion{QStyleFactory::create(QStringLiteral("Fusion"))};
};

} // namespace

TEST_F(HalmeraStyleTest, LeavesWidgetsAsTheyAre)
{
    QPushButton button;
    button.setAttribute(Qt::WA_Hover, false);
    style.polish(&button);
    EXPECT_FALSE(button.testAttribute(Qt::WA_Hover)) << "the base would have asked for it";
    button.setAttribute(Qt::WA_Hover, true);
    style.unpolish(&button);
    EXPECT_TRUE(button.testAttribute(Qt::WA_Hover)) << "the base would have taken it away";
}

TEST_F(HalmeraStyleTest, LeavesPaletteAndApplicationAsTheyAre)
{
    QPalette palette(Qt::red);
    const QPalette before = palette;
    style.polish(palette);
    style.polish(qApp);
    style.unpolish(qApp);
    EXPECT_EQ(palette, before);
}

TEST_F(HalmeraStyleTest, DoesNotEtchDisabledTexts)
{
    ASSERT_EQ(QStyle::SH_EtchDisabledText, 0);
    EXPECT_EQ(style.styleHint(QStyle::SH_EtchDisabledText, nullptr, nullptr, nullptr), 0);
}

TEST_F(HalmeraStyleTest, LeavesOtherHintsToTheBase)
{
    for (const auto hint :
         {QStyle::SH_Slider_SnapToValue, QStyle::SH_Menu_MouseTracking, QStyle::SH_Table_GridLineColor,
          QStyle::SH_ToolTip_WakeUpDelay, QStyle::SH_DockWidget_ButtonsHaveFrame}) {
        EXPECT_EQ(style.styleHint(hint, nullptr, nullptr, nullptr), fusion->styleHint(hint)) << hint;
    }
}

TEST_F(HalmeraStyleTest, PassesMetricsAndControlsThrough)
{
    for (const auto metric : {QStyle::PM_ButtonMargin, QStyle::PM_SliderThickness, QStyle::PM_ScrollBarExtent}) {
        EXPECT_EQ(style.pixelMetric(metric), fusion->pixelMetric(metric)) << metric;
    }
    QStyleOptionButton option;
    option.rect = QRect(0, 0, 80, 28);
    option.state = QStyle::State_Enabled | QStyle::State_Raised;
    const auto drawn = [&option](const QStyle& by) {
        QImage image(80, 28, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        by.drawControl(QStyle::CE_PushButtonBevel, &option, &painter);
        painter.end();
        return image;
    };
    EXPECT_EQ(drawn(style), drawn(*fusion));
}

TEST_F(HalmeraStyleTest, DrawsTheFocusAsARingOfTwoPixelsInTheColourOfTheSelection)
{
    QStyleOption option = optionOf(QRect(0, 0, 40, 20));
    option.palette.setColor(QPalette::Highlight, QColor(10, 90, 130));
    const QImage image = draw(style, QStyle::PE_FrameFocusRect, option, QSize(40, 20));
    EXPECT_EQ(image.pixelColor(20, 0), QColor(10, 90, 130));
    EXPECT_EQ(image.pixelColor(20, 1), QColor(10, 90, 130));
    EXPECT_EQ(image.pixelColor(20, 2), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(0, 10), QColor(10, 90, 130));
    EXPECT_EQ(image.pixelColor(20, 19), QColor(10, 90, 130));
}

TEST_F(HalmeraStyleTest, TakesTheColoursOfDisabledWidgetsFromTheirGroup)
{
    QStyleOption option = optionOf(QRect(0, 0, 40, 20), QStyle::State_None);
    option.palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(120, 130, 140));
    const QImage image = draw(style, QStyle::PE_FrameFocusRect, option, QSize(40, 20));
    EXPECT_EQ(image.pixelColor(20, 0), QColor(120, 130, 140));
}

TEST_F(HalmeraStyleTest, KeepsTheHueOfADerivedColourAtOrBelow255)
{
    QStyleOption option = optionOf(QRect(0, 0, 40, 20));
    option.palette.setColor(QPalette::Highlight, QColor::fromHsv(300, 200, 180));
    const QImage image = draw(style, QStyle::PE_FrameFocusRect, option, QSize(40, 20));
    EXPECT_EQ(image.pixelColor(20, 0).rgb(), QColor::fromHsv(255, 200, 180).rgb());
}

TEST_F(HalmeraStyleTest, ShowsThePlaceBetweenTwoEntriesAsALine)
{
    QStyleOption option = optionOf(QRect(0, 10, 40, 0));
    option.palette.setColor(QPalette::Highlight, QColor(10, 90, 130));
    const QImage image = draw(style, QStyle::PE_IndicatorItemViewItemDrop, option, QSize(40, 20));
    EXPECT_EQ(image.pixelColor(20, 10), QColor(10, 90, 130));
    EXPECT_EQ(image.pixelColor(20, 15), QColor(Qt::white));
}

TEST_F(HalmeraStyleTest, ShowsAnEntryToDropOnAsARing)
{
    QStyleOption option = optionOf(QRect(0, 0, 40, 20));
    option.palette.setColor(QPalette::Highlight, QColor(10, 90, 130));
    const QImage image = draw(style, QStyle::PE_IndicatorItemViewItemDrop, option, QSize(40, 20));
    EXPECT_EQ(image.pixelColor(20, 0), QColor(10, 90, 130));
    EXPECT_EQ(image.pixelColor(20, 10), QColor(Qt::white));
}

TEST_F(HalmeraStyleTest, DrawsAGripInAColourDarkerThanThePalettes)
{
    QStyleOption option = optionOf(QRect(0, 0, 8, 40));
    option.palette.setColor(QPalette::Dark, QColor(130, 130, 130));
    const QImage image = draw(style, QStyle::PE_IndicatorToolBarHandle, option, QSize(8, 40));
    // A value of 130 divided and multiplied by 1.3; the middle dot covers (3, 19) to (4, 20), its light one pixel more.
    EXPECT_EQ(image.pixelColor(3, 19).value(), 100);
    EXPECT_EQ(image.pixelColor(4, 20).value(), 100);
    EXPECT_EQ(image.pixelColor(5, 21).value(), 169);
    EXPECT_EQ(image.pixelColor(3, 17), QColor(Qt::white));
}

TEST_F(HalmeraStyleTest, LeavesOtherPrimitivesToTheBase)
{
    const QStyleOption option = optionOf(QRect(0, 0, 20, 20));
    EXPECT_EQ(draw(style, QStyle::PE_IndicatorArrowDown, option, QSize(20, 20)),
              draw(*fusion, QStyle::PE_IndicatorArrowDown, option, QSize(20, 20)));
}

TEST_F(HalmeraStyleTest, LeavesThePainterAsItWas)
{
    QImage image(40, 20, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setPen(Qt::green);
    const QStyleOption option = optionOf(QRect(0, 0, 40, 20));
    style.drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, nullptr);
    EXPECT_EQ(painter.pen(), QPen(Qt::green));
    EXPECT_FALSE(painter.testRenderHint(QPainter::Antialiasing));
}

TEST_F(HalmeraStyleTest, GivesTheArrowOfAComboBox24Pixels)
{
    QStyleOptionComboBox option;
    option.rect = QRect(0, 0, 120, 28);
    const QRect arrow = style.subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, nullptr);
    const QRect edit = style.subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, nullptr);
    EXPECT_EQ(arrow.left(), 96);
    EXPECT_EQ(arrow.width(), 24);
    EXPECT_LT(edit.right(), arrow.left());
    EXPECT_GT(edit.width(), 80);
}

TEST_F(HalmeraStyleTest, GivesTheArrowsOfASpinBox20Pixels)
{
    QStyleOptionSpinBox option;
    option.rect = QRect(0, 0, 80, 28);
    option.subControls = QStyle::SC_All;
    const QRect up = style.subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxUp, nullptr);
    const QRect down = style.subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxDown, nullptr);
    const QRect edit = style.subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxEditField, nullptr);
    EXPECT_EQ(up.width(), 20);
    EXPECT_EQ(down.width(), 20);
    EXPECT_FALSE(up.intersects(down));
    EXPECT_LT(edit.right(), up.left());
}

TEST_F(HalmeraStyleTest, PutsTheArrowLeftWhereTextRunsToTheLeft)
{
    QStyleOptionComboBox option;
    option.rect = QRect(0, 0, 120, 28);
    option.direction = Qt::RightToLeft;
    const QRect arrow = style.subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, nullptr);
    const QRect edit = style.subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, nullptr);
    EXPECT_EQ(arrow.left(), 0);
    EXPECT_EQ(arrow.width(), 24);
    EXPECT_GT(edit.left(), arrow.right());
}

TEST_F(HalmeraStyleTest, KeepsTheArrowInsideAComboBoxThatIsTooNarrow)
{
    QStyleOptionComboBox option;
    option.rect = QRect(0, 0, 10, 28);
    const QRect arrow = style.subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, nullptr);
    EXPECT_TRUE(option.rect.contains(arrow));
}

TEST_F(HalmeraStyleTest, LeavesOtherRectanglesToTheBase)
{
    QStyleOptionSlider option;
    option.rect = QRect(0, 0, 120, 24);
    option.maximum = 100;
    option.sliderPosition = 50;
    EXPECT_EQ(style.subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, nullptr),
              fusion->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle));
    QStyleOptionComboBox combo;
    combo.rect = QRect(0, 0, 120, 28);
    EXPECT_EQ(style.subControlRect(QStyle::CC_ComboBox, &combo, QStyle::SC_ComboBoxFrame, nullptr),
              fusion->subControlRect(QStyle::CC_ComboBox, &combo, QStyle::SC_ComboBoxFrame));
}

TEST_F(HalmeraStyleTest, HandsThePaletteOfAnOptionBackAsItCame)
{
    class Painter final : public QProxyStyle
    {
    public:
        Painter() : QProxyStyle(QStringLiteral("Fusion")) {}

        void drawComplexControl(ComplexControl, const QStyleOptionComplex* option, QPainter*,
                                const QWidget*) const override
        {
            const_cast<QStyleOptionComplex*>(option)->palette = QPalette(Qt::red);
        }
    };
    style.setBaseStyle(new Painter);
    QStyleOptionComboBox option;
    const QPalette before = option.palette;
    QImage image(10, 10, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    style.drawComplexControl(QStyle::CC_ComboBox, &option, &painter, nullptr);
    EXPECT_EQ(option.palette, before);
}

TEST_F(HalmeraStyleTest, BelongsToTheApplicationAndCarriesAStyleSheet)
{
    const QString old = QApplication::style()->objectName();
    const QPointer<QStyle> ours = new HalmeraStyle;
    QApplication::setStyle(ours);
    qApp->setStyleSheet(QStringLiteral("QLabel { background: #123456; }"));
    {
        QLabel label;
        label.resize(20, 20);
        EXPECT_EQ(label.grab().toImage().pixelColor(10, 10), QColor(0x12, 0x34, 0x56));
    }
    qApp->setStyleSheet(QString());
    QApplication::setStyle(old);
    EXPECT_TRUE(ours.isNull()) << "the application has deleted what it owned";
}
