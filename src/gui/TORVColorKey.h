#pragma once

#include "visualization/TORVColormap.h"

#include <QImage>
#include <QString>
#include <QVector>
#include <QWidget>

#include <vector>

/**
 * What the colours beside it mean: the unit, a ramp of the colour scale, numbers at its seams and an arrow at each
 * value that the scene draws a surface of. It only shows, the mouse does nothing to it.
 *
 * Each band of the scale is as high as the others, so that every colour has its room whatever the steps between the
 * seams are. Numbers stand at every second seam, from zero outwards, or at fewer where they would touch. Arrows of
 * values beyond the scale stand at its ends.
 *
 * The ramp is drawn once for each scale and height, in the pixels of the screen. Grounds and texts are of the palette,
 * by day or by night, at the moment of painting.
 *
 * Thread: main thread only.
 * Ownership: it keeps a copy of the colour map, whose own map may belong to whoever draws.
 */
class TORVColorKey final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVColorKey)

public:
    explicit TORVColorKey(QWidget* parent = nullptr);
    ~TORVColorKey() override;

    /**
     * Shows another scale; nothing is painted anew where it is the same.
     * @param colormap   of display values; null is as `clear`
     * @param unit       of the values, may be empty
     * @param isoValues  display values of the surfaces in use; what isn't finite is left out
     */
    void setColors(const TORVColormap::CPtr& colormap, const QString& unit, const QVector<double>& isoValues);

    /// Shows nothing but the ground: there is no product.
    void clear();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /// Where the ramp stands, in the widget's pixels; empty where there is no scale.
    QRectF getRampRect() const;

    /// The height of a value on the ramp, its top being the greatest value's end; values beyond the scale give its
    /// ends.
    double heightOf(double value) const;

    /// The seams that carry numbers, in ascending order.
    QVector<double> getNumberedSeams() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QString label(double seam) const;
    double partOf(double value) const;
    double valueAt(double part) const;
    const QImage& ramp(int rows);
    void describe();
    void paintNumbers(QPainter& painter, const QRectF& ramp) const;
    void paintArrows(QPainter& painter) const;

    TORVColormap::CPtr _colormap;
    std::vector<double> _seams; // in use, at least two, or none
    QString _unit;
    QVector<double> _isoValues;
    QImage _ramp; // null until it is painted
};
