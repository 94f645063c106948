#pragma once

#include "datalib/TORVFile.h"

#include <boost/shared_ptr.hpp>

#include <vtkSmartPointer.h>

#include <vector>

class vtkImageData;
class vtkPolyData;
class vtkRenderer;

/**
 * The picture of one volume product: iso-surfaces over the box of its grid.
 *
 * The scene is in metres. Its origin is the radar, at sea level; x points east, y north, z up, heights drawn
 * `VerticalScale` times too tall. Grid point (i, j, k) stands at
 *   ((i - xRadar) * dx, (j - yRadar) * dy, (elevation + k * dz) * VerticalScale).
 *
 * Thread: `build` on any thread; the finished object then goes to the main thread, which alone calls `addTo`.
 */
class TORVProductScene final
{
public:
    using CPtr = boost::shared_ptr<const TORVProductScene>;

    static constexpr double VerticalScale = 5.0;

    /// One iso-surface: its value in the product's unit and how it is drawn (colour and opacity 0..1).
    struct Surface
    {
        double value;
        double red;
        double green;
        double blue;
        double opacity;
    };

    /// The surfaces of a reflectivity product, weakest first.
    static const std::vector<Surface>& reflectivitySurfaces();

    /// Reads the product and does all filter work. Null when its data can't be read; the user is told in the history.
    static CPtr build(const TORVFile::CPtr& file, const std::vector<Surface>& surfaces);

    ~TORVProductScene();
    TORVProductScene(const TORVProductScene&) = delete;
    TORVProductScene& operator=(const TORVProductScene&) = delete;
    const TORVFile::CPtr& getFile() const { return _file; }

    /// West, east, south, north, bottom, top of the grid, in scene metres.
    const double* getBounds() const { return _bounds; }

    /// The geometry of surface `index`.
    vtkPolyData* getSurface(std::size_t index) const;

    void addTo(vtkRenderer* renderer) const;

private:
    TORVProductScene(TORVFile::CPtr file, std::vector<Surface> surfaces);
    void contour(vtkImageData* image);

    TORVFile::CPtr _file;
    std::vector<Surface> _surfaces;
    std::vector<vtkSmartPointer<vtkPolyData>> _geometry;
    double _bounds[6] = {};
};
