#include "visualization/TORVLandmarkLabel.h"

#include "visualization/TORVLabelRoom.h"
#include "visualization/TORVOutlinedText.h"
#include "visualization/TORVSceneFont.h"

#include <vtkActor.h>
#include <vtkCamera.h>
#include <vtkCoordinate.h>
#include <vtkMath.h>
#include <vtkMatrix4x4.h>
#include <vtkObjectFactory.h>
#include <vtkOpenGLRenderWindow.h>
#include <vtkOpenGLState.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderer.h>
#include <vtkSphereSource.h>
#include <vtkTextProperty.h>

#include <vtk_glew.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double SphereRadius_m = 1000.0;
constexpr double RulerLength_px = 10.0;
constexpr double RadiusPerRuler = 0.2;
constexpr int SphereResolution = 12; // round enough for the few pixels that it has
constexpr int FontSize = 12;
constexpr double DotsAnInch = 72.0;
// From the middle of the dot to the lower left corner of the name.
constexpr double TextRight_px = 7.0;
constexpr double TextGap_px = 4.0; // at least, from the edge of a large dot
constexpr double TextBelow_px = 5.0;

} // namespace

// Where a place is seen. Pixels are the device's, from the lower left corner of the viewport.
struct TORVLandmarkLabel::Spot
{
    double x;
    double y;
    double dotRadius; // pixels
    double dotRadius_m;
    double pixelScale; // device pixels in a pixel at 72 dots an inch
};

TORVLandmarkLabel* TORVLandmarkLabel::New()
{
    VTK_STANDARD_NEW_BODY(TORVLandmarkLabel);
}

TORVLandmarkLabel::TORVLandmarkLabel()
{
    _sphere->SetRadius(SphereRadius_m);
    _sphere->SetThetaResolution(SphereResolution);
    _sphere->SetPhiResolution(SphereResolution);
    _mapper->SetInputConnection(_sphere->GetOutputPort());
    _mapper->ScalarVisibilityOff();
    _sphere->Update();
    _mapper->StaticOn(); // it never changes: no picture need ask whether it has
    _sphereActor->SetMapper(_mapper);
    _sphereActor->GetProperty()->LightingOff();
    _sphereActor->GetProperty()->BackfaceCullingOn();
    TORVSceneFont::apply(_textActor->GetTextProperty(), FontSize);
    // VTK makes the picture of a text anew when its position changes, but not when what that refers to does.
    _anchor->SetCoordinateSystemToViewport();
    _textActor->GetPositionCoordinate()->SetCoordinateSystemToViewport();
    _textActor->GetPositionCoordinate()->SetReferenceCoordinate(_anchor);
    _textActor->SetPosition(0.0, 0.0);
}

TORVLandmarkLabel::~TORVLandmarkLabel() = default;

void TORVLandmarkLabel::SetWorldPosition(double x, double y, double z)
{
    _position[0] = x;
    _position[1] = y;
    _position[2] = z;
    Modified();
}

void TORVLandmarkLabel::SetColor(double r, double g, double b)
{
    _color[0] = r;
    _color[1] = g;
    _color[2] = b;
    _sphereActor->GetProperty()->SetColor(_color);
    _textActor->GetTextProperty()->SetColor(_color);
    Modified();
}

void TORVLandmarkLabel::SetText(const std::string& text)
{
    _text = text;
    _textActor->SetInput(_text.c_str());
    Modified();
}

void TORVLandmarkLabel::SetTextStyle(double opacity, const double outline[3])
{
    _textActor->GetTextProperty()->SetOpacity(opacity);
    _textActor->SetOutlineColor(outline);
    Modified();
}

void TORVLandmarkLabel::SetRoom(const boost::shared_ptr<TORVLabelRoom>& room, bool isFirst)
{
    _room = room;
    _isFirst = isFirst;
}

int TORVLandmarkLabel::RenderOpaqueGeometry(vtkViewport* viewport)
{
    if (_room && _isFirst) {
        _room->clear();
    }
    Spot spot;
    _isTextShown = false;
    if (!find(viewport, spot)) {
        return 0;
    }
    placeText(viewport, spot);
    return renderDot(viewport, spot);
}

int TORVLandmarkLabel::RenderOverlay(vtkViewport* viewport)
{
    return _isTextShown ? _textActor->RenderOverlay(viewport) : 0;
}

int TORVLandmarkLabel::RenderTranslucentPolygonalGeometry(vtkViewport* /*viewport*/)
{
    return 0;
}

vtkTypeBool TORVLandmarkLabel::HasTranslucentPolygonalGeometry()
{
    return 0;
}

void TORVLandmarkLabel::ReleaseGraphicsResources(vtkWindow* window)
{
    vtkActor2D::ReleaseGraphicsResources(window);
    _sphereActor->ReleaseGraphicsResources(window);
    _textActor->ReleaseGraphicsResources(window);
}

void TORVLandmarkLabel::ShallowCopy(vtkProp* prop)
{
    if (auto* const other = TORVLandmarkLabel::SafeDownCast(prop)) {
        _sphereActor->ShallowCopy(other->_sphereActor);
        _textActor->ShallowCopy(other->_textActor);
        _textActor->SetPosition(0.0, 0.0);
        SetWorldPosition(other->_position[0], other->_position[1], other->_position[2]);
        std::copy(other->_color, other->_color + 3, _color);
        _text = other->_text;
    }
    vtkActor2D::ShallowCopy(prop);
}

// Whether the dot can be seen at all.
bool TORVLandmarkLabel::find(vtkViewport* viewport, Spot& spot) const
{
    auto* const renderer = vtkRenderer::SafeDownCast(viewport);
    const int* const size = viewport->GetSize();
    if (!renderer || size[0] <= 1 || size[1] <= 1) {
        return false;
    }
    vtkMatrix4x4* const toPicture =
        renderer->GetActiveCamera()->GetCompositeProjectionTransformMatrix(renderer->GetTiledAspectRatio(), -1.0, 1.0);
    const double place[4] = {_position[0], _position[1], _position[2], 1.0};
    double seen[4];
    toPicture->MultiplyPoint(place, seen);
    if (seen[3] <= 0.0 || std::abs(seen[2]) > seen[3]) {
        return false; // behind the eye, or nearer or farther than anything is drawn
    }
    spot.x = (seen[0] / seen[3] + 1.0) / 2.0 * size[0];
    spot.y = (seen[1] / seen[3] + 1.0) / 2.0 * size[1];
    spot.pixelScale = viewport->GetVTKWindow()->GetDPI() / DotsAnInch;

    const double ruler = RulerLength_px * spot.pixelScale;
    const double beside[4] = {seen[0] + 2.0 * ruler / size[0] * seen[3], seen[1], seen[2], seen[3]};
    double end[4];
    vtkNew<vtkMatrix4x4> toScene;
    vtkMatrix4x4::Invert(toPicture, toScene);
    toScene->MultiplyPoint(beside, end);
    for (int i = 0; i < 3; ++i) {
        end[i] /= end[3];
    }
    const double rulerLength_m = std::sqrt(vtkMath::Distance2BetweenPoints(_position, end));
    spot.dotRadius_m = SphereRadius_m + RadiusPerRuler * rulerLength_m;
    spot.dotRadius = spot.dotRadius_m / rulerLength_m * ruler;
    return spot.x + spot.dotRadius > 0.0 && spot.x - spot.dotRadius < size[0] && spot.y + spot.dotRadius > 0.0 &&
           spot.y - spot.dotRadius < size[1];
}

int TORVLandmarkLabel::renderDot(vtkViewport* viewport, const Spot& spot)
{
    _sphereActor->SetPosition(_position[0], _position[1], _position[2]);
    _sphereActor->SetScale(spot.dotRadius_m / SphereRadius_m);
    auto* const window = vtkOpenGLRenderWindow::SafeDownCast(viewport->GetVTKWindow());
    if (!window) {
        return 0;
    }
    const vtkOpenGLState::ScopedglEnableDisable restored(window->GetState(), GL_DEPTH_TEST);
    window->GetState()->vtkglDisable(GL_DEPTH_TEST);
    return _sphereActor->RenderOpaqueGeometry(viewport);
}

// On whole pixels, else the letters blur.
void TORVLandmarkLabel::placeText(vtkViewport* viewport, const Spot& spot)
{
    const double right = std::max(TextRight_px * spot.pixelScale, spot.dotRadius + TextGap_px * spot.pixelScale);
    const int anchor[2] = {static_cast<int>(std::lround(spot.x + right)),
                           static_cast<int>(std::lround(spot.y - TextBelow_px * spot.pixelScale))};
    _anchor->SetValue(anchor[0], anchor[1]);
    if (_text.empty()) {
        return;
    }
    _textActor->RenderOpaqueGeometry(viewport); // makes the picture of the text
    _isTextShown = takeRoom(viewport, anchor);
}

bool TORVLandmarkLabel::takeRoom(vtkViewport* viewport, const int anchor[2])
{
    if (!_room) {
        return true;
    }
    double box[4];
    _textActor->GetBoundingBox(viewport, box);
    return _room->take({anchor[0] + box[0], anchor[0] + box[1], anchor[1] + box[2], anchor[1] + box[3]});
}
