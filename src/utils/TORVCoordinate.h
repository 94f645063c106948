#pragma once

#include <QString>

/**
 * A geographic position in degrees, north and east positive.
 *
 * Each value is normalised at construction: from -180 to 180 it stays, within one more turn it is brought back,
 * anything else (NaN included) becomes 0. Latitudes follow the same rule, so 200 degrees of latitude read as -160.
 *
 * Thread: a plain value, any thread.
 */
class TORVCoordinate final
{
public:
    /// What a text holds.
    enum Modifier : int
    {
        LATITUDE_AND_LONGITUDE = 0, ///< joined by ", "
        LATITUDE_ONLY = 1,
        LONGITUDE_ONLY = 2
    };

    /// From binary angles: the full circle is 2 to the 32nd.
    TORVCoordinate(unsigned int lat, unsigned int lon);

    /// In degrees.
    TORVCoordinate(double lat, double lon);

    /// From degrees, minutes and seconds; the hemispheres "s" and "w", in either case, negate.
    TORVCoordinate(int latDeg, unsigned int latMin, unsigned int latSec, char latHemisphere, int lonDeg,
                   unsigned int lonMin, unsigned int lonSec, char lonHemisphere);

    double getLat() const { return _lat; }
    double getLon() const { return _lon; }

    /// "N" or "S"; the equator is north.
    QChar getLatitudeMark() const;
    /// "E" or "W"; the meridian of Greenwich is east.
    QChar getLongitudeMark() const;

    /**
     * Degrees clockwise from north, 0 to 360, and metres, both on the ellipsoid of 6378137 m and 1/298.257 whatever a
     * product's own Earth is. Each call makes a projection of its own: for single questions, not for loops.
     */
    double getBearingTo(const TORVCoordinate& other) const;
    double getDistanceTo(const TORVCoordinate& other) const;

    /// "60.1234° N, 25.1234° E"
    QString toDecimalString(Modifier modifier = LATITUDE_AND_LONGITUDE) const;
    /// With seconds: 60° 7' 24.24" N
    QString toDmString(Modifier modifier = LATITUDE_AND_LONGITUDE) const;
    /// With decimal minutes, closed by a double quote: 60° 7.404" N
    QString toDMsString(Modifier modifier = LATITUDE_AND_LONGITUDE) const;

    /// Metres of one degree of longitude at this latitude.
    double calcOneLonDegLength() const;
    /// Metres of the degree of latitude that leads towards the equator.
    double calcOneLatDegLength() const;

    /**
     * The box of whole degrees that reaches `distance` metres, and at least `minDegrees` of latitude, in each
     * direction. A box that touches a pole goes round the whole globe; elsewhere the longitudes may pass 180 at the
     * date line.
     */
    void calcLatLonBounds(double distance, int& minLat, int& maxLat, int& minLon, int& maxLon, int minDegrees) const;

private:
    using Formatter = QString (*)(double absoluteValue);
    QString formattedString(Formatter formatter, Modifier modifier) const;

    double _lat = 0.0;
    double _lon = 0.0;
};
