#include "utils/TORVCoordinate.h"

#include "utils/TORVGeoProjection.h"
#include "utils/TORVPoint3D.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr double BinaryAnglesPerDegree = 11930464.711111112; // 2^32 / 360
constexpr double DegreesPerRadian = 180.0 / 3.14159265;
constexpr double DistanceRadius_m = 6378137.0;
constexpr double DistanceInvFlattening = 298.257;
constexpr double HalfCircle = 180.0; // the widest span of a box, in degrees either way
constexpr QChar DegreeSign(0x00B0);

double normalised(double degrees)
{
    if (degrees >= -180.0 && degrees <= 180.0) {
        return degrees;
    }
    if (degrees > 180.0 && degrees <= 360.0) {
        return degrees - 360.0;
    }
    if (degrees < -180.0 && degrees >= -360.0) {
        return degrees + 360.0;
    }
    return 0.0;
}

double fromBinaryAngle(unsigned int value)
{
    const double degrees = value / BinaryAnglesPerDegree;
    return degrees >= 180.0 ? degrees - 360.0 : degrees;
}

double fromParts(int degrees, unsigned int minutes, unsigned int seconds, bool negated)
{
    const double value = degrees + minutes / 60.0 + seconds / 3600.0;
    return negated ? -value : value;
}

TORVPoint3D displacement(const TORVCoordinate& from, const TORVCoordinate& to)
{
    const TORVGeoProjection projection(QStringLiteral("aeqd"), from, DistanceRadius_m, DistanceInvFlattening);
    return projection.projectFromLatLon(to);
}

int wholeDegrees(double degrees)
{
    return static_cast<int>(std::lround(degrees));
}

// The value is brought to the unit of the last printed digit before it is split, or 59.999 would print as 60.00.
struct SplitValue
{
    qint64 degrees;
    qint64 rest; // in the unit of the last printed digit
};

SplitValue split(double absoluteValue, qint64 unitsPerDegree)
{
    const qint64 units = std::llround(absoluteValue * static_cast<double>(unitsPerDegree));
    return {units / unitsPerDegree, units % unitsPerDegree};
}

QString decimalText(double absoluteValue)
{
    return QString::number(absoluteValue, 'f', 4) + DegreeSign + QLatin1Char(' ');
}

QString secondsText(double absoluteValue)
{
    constexpr qint64 PerMinute = 6000; // hundredths of a second
    const SplitValue value = split(absoluteValue, 60 * PerMinute);
    const double seconds = static_cast<double>(value.rest % PerMinute) / 100.0;
    return QString::number(value.degrees) + DegreeSign + QLatin1Char(' ') + QString::number(value.rest / PerMinute) +
           QLatin1String("' ") + QString::number(seconds, 'f', 2) + QLatin1String("\" ");
}

QString minutesText(double absoluteValue)
{
    constexpr qint64 PerMinute = 1000; // thousandths of a minute
    const SplitValue value = split(absoluteValue, 60 * PerMinute);
    const double minutes = static_cast<double>(value.rest) / PerMinute;
    return QString::number(value.degrees) + DegreeSign + QLatin1Char(' ') + QString::number(minutes, 'f', 3) +
           QLatin1String("\" ");
}

} // namespace

TORVCoordinate::TORVCoordinate(unsigned int lat, unsigned int lon)
    : _lat(fromBinaryAngle(lat)), _lon(fromBinaryAngle(lon))
{
}

TORVCoordinate::TORVCoordinate(double lat, double lon) : _lat(normalised(lat)), _lon(normalised(lon)) {}

TORVCoordinate::TORVCoordinate(int latDeg, unsigned int latMin, unsigned int latSec, char latHemisphere, int lonDeg,
                               unsigned int lonMin, unsigned int lonSec, char lonHemisphere)
    : TORVCoordinate(fromParts(latDeg, latMin, latSec, latHemisphere == 's' || latHemisphere == 'S'),
                     fromParts(lonDeg, lonMin, lonSec, lonHemisphere == 'w' || lonHemisphere == 'W'))
{
}

QChar TORVCoordinate::getLatitudeMark() const
{
    return QLatin1Char(_lat < 0.0 ? 'S' : 'N');
}

QChar TORVCoordinate::getLongitudeMark() const
{
    return QLatin1Char(_lon < 0.0 ? 'W' : 'E');
}

double TORVCoordinate::getBearingTo(const TORVCoordinate& other) const
{
    const TORVPoint3D to = displacement(*this, other);
    const double bearing = std::atan2(to.x, to.y) * DegreesPerRadian;
    return std::min(bearing < 0.0 ? bearing + 360.0 : bearing, 360.0);
}

double TORVCoordinate::getDistanceTo(const TORVCoordinate& other) const
{
    const TORVPoint3D to = displacement(*this, other);
    return std::sqrt(to.x * to.x + to.y * to.y);
}

QString TORVCoordinate::toDecimalString(Modifier modifier) const
{
    return formattedString(decimalText, modifier);
}

QString TORVCoordinate::toDmString(Modifier modifier) const
{
    return formattedString(secondsText, modifier);
}

QString TORVCoordinate::toDMsString(Modifier modifier) const
{
    return formattedString(minutesText, modifier);
}

double TORVCoordinate::calcOneLonDegLength() const
{
    return TORVCoordinate(_lat, _lon - 0.5).getDistanceTo(TORVCoordinate(_lat, _lon + 0.5));
}

double TORVCoordinate::calcOneLatDegLength() const
{
    return getDistanceTo(TORVCoordinate(_lat >= 0.0 ? _lat - 1.0 : _lat + 1.0, _lon));
}

void TORVCoordinate::calcLatLonBounds(double distance, int& minLat, int& maxLat, int& minLon, int& maxLon,
                                      int minDegrees) const
{
    const double latLength = calcOneLatDegLength();
    const double lonLength = std::abs(calcOneLonDegLength());
    const double reach = std::min(std::ceil(distance / latLength), HalfCircle);
    const double latSpan = std::max(reach, static_cast<double>(minDegrees));
    // At a pole a degree of longitude has no length; the quotient is then infinite and the limit takes over.
    const double lonSpan = std::min(std::ceil(latLength / lonLength * latSpan), HalfCircle);

    minLat = std::clamp(wholeDegrees(_lat - latSpan), -90, 90);
    maxLat = std::clamp(wholeDegrees(_lat + latSpan), -90, 90);
    minLon = wholeDegrees(_lon - lonSpan);
    maxLon = wholeDegrees(_lon + lonSpan);
    if (minLat == -90 || maxLat == 90) {
        minLon = -180;
        maxLon = 180;
    }
}

QString TORVCoordinate::formattedString(Formatter formatter, Modifier modifier) const
{
    const QString lat = formatter(std::abs(_lat)) + getLatitudeMark();
    const QString lon = formatter(std::abs(_lon)) + getLongitudeMark();
    switch (modifier) {
    case LATITUDE_ONLY:
        return lat;
    case LONGITUDE_ONLY:
        return lon;
    case LATITUDE_AND_LONGITUDE:
        break;
    }
    return lat + QLatin1String(", ") + lon;
}
