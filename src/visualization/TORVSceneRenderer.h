#pragma once

#include <vtkOpenGLRenderer.h>

/**
 * The renderer of a scene: sorts translucent surfaces one layer at a time. VTK's own choice, two layers at a time,
 * stops after the first two wherever something opaque stands behind all that is translucent, on some drivers at least:
 * an echo seen from above over the ground would lose its core.
 *
 * Thread: main thread only.
 */
class TORVSceneRenderer final : public vtkOpenGLRenderer
{
public:
    static TORVSceneRenderer* New();
    // VTK's macro has no semicolon, which would make one statement of the two.
    // clang-format off
    vtkTypeMacro(TORVSceneRenderer, vtkOpenGLRenderer)
    TORVSceneRenderer(const TORVSceneRenderer&) = delete;
    // clang-format on
    void operator=(const TORVSceneRenderer&) = delete;

protected:
    TORVSceneRenderer();
    ~TORVSceneRenderer() override;
};
