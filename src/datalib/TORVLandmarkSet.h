#pragma once

#include "datalib/TORVLandmark.h"

#include <QVector>

#include <boost/shared_ptr.hpp>

/**
 * The landmarks of one radar's area. The area is a box of degrees; its upper corner lies west of the lower one where
 * the box goes over the date line.
 *
 * Ownership: landmarks are shared with the list that they come from.
 *
 * Thread: caller locks while it is filled; afterwards nobody changes it, and any thread may read.
 */
class TORVLandmarkSet final
{
public:
    using Ptr = boost::shared_ptr<TORVLandmarkSet>;
    using CPtr = boost::shared_ptr<const TORVLandmarkSet>;
    using Landmarks = QVector<TORVLandmark::CPtr>;

    TORVLandmarkSet(const TORVCoordinate& center, const TORVCoordinate& lowerLeft, const TORVCoordinate& upperRight);

    const TORVCoordinate& getCenter() const { return _center; }
    const TORVCoordinate& getLowerLeft() const { return _lowerLeft; }
    const TORVCoordinate& getUpperRight() const { return _upperRight; }
    const Landmarks& getLandmarks() const { return _landmarks; }

    /// Whether the place lies in the area; its bounds belong to it.
    bool contains(const TORVCoordinate& location) const;

    void append(const TORVLandmark::CPtr& landmark) { _landmarks.append(landmark); }

private:
    TORVCoordinate _center;
    TORVCoordinate _lowerLeft;
    TORVCoordinate _upperRight;
    Landmarks _landmarks;
};
