#pragma once

#include <vtkAssembly.h>
#include <vtkNew.h>
#include <vtkProp3D.h>

/**
 * Draws flat things without depth testing, so that sheets and lines in one plane never fight with each other or with
 * the ground: what is drawn later covers what was drawn before, and nothing of it hides what stands behind.
 *
 * The layer is one leaf of the scene: an assembly that holds it calls the layer's own render operations and not those
 * of its parts. Its scale and place hold for all of its parts.
 *
 * Thread: built on any one thread, without a part that is on screen; drawn and moved on the main thread.
 */
class TORV2DLayerActor final : public vtkProp3D
{
public:
    static TORV2DLayerActor* New();
    // VTK's macro has no semicolon, which would make one statement of the two.
    // clang-format off
    vtkTypeMacro(TORV2DLayerActor, vtkProp3D)
    TORV2DLayerActor(const TORV2DLayerActor&) = delete;
    // clang-format on
    void operator=(const TORV2DLayerActor&) = delete;

    /// Parts are drawn in the order in which they came.
    void AddPart(vtkProp3D* part);
    vtkProp3DCollection* GetParts() { return _assembly->GetParts(); }

    /// Of the parts where they are drawn; null where there is nothing to be seen.
    double* GetBounds() override;
    using vtkProp3D::GetBounds;

    vtkTypeBool HasTranslucentPolygonalGeometry() override;
    void ReleaseGraphicsResources(vtkWindow* window) override;
    void ShallowCopy(vtkProp* prop) override;

    /// Each answers how many parts have drawn something. Depth testing is afterwards as it was before.
    int RenderOpaqueGeometry(vtkViewport* viewport) override;
    int RenderTranslucentPolygonalGeometry(vtkViewport* viewport) override;
    int RenderVolumetricGeometry(vtkViewport* viewport) override;
    int RenderOverlay(vtkViewport* viewport) override;

protected:
    TORV2DLayerActor() = default;
    ~TORV2DLayerActor() override = default;

private:
    using Operation = int (vtkProp::*)(vtkViewport* viewport);
    int renderParts(vtkViewport* viewport, Operation operation);

    vtkNew<vtkAssembly> _assembly; // at the origin always: whoever draws gives it this layer's place
};
