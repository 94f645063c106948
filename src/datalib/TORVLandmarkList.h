#pragma once

#include "datalib/TORVLandmarkSet.h"

#include <QVector>

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <mutex>

/**
 * All named places of the installation, from the settings file "TORV3DLandmarks" of the organisation: an array
 * "landmarks" in the group "LANDMARKS".
 *
 * The file is believed as far as it can be meant: an entry without a position on the globe is left out, a priority
 * above 5 counts as 5, a colour is brought into 0 to 1. Where there is no file there are no landmarks.
 *
 * Thread: made and loaded on the main thread; `getLandmarkSet` on any thread while nobody loads.
 */
class TORVLandmarkList final
{
public:
    using Ptr = boost::shared_ptr<TORVLandmarkList>;
    using CPtr = boost::shared_ptr<const TORVLandmarkList>;

    /// Loaded.
    TORVLandmarkList();

    void load();

    const TORVLandmarkSet::Landmarks& getLandmarks() const { return _landmarks; }

    /// The landmarks between two corners, in the order of the list; never null. Who asks for the area that was asked
    /// for last is given the same set as long as somebody holds it: frames of one radar share theirs.
    TORVLandmarkSet::Ptr getLandmarkSet(const TORVCoordinate& center, const TORVCoordinate& lowerLeft,
                                        const TORVCoordinate& upperRight) const;

    /// The list as a text of a settings file, in UTF-8 on standard output.
    void printIniFormat() const;

private:
    TORVLandmarkSet::Ptr makeLandmarkSet(const TORVCoordinate& center, const TORVCoordinate& lowerLeft,
                                         const TORVCoordinate& upperRight) const;

    TORVLandmarkSet::Landmarks _landmarks;
    mutable std::mutex _mutex;
    mutable boost::weak_ptr<TORVLandmarkSet> _lastSet; // guarded by _mutex
};
