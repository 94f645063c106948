#pragma once

#include "support/OffscreenScene.h"
#include "support/SandboxedHome.h"
#include "visualization/SceneMouse.h"
#include "visualization/TORVPointWidget.h"
#include "visualization/TORVPointWidgetObserver.h"

#include <QPointF>

#include <gtest/gtest.h>

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCaptionActor2D.h>
#include <vtkPropAssembly.h>
#include <vtkPropCollection.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <vector>

/**
 * A 3-D cursor in a scene of 300 x 300 pixels seen from straight above: north is up, the radar in the middle, a pixel
 * is 1 km. The box of the data is 200 km wide and 10 km high. Thread: test's thread.
 */
class CursorScene : public testing::Test
{
protected:
    class Observer final : public TORVPointWidgetObserver
    {
    public:
        void pointWidgetUpdated(TORVPointWidget* caller, const TORVPoint3D& point) override
        {
            widget = caller;
            points.push_back(point);
        }

        TORVPointWidget* widget = nullptr;
        std::vector<TORVPoint3D> points;
    };

    static constexpr double Box[6] = {-100000.0, 100000.0, -100000.0, 100000.0, 0.0, 10000.0};
    static constexpr double NoBox[6] = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0};

    CursorScene()
    {
        renderer->AutomaticLightCreationOff();
        scene.window()->AddRenderer(renderer);
        lookDown();
        widget->SetInteractor(mouse.interactor());
        widget->SetDefaultRenderer(renderer);
        widget->init(&observer);
    }

    ~CursorScene() override { widget->destroy(); }

    void lookDown()
    {
        vtkCamera* const camera = renderer->GetActiveCamera();
        camera->ParallelProjectionOn();
        camera->SetParallelScale(150000.0);
        camera->SetPosition(0.0, 0.0, 500000.0);
        camera->SetFocalPoint(0.0, 0.0, 0.0);
        camera->SetViewUp(0.0, 1.0, 0.0);
        camera->SetClippingRange(100.0, 1000000.0);
    }

    /// As the renderer shows it.
    void show()
    {
        renderer->AddViewProp(widget->getActor());
        widget->SetEnabled(1);
        scene.window()->Render();
    }

    vtkProp* part(int index) const
    {
        return vtkProp::SafeDownCast(
            vtkPropAssembly::SafeDownCast(widget->getActor())->GetParts()->GetItemAsObject(index));
    }

    vtkActor* homeMarker() const { return vtkActor::SafeDownCast(part(0)); }
    vtkActor* cursorMarker() const { return vtkActor::SafeDownCast(part(1)); }
    vtkCaptionActor2D* caption() const { return vtkCaptionActor2D::SafeDownCast(part(2)); }

    SandboxedHome home;
    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
    SceneMouse mouse{scene.window()};
    Observer observer;
    vtkNew<TORVPointWidget> widget;
};

inline void expectPoint(const TORVPoint3D& point, double x, double y, double z, double tolerance = 1e-6)
{
    EXPECT_NEAR(point.x, x, tolerance);
    EXPECT_NEAR(point.y, y, tolerance);
    EXPECT_NEAR(point.z, z, tolerance);
}

inline void expectPlace(vtkProp3D* prop, double x, double y, double z)
{
    expectPoint({prop->GetPosition()[0], prop->GetPosition()[1], prop->GetPosition()[2]}, x, y, z);
}
