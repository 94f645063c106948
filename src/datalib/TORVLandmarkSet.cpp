#include "datalib/TORVLandmarkSet.h"

namespace
{

constexpr double FullTurn = 360.0;

bool isBetween(double value, double min, double max)
{
    return value >= min && value <= max;
}

} // namespace

TORVLandmarkSet::TORVLandmarkSet(const TORVCoordinate& center, const TORVCoordinate& lowerLeft,
                                 const TORVCoordinate& upperRight)
    : _center(center), _lowerLeft(lowerLeft), _upperRight(upperRight)
{
}

bool TORVLandmarkSet::contains(const TORVCoordinate& location) const
{
    if (!isBetween(location.getLat(), _lowerLeft.getLat(), _upperRight.getLat())) {
        return false;
    }
    const double west = _lowerLeft.getLon();
    const bool isOverDateLine = _upperRight.getLon() < west;
    const double east = isOverDateLine ? _upperRight.getLon() + FullTurn : _upperRight.getLon();
    const double lon = location.getLon();
    return isBetween(lon, west, east) || (isOverDateLine && isBetween(lon + FullTurn, west, east));
}
