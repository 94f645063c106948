#include "datalib/TORVTerrainSeam.h"

#include "datalib/TORVTerrainCache.h"
#include "datalib/TORVTerrainFile.h"

#include <vtkDataArray.h>
#include <vtkMath.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>

#include <array>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

namespace
{

constexpr int Side = TORVTerrainCache::MeshSide;
constexpr int StepsADegree = Side - 1;
constexpr int StepsRound = 360 * StepsADegree;

// Sources of different kinds differ by some metres on their common edge; more is a cliff at the end of the data.
constexpr double SameGround_m = 25.0;

using Normal = std::array<double, 3>;

struct EdgePoint
{
    vtkPolyData* mesh;
    vtkIdType index;
    double height;
    Normal normal;
};

// In steps of the meshes, eastwards and northwards; longitudes that mean the same place are the same number.
using Place = std::pair<int, int>;
using Places = std::map<Place, std::vector<EdgePoint>>;

bool isEdge(int column, int row)
{
    return column == 0 || row == 0 || column == Side - 1 || row == Side - 1;
}

bool hasNormals(vtkPolyData* mesh)
{
    vtkDataArray* const normals = mesh != nullptr ? mesh->GetPointData()->GetNormals() : nullptr;
    return normals != nullptr && normals->GetNumberOfTuples() == vtkIdType(Side) * Side;
}

void collect(const TORVTerrainFile& block, Places& places)
{
    vtkPolyData* const mesh = block.getPolyData();
    if (!hasNormals(mesh)) {
        return;
    }
    const auto west = static_cast<int>(std::lround(block.getCorner().getLon() * StepsADegree)) + StepsRound;
    const auto south = static_cast<int>(std::lround(block.getCorner().getLat() * StepsADegree));
    for (int row = 0; row < Side; ++row) {
        for (int column = 0; column < Side; ++column) {
            if (!isEdge(column, row)) {
                continue;
            }
            EdgePoint point = {mesh, vtkIdType(row) * Side + column, 0.0, {}};
            double position[3] = {};
            mesh->GetPoint(point.index, position);
            point.height = position[2];
            mesh->GetPointData()->GetNormals()->GetTuple(point.index, point.normal.data());
            places[{(west + column) % StepsRound, south + row}].push_back(point);
        }
    }
}

void join(const std::vector<EdgePoint>& points)
{
    for (const EdgePoint& point : points) {
        Normal mean = {};
        for (const EdgePoint& other : points) {
            if (std::abs(other.height - point.height) <= SameGround_m) {
                vtkMath::Add(mean.data(), other.normal.data(), mean.data());
            }
        }
        if (vtkMath::Normalize(mean.data()) > 0.0) {
            point.mesh->GetPointData()->GetNormals()->SetTuple(point.index, mean.data());
        }
    }
}

} // namespace

void TORVTerrainSeam::join(const QVector<boost::shared_ptr<TORVTerrainFile>>& blocks)
{
    Places places;
    for (const boost::shared_ptr<TORVTerrainFile>& block : blocks) {
        collect(*block, places);
    }
    for (const auto& place : places) {
        ::join(place.second);
    }
}
