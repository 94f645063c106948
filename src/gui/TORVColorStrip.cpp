#include "gui/TORVColorStrip.h"

#include "visualization/TORVColormap.h"

#include <QColor>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QVector>

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{

constexpr double NumberTop_px = TORVColorStrip::Ramp_px + 2.0;
constexpr double NumberGap_px = 6.0;

struct Number
{
    double centre; // pixels from the left
    double width;
    QString text;
};

std::vector<double> seamsOf(const TORVColormap& colormap)
{
    std::vector<double> seams = colormap.getSeams();
    seams.resize(std::min(seams.size(), static_cast<std::size_t>(std::max(1, colormap.getNSeamsInUse()))));
    return seams;
}

// A true minus sign is as wide as a digit and is not taken for a dash.
QString written(QString number)
{
    return number.replace(QLatin1Char('-'), QChar(0x2212));
}

double widestOf(const TORVColormap& colormap, const std::vector<double>& seams, const QFontMetricsF& metrics)
{
    double widest = 0.0;
    for (const double seam : seams) {
        widest = std::max(widest, metrics.horizontalAdvance(written(colormap.getLabel(seam))));
    }
    return widest;
}

double valueAt(const std::vector<double>& seams, double part)
{
    if (seams.size() < 2) {
        return seams.front();
    }
    const double place = part * static_cast<double>(seams.size() - 1);
    const std::size_t below = std::min(static_cast<std::size_t>(place), seams.size() - 2);
    return seams[below] + (place - static_cast<double>(below)) * (seams[below + 1] - seams[below]);
}

// One pixel high: all pixels of a column are alike.
QImage rampOf(const TORVColormap& colormap, const std::vector<double>& seams, int columns)
{
    QImage ramp(columns, 1, QImage::Format_RGB32);
    for (int column = 0; column < columns; ++column) {
        const auto [red, green, blue] = colormap.getColor(valueAt(seams, (column + 0.5) / columns));
        ramp.setPixelColor(column, 0, QColor(red, green, blue));
    }
    return ramp;
}

bool isRoomFor(const QVector<Number>& numbers)
{
    for (int i = 1; i < numbers.size(); ++i) {
        const double apart = numbers.at(i).centre - numbers.at(i - 1).centre;
        if (apart < (numbers.at(i).width + numbers.at(i - 1).width) / 2.0 + NumberGap_px) {
            return false;
        }
    }
    return true;
}

// One in so many, from zero outwards. A scale without a seam at zero has one number on either side of it.
QVector<Number> thinned(const QVector<Number>& all, const std::vector<double>& seams, std::size_t stride)
{
    const auto zero = std::lower_bound(seams.begin(), seams.end(), 0.0);
    const auto up = static_cast<std::size_t>(zero - seams.begin());
    const std::size_t twin = zero == seams.end() || *zero > 0.0 ? 1 : 0;
    QVector<Number> some;
    for (std::size_t i = 0; i < seams.size(); ++i) {
        const std::size_t away = i >= up ? i - up : up - i - twin;
        if (away % stride == 0) {
            some << all.at(static_cast<int>(i));
        }
    }
    return some;
}

QVector<Number> numbersOf(const TORVColormap& colormap, const std::vector<double>& seams, const QRectF& ramp,
                          const QFontMetricsF& metrics)
{
    QVector<Number> all;
    for (std::size_t i = 0; i < seams.size(); ++i) {
        const double part = seams.size() < 2 ? 0.0 : static_cast<double>(i) / static_cast<double>(seams.size() - 1);
        const QString text = written(colormap.getLabel(seams[i]));
        all << Number{ramp.left() + part * ramp.width(), metrics.horizontalAdvance(text), text};
    }
    QVector<Number> some = all;
    for (std::size_t stride = 2; !isRoomFor(some) && stride <= seams.size(); ++stride) {
        some = thinned(all, seams, stride);
    }
    return isRoomFor(some) ? some : some.mid(0, 1);
}

} // namespace

int TORVColorStrip::heightFor(const QFont& font)
{
    return static_cast<int>(std::ceil(NumberTop_px + QFontMetricsF(font).height()));
}

QPixmap TORVColorStrip::draw(const TORVColormap& colormap, int width, const QFont& font, const QColor& textColor,
                             double ratio)
{
    const QFontMetricsF metrics(font);
    const std::vector<double> seams = seamsOf(colormap);
    const double inset = std::ceil(widestOf(colormap, seams, metrics) / 2.0);
    const QRectF ramp(inset, 0.0, width - 2.0 * inset, Ramp_px);
    if (ramp.width() < 1.0) {
        return {};
    }
    QPixmap strip(QSizeF(width * ratio, heightFor(font) * ratio).toSize());
    strip.setDevicePixelRatio(ratio);
    strip.fill(Qt::transparent);
    QPainter painter(&strip);
    painter.drawImage(ramp, rampOf(colormap, seams, std::max(1, static_cast<int>(ramp.width() * ratio))));
    painter.setFont(font);
    painter.setPen(textColor);
    for (const Number& number : numbersOf(colormap, seams, ramp, metrics)) {
        const QRectF place(number.centre - number.width / 2.0, NumberTop_px, number.width, metrics.height());
        painter.drawText(place, Qt::AlignCenter | Qt::TextDontClip, number.text);
    }
    return strip;
}
