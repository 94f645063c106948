#pragma once

#include "support/OffscreenScene.h"
#include "support/SandboxedHome.h"
#include "visualization/SceneMouse.h"
#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVCameraInteractorCallback.h"
#include "visualization/TORVCompassInteractionCallback.h"
#include "visualization/TORVCompassRepresentation.h"

#include <gtest/gtest.h>

#include <vtkCompassWidget.h>
#include <vtkPropCollection.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTextActor.h>

#include <cmath>
#include <string>

/**
 * A compass in a window of 300 x 300 pixels: its middle is at (234, 234), its radius is 52, and the ring goes from 39
 * to 47 pixels. The camera looks north and 45 degrees down at the origin from 200 km. Thread: test's thread.
 */
class CompassScene : public testing::Test
{
protected:
    static constexpr int Middle = 300 - 14 - 52;
    static constexpr int OnRing = 43;
    static constexpr double North = M_PI / 2.0; // as the camera tells headings
    static constexpr double Distance = 200000.0 * M_SQRT2;

    CompassScene()
    {
        scene.window()->AddRenderer(renderer);
        camera->setRenderer(renderer);
        camera->SetInteractor(mouse.interactor());
        camera->AddObserver(vtkCommand::InteractionEvent, cameraCallback);
        camera->AddObserver(TORVCameraInteractor::CameraResetEvent, cameraCallback);
        cameraCallback->setObserver(compass);
        callback->setCamera(camera);
        widget->SetRepresentation(compass);
        widget->SetInteractor(mouse.interactor());
        widget->SetDefaultRenderer(renderer);
        widget->AddObserver(vtkCommand::InteractionEvent, callback);
        look(0.0, 1.0, -1.0);
    }

    ~CompassScene() override
    {
        widget->SetEnabled(0);
        camera->SetInteractor(nullptr);
    }

    /// From where a camera at 200 km sees the origin in that direction, if it looks down.
    void look(double x, double y, double z)
    {
        camera->resetCamera({-200000.0 * x, -200000.0 * y, 200000.0 * std::abs(z)}, {x, y, z}, 1.0e6, 5.0e5);
        camera->applyCamera(false);
    }

    void show()
    {
        widget->SetEnabled(1);
        scene.window()->Render();
    }

    vtkTextActor* text(int index) const
    {
        vtkNew<vtkPropCollection> parts;
        compass->GetActors(parts);
        return vtkTextActor::SafeDownCast(parts->GetItemAsObject(index));
    }

    vtkTextActor* label() const { return text(1); }
    vtkTextActor* status() const { return text(2); }
    std::string statusText() const { return status()->GetInput(); }

    SandboxedHome home;
    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
    SceneMouse mouse{scene.window()};
    vtkNew<TORVCameraInteractor> camera;
    vtkNew<TORVCompassRepresentation> compass;
    vtkNew<TORVCameraInteractorCallback> cameraCallback;
    vtkNew<TORVCompassInteractionCallback> callback;
    vtkNew<vtkCompassWidget> widget;
};
