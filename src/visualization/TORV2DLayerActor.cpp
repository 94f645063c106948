#include "visualization/TORV2DLayerActor.h"

#include "visualization/TORVFlatLabel.h"

#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkObjectFactory.h>
#include <vtkOpenGLRenderWindow.h>
#include <vtkOpenGLState.h>
#include <vtkProp3DCollection.h>
#include <vtkViewport.h>
#include <vtk_glew.h>

#include <algorithm>

TORV2DLayerActor* TORV2DLayerActor::New()
{
    VTK_STANDARD_NEW_BODY(TORV2DLayerActor);
}

namespace
{

// Gives a prop a place of its own while it is drawn.
class Placed
{
public:
    Placed(vtkProp3D* prop, vtkMatrix4x4* outer) : _prop(prop)
    {
        vtkNew<vtkMatrix4x4> matrix;
        vtkMatrix4x4::Multiply4x4(outer, prop->GetMatrix(), matrix);
        _prop->PokeMatrix(matrix);
    }
    ~Placed() { _prop->PokeMatrix(nullptr); }
    Placed(const Placed&) = delete;
    Placed& operator=(const Placed&) = delete;

private:
    vtkProp3D* _prop;
};

} // namespace

void TORV2DLayerActor::AddPart(vtkProp3D* part)
{
    _assembly->AddPart(part);
    Modified();
}

double* TORV2DLayerActor::GetBounds()
{
    const Placed placed(_assembly, GetMatrix());
    const double* const bounds = _assembly->GetBounds();
    if (!bounds || !vtkMath::AreBoundsInitialized(bounds)) {
        vtkMath::UninitializeBounds(Bounds);
        return nullptr;
    }
    std::copy_n(bounds, 6, Bounds);
    return Bounds;
}

vtkTypeBool TORV2DLayerActor::HasTranslucentPolygonalGeometry()
{
    return _assembly->HasTranslucentPolygonalGeometry();
}

void TORV2DLayerActor::ReleaseGraphicsResources(vtkWindow* window)
{
    _assembly->ReleaseGraphicsResources(window);
    vtkProp3D::ReleaseGraphicsResources(window);
}

void TORV2DLayerActor::ShallowCopy(vtkProp* prop)
{
    if (auto* const other = SafeDownCast(prop)) {
        _assembly->ShallowCopy(other->_assembly);
    }
    vtkProp3D::ShallowCopy(prop);
}

int TORV2DLayerActor::RenderOpaqueGeometry(vtkViewport* viewport)
{
    return renderParts(viewport, &vtkProp::RenderOpaqueGeometry);
}

int TORV2DLayerActor::RenderTranslucentPolygonalGeometry(vtkViewport* viewport)
{
    // Asked once for each layer that is peeled, mostly for nothing.
    return HasTranslucentPolygonalGeometry() ? renderParts(viewport, &vtkProp::RenderTranslucentPolygonalGeometry) : 0;
}

int TORV2DLayerActor::RenderVolumetricGeometry(vtkViewport* viewport)
{
    return renderParts(viewport, &vtkProp::RenderVolumetricGeometry);
}

int TORV2DLayerActor::RenderOverlay(vtkViewport* viewport)
{
    return renderParts(viewport, &vtkProp::RenderOverlay);
}

int TORV2DLayerActor::renderParts(vtkViewport* viewport, Operation operation)
{
    auto* const window = vtkOpenGLRenderWindow::SafeDownCast(viewport->GetVTKWindow());
    vtkProp3DCollection* const parts = _assembly->GetParts();
    if (!window || parts->GetNumberOfItems() == 0) {
        return 0;
    }
    vtkOpenGLState* const state = window->GetState();
    const vtkOpenGLState::ScopedglEnableDisable restored(state, GL_DEPTH_TEST);
    state->vtkglDisable(GL_DEPTH_TEST);
    vtkNew<vtkMatrix4x4> place;
    place->DeepCopy(GetMatrix());
    int drawn = 0;
    vtkCollectionSimpleIterator position;
    parts->InitTraversal(position);
    while (vtkProp3D* const part = parts->GetNextProp3D(position)) {
        if (part->GetVisibility()) {
            if (auto* const label = TORVFlatLabel::SafeDownCast(part)) {
                label->Fit(viewport, place);
            }
            const Placed placed(part, place);
            part->SetPropertyKeys(GetPropertyKeys()); // what the present pass has to tell to mappers
            part->SetAllocatedRenderTime(AllocatedRenderTime / parts->GetNumberOfItems(), viewport);
            drawn += (part->*operation)(viewport);
        }
    }
    return drawn;
}
