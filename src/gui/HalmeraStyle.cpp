#include "gui/HalmeraStyle.h"

#include <QPainter>
#include <QStyleOptionComplex>

#include <algorithm>

namespace
{

constexpr int MostOfAChannel = 255;
constexpr int Contrast_percent = 130; // of the darker and the lighter colour to the one between
constexpr double Ring_px = 2.0;
constexpr double RingRadius_px = 3.0;
constexpr int Dot_px = 2;
constexpr int DotStep_px = 5;
constexpr int ComboArrow_px = 24;
constexpr int SpinArrow_px = 20;

// One colour of the palette with its darker and lighter neighbour, for edges.
struct Shades
{
    QColor plain;
    QColor dark;
    QColor light;
};

QColor clamped(const QColor& color)
{
    return QColor::fromHsv(std::min(color.hsvHue(), MostOfAChannel), std::min(color.hsvSaturation(), MostOfAChannel),
                           std::min(color.value(), MostOfAChannel), color.alpha());
}

Shades shadesOf(const QStyleOption& option, QPalette::ColorRole role)
{
    const bool isEnabled = (option.state & QStyle::State_Enabled) != 0;
    const QPalette::ColorGroup group = isEnabled ? QPalette::Active : QPalette::Disabled;
    const QColor color = option.palette.brush(group, role).color();
    return {clamped(color), clamped(color.darker(Contrast_percent)), clamped(color.lighter(Contrast_percent))};
}

void drawRing(const QStyleOption& option, QPainter& painter)
{
    const double half = Ring_px / 2.0;
    painter.setPen(QPen(shadesOf(option, QPalette::Highlight).plain, Ring_px));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(half, half, -half, -half), RingRadius_px, RingRadius_px);
}

// Between two entries the place to drop at is a rectangle without height: a line.
void drawDropPlace(const QStyleOption& option, QPainter& painter)
{
    if (option.rect.height() > 0) {
        drawRing(option, painter);
        return;
    }
    painter.setPen(QPen(shadesOf(option, QPalette::Highlight).plain, Ring_px));
    painter.drawLine(option.rect.topLeft(), option.rect.topRight());
}

// A row of dots along the longer side, lit from above.
void drawGrip(const QStyleOption& option, QPainter& painter)
{
    const Shades shades = shadesOf(option, QPalette::Dark);
    const bool isTall = option.rect.height() > option.rect.width();
    const QSize dot(Dot_px, Dot_px);
    for (int step = -2; step <= 2; ++step) {
        const int along = step * DotStep_px;
        const QPoint place = option.rect.center() + (isTall ? QPoint(0, along) : QPoint(along, 0));
        painter.fillRect(QRect(place + QPoint(1, 1), dot), shades.light);
        painter.fillRect(QRect(place, dot), shades.dark);
    }
}

struct Primitive
{
    QStyle::PrimitiveElement element;
    void (*draw)(const QStyleOption& option, QPainter& painter);
};

const Primitive Primitives[] = {
    {QStyle::PE_FrameFocusRect, drawRing},
    {QStyle::PE_IndicatorItemViewItemDrop, drawDropPlace},
    {QStyle::PE_IndicatorToolBarHandle, drawGrip},
    {QStyle::PE_IndicatorDockWidgetResizeHandle, drawGrip},
};

// Widens or narrows what the base has made of a field and the arrows right of it, so that the arrows get `width`.
struct ArrowField
{
    QStyle::ComplexControl control;
    int width;
    QVector<QStyle::SubControl> arrows;
    QStyle::SubControl edit;
};

const ArrowField ArrowFields[] = {
    {QStyle::CC_ComboBox, ComboArrow_px, {QStyle::SC_ComboBoxArrow}, QStyle::SC_ComboBoxEditField},
    {QStyle::CC_SpinBox, SpinArrow_px, {QStyle::SC_SpinBoxUp, QStyle::SC_SpinBoxDown}, QStyle::SC_SpinBoxEditField},
};

} // namespace

HalmeraStyle::HalmeraStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void HalmeraStyle::polish(QApplication*) {}

void HalmeraStyle::polish(QPalette&) {}

void HalmeraStyle::polish(QWidget*) {}

void HalmeraStyle::unpolish(QApplication*) {}

void HalmeraStyle::unpolish(QWidget*) {}

int HalmeraStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returnData) const
{
    // Disabled texts have a colour of their own and need no second, lighter print below them.
    return hint == SH_EtchDisabledText ? 0 : QProxyStyle::styleHint(hint, option, widget, returnData);
}

void HalmeraStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const
{
    const auto* const row = std::find_if(std::begin(Primitives), std::end(Primitives),
                                         [element](const Primitive& entry) { return entry.element == element; });
    if (row == std::end(Primitives)) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    row->draw(*option, *painter);
    painter->restore();
}

void HalmeraStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                      const QWidget* widget) const
{
    const QPalette palette = option->palette;
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (!option->palette.isCopyOf(palette)) {
        const_cast<QStyleOptionComplex*>(option)->palette = palette; // it can be written to: somebody has just done so
    }
}

QRect HalmeraStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl subControl,
                                   const QWidget* widget) const
{
    const QRect rect = QProxyStyle::subControlRect(control, option, subControl, widget);
    const auto* const row = std::find_if(std::begin(ArrowFields), std::end(ArrowFields),
                                         [control](const ArrowField& entry) { return entry.control == control; });
    if (row == std::end(ArrowFields) || rect.isEmpty()) {
        return rect;
    }
    const bool isRightToLeft = option->direction == Qt::RightToLeft;
    const int width = std::min(row->width, option->rect.width());
    QRect arrows(isRightToLeft ? option->rect.left() : option->rect.right() + 1 - width, rect.top(), width,
                 rect.height());
    if (row->arrows.contains(subControl)) {
        return arrows;
    }
    if (subControl != row->edit) {
        return rect;
    }
    return isRightToLeft ? rect.intersected(QRect(QPoint(arrows.right() + 1, rect.top()), rect.bottomRight()))
                         : rect.intersected(QRect(rect.topLeft(), QPoint(arrows.left() - 1, rect.bottom())));
}
