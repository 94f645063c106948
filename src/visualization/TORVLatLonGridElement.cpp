#include "visualization/TORVLatLonGridElement.h"

#include "utils/TORVDisplayMode.h"
#include "utils/TORVPoint3D.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace
{

using Line = std::vector<TORVLineLayer::Point>;

constexpr int SmallestSpan = 4; // degrees from the radar to the grid's edge
constexpr int Parallels = 8;
constexpr int LargestFactor = 8;
constexpr int HalfCircle = 180;
constexpr int FullCircle = 360;
constexpr int DefaultSegments = 64;
constexpr int MostSegments = 1024;

// Mercator's plane has no end towards the poles.
constexpr int MercatorLimit = 89;

// Offsets of a label's foot from the end of its line, in heights of a letter: beyond the end; below it, or to the left
// as far as half of a label; and to the middle of a letter.
constexpr double Beyond = 0.6;
constexpr double Below = -1.4;
constexpr double Middle = -0.3;

double oneTurn(double longitude)
{
    if (longitude > HalfCircle) {
        return longitude - FullCircle;
    }
    return longitude < -HalfCircle ? longitude + FullCircle : longitude;
}

QString degrees(double value, char positive, char negative)
{
    const QString text = QString::number(std::abs(value));
    return value == 0.0 ? text : text + QLatin1Char(value > 0.0 ? positive : negative);
}

} // namespace

// In whole degrees.
struct TORVLatLonGridElement::Grid
{
    int minLat = 0;
    int maxLat = 0;
    int minLon = 0;
    int maxLon = 0;
    int latStep = 1;
    int lonStep = 1;
    bool isNorthern = true;
    bool isClosed = false; // all round a pole

    Grid(const TORVCoordinate& site, double radius) : isNorthern(site.getLat() >= 0.0)
    {
        site.calcLatLonBounds(radius, minLat, maxLat, minLon, maxLon, SmallestSpan);
        const double factor = std::round(site.calcOneLatDegLength() / site.calcOneLonDegLength());
        isClosed = minLat == -90 || maxLat == 90;
        if (isClosed) {
            minLon = -HalfCircle;
            maxLon = HalfCircle;
        }
        latStep = std::max(1, static_cast<int>(std::lround(static_cast<double>(maxLat - minLat) / Parallels)));
        // At a pole a degree of longitude has no length.
        lonStep = latStep * (isClosed || !(factor <= LargestFactor) ? LargestFactor : static_cast<int>(factor));
    }
};

// Where a line ends, and which way it goes there.
struct TORVLatLonGridElement::Direction
{
    TORVLineLayer::Point end;
    double east;
    double north;

    explicit Direction(const Line& points)
        : end(points.back()), east(end[0] - (points.end() - 2)->at(0)), north(end[1] - (points.end() - 2)->at(1))
    {
    }

    bool isSteep() const { return std::abs(north) > std::abs(east); }
};

// The scene's plane, with the radar at its origin.
class TORVLatLonGridElement::Plane
{
public:
    explicit Plane(const TORVGeoProjection& projection)
        : _projection(projection), _origin(projection.projectFromLatLon(projection.getCentre())),
          _limit(projection.getType() == QLatin1String("merc") ? MercatorLimit : 90)
    {
    }

    int limited(int latitude) const { return std::clamp(latitude, -_limit, _limit); }

    bool holds(int latitude) const { return std::abs(latitude) <= _limit; }

    TORVLineLayer::Point at(double latitude, double longitude) const
    {
        const TORVPoint3D point = _projection.projectFromLatLon(TORVCoordinate(latitude, longitude));
        return {point.x - _origin.x, point.y - _origin.y};
    }

    /// A line on which latitude and longitude run evenly.
    Line line(int fromLat, int fromLon, int toLat, int toLon, int segments) const
    {
        Line points;
        for (int i = 0; i <= segments; ++i) {
            const double share = static_cast<double>(i) / segments;
            points.push_back(at(fromLat + share * (toLat - fromLat), fromLon + share * (toLon - fromLon)));
        }
        return points;
    }

private:
    const TORVGeoProjection& _projection;
    TORVPoint3D _origin;
    int _limit;
};

TORVLatLonGridElement::TORVLatLonGridElement(TORVVisualGroup* parent, int id)
    : TORVLayerElement(parent, id, "TORVLatLonGridElement")
{
}

void TORVLatLonGridElement::rebuild(const std::atomic<bool>& abort)
{
    Q_UNUSED(abort)
    createVTK();
}

void TORVLatLonGridElement::invalidate()
{
    TORVLayerElement::invalidate();
    _lines.reset();
}

void TORVLatLonGridElement::restyle()
{
    if (_lines) {
        loadStyle(TORVDisplayMode::isNight());
        _lines->setStyle(_style);
    }
}

void TORVLatLonGridElement::createVTK()
{
    assert(_params);
    assert(_params->getGeoProjection());
    loadStyle(TORVDisplayMode::isNight());
    _lines = boost::make_shared<TORVLineLayer>(_style);
    const TORVGeoProjection& projection = *_params->getGeoProjection();
    const double radius = _params->getRange();
    const Grid grid(projection.getCentre(), std::isfinite(radius) ? std::max(radius, 0.0) : 0.0);
    const Plane plane(projection);
    addParallels(grid, plane);
    addMeridians(grid, plane);
    _prop = _lines->getProp();
}

// How many segments a line has is no matter of looks that could change while it is on screen.
void TORVLatLonGridElement::loadStyle(bool night)
{
    const TORVSceneStyle file(QStringLiteral("LATLONGRID"), night);
    _style = TORVLineLayer::readStyle(file);
    _segments = file.integer("line/segments", DefaultSegments, 1, MostSegments);
}

void TORVLatLonGridElement::addParallels(const Grid& grid, const Plane& plane)
{
    for (int lat = grid.minLat; lat <= grid.maxLat; lat += grid.latStep) {
        if (plane.holds(lat)) {
            const Line points = plane.line(lat, grid.minLon, lat, grid.maxLon, _segments);
            _lines->addLine(points);
            labelParallel(lat, Direction(points), grid, plane);
        }
    }
}

// Their ends are those on the equator's side, where they are furthest apart.
void TORVLatLonGridElement::addMeridians(const Grid& grid, const Plane& plane)
{
    const int nearest = plane.limited(grid.isNorthern ? grid.maxLat : grid.minLat); // to the pole
    const int furthest = plane.limited(grid.isNorthern ? grid.minLat : grid.maxLat);
    for (int lon = grid.minLon; lon <= grid.maxLon && lon < grid.minLon + FullCircle; lon += grid.lonStep) {
        const Line points = plane.line(nearest, lon, furthest, lon, _segments);
        _lines->addLine(points);
        labelMeridian(lon, Direction(points), grid);
    }
}

// The two labels of a corner, that of a parallel and that of a meridian, keep out of each other's way. A parallel that
// goes round the pole has no end beyond which there is room: its label stands inside, beside the date line.
void TORVLatLonGridElement::labelParallel(int lat, const Direction& line, const Grid& grid, const Plane& plane)
{
    const QString text = getLatitudeLabel(lat);
    if (grid.isClosed) {
        const bool isBehindPole = line.end[1] >= plane.at(plane.limited(grid.isNorthern ? 90 : -90), HalfCircle)[1];
        _lines->addLabel(text, line.end, {Beyond, isBehindPole || line.isSteep() ? Below : Beyond});
    } else if (line.isSteep()) {
        _lines->addLabel(text, line.end, {Middle, line.north > 0.0 ? Beyond : Below});
    } else {
        _lines->addLabel(text, line.end, {Beyond, Middle});
    }
}

void TORVLatLonGridElement::labelMeridian(int lon, const Direction& line, const Grid& grid)
{
    const QString text = getLongitudeLabel(lon);
    if (line.isSteep()) {
        if (line.north > 0.0 && !grid.isClosed) {
            _lines->addLabel(text, line.end, {Beyond, Beyond}, TORVLineLayer::RIGHT);
        } else {
            _lines->addLabel(text, line.end, {Below, line.north > 0.0 ? Beyond : Below});
        }
        return;
    }
    const double foot = grid.isClosed ? Middle : (grid.isNorthern ? Below : Beyond);
    if (line.east > 0.0) {
        _lines->addLabel(text, line.end, {Beyond, foot});
    } else {
        _lines->addLabel(text, line.end, {-Beyond, foot}, TORVLineLayer::RIGHT);
    }
}

QString TORVLatLonGridElement::getLatitudeLabel(double latitude)
{
    return degrees(latitude, 'N', 'S');
}

QString TORVLatLonGridElement::getLongitudeLabel(double longitude)
{
    const double within = oneTurn(longitude);
    return std::abs(within) == HalfCircle ? QString::number(HalfCircle) : degrees(within, 'E', 'W');
}
