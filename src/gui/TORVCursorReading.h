#pragma once

#include "datalib/TORVFile.h"
#include "utils/TORVCoordinate.h"
#include "utils/TORVPoint3D.h"

#include <array>
#include <optional>

class TORVTerrainSet;
class vtkDataSet;

/**
 * What a point of the scene tells: what the volume that is drawn holds there, where on the Earth that is, and how it
 * lies from a home point. Everything is worked out anew from what is passed in; nothing is kept.
 *
 * Points are in metres of the scene with the radar at x = y = 0 and z true metres above sea level: whoever has a point
 * of the stretched scene divides its z by the vertical scale.
 *
 * Thread: any thread, while nobody writes to the data set.
 */
class TORVCursorReading final
{
public:
    TORVCursorReading() = delete;

    /// How the cursor lies from the home point.
    struct FromHome
    {
        TORVCoordinate home{0.0, 0.0};
        double northKm = 0.0;      ///< along the meridian, negative towards the south
        double eastKm = 0.0;       ///< along the parallel, negative towards the west
        double rangeKm = 0.0;      ///< on the surface of the Earth
        double groundKm = 0.0;     ///< straight, in the plane of the scene
        double slantKm = 0.0;      ///< straight, with the heights of the scene
        double bearingDeg = 0.0;   ///< clockwise from north, 0 to 360
        double elevationDeg = 0.0; ///< above the plane of the scene
    };

    /// The box of the volume's grid points: xmin, xmax, ymin, ymax, zmin, zmax.
    static std::array<double, 6> calculateBounds(const TORVFile& file);

    /// Whether the point can be asked where on the Earth it lies: it is finite, and not on the far side.
    static bool isOnEarth(const TORVFile& file, const TORVPoint3D& point);

    /**
     * The stored value of the cell that is drawn at the point.
     * @param image  as `TORVVolumeFilter` makes it of this file, in whatever resolution; may be null
     * @return none outside the grid, where there is no data, and where the image has other items than the file
     */
    static std::optional<unsigned int> sample(const TORVFile& file, vtkDataSet* image, const TORVPoint3D& point);

    /// The place of a point that is on the Earth.
    static TORVCoordinate location(const TORVFile& file, const TORVPoint3D& point);

    /// Metres above sea level; none while there is no ground.
    static std::optional<double> groundElevation(const TORVTerrainSet* terrain, const TORVCoordinate& place);

    /// Both points are on the Earth.
    static FromHome homePointCalculations(const TORVFile::CPtr& file3d, const TORVPoint3D& home,
                                          const TORVPoint3D& cursor);
};
