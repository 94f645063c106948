#pragma once

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVLayerElement.h"

#include <vtkSmartPointer.h>

class vtkProperty;

/**
 * The ground: an assembly of the blocks of a terrain set, in metres of its projection with the true heights. Whoever
 * shows it makes it taller.
 *
 * Ownership: meshes and pictures are the set's and shared by all windows; actors, mappers and textures are this
 * element's own, since they keep the state of one window.
 */
class TORV3DTerrainElement final : public TORVLayerElement<TORVLayerParametersTerrain>
{
public:
    TORV3DTerrainElement(TORVVisualGroup* parent, int id);
    ~TORV3DTerrainElement() override;

    void invalidate() override;
    void restyle() override;

protected:
    /// Loads the set, which may take minutes; returns soon after `abort` is set, and then without a prop.
    void rebuild(const std::atomic<bool>& abort) override;

private:
    void createVTK(const std::atomic<bool>& abort);

    vtkSmartPointer<vtkProperty> _property; // of all blocks
};
