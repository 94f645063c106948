#include "visualization/TORVHomeCaption.h"

#include <vtkCamera.h>
#include <vtkCoordinate.h>
#include <vtkMath.h>
#include <vtkObjectFactory.h>
#include <vtkRenderer.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>
#include <vtkWindow.h>

namespace
{

constexpr double Drop = 26.0; // from the point to the middle of the text, pixels at 72 dots an inch

} // namespace

TORVHomeCaption* TORVHomeCaption::New()
{
    VTK_STANDARD_NEW_BODY(TORVHomeCaption);
}

TORVHomeCaption::TORVHomeCaption()
{
    BorderOff();
    LeaderOff();
    SetPadding(0);
    GetTextActor()->SetTextScaleModeToNone(); // else the font is as large as a box that nobody sees
    GetCaptionTextProperty()->SetJustificationToCentered();
    GetCaptionTextProperty()->SetVerticalJustificationToCentered();
}

TORVHomeCaption::~TORVHomeCaption() = default;

int TORVHomeCaption::RenderOpaqueGeometry(vtkViewport* viewport)
{
    if (!isInFront(viewport)) {
        return 0;
    }
    GetPositionCoordinate()->SetValue(0.0, -Drop * viewport->GetVTKWindow()->GetDPI() / 72.0);
    return Superclass::RenderOpaqueGeometry(viewport);
}

int TORVHomeCaption::RenderOverlay(vtkViewport* viewport)
{
    return isInFront(viewport) ? Superclass::RenderOverlay(viewport) : 0;
}

bool TORVHomeCaption::isInFront(vtkViewport* viewport) const
{
    auto* const renderer = vtkRenderer::SafeDownCast(viewport);
    if (!renderer) {
        return true;
    }
    vtkCamera* const camera = renderer->GetActiveCamera();
    double fromCamera[3];
    vtkMath::Subtract(AttachmentPointCoordinate->GetValue(), camera->GetPosition(), fromCamera);
    return vtkMath::Dot(fromCamera, camera->GetDirectionOfProjection()) > 0.0;
}
