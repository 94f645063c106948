#pragma once

#include <vtkCommand.h>

class TORVCameraInteractorObserver;

/**
 * Passes events of a TORVCameraInteractor on to an observer: CameraResetEvent and InteractionEvent. Events of other
 * objects go nowhere.
 *
 * Thread: main thread only.
 * Ownership: the observer outlives this object, or is taken away first.
 */
class TORVCameraInteractorCallback final : public vtkCommand
{
public:
    static TORVCameraInteractorCallback* New();
    // VTK's macro has no semicolon, which would make one statement of the two.
    // clang-format off
    vtkTypeMacro(TORVCameraInteractorCallback, vtkCommand)

    /// Null for nobody.
    void setObserver(TORVCameraInteractorObserver* observer) { _observer = observer; }
    // clang-format on

    void Execute(vtkObject* caller, unsigned long event, void* data) override;

private:
    TORVCameraInteractorObserver* _observer = nullptr;
};
