#include "visualization/TORVRadarRingsElement.h"

#include "utils/TORVDisplayMode.h"

#include <QCoreApplication>

#include <cassert>
#include <cmath>

namespace
{

constexpr int Rings = 4;
constexpr int Segments = 64;
constexpr double SegmentAngle = 0.0981747703125;
constexpr double MetresPerUnit = 1.853184; // a thousandth of a nautical mile

constexpr double Sine30 = 0.5;
constexpr double Sine60 = 0.86602540378443865;
constexpr TORVLineLayer::Point Directions[] = {
    {1, 0},  {Sine60, Sine30},   {Sine30, Sine60},   {0, 1},  {-Sine30, Sine60}, {-Sine60, Sine30},
    {-1, 0}, {-Sine60, -Sine30}, {-Sine30, -Sine60}, {0, -1}, {Sine30, -Sine60}, {Sine60, -Sine30}};

// From the northern point of a ring: clear of the line and of the spoke.
constexpr TORVLineLayer::Point LabelOffset = {0.2, 0.4};

} // namespace

TORVRadarRingsElement::TORVRadarRingsElement(TORVVisualGroup* parent, int id)
    : TORVLayerElement(parent, id, "TORVRadarRingsElement")
{
}

void TORVRadarRingsElement::rebuild(const std::atomic<bool>& abort)
{
    Q_UNUSED(abort)
    createVTK();
}

void TORVRadarRingsElement::invalidate()
{
    TORVLayerElement::invalidate();
    _lines.reset();
}

void TORVRadarRingsElement::restyle()
{
    if (_lines) {
        loadStyle(TORVDisplayMode::isNight());
        _lines->setStyle(_style);
    }
}

void TORVRadarRingsElement::createVTK()
{
    assert(_params);
    loadStyle(TORVDisplayMode::isNight());
    _lines = boost::make_shared<TORVLineLayer>(_style);
    const double range = std::isfinite(_params->getRange()) ? _params->getRange() : 0.0;
    const double radius = _params->isMetricUnits() ? range : range * MetresPerUnit;
    const TORVCoordinate& site = _params->getSiteLocation();
    TORVLog::Instance()->logDebug(QLatin1String("Radar rings around ") + getLatitudeLabel(site.getLat()) +
                                  QLatin1String(", ") + getLongitudeLabel(site.getLon()));
    addRings(radius);
    addSpokes(radius);
    addLabels(range, radius);
    _prop = _lines->getProp();
}

void TORVRadarRingsElement::loadStyle(bool night)
{
    _style = TORVLineLayer::readStyle(TORVSceneStyle(QStringLiteral("RADARRINGS"), night));
}

void TORVRadarRingsElement::addRings(double radius)
{
    for (int ring = Rings; ring > 0; --ring) {
        const double distance = radius * ring / Rings;
        std::vector<TORVLineLayer::Point> points;
        for (int i = 0; i < Segments; ++i) {
            const double angle = i * SegmentAngle;
            points.push_back({distance * std::cos(angle), distance * std::sin(angle)});
        }
        _lines->addLine(points, true);
    }
}

void TORVRadarRingsElement::addSpokes(double radius)
{
    const double inner = radius / Rings;
    for (const TORVLineLayer::Point& direction : Directions) {
        _lines->addLine({{inner * direction[0], inner * direction[1]}, {radius * direction[0], radius * direction[1]}});
    }
}

void TORVRadarRingsElement::addLabels(double range, double radius)
{
    for (int ring = Rings; ring > 0; --ring) {
        const double share = static_cast<double>(ring) / Rings;
        _lines->addLabel(getRangeLabel(range * share, _params->isMetricUnits()), {0.0, radius * share}, LabelOffset);
    }
}

QString TORVRadarRingsElement::getLatitudeLabel(double latitude)
{
    return QString::number(std::abs(latitude)) + QLatin1Char(latitude < 0.0 ? 'S' : 'N');
}

QString TORVRadarRingsElement::getLongitudeLabel(double longitude)
{
    return QString::number(std::abs(longitude)) + QLatin1Char(longitude < 0.0 ? 'W' : 'E');
}

QString TORVRadarRingsElement::getRangeLabel(double range, bool metric)
{
    const QString unit = metric ? QCoreApplication::translate("App", "km") : QCoreApplication::translate("App", "NM");
    return QString::number(range / 1000.0, 'f', 0) + QLatin1Char(' ') + unit;
}
