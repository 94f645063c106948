#include "support/OffscreenScene.h"

#include <QPointF>

#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkUnsignedCharArray.h>

OffscreenScene::OffscreenScene(int width, int height)
{
    _window->SetOffScreenRendering(1);
    _window->SetMultiSamples(0);
    _window->SetSize(width, height);
}

OffscreenScene::~OffscreenScene() = default;

QImage OffscreenScene::picture()
{
    _window->Render();
    const int* const size = _window->GetSize();
    vtkNew<vtkUnsignedCharArray> pixels;
    _window->GetPixelData(0, 0, size[0] - 1, size[1] - 1, 0, pixels);
    const QImage bottomUp(pixels->GetPointer(0), size[0], size[1], 3 * size[0], QImage::Format_RGB888);
    return bottomUp.mirrored();
}

QPointF OffscreenScene::pixelOf(vtkRenderer* renderer, double x, double y, double z)
{
    renderer->SetWorldPoint(x, y, z, 1.0);
    renderer->WorldToDisplay();
    const double* const display = renderer->GetDisplayPoint();
    return {display[0], renderer->GetSize()[1] - 1.0 - display[1]};
}
