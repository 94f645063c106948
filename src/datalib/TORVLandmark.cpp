#include "datalib/TORVLandmark.h"

#include <utility>

TORVLandmark::TORVLandmark(QString label, const TORVCoordinate& location, double altitude, bool hasAltitude,
                           const Color& color, int priority)
    : _label(std::move(label)), _location(location), _altitude(altitude), _color(color), _priority(priority),
      _hasAltitude(hasAltitude)
{
}
