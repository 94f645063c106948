#pragma once

#include <QFont>
#include <QPixmap>

class QColor;
class TORVColormap;

/**
 * A colour scale lying down: a ramp with numbers below it. Each band of the scale is as wide as the others, and numbers
 * stand at as many seams as there is room for, from zero outwards.
 *
 * Thread: main thread only.
 */
class TORVColorStrip final
{
public:
    static constexpr int Ramp_px = 12; ///< the ramp's height

    TORVColorStrip() = delete;

    /// The height that `draw` needs for a font.
    static int heightFor(const QFont& font);

    /**
     * @param colormap  of display values
     * @param width     pixels at 100 %, numbers at the ends included
     * @param ratio     pixels of the screen for each of them
     * @return null where the width is too small for a ramp
     */
    static QPixmap draw(const TORVColormap& colormap, int width, const QFont& font, const QColor& textColor,
                        double ratio);
};
