#pragma once

#include <vtkSmartPointer.h>

class vtkPolyData;

/**
 * What is drawn of the mesh of a block: rows of as many points as there are rows, with normals and texture coordinates.
 *
 * Thread: any thread; a mesh that is asked must not change, and by one thread at a time.
 */
class TORVTerrainMesh final
{
public:
    TORVTerrainMesh() = delete;

    /// Every how many points of a level block are enough for its sides to follow the curves of meridians and parallels.
    static constexpr int LevelFactor = 10;

    /// Every so many points of every so many rows; the mesh itself where it can't be thinned so.
    static vtkSmartPointer<vtkPolyData> thinned(vtkPolyData* mesh, int factor);

    /// Of the sea, and of what has no data.
    static bool isLevel(vtkPolyData* mesh);
};
