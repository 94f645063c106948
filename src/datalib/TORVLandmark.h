#pragma once

#include "utils/TORVCoordinate.h"

#include <QString>

#include <boost/shared_ptr.hpp>

/**
 * A named place that the scene shows as a label. The altitude is in metres above sea level; the colour's parts run from
 * 0 to 1, the priority from 0 to 5.
 *
 * Thread: immutable, any thread.
 */
class TORVLandmark final
{
public:
    using Ptr = boost::shared_ptr<TORVLandmark>;
    using CPtr = boost::shared_ptr<const TORVLandmark>;

    static constexpr int MaxPriority = 5;

    struct Color
    {
        double red = 0.0;
        double green = 0.0;
        double blue = 0.0;
    };

    TORVLandmark(QString label, const TORVCoordinate& location, double altitude, bool hasAltitude, const Color& color,
                 int priority);

    const QString& getLabel() const { return _label; }
    const TORVCoordinate& getLocation() const { return _location; }
    double getAltitude() const { return _altitude; }
    double getRed() const { return _color.red; }
    double getGreen() const { return _color.green; }
    double getBlue() const { return _color.blue; }
    int getPriority() const { return _priority; }

    /// Whether the file tells the altitude. Where it doesn't the altitude is 0, and the place is on the ground.
    bool hasAltitude() const { return _hasAltitude; }

private:
    QString _label;
    TORVCoordinate _location;
    double _altitude;
    Color _color;
    int _priority;
    bool _hasAltitude;
};
