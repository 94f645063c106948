#include "gui/TORVColorKey.h"

#include "gui/TORVPalette.h"
#include "utils/TORVDisplayMode.h"

#include <QEvent>
#include <QPainter>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int Width_px = 60;
constexpr int Height_px = 200;
constexpr double RampLeft_px = 10.0;
constexpr double RampWidth_px = 14.0;
constexpr double LongTick_px = 6.0;
constexpr double ShortTick_px = 4.0;
constexpr double NumberLeft_px = 32.0;
constexpr double Margin_px = 8.0;
constexpr double EndMargin_px = 4.0;
constexpr double ArrowLeft_px = 2.0;
constexpr double ArrowTip_px = 8.5;
constexpr double ArrowHalf_px = 5.0;
constexpr double LeastTickGap_px = 3.0;
constexpr double RowHeight = 1.2; // of numbers that don't touch, in the height of the font
constexpr std::size_t MostSeamsAllNumbered = 8;

QColor paletteColor(const char* name)
{
    return TORVPalette::instance().color(QLatin1String(name), TORVDisplayMode::isNight());
}

bool isSame(const TORVColormap::Point& one, const TORVColormap::Point& other)
{
    return one.lowerR == other.lowerR && one.lowerG == other.lowerG && one.lowerB == other.lowerB &&
           one.isConstant == other.isConstant;
}

bool isSame(const TORVColormap& one, const TORVColormap& other)
{
    const auto& colors = one.getColors();
    const auto& others = other.getColors();
    return one.getScaleName() == other.getScaleName() && one.getColorSetName() == other.getColorSetName() &&
           one.getInterpolation() == other.getInterpolation() && one.getSeams() == other.getSeams() &&
           std::equal(colors.begin(), colors.end(), others.begin(), others.end(),
                      [](const auto& a, const auto& b) { return isSame(a, b); });
}

// Sorted, each once; the scene draws no surface of what isn't a number.
QVector<double> tidied(QVector<double> values)
{
    values.erase(std::remove_if(values.begin(), values.end(), [](double value) { return !std::isfinite(value); }),
                 values.end());
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

// A true minus sign is as wide as a digit and is not taken for a mark of the ramp.
QString written(QString number)
{
    return number.replace(QLatin1Char('-'), QChar(0x2212));
}

} // namespace

TORVColorKey::TORVColorKey(QWidget* parent) : QWidget(parent)
{
    setAccessibleName(tr("Colour key"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    describe();
}

TORVColorKey::~TORVColorKey() = default;

void TORVColorKey::setColors(const TORVColormap::CPtr& colormap, const QString& unit, const QVector<double>& isoValues)
{
    if (!colormap) {
        clear();
        return;
    }
    const QVector<double> values = tidied(isoValues);
    const bool isSameScale = _colormap && isSame(*_colormap, *colormap);
    if (isSameScale && unit == _unit && values == _isoValues) {
        return;
    }
    _unit = unit;
    _isoValues = values;
    if (!isSameScale) {
        _colormap = boost::make_shared<TORVColormap>(*colormap);
        const auto used = static_cast<std::ptrdiff_t>(colormap->getNSeamsInUse());
        _seams.assign(colormap->getSeams().begin(), colormap->getSeams().begin() + (used < 2 ? 0 : used));
        _ramp = QImage();
    }
    describe();
    updateGeometry();
    update();
}

void TORVColorKey::clear()
{
    _colormap.reset();
    _seams.clear();
    _unit.clear();
    _isoValues.clear();
    _ramp = QImage();
    describe();
    updateGeometry();
    update();
}

// What the eye sees, in words.
void TORVColorKey::describe()
{
    QStringList lines;
    if (!_seams.empty()) {
        lines << tr("Colours from %1 to %2 %3").arg(label(_seams.front()), label(_seams.back()), _unit).trimmed();
    }
    if (!_seams.empty() && !_isoValues.isEmpty()) {
        QStringList values;
        for (const double value : std::as_const(_isoValues)) {
            values << written(QString::number(value));
        }
        lines << tr("Arrows: surfaces at %1 %2").arg(values.join(QLatin1String(", ")), _unit).trimmed();
    }
    const QString text = lines.isEmpty() ? tr("No product is shown") : lines.join(QLatin1Char('\n'));
    setAccessibleDescription(text);
    setToolTip(text);
}

QString TORVColorKey::label(double seam) const
{
    return written(_colormap->getLabel(seam));
}

QSize TORVColorKey::sizeHint() const
{
    const QFontMetricsF metrics(font());
    double numbers = 0.0;
    for (const double seam : _seams) {
        numbers = std::max(numbers, metrics.horizontalAdvance(label(seam)));
    }
    const double unit = metrics.horizontalAdvance(_unit) + 2.0 * EndMargin_px;
    const double needed = std::max(unit, NumberLeft_px + numbers + EndMargin_px);
    return {std::max(Width_px, static_cast<int>(std::ceil(needed))), Height_px};
}

QSize TORVColorKey::minimumSizeHint() const
{
    return {sizeHint().width(), 0};
}

// Half a number stands beyond both ends. The edges lie between pixels of the screen.
QRectF TORVColorKey::getRampRect() const
{
    const double line = QFontMetricsF(font()).height();
    const double top = std::round(2.0 * Margin_px + 1.2 * line);
    const double bottom = height() - std::round(Margin_px + line / 2.0);
    if (_seams.empty() || bottom <= top) {
        return {};
    }
    return {RampLeft_px, top, RampWidth_px, bottom - top};
}

double TORVColorKey::partOf(double value) const
{
    const auto above = std::upper_bound(_seams.begin(), _seams.end(), value);
    if (above == _seams.begin()) {
        return 0.0;
    }
    if (above == _seams.end()) {
        return 1.0;
    }
    const double lower = *(above - 1);
    const auto band = static_cast<double>(above - _seams.begin() - 1);
    return (band + (value - lower) / (*above - lower)) / static_cast<double>(_seams.size() - 1);
}

double TORVColorKey::valueAt(double part) const
{
    const double place = part * static_cast<double>(_seams.size() - 1);
    const std::size_t below = std::min(static_cast<std::size_t>(place), _seams.size() - 2);
    return _seams[below] + (place - static_cast<double>(below)) * (_seams[below + 1] - _seams[below]);
}

double TORVColorKey::heightOf(double value) const
{
    const QRectF ramp = getRampRect();
    return ramp.bottom() - (_seams.empty() ? 0.0 : partOf(value) * ramp.height());
}

// Every second seam, from zero outwards; both seams beside a zero that has none of its own. Few seams all have numbers.
QVector<double> TORVColorKey::getNumberedSeams() const
{
    QVector<double> numbered;
    const double band = getRampRect().height() / std::max(1.0, static_cast<double>(_seams.size()) - 1.0);
    const double row = RowHeight * QFontMetricsF(font()).height();
    if (band <= 0.0) {
        return numbered;
    }
    const auto rows = static_cast<std::size_t>(std::ceil(row / band));
    const std::size_t least = _seams.size() <= MostSeamsAllNumbered ? 1 : 2;
    const std::size_t stride = (std::max(rows, least) + least - 1) / least * least;
    const auto zero = std::lower_bound(_seams.begin(), _seams.end(), 0.0);
    const auto up = static_cast<std::size_t>(zero - _seams.begin());
    const bool hasTwins = up > 0 && up < _seams.size() && *zero > 0.0 && rows < 2;
    for (std::size_t i = 0; i < _seams.size(); ++i) {
        const std::size_t away = i >= up ? i - up : up - i - (hasTwins || up == _seams.size() ? 1 : 0);
        if (away % stride == 0) {
            numbered << _seams[i];
        }
    }
    return numbered;
}

// One pixel wide: all pixels of a row are alike.
const QImage& TORVColorKey::ramp(int rows)
{
    if (_ramp.height() == rows) {
        return _ramp;
    }
    _ramp = QImage(1, rows, QImage::Format_RGB32);
    for (int row = 0; row < rows; ++row) {
        const auto [red, green, blue] = _colormap->getColor(valueAt(1.0 - (row + 0.5) / rows));
        _ramp.setPixelColor(0, row, QColor(red, green, blue));
    }
    return _ramp;
}

void TORVColorKey::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    painter.fillRect(rect(), paletteColor("panel"));
    const QRectF place = getRampRect();
    if (place.isEmpty()) {
        return;
    }
    painter.setPen(paletteColor("text"));
    const double line = QFontMetricsF(font()).height();
    painter.drawText(QRectF(0.0, Margin_px, width(), line), Qt::AlignCenter, _unit);
    painter.drawImage(place, ramp(static_cast<int>(std::lround(place.height() * devicePixelRatioF()))));
    paintNumbers(painter, place);
    paintArrows(painter);
}

void TORVColorKey::paintNumbers(QPainter& painter, const QRectF& ramp) const
{
    const double line = QFontMetricsF(font()).height();
    const QVector<double> numbered = getNumberedSeams();
    const bool hasShortTicks = ramp.height() >= LeastTickGap_px * static_cast<double>(_seams.size() - 1);
    for (const double seam : _seams) {
        const double y = heightOf(seam);
        const bool isNumbered = numbered.contains(seam);
        if (isNumbered || hasShortTicks) {
            const double top = std::min(std::floor(y), ramp.bottom() - 1.0);
            painter.fillRect(QRectF(ramp.right(), top, isNumbered ? LongTick_px : ShortTick_px, 1.0),
                             paletteColor("control"));
        }
        if (isNumbered) {
            painter.drawText(QRectF(NumberLeft_px, y - line / 2.0, width() - NumberLeft_px, line),
                             Qt::AlignLeft | Qt::AlignVCenter, label(seam));
        }
    }
}

void TORVColorKey::paintArrows(QPainter& painter) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(paletteColor("text"));
    for (const double value : _isoValues) {
        const double y = heightOf(value);
        const QPointF corners[] = {
            {ArrowLeft_px, y - ArrowHalf_px}, {ArrowTip_px, y}, {ArrowLeft_px, y + ArrowHalf_px}};
        painter.drawPolygon(corners, 3);
    }
}

void TORVColorKey::changeEvent(QEvent* event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::FontChange || type == QEvent::StyleChange || type == QEvent::PaletteChange) {
        updateGeometry();
        update();
    }
    QWidget::changeEvent(event);
}
