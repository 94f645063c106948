#pragma once

#include "datalib/TORVLandmark.h"
#include "settings/TORVLayerParameters.h"
#include "utils/TORVPoint3D.h"
#include "visualization/TORVLayerElement.h"

#include <vtkSmartPointer.h>

#include <vector>

class TORVLandmarkLabel;

/**
 * Landmarks with their names, 150 m above where they are, as tall as the scene shows heights. A landmark without an
 * altitude stands on the terrain, so the terrain is loaded before.
 *
 * As long as landmarks and projection are the same, the labels stay and only move. Where names would overlap, that of
 * the higher priority is written. A landmark that lies opposite the radar on the globe has no place in its plane and is
 * left out.
 */
class TORVGeoLabelsElement final : public TORVLayerElement<TORVLayerParametersGeoLabels>
{
public:
    TORVGeoLabelsElement(TORVVisualGroup* parent, int id);
    ~TORVGeoLabelsElement() override;

    void invalidate() override;
    void place() override;
    void restyle() override;

    /// In the order of drawing: the most important first.
    const std::vector<vtkSmartPointer<TORVLandmarkLabel>>& getLabels() const { return _labels; }

protected:
    void rebuild(const std::atomic<bool>& abort) override;

private:
    void createVTK();
    void createLabels();
    void updatePlaces();
    TORVPoint3D placeOf(const TORVLandmark& landmark) const;
    bool isBuiltOfPresentSet() const;

    std::vector<TORVLandmark::CPtr> _landmarks; // parallel to _labels
    std::vector<TORVPoint3D> _places;           // parallel to _labels, where the next `place` puts them
    std::vector<vtkSmartPointer<TORVLandmarkLabel>> _labels;
    boost::shared_ptr<const TORVLandmarkSet> _builtSet; // what the labels were made of
    TORVGeoProjection::CPtr _builtProjection;
};
