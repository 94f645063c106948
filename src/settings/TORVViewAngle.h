#pragma once

#include "utils/TORVPoint3D.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <utility>

/**
 * Where a camera stands and which way it looks, under a name: a preset of the view, or the view of the moment.
 *
 * Position in metres of the scene, z up. The direction may have any length but 0: whoever applies it makes a unit
 * vector of it.
 *
 * Thread: a plain value, any thread.
 */
class TORVViewAngle final
{
public:
    using Ptr = boost::shared_ptr<TORVViewAngle>;
    using CPtr = boost::shared_ptr<const TORVViewAngle>;

    TORVViewAngle() = default;

    TORVViewAngle(QString name, const TORVPoint3D& position, const TORVPoint3D& direction)
        : _name(std::move(name)), _position(position), _direction(direction)
    {
    }

    const QString& getName() const { return _name; }
    void setName(const QString& name) { _name = name; }
    const TORVPoint3D& getPosition() const { return _position; }
    void setPosition(const TORVPoint3D& position) { _position = position; }
    const TORVPoint3D& getDirection() const { return _direction; }
    void setDirection(const TORVPoint3D& direction) { _direction = direction; }

private:
    QString _name;
    TORVPoint3D _position;
    TORVPoint3D _direction;
};
