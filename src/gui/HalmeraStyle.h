#pragma once

#include <QProxyStyle>

/**
 * The widget style below the style sheets: Qt's Fusion, with the few things that sheets can't paint painted in colours
 * that are derived from the palette, and with arrow fields that are wide enough to hit.
 *
 * Thread: main thread only.
 * Ownership: `QApplication::setStyle` takes it over; it is set before any style sheet.
 */
class HalmeraStyle final : public QProxyStyle
{
    Q_OBJECT
    Q_DISABLE_COPY(HalmeraStyle)

public:
    HalmeraStyle();

    // Widgets are left as they are: what a widget needs is said by the sheets.
    void polish(QApplication* application) override;
    void polish(QPalette& palette) override;
    void polish(QWidget* widget) override;
    void unpolish(QApplication* application) override;
    void unpolish(QWidget* widget) override;

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returnData) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;

    /// The option's palette is afterwards what it was before, whatever the base has made of it.
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;

    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl subControl,
                         const QWidget* widget) const override;
};
