#pragma once

#include <vtkCommand.h>
#include <vtkSmartPointer.h>

class TORVCameraInteractor;

/**
 * Moves the camera to where the user has turned the compass. Only what the user has changed is passed on: the compass
 * can't tell a camera that looks up from one that looks at the horizon, nor one without a target.
 *
 * Thread: main thread only.
 */
class TORVCompassInteractionCallback final : public vtkCommand
{
public:
    static TORVCompassInteractionCallback* New();
    // clang-format off
    vtkTypeMacro(TORVCompassInteractionCallback, vtkCommand)
        // clang-format on

        /// @param camera  null to move none
        void setCamera(TORVCameraInteractor* camera);

    /// Nothing happens for a caller that is no compass widget.
    void Execute(vtkObject* caller, unsigned long event, void* data) override;

protected:
    TORVCompassInteractionCallback();
    ~TORVCompassInteractionCallback() override;

private:
    vtkSmartPointer<TORVCameraInteractor> _camera;
};
