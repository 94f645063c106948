#pragma once

#include <QImage>

#include <vtkNew.h>

class vtkRenderWindow;
class vtkRenderer;

/**
 * A render window that nobody sees, for tests that prove a picture by its pixels: one size, no multisampling.
 *
 * Thread: main thread; needs an X display.
 */
class OffscreenScene final
{
public:
    explicit OffscreenScene(int width = 300, int height = 300);
    ~OffscreenScene();
    OffscreenScene(const OffscreenScene&) = delete;
    OffscreenScene& operator=(const OffscreenScene&) = delete;
    vtkRenderWindow* window() const { return _window; }

    /// Draws and reads back.
    QImage picture();

    /// Where a point of the scene falls in `picture`, pixels from the upper left corner.
    static QPointF pixelOf(vtkRenderer* renderer, double x, double y, double z);

private:
    vtkNew<vtkRenderWindow> _window;
};
