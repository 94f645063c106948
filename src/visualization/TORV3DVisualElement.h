#pragma once

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVLayerElement.h"

#include <vtkAlgorithm.h>
#include <vtkSmartPointer.h>

#include <boost/shared_ptr.hpp>

class TORVColormap;
class vtkFlyingEdges3D;
class vtkImageData;
class vtkPolyDataMapper;
class vtkSmartVolumeMapper;
class vtkVolume;
class vtkVolumeProperty;

/**
 * The 3-D product, as a volume or as iso-surfaces.
 *
 * New parameters have the file read at once; what is drawn of it is made when the layer is seen. Afterwards the
 * finished image and the finished geometry are all that is left: no filter hangs on them that could run again.
 *
 * The prop's own coordinates are columns, rows and five times the level, counted from the grid's first point; whoever
 * shows it scales and places it.
 */
class TORV3DVisualElement final : public TORVLayerElement<TORVLayerParameters3d>
{
public:
    TORV3DVisualElement(TORVVisualGroup* parent, int id);
    ~TORV3DVisualElement() override;

    void invalidate() override;

    /// Gives the finished image; null when there is none.
    vtkAlgorithm* getData() const { return _data; }

    /// Null before the prop is made.
    const boost::shared_ptr<TORVColormap>& getColormap() const { return _colormap; }

protected:
    void rebuild(const std::atomic<bool>& abort) override;
    void complete(bool visible, const std::atomic<bool>& abort) override;

private:
    void createVTKData(const std::atomic<bool>& abort);
    void createVTK();
    bool updateVTK();
    void runAlgorithm();

    void createVolumes();
    void createSurfaces();
    void updateVolumes();
    void updateSurfaces();
    vtkSmartPointer<vtkImageData> getImage() const;
    void reportUnknownType();

    boost::shared_ptr<TORVColormap> _colormap;
    vtkSmartPointer<vtkAlgorithm> _data;
    vtkSmartPointer<vtkVolume> _volume;
    vtkSmartPointer<vtkFlyingEdges3D> _contourFilter;
    vtkSmartPointer<vtkPolyDataMapper> _mapper;
    vtkSmartPointer<vtkSmartVolumeMapper> _volumeMapper;
    vtkSmartPointer<vtkVolumeProperty> _volumeProperty;
    double _seconds = 0.0; // of the update that runs
};
