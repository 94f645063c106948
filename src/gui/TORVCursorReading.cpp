#include "gui/TORVCursorReading.h"

#include "datalib/TORVTerrainSet.h"
#include "visualization/TORVSceneGrid.h"
#include "visualization/TORVVolumeFilter.h"

#include <vtkDataArray.h>
#include <vtkImageData.h>
#include <vtkPointData.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnsignedShortArray.h>

#include <cassert>
#include <cmath>

namespace
{

constexpr double DegreesPerRadian = 180.0 / 3.14159265;
constexpr double KilometresPerMetre = 0.001;
constexpr double FarSide = 3.0; // Earth radii along the ground; the antipode is at pi
constexpr double Nothing = 0.1; // metres: where a projection's centre is written with six decimals of a degree

using Index = std::array<int, 3>;

// The grid point that is nearest; none beyond half a step outside of the grid.
std::optional<int> nearest(double steps, int points)
{
    if (!(steps >= -0.5 && steps < points - 0.5)) {
        return {};
    }
    return static_cast<int>(std::floor(steps + 0.5));
}

std::optional<Index> gridPoint(const TORVFile& file, const TORVPoint3D& point)
{
    const TORVSceneGrid grid(file);
    const std::optional<int> column = nearest((point.x + grid.radarX) / grid.step.x, file.getXPoints());
    const std::optional<int> row = nearest((point.y + grid.radarY) / grid.step.y, file.getYPoints());
    const std::optional<int> level = nearest((point.z - grid.elevation) / grid.step.z, file.getZPoints());
    if (!column || !row || !level) {
        return {};
    }
    return Index{*column, *row, *level};
}

// A cell of the image stands in the middle of the grid points that it was made of.
std::optional<vtkIdType> imagePoint(vtkImageData& image, const Index& gridPoint)
{
    const double place[] = {static_cast<double>(gridPoint[0]), static_cast<double>(gridPoint[1]),
                            TORVVolumeFilter::LevelSpacing * gridPoint[2]};
    const double* const origin = image.GetOrigin();
    const double* const spacing = image.GetSpacing();
    const int* const extent = image.GetExtent();
    Index index{};
    for (std::size_t axis = 0; axis < index.size(); ++axis) {
        const double steps = std::round((place[axis] - origin[axis]) / spacing[axis]);
        if (!(steps >= extent[2 * axis] && steps <= extent[2 * axis + 1])) {
            return {};
        }
        index[axis] = static_cast<int>(steps);
    }
    return image.ComputePointId(index.data());
}

template <typename Array>
std::optional<unsigned int> itemAt(vtkDataArray* scalars, vtkIdType point)
{
    Array* const items = Array::SafeDownCast(scalars);
    if (!items || point >= items->GetNumberOfTuples()) {
        return {};
    }
    return items->GetValue(point);
}

// Direction from west to east along a parallel, and from south to north along a meridian, comes from the bearing.
double signedKm(const TORVCoordinate& from, const TORVCoordinate& to, double above, double below)
{
    const double metres = from.getDistanceTo(to);
    if (metres < Nothing) {
        return 0.0;
    }
    const double bearing = from.getBearingTo(to);
    return (bearing > above && bearing < below ? -metres : metres) * KilometresPerMetre;
}

} // namespace

std::array<double, 6> TORVCursorReading::calculateBounds(const TORVFile& file)
{
    const TORVSceneGrid grid(file);
    return {-grid.radarX,   grid.size.x - grid.radarX,   -grid.radarY, grid.size.y - grid.radarY,
            grid.elevation, grid.elevation + grid.size.z};
}

bool TORVCursorReading::isOnEarth(const TORVFile& file, const TORVPoint3D& point)
{
    return std::isfinite(point.z) && std::hypot(point.x, point.y) < FarSide * file.getEarthRadius();
}

std::optional<unsigned int> TORVCursorReading::sample(const TORVFile& file, vtkDataSet* dataSet,
                                                      const TORVPoint3D& point)
{
    vtkImageData* const image = vtkImageData::SafeDownCast(dataSet);
    const std::optional<Index> place = gridPoint(file, point);
    if (!image || !place) {
        return {};
    }
    const std::optional<vtkIdType> cell = imagePoint(*image, *place);
    if (!cell) {
        return {};
    }
    vtkDataArray* const scalars = image->GetPointData()->GetScalars();
    const std::optional<unsigned int> raw = file.getItemSize() == 1 ? itemAt<vtkUnsignedCharArray>(scalars, *cell)
                                                                    : itemAt<vtkUnsignedShortArray>(scalars, *cell);
    const auto noData = static_cast<unsigned int>(file.getDataType().getNoDataValue());
    return raw && *raw != noData ? raw : std::nullopt;
}

TORVCoordinate TORVCursorReading::location(const TORVFile& file, const TORVPoint3D& point)
{
    return file.getGeoProjection()->projectToLatLon({point.x, point.y, 0.0});
}

std::optional<double> TORVCursorReading::groundElevation(const TORVTerrainSet* terrain, const TORVCoordinate& place)
{
    if (!terrain || !terrain->isLoaded()) {
        return {};
    }
    return terrain->getElevationAtLocation(place);
}

TORVCursorReading::FromHome TORVCursorReading::homePointCalculations(const TORVFile::CPtr& file3d,
                                                                     const TORVPoint3D& home, const TORVPoint3D& cursor)
{
    assert(file3d);
    const TORVCoordinate from = location(*file3d, home);
    const TORVCoordinate to = location(*file3d, cursor);
    const double dx = cursor.x - home.x;
    const double dy = cursor.y - home.y;
    const double dz = cursor.z - home.z;
    const double ground = std::sqrt(dx * dx + dy * dy);

    FromHome result;
    result.home = from;
    result.groundKm = ground * KilometresPerMetre;
    result.slantKm = std::sqrt(ground * ground + dz * dz) * KilometresPerMetre;
    result.elevationDeg = std::atan2(dz, ground) * DegreesPerRadian;
    result.bearingDeg = from.getBearingTo(to);
    result.rangeKm = from.getDistanceTo(to) * KilometresPerMetre;
    result.northKm = signedKm(from, TORVCoordinate(to.getLat(), from.getLon()), 90.0, 270.0);
    result.eastKm = signedKm(from, TORVCoordinate(from.getLat(), to.getLon()), 180.0, 360.0);
    return result;
}
