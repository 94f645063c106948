#include "visualization/TORVCameraInteractorCallback.h"

#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVCameraInteractorObserver.h"

TORVCameraInteractorCallback* TORVCameraInteractorCallback::New()
{
    return new TORVCameraInteractorCallback;
}

void TORVCameraInteractorCallback::Execute(vtkObject* caller, unsigned long event, void* /*data*/)
{
    if (!_observer || !caller || !caller->IsA("TORVCameraInteractor")) {
        return;
    }
    auto* const camera = static_cast<TORVCameraInteractor*>(caller);
    if (event == TORVCameraInteractor::CameraResetEvent) {
        _observer->cameraReset(camera);
    } else if (event == vtkCommand::InteractionEvent) {
        _observer->cameraMoved(camera);
    }
}
