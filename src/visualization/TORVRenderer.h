#pragma once

#include "visualization/TORVVisualizationPipelineItem.h"

#include <QObject>

#include <vtkNew.h>

class TORVVisualization;
class vtkRenderWindow;
class vtkRenderer;

/**
 * Draws scenes into one render window: lights, background, camera at first sight, and how translucent surfaces are
 * sorted.
 *
 * Thread: main thread only.
 * Ownership: the window belongs to the widget and outlives this object.
 */
class TORVRenderer final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVRenderer)

public:
    explicit TORVRenderer(vtkRenderWindow* window, QObject* parent = nullptr);
    ~TORVRenderer() override;

    /// Shows the finished scene of `visualization` in place of what was shown; another site is seen from the south and
    /// above at first, the same site from where the camera is. Nothing is drawn before `render`.
    void setScene(const TORVVisualization& visualization);

    void render();
    vtkRenderer* getRenderer() const { return _renderer; }

private:
    void addLights();
    void sortTranslucentAtRest();
    void resetCamera(const double* bounds);

    vtkRenderWindow* _window;
    vtkNew<vtkRenderer> _renderer;
    TORVVisualizationPipelineItem::Ptr _scene;
};
