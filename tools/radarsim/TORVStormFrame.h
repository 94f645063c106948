#pragma once

#include "radarsim/TORVStormField.h"

#include <cmath>
#include <initializer_list>

/**
 * The coordinates of a moving storm: km ahead of its centre along its motion, and km to the left of that.
 *
 * Thread: a plain value, any thread.
 */
struct TORVStormFrame
{
    float centreX = 0.0F;
    float centreY = 0.0F;
    float forwardX = 1.0F; ///< unit vector of the motion
    float forwardY = 0.0F;

    /// `towards` in radians clockwise from north.
    static TORVStormFrame at(float x, float y, float towards) { return {x, y, std::sin(towards), std::cos(towards)}; }

    float ahead(const TORVFieldPoint& point) const
    {
        return (point.x - centreX) * forwardX + (point.y - centreY) * forwardY;
    }

    float left(const TORVFieldPoint& point) const
    {
        return (point.y - centreY) * forwardX - (point.x - centreX) * forwardY;
    }

    float toX(float ahead, float left) const { return centreX + ahead * forwardX - left * forwardY; }

    float toY(float ahead, float left) const { return centreY + ahead * forwardY + left * forwardX; }

    /// Adds a wind given in the storm's directions.
    void addWind(TORVAirSample& sample, float ahead, float left) const
    {
        sample.u += ahead * forwardX - left * forwardY;
        sample.v += ahead * forwardY + left * forwardX;
    }

    /// The box round everything within `behind`, `before`, `right` and `leftward` km of the centre.
    TORVFieldBounds box(float behind, float before, float right, float leftward, float top) const
    {
        TORVFieldBounds bounds{1e9F, -1e9F, 1e9F, -1e9F, top};
        for (const float a : {-behind, before}) {
            for (const float l : {-right, leftward}) {
                bounds.west = std::fmin(bounds.west, toX(a, l));
                bounds.east = std::fmax(bounds.east, toX(a, l));
                bounds.south = std::fmin(bounds.south, toY(a, l));
                bounds.north = std::fmax(bounds.north, toY(a, l));
            }
        }
        return bounds;
    }
};
