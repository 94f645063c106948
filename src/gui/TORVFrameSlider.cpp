#include "gui/TORVFrameSlider.h"

#include "gui/TORVPalette.h"
#include "utils/TORVDisplayMode.h"

#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionSlider>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int Height_px = 32;  // the marks stand clear of the handle and of the ring of the focus
constexpr int MarkTop_px = 12; // above the middle of the groove
constexpr int MarkLength_px = 5;
constexpr double LeastGap_px = 6.0;

// 1, 2, 5, 10, 20, 50, ...: the first that is not below the wanted one.
qint64 roundStep(double wanted)
{
    for (qint64 power = 1;; power *= 10) {
        for (const qint64 digit : {1, 2, 5}) {
            if (static_cast<double>(digit * power) >= wanted) {
                return digit * power;
            }
        }
    }
}

} // namespace

TORVFrameSlider::TORVFrameSlider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {}

TORVFrameSlider::~TORVFrameSlider() = default;

QSize TORVFrameSlider::sizeHint() const
{
    return QSlider::sizeHint().expandedTo(QSize(0, Height_px));
}

QSize TORVFrameSlider::minimumSizeHint() const
{
    return QSlider::minimumSizeHint().expandedTo(QSize(0, Height_px));
}

QRect TORVFrameSlider::handleAt(int value) const
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    option.sliderPosition = value;
    option.sliderValue = value;
    return style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
}

QPoint TORVFrameSlider::placeOf(int value) const
{
    return handleAt(value).center();
}

QVector<int> TORVFrameSlider::getMarkedValues() const
{
    const qint64 frames = static_cast<qint64>(maximum()) - minimum();
    const double length = std::abs(placeOf(maximum()).x() - placeOf(minimum()).x());
    QVector<int> values;
    if (frames < 1 || length < 1.0) {
        return values;
    }
    const qint64 step = roundStep(LeastGap_px * static_cast<double>(frames) / length);
    for (qint64 value = minimum(); value <= maximum(); value += step) {
        values << static_cast<int>(value);
    }
    return values;
}

int TORVFrameSlider::frameAt(int x) const
{
    const double first = placeOf(minimum()).x();
    const double last = placeOf(maximum()).x();
    const double part = first < last || last < first ? (x - first) / (last - first) : 0.0;
    const double frames = static_cast<double>(maximum()) - minimum();
    return minimum() + static_cast<int>(std::lround(std::clamp(part, 0.0, 1.0) * frames));
}

// The marks lie below the handle.
void TORVFrameSlider::paintEvent(QPaintEvent* event)
{
    const TORVPalette& palette = TORVPalette::instance();
    const bool isNight = TORVDisplayMode::isNight();
    const QColor passed = palette.color(QStringLiteral("accent"), isNight);
    const QColor ahead = palette.color(QStringLiteral("control"), isNight);
    const QColor disabled = palette.color(QStringLiteral("disabled"), isNight);
    QPainter painter(this);
    for (const int value : getMarkedValues()) {
        const QPoint place = placeOf(value);
        const QColor color = value <= sliderPosition() ? passed : ahead;
        painter.fillRect(place.x(), place.y() - MarkTop_px, 1, MarkLength_px, isEnabled() ? color : disabled);
    }
    painter.end();
    QSlider::paintEvent(event);
}

// The handle is held before it moves, so that who listens knows that the user does it.
void TORVFrameSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || event->buttons() != Qt::LeftButton || minimum() >= maximum() ||
        handleAt(sliderPosition()).contains(event->pos())) {
        QSlider::mousePressEvent(event);
        return;
    }
    setSliderDown(true);
    setSliderPosition(frameAt(event->x()));
    const QPoint place = placeOf(sliderPosition());
    QMouseEvent onHandle(event->type(), place, mapToGlobal(place), event->button(), event->buttons(),
                         event->modifiers());
    QSlider::mousePressEvent(&onHandle);
    event->setAccepted(onHandle.isAccepted());
}
