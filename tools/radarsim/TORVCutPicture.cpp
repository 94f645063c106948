#include "radarsim/TORVCutPicture.h"

#include "datalib/TORVProductData.h"
#include "radarsim/TORVColorScale.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr int FieldWidth = 480;
constexpr int CutHeight = 150;
constexpr int Gap = 8;
constexpr double LowHeight_m = 1500.0;
constexpr double HighHeight_m = 7000.0;
constexpr QRgb Ground = 0xFF1A2128;

/// A product's numbers in the colours of its scale.
class Cutter
{
public:
    Cutter(const TORVFile& file, const TORVProductData& data)
        : _file(file), _data(data), _type(file.getDataType()), _scale(scaleOf(file.getRawType()))
    {
    }

    int levelAt(double height_m) const
    {
        const double depth = 0.01 * _file.getZScale();
        return std::clamp(static_cast<int>(std::lround(height_m / depth)), 0, _file.getZPoints() - 1);
    }

    /// North is up.
    QImage plane(int level) const
    {
        QImage image(_file.getXPoints(), _file.getYPoints(), QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                image.setPixel(x, image.height() - 1 - y, colorAt(x, y, level));
            }
        }
        return image;
    }

    QImage alongX(int row) const
    {
        QImage image(_file.getXPoints(), _file.getZPoints(), QImage::Format_RGB32);
        for (int z = 0; z < image.height(); ++z) {
            for (int x = 0; x < image.width(); ++x) {
                image.setPixel(x, image.height() - 1 - z, colorAt(x, row, z));
            }
        }
        return image;
    }

    QImage alongY(int column) const
    {
        QImage image(_file.getYPoints(), _file.getZPoints(), QImage::Format_RGB32);
        for (int z = 0; z < image.height(); ++z) {
            for (int y = 0; y < image.width(); ++y) {
                image.setPixel(y, image.height() - 1 - z, colorAt(column, y, z));
            }
        }
        return image;
    }

    /// Through the point whose column holds the largest sum of raw values.
    TORVCutPicture::Cuts strongest() const
    {
        const qint64 plane = static_cast<qint64>(_file.getXPoints()) * _file.getYPoints();
        std::vector<qint64> sums(static_cast<std::size_t>(plane), 0);
        for (qint64 i = 0; i < _data.itemCount(); ++i) {
            sums[static_cast<std::size_t>(i % plane)] += _data.item(i);
        }
        const auto best = static_cast<int>(std::max_element(sums.begin(), sums.end()) - sums.begin());
        return {best / _file.getXPoints(), best % _file.getXPoints()};
    }

private:
    static const TORVColorScale& scaleOf(int rawType)
    {
        const auto& groups = TORVColorGroup::byDataType();
        const bool known = rawType >= 0 && rawType < static_cast<int>(groups.size());
        return TORVColorScale::defaultOf(known ? groups[static_cast<std::size_t>(rawType)].group : 0);
    }

    QRgb colorAt(int x, int y, int z) const
    {
        const qint64 at = (static_cast<qint64>(z) * _file.getYPoints() + y) * _file.getXPoints() + x;
        const unsigned int raw = _data.item(at);
        return raw == 0 ? Ground : 0xFF000000U | _scale.colorAt(_type.absoluteToDisplayValue(raw));
    }

    const TORVFile& _file;
    const TORVProductData& _data;
    TORVDataType _type;
    const TORVColorScale& _scale;
};

void paste(QImage& onto, const QImage& image, int left, int top, int width, int height)
{
    const QImage scaled = image.scaled(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            onto.setPixel(left + x, top + y, scaled.pixel(x, y));
        }
    }
}

} // namespace

QImage TORVCutPicture::draw(const TORVFile& file, const Cuts& cuts)
{
    const TORVProductData::CPtr data = TORVProductData::read(file);
    if (!data) {
        return {};
    }
    const Cutter cutter(file, *data);
    if (file.getZPoints() < 2) {
        return cutter.plane(0).scaled(FieldWidth, FieldWidth);
    }
    const Cuts strongest = cutter.strongest();
    const int row = cuts.row < 0 ? strongest.row : std::min(cuts.row, file.getYPoints() - 1);
    const int column = cuts.column < 0 ? strongest.column : std::min(cuts.column, file.getXPoints() - 1);
    QImage image(2 * FieldWidth + Gap, FieldWidth + Gap + CutHeight, QImage::Format_RGB32);
    image.fill(Qt::black);
    const int right = FieldWidth + Gap;
    paste(image, cutter.plane(cutter.levelAt(LowHeight_m)), 0, 0, FieldWidth, FieldWidth);
    paste(image, cutter.plane(cutter.levelAt(HighHeight_m)), right, 0, FieldWidth, FieldWidth);
    paste(image, cutter.alongX(row), 0, right, FieldWidth, CutHeight);
    paste(image, cutter.alongY(column), right, right, FieldWidth, CutHeight);
    return image;
}
