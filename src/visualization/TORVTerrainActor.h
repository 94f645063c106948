#pragma once

#include <vtkNew.h>
#include <vtkOpenGLActor.h>
#include <vtkSmartPointer.h>

class vtkImageData;
class vtkPolyData;
class vtkPolyDataMapper;

/**
 * One block of ground. Where OpenGL runs on the processor most of its time goes into triangles of a few pixels, so
 * there a window on the move is given a mesh of a third of the points each way; and anisotropic filtering, which would
 * double what the ground costs, is left to graphics cards. A level block needs few points anywhere. A block that lies
 * outside the picture isn't drawn at all.
 *
 * Ownership: shares mesh and picture, which must not change any more.
 *
 * Thread: made on any thread; main thread only as soon as it is in a window.
 */
class TORVTerrainActor final : public vtkOpenGLActor
{
public:
    static TORVTerrainActor* New();
    // VTK's macro has no semicolon, which would make one statement of the two.
    // clang-format off
    vtkTypeMacro(TORVTerrainActor, vtkOpenGLActor)
    TORVTerrainActor(const TORVTerrainActor&) = delete;
    // clang-format on
    void operator=(const TORVTerrainActor&) = delete;

    /// @param mesh  rows of as many points as there are rows, from the first corner on, with normals and texture
    ///              coordinates
    void SetMesh(vtkPolyData* mesh);

    /// Null for a block without one.
    void SetPicture(vtkImageData* picture);

    int RenderOpaqueGeometry(vtkViewport* viewport) override;

protected:
    TORVTerrainActor();
    ~TORVTerrainActor() override;

private:
    bool isOutside(vtkViewport* viewport);

    vtkNew<vtkPolyDataMapper> _whole;
    vtkNew<vtkPolyDataMapper> _quick;
};
