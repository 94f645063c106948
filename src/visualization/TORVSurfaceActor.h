#pragma once

#include <vtkOpenGLActor.h>

/**
 * The surfaces of an echo, the innermost first in their mesh. Where OpenGL runs on the processor, a window on the move
 * is given the faces that look at the eye alone: a third of the time, and as they come from inside to outside each
 * shell lies over what it encloses without any sorting.
 *
 * Thread: made on any thread; main thread only as soon as it is in a window.
 */
class TORVSurfaceActor final : public vtkOpenGLActor
{
public:
    static TORVSurfaceActor* New();
    // VTK's macro has no semicolon, which would make one statement of the two.
    // clang-format off
    vtkTypeMacro(TORVSurfaceActor, vtkOpenGLActor)
    TORVSurfaceActor(const TORVSurfaceActor&) = delete;
    // clang-format on
    void operator=(const TORVSurfaceActor&) = delete;

    int RenderOpaqueGeometry(vtkViewport* viewport) override;
    int RenderTranslucentPolygonalGeometry(vtkViewport* viewport) override;

protected:
    TORVSurfaceActor();
    ~TORVSurfaceActor() override;

private:
    void chooseFaces(vtkViewport* viewport);
};
