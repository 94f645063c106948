#pragma once

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVLayerElement.h"

#include <vtkAlgorithm.h>
#include <vtkSmartPointer.h>

class TORVColormap;
class vtkActor;
class vtkDataSetMapper;

/**
 * The flat product: a sheet of cells in the exact colours of the scale "Default" of its data type, with holes where
 * there are no data.
 *
 * New parameters have the file read at once; what is drawn of it is made when the layer is seen.
 *
 * The prop's own coordinates are cells, from 0 to the number of columns and of rows: the cell of a grid point begins
 * half a step before it. Whoever shows it scales and places it.
 */
class TORV2DVisualElement final : public TORVLayerElement<TORVLayerParameters2d>
{
public:
    TORV2DVisualElement(TORVVisualGroup* parent, int id);
    ~TORV2DVisualElement() override;

    void invalidate() override;

    /// Gives the cells that hold data; null when there is no sheet.
    vtkAlgorithm* getData() const { return _data; }

protected:
    void rebuild(const std::atomic<bool>& abort) override;
    void complete(bool visible, const std::atomic<bool>& abort) override;

private:
    void createVTKData(const std::atomic<bool>& abort);
    void createVTK();
    void dropProp();

    vtkSmartPointer<vtkAlgorithm> _data;
    vtkSmartPointer<vtkDataSetMapper> _mapper;
    vtkSmartPointer<vtkActor> _actor;
    boost::shared_ptr<TORVColormap> _colormap;
    double _seconds = 0.0; // of the update that runs
};
