#include "visualization/TORVCompassInteractionCallback.h"

#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVCompassRepresentation.h"

#include <vtkCompassWidget.h>
#include <vtkMath.h>
#include <vtkObjectFactory.h>

#include <cmath>

namespace
{

constexpr double HeadingPi = 3.1415927410125732; // in single precision, as `TORVCompassRepresentation` divides by it
constexpr double TiltPi = 3.14159265;

double headingOf(vtkCompassWidget* widget)
{
    return vtkMath::Pi() / 2.0 - widget->GetHeading() * 2.0 * HeadingPi;
}

double pitchOf(vtkCompassWidget* widget)
{
    return widget->GetTilt() * TiltPi / 180.0;
}

} // namespace

TORVCompassInteractionCallback* TORVCompassInteractionCallback::New()
{
    VTK_STANDARD_NEW_BODY(TORVCompassInteractionCallback);
}

TORVCompassInteractionCallback::TORVCompassInteractionCallback() = default;

TORVCompassInteractionCallback::~TORVCompassInteractionCallback() = default;

void TORVCompassInteractionCallback::setCamera(TORVCameraInteractor* camera)
{
    _camera = camera;
}

void TORVCompassInteractionCallback::Execute(vtkObject* caller, unsigned long, void*)
{
    if (!_camera || !caller || !caller->IsA("vtkCompassWidget")) {
        return;
    }
    auto* const widget = vtkCompassWidget::SafeDownCast(caller);
    auto* const compass = TORVCompassRepresentation::SafeDownCast(widget->GetRepresentation());
    if (!compass) {
        return;
    }
    const TORVCompassRepresentation::Shown shown = compass->getShown();
    const bool isTurned = widget->GetHeading() != shown.heading;
    const bool isTilted = widget->GetTilt() != shown.tilt;
    const bool isZoomed = widget->GetDistance() != shown.distance;
    if (isTurned || isTilted || isZoomed) {
        _camera->setCameraByHPD(isTurned ? headingOf(widget) : _camera->getHeading(),
                                isTilted ? pitchOf(widget) : _camera->getPitch(),
                                isZoomed ? widget->GetDistance() : std::abs(_camera->getTargetDistance()));
        _camera->userMoved();
    }
}
