#include "visualization/TORVFlatLabel.h"

#include <vtkCamera.h>
#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkObjectFactory.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double DotsAnInch = 72.0;

// Of a pixel at a point of the scene, square to the view; 0 behind the eye.
double metresPerPixel(vtkRenderer* renderer, const double* point)
{
    vtkCamera* const camera = renderer->GetActiveCamera();
    const double rows = renderer->GetSize()[1];
    if (camera->GetParallelProjection()) {
        return 2.0 * camera->GetParallelScale() / rows;
    }
    double ray[3];
    vtkMath::Subtract(point, camera->GetPosition(), ray);
    const double distance = vtkMath::Dot(ray, camera->GetDirectionOfProjection());
    const double halfAngle = vtkMath::RadiansFromDegrees(camera->GetViewAngle()) / 2.0;
    return std::max(0.0, 2.0 * distance * std::tan(halfAngle) / rows);
}

} // namespace

TORVFlatLabel* TORVFlatLabel::New()
{
    VTK_STANDARD_NEW_BODY(TORVFlatLabel);
}

TORVFlatLabel::TORVFlatLabel() = default;

TORVFlatLabel::~TORVFlatLabel() = default;

void TORVFlatLabel::SetPlace(const std::array<double, 2>& place, const std::array<double, 2>& offset)
{
    _place = place;
    _offset = offset;
    show(_height);
}

void TORVFlatLabel::SetHeight(double height)
{
    _height = height;
    show(_height);
}

void TORVFlatLabel::Fit(vtkViewport* viewport, vtkMatrix4x4* layer)
{
    auto* const renderer = vtkRenderer::SafeDownCast(viewport);
    if (!renderer || renderer->GetSize()[1] <= 0) {
        return;
    }
    const double inLayer[4] = {_place[0], _place[1], 0.0, 1.0};
    double point[4];
    layer->MultiplyPoint(inLayer, point);
    const double pixel = metresPerPixel(renderer, point) * renderer->GetRenderWindow()->GetDPI() / DotsAnInch;
    show(std::max(_height, LeastHeight_px * pixel));
}

void TORVFlatLabel::show(double height)
{
    SetScale(height, height, 1.0);
    SetPosition(_place[0] + _offset[0] * height, _place[1] + _offset[1] * height, 0.0);
}
