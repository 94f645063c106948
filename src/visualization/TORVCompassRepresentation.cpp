#include "visualization/TORVCompassRepresentation.h"

#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVSceneFont.h"
#include "visualization/TORVSceneStyle.h"

#include <QCoreApplication>
#include <QTextStream>

#include <vtkActor2D.h>
#include <vtkMath.h>
#include <vtkObjectFactory.h>
#include <vtkPolyDataMapper2D.h>
#include <vtkPropCollection.h>
#include <vtkProperty2D.h>
#include <vtkRenderer.h>
#include <vtkTextActor.h>
#include <vtkTextProperty.h>
#include <vtkWindow.h>

#include <algorithm>
#include <cmath>

namespace
{

constexpr double FullTurn = 6.2831854820251465; // twice pi in single precision
constexpr double TiltPi = 3.14159265;
constexpr double DegreesPerRadian = 57.29577951308232;
constexpr double SmallestTurn = 1e-9;
constexpr double DistanceWithoutTarget = 9999.9;

// Pixels at 72 dots an inch.
constexpr double Side = 104.0;
constexpr double Margin = 14.0;
constexpr double LineWidth = 1.5;
constexpr double SmallestWithText = 40.0;
constexpr int LabelSize = 13;
constexpr int StatusSize = 11;

// In radii of the ring, from its middle.
constexpr double SliderLeft = -1.5;
constexpr double SliderRight = -1.2;
constexpr double SliderTop = 0.9;
constexpr double TextBottom = -1.3; // of the slider's title and of the status

constexpr double SliderReach = 0.4; // at its ends the slider halves the distance in 2.4 s, or doubles it in 1.4 s
constexpr double LongestStep_s = 0.5;

// VTK draws and feels the compass smaller while the mouse is elsewhere; ours keeps its size.
class HighlightHeld final
{
public:
    HighlightHeld(int& state, int held) : _state(state), _old(state) { _state = held; }

    ~HighlightHeld() { _state = _old; }

    HighlightHeld(const HighlightHeld&) = delete;
    HighlightHeld& operator=(const HighlightHeld&) = delete;

private:
    int& _state;
    int _old;
};

// VTK shrinks a compass of more than 40 pixels the more the larger it is: half the side that comes out as `radius`.
double halfSideFor(double radius)
{
    if (radius <= 40.0) {
        return radius;
    }
    const double linear = 120.0 - radius;
    return std::sqrt(linear * linear + 200.0 * radius) - linear;
}

// A hair's breadth before north is north, not a full turn.
double withinTurn(double fraction)
{
    if (std::abs(fraction) < SmallestTurn) {
        return 0.0;
    }
    return fraction < 0.0 || fraction > 1.0 ? fraction - std::floor(fraction) : fraction;
}

bool hasText(vtkTextActor* actor)
{
    const char* const text = actor->GetInput();
    return text && *text;
}

template <typename Property>
void paint(Property* property, const TORVPoint3D& colour, double opacity)
{
    property->SetColor(colour.x, colour.y, colour.z);
    property->SetOpacity(opacity);
}

void paint(vtkCenteredSliderRepresentation* slider, const TORVPoint3D& colour, double opacity)
{
    paint(slider->GetTubeProperty(), colour, opacity);
    paint(slider->GetSliderProperty(), colour, opacity);
    paint(slider->GetSelectedProperty(), colour, opacity);
    paint(slider->GetLabelProperty(), colour, opacity);
}

// VTK's slider has colours in its points, which would hide those of its properties.
void dropOwnColours(vtkCenteredSliderRepresentation* slider)
{
    vtkNew<vtkPropCollection> parts;
    slider->GetActors(parts);
    parts->InitTraversal();
    while (vtkProp* const part = parts->GetNextProp()) {
        auto* const actor = vtkActor2D::SafeDownCast(part);
        auto* const mapper = actor ? vtkPolyDataMapper2D::SafeDownCast(actor->GetMapper()) : nullptr;
        if (mapper) {
            mapper->ScalarVisibilityOff();
        }
    }
}

} // namespace

TORVCompassRepresentation* TORVCompassRepresentation::New()
{
    VTK_STANDARD_NEW_BODY(TORVCompassRepresentation);
}

TORVCompassRepresentation::TORVCompassRepresentation()
{
    Point1Coordinate->SetCoordinateSystemToViewport();
    Point2Coordinate->SetCoordinateSystemToViewport();
    StatusProperty->SetJustificationToCentered();
    StatusProperty->SetVerticalJustificationToBottom();
    DistanceRepresentation->SetTitleText(QCoreApplication::translate("VTK", "zoom").toUtf8().constData());
    DistanceRepresentation->SetMinimumValue(1.0 - SliderReach);
    DistanceRepresentation->SetMaximumValue(1.0 + SliderReach);
    dropOwnColours(DistanceRepresentation);
    TORVSceneFont::apply(LabelProperty, LabelSize);
    TORVSceneFont::apply(StatusProperty, StatusSize);
    TORVSceneFont::apply(DistanceRepresentation->GetLabelProperty(), StatusSize);
    loadStyle(true);
    updateColors();
}

TORVCompassRepresentation::~TORVCompassRepresentation() = default;

void TORVCompassRepresentation::cameraMoved(TORVCameraInteractor* camera)
{
    if (!camera) {
        return;
    }
    const double fraction = (vtkMath::Pi() / 2.0 - camera->getHeading()) / FullTurn;
    if (std::isfinite(fraction)) {
        SetHeading(withinTurn(fraction));
    }
    const double pitch = camera->getPitch();
    SetTilt(pitch >= 0.0 ? pitch * 180.0 / TiltPi : 0.0);
    const double distance = camera->getTargetDistance();
    SetDistance(distance > 0.0 ? distance : DistanceWithoutTarget);
    _shown = {GetHeading(), GetTilt(), GetDistance()};
}

void TORVCompassRepresentation::cameraReset(TORVCameraInteractor* camera)
{
    cameraMoved(camera);
}

void TORVCompassRepresentation::loadStyle(bool day)
{
    _isDay = day;
    const TORVSceneStyle style(QStringLiteral("COMPASS"), !day);
    const TORVSceneStyle::Color color = style.color("compass/color", {0.3, 0.3, 0.3});
    _foreground = {color[0], color[1], color[2]};
    _highlightedOpacity = style.number("compass/opacity/highlighted", 1.0, 0.0, 1.0);
    _nonHighlightedOpacity = style.number("compass/opacity/nonhighlighted", 1.0, 0.0, 1.0);
}

void TORVCompassRepresentation::toggleDisplayMode(bool day)
{
    loadStyle(day);
    updateColors();
}

void TORVCompassRepresentation::updateColors()
{
    updateForegroundColor(_foreground, HighlightState ? _highlightedOpacity : _nonHighlightedOpacity);
}

void TORVCompassRepresentation::updateForegroundColor(const TORVPoint3D& colour, double opacity)
{
    paint(RingProperty, colour, opacity);
    paint(SelectedProperty, colour, opacity);
    paint(LabelProperty, colour, opacity);
    paint(StatusProperty, colour, opacity);
    paint(TiltRepresentation, colour, opacity);
    paint(DistanceRepresentation, colour, opacity);
}

void TORVCompassRepresentation::BuildRepresentation()
{
    if (!Renderer || !Renderer->GetVTKWindow()) {
        return;
    }
    const Place place = placeInWindow();
    putInPlace(place);
    writeStatus(place);
    putSlider(place);
    updateColors();
}

TORVCompassRepresentation::Place TORVCompassRepresentation::placeInWindow() const
{
    const int* const size = Renderer->GetSize();
    const double ratio = Renderer->GetVTKWindow()->GetDPI() / 72.0;
    const double room = std::min(size[0], size[1]) - 2.0 * Margin * ratio;
    const double radius = std::max(std::min(Side * ratio, room), 2.0) / 2.0;
    return {ratio, size[0] - Margin * ratio - radius, size[1] - Margin * ratio - radius, radius};
}

void TORVCompassRepresentation::putInPlace(const Place& place)
{
    const double right = place.x + place.radius;
    const double top = place.y + place.radius;
    const double side = 2.0 * halfSideFor(place.radius);
    Point1Coordinate->SetValue(right - side, top - side, 0.0);
    Point2Coordinate->SetValue(right, top, 0.0);
    Modified(); // VTK builds nothing for a heading alone
    const HighlightHeld held(HighlightState, 1);
    Superclass::BuildRepresentation();
    LabelProperty->SetFontSize(LabelSize);
    RingProperty->SetLineWidth(static_cast<float>(LineWidth * place.pixelRatio));
    SelectedProperty->SetLineWidth(static_cast<float>(LineWidth * place.pixelRatio));
}

void TORVCompassRepresentation::writeStatus(const Place& place)
{
    QString text;
    if (place.radius > SmallestWithText * place.pixelRatio) {
        QTextStream stream(&text);
        stream << QCoreApplication::translate("VTK", "Heading") << ' '
               << Heading * 2.0 * vtkMath::Pi() * DegreesPerRadian;
    }
    StatusActor->SetInput(text.toUtf8().constData());
    StatusActor->SetPosition(place.x, place.y + TextBottom * place.radius);
    StatusProperty->SetFontSize(StatusSize);
}

void TORVCompassRepresentation::putSlider(const Place& place)
{
    const double bottom = place.y + TextBottom * place.radius;
    // Without a width it is never under the mouse.
    TiltRepresentation->GetPoint1Coordinate()->SetValue(place.x, bottom, 0.0);
    TiltRepresentation->GetPoint2Coordinate()->SetValue(place.x, bottom, 0.0);
    DistanceRepresentation->GetPoint1Coordinate()->SetValue(place.x + SliderLeft * place.radius, bottom, 0.0);
    DistanceRepresentation->GetPoint2Coordinate()->SetValue(place.x + SliderRight * place.radius,
                                                            place.y + SliderTop * place.radius, 0.0);
    DistanceRepresentation->Modified();
    DistanceRepresentation->BuildRepresentation();
    DistanceRepresentation->GetLabelProperty()->SetFontSize(StatusSize);
}

int TORVCompassRepresentation::RenderOpaqueGeometry(vtkViewport* viewport)
{
    BuildRepresentation();
    int count = RingActor->RenderOpaqueGeometry(viewport);
    count += LabelActor->RenderOpaqueGeometry(viewport);
    count += DistanceRepresentation->RenderOpaqueGeometry(viewport);
    if (hasText(StatusActor)) {
        count += StatusActor->RenderOpaqueGeometry(viewport);
    }
    return count;
}

int TORVCompassRepresentation::RenderOverlay(vtkViewport* viewport)
{
    BuildRepresentation();
    int count = RingActor->RenderOverlay(viewport);
    count += LabelActor->RenderOverlay(viewport);
    count += DistanceRepresentation->RenderOverlay(viewport);
    if (hasText(StatusActor)) {
        count += StatusActor->RenderOverlay(viewport);
    }
    return count;
}

void TORVCompassRepresentation::GetActors(vtkPropCollection* actors)
{
    actors->AddItem(RingActor);
    actors->AddItem(LabelActor);
    actors->AddItem(StatusActor);
    DistanceRepresentation->GetActors(actors);
}

void TORVCompassRepresentation::Highlight(int highlight)
{
    Superclass::Highlight(highlight);
    updateColors();
}

int TORVCompassRepresentation::ComputeInteractionState(int x, int y, int modify)
{
    if (!Renderer || !Renderer->GetVTKWindow()) {
        InteractionState = Outside;
        return InteractionState;
    }
    const HighlightHeld held(HighlightState, 1);
    InteractionState = DistanceAdjusting; // what stays for the slider's bar, of which VTK says nothing
    Superclass::ComputeInteractionState(x, y, modify);
    const Place place = placeInWindow();
    const bool isNear = x >= place.x + SliderLeft * place.radius && x <= place.x + place.radius &&
                        y >= place.y + TextBottom * place.radius && y <= place.y + place.radius;
    if (InteractionState == Inside && !isNear) {
        InteractionState = Outside;
    }
    return InteractionState;
}

void TORVCompassRepresentation::StartWidgetInteraction(double position[2])
{
    Superclass::StartWidgetInteraction(position);
    if (InteractionState == DistanceAdjusting) {
        DistanceWidgetInteraction(position);
    }
}

void TORVCompassRepresentation::TiltWidgetInteraction(double[2]) {}

void TORVCompassRepresentation::UpdateDistance(double seconds)
{
    Superclass::UpdateDistance(std::min(seconds, LongestStep_s));
}
