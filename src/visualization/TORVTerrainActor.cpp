#include "visualization/TORVTerrainActor.h"

#include "visualization/TORVVolumePath.h"

#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkIdList.h>
#include <vtkImageData.h>
#include <vtkObjectFactory.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkShaderProperty.h>
#include <vtkTexture.h>

#include <cmath>

namespace
{

constexpr int Anisotropy = 8;
constexpr double SlowestMotion = 1.0; // pictures a second; a window at rest asks for fewer

// Every second point of every second row. Null where a mesh can't be thinned so.
vtkSmartPointer<vtkPolyData> thinned(vtkPolyData* mesh)
{
    const auto side = static_cast<vtkIdType>(std::lround(std::sqrt(static_cast<double>(mesh->GetNumberOfPoints()))));
    if (side * side != mesh->GetNumberOfPoints() || side < 3 || side % 2 == 0) {
        return nullptr;
    }
    const vtkIdType thinSide = side / 2 + 1;
    vtkNew<vtkIdList> kept;
    vtkNew<vtkCellArray> triangles;
    for (vtkIdType row = 0; row < thinSide; ++row) {
        for (vtkIdType column = 0; column < thinSide; ++column) {
            const vtkIdType i = kept->InsertNextId(2 * row * side + 2 * column);
            if (row + 1 < thinSide && column + 1 < thinSide) {
                triangles->InsertNextCell({i, i + 1, i + 1 + thinSide});
                triangles->InsertNextCell({i, i + 1 + thinSide, i + thinSide});
            }
        }
    }
    vtkNew<vtkPoints> points;
    mesh->GetPoints()->GetPoints(kept, points);
    auto thin = vtkSmartPointer<vtkPolyData>::New();
    thin->SetPoints(points);
    thin->SetPolys(triangles);
    thin->GetPointData()->CopyAllocate(mesh->GetPointData(), kept->GetNumberOfIds());
    for (vtkIdType i = 0; i < kept->GetNumberOfIds(); ++i) {
        thin->GetPointData()->CopyData(mesh->GetPointData(), kept->GetId(i), i);
    }
    return thin;
}

// The mesh never changes: no picture need ask whether it has.
void setInput(vtkPolyDataMapper* mapper, vtkPolyData* mesh)
{
    mapper->SetInputData(mesh);
    mapper->ScalarVisibilityOff();
    mapper->StaticOn();
}

bool isMoving(vtkViewport* viewport)
{
    auto* const window = vtkRenderWindow::SafeDownCast(viewport->GetVTKWindow());
    return window && window->GetDesiredUpdateRate() > SlowestMotion;
}

} // namespace

vtkStandardNewMacro(TORVTerrainActor)

    TORVTerrainActor::TORVTerrainActor()
{
    SetMapper(_whole);
    // VTK works out the gloss whether there is any or not: a power for each light and pixel, an eighth of the time.
    GetShaderProperty()->AddFragmentShaderReplacement("sf = sign(df)*pow(", false, "sf = 0.0; //", true);
}

TORVTerrainActor::~TORVTerrainActor() = default;

// A copy of its own, since VTK works some things out on the first question and windows ask at the same time.
void TORVTerrainActor::SetMesh(vtkPolyData* mesh)
{
    vtkNew<vtkPolyData> own;
    own->ShallowCopy(mesh);
    setInput(_whole, own);
    const vtkSmartPointer<vtkPolyData> thin = thinned(mesh);
    setInput(_quick, thin ? thin.Get() : own.Get());
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
    SetMapper(isSoftware && isMoving(viewport) ? _quick : _whole);
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
