#include "visualization/TORVTerrainMesh.h"

#include <vtkCellArray.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>

#include <cmath>

vtkSmartPointer<vtkPolyData> TORVTerrainMesh::thinned(vtkPolyData* mesh, int factor)
{
    const auto side = static_cast<vtkIdType>(std::lround(std::sqrt(static_cast<double>(mesh->GetNumberOfPoints()))));
    if (side * side != mesh->GetNumberOfPoints() || side <= factor || (side - 1) % factor != 0) {
        return mesh;
    }
    const vtkIdType thinSide = (side - 1) / factor + 1;
    vtkNew<vtkIdList> kept;
    vtkNew<vtkCellArray> triangles;
    for (vtkIdType row = 0; row < thinSide; ++row) {
        for (vtkIdType column = 0; column < thinSide; ++column) {
            const vtkIdType i = kept->InsertNextId(factor * row * side + factor * column);
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

bool TORVTerrainMesh::isLevel(vtkPolyData* mesh)
{
    const double* const bounds = mesh->GetBounds();
    return bounds[4] == bounds[5];
}
