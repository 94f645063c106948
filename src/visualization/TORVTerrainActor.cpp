#include "visualization/TORVTerrainActor.h"

#include "visualization/TORVFramePacer.h"
#include "visualization/TORVMatt.h"
#include "visualization/TORVTerrainMesh.h"
#include "visualization/TORVVolumePath.h"

#include <vtkCamera.h>
#include <vtkImageData.h>
#include <vtkObjectFactory.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkRenderer.h>
#include <vtkTexture.h>

namespace
{

constexpr int Anisotropy = 8;
constexpr int MovingFactor = 3;

// The mesh never changes: no picture need ask whether it has.
void setInput(vtkPolyDataMapper* mapper, vtkPolyData* mesh)
{
    mapper->SetInputData(mesh);
    mapper->ScalarVisibilityOff();
    mapper->StaticOn();
}

} // namespace

TORVTerrainActor* TORVTerrainActor::New()
{
    VTK_STANDARD_NEW_BODY(TORVTerrainActor);
}

TORVTerrainActor::TORVTerrainActor()
{
    SetMapper(_whole);
    TORVMatt::apply(this);
}

TORVTerrainActor::~TORVTerrainActor() = default;

// A copy of its own, since VTK works some things out on the first question and windows ask at the same time.
void TORVTerrainActor::SetMesh(vtkPolyData* mesh)
{
    vtkNew<vtkPolyData> own;
    own->ShallowCopy(mesh);
    if (TORVTerrainMesh::isLevel(own)) {
        const vtkSmartPointer<vtkPolyData> level = TORVTerrainMesh::thinned(own, TORVTerrainMesh::LevelFactor);
        setInput(_whole, level);
        setInput(_quick, level);
        return;
    }
    setInput(_whole, own);
    setInput(_quick, TORVTerrainMesh::thinned(own, MovingFactor));
}

void TORVTerrainActor::SetPicture(vtkImageData* picture)
{
    if (!picture) {
        SetTexture(nullptr);
        return;
    }
    vtkNew<vtkImageData> own;
    own->ShallowCopy(picture);
    vtkNew<vtkTexture> texture;
    texture->SetInputData(own);
    texture->InterpolateOn();
    texture->MipmapOn();
    texture->SetMaximumAnisotropicFiltering(Anisotropy);
    texture->EdgeClampOn(); // else a block's edge takes colour from its opposite one
    texture->RepeatOff();
    SetTexture(texture);
}

int TORVTerrainActor::RenderOpaqueGeometry(vtkViewport* viewport)
{
    if (isOutside(viewport)) {
        return 0;
    }
    const bool isSoftware = TORVVolumePath::isSoftware();
    if (GetTexture()) {
        GetTexture()->SetMaximumAnisotropicFiltering(isSoftware ? 1.0F : static_cast<float>(Anisotropy));
    }
    SetMapper(isSoftware && TORVFramePacer::isQuick(viewport) ? _quick : _whole);
    return vtkOpenGLActor::RenderOpaqueGeometry(viewport);
}

bool TORVTerrainActor::isOutside(vtkViewport* viewport)
{
    auto* const renderer = vtkRenderer::SafeDownCast(viewport);
    const double* const bounds = GetBounds();
    if (!renderer || !bounds) {
        return false;
    }
    double planes[24]; // a, b, c, d of six, that are positive inside
    renderer->GetActiveCamera()->GetFrustumPlanes(renderer->GetTiledAspectRatio(), planes);
    for (const double* plane = planes; plane != planes + 24; plane += 4) {
        double nearest = plane[3];
        for (int axis = 0; axis < 3; ++axis) {
            nearest += plane[axis] * bounds[2 * axis + (plane[axis] > 0.0 ? 1 : 0)];
        }
        if (nearest < 0.0) {
            return true;
        }
    }
    return false;
}
