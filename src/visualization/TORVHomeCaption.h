#pragma once

#include <vtkCaptionActor2D.h>

/**
 * The name of a point under its marker, without a frame or a line to it: as far below at any resolution of the screen,
 * and not drawn while the point lies behind the camera, where it would be mirrored into the picture.
 *
 * Thread: main thread only.
 */
class TORVHomeCaption final : public vtkCaptionActor2D
{
public:
    static TORVHomeCaption* New();
    // VTK's macro has no semicolon, which would make one statement of the two.
    // clang-format off
    vtkTypeMacro(TORVHomeCaption, vtkCaptionActor2D)
    TORVHomeCaption(const TORVHomeCaption&) = delete;
    // clang-format on
    void operator=(const TORVHomeCaption&) = delete;

    int RenderOpaqueGeometry(vtkViewport* viewport) override;
    int RenderOverlay(vtkViewport* viewport) override;

protected:
    TORVHomeCaption();
    ~TORVHomeCaption() override;

private:
    bool isInFront(vtkViewport* viewport) const;
};
