#include "visualization/TORVPointWidget.h"

#include "visualization/TORVHomeCaption.h"
#include "visualization/TORVPointWidgetCallback.h"
#include "visualization/TORVPointWidgetObserver.h"
#include "visualization/TORVSceneFont.h"

#include <QCoreApplication>

#include <vtkActor.h>
#include <vtkCellPicker.h>
#include <vtkObjectFactory.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkPropAssembly.h>
#include <vtkProperty.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>
#include <vtkSphereSource.h>
#include <vtkTextProperty.h>
#include <vtkWindow.h>

#include <algorithm>
#include <cassert>
#include <cmath>

namespace
{

constexpr double MarkerAmbient = 1.0;
constexpr double MarkerDiffuse = 0.4;
constexpr float BelowCompass = 0.4F; // which lies over the scene and is asked first; the camera comes last
constexpr double GrabDistance = 6.0; // from the cross hair, pixels at 72 dots an inch

// While it lives the interactor draws nothing: who switches the widget draws when all else is in its place as well.
class DrawingHeld final
{
public:
    explicit DrawingHeld(vtkRenderWindowInteractor* interactor)
        : _interactor(interactor && interactor->GetEnableRender() ? interactor : nullptr)
    {
        if (_interactor) {
            _interactor->EnableRenderOff();
        }
    }

    ~DrawingHeld()
    {
        if (_interactor) {
            _interactor->EnableRenderOn();
        }
    }

    DrawingHeld(const DrawingHeld&) = delete;
    DrawingHeld& operator=(const DrawingHeld&) = delete;

private:
    vtkRenderWindowInteractor* _interactor;
};

bool isFinite(const TORVPoint3D& point)
{
    return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

bool isBox(const double* bounds)
{
    return std::all_of(bounds, bounds + 6, [](double bound) { return std::isfinite(bound); }) &&
           bounds[0] <= bounds[1] && bounds[2] <= bounds[3] && bounds[4] <= bounds[5];
}

bool isAllZero(const double* bounds)
{
    return std::all_of(bounds, bounds + 6, [](double bound) { return bound == 0.0; });
}

// The part of the height of `bounds` at which z lies.
double heightFraction(double z, const std::array<double, 6>& bounds)
{
    const double height = bounds[5] - bounds[4];
    return height > 0.0 ? std::clamp((z - bounds[4]) / height, 0.0, 1.0) : 0.0;
}

vtkSmartPointer<vtkActor> makeMarker(vtkPolyDataMapper* mapper)
{
    auto marker = vtkSmartPointer<vtkActor>::New();
    marker->SetMapper(mapper);
    marker->GetProperty()->SetAmbient(MarkerAmbient);
    marker->GetProperty()->SetDiffuse(MarkerDiffuse);
    return marker;
}

} // namespace

TORVPointWidget* TORVPointWidget::New()
{
    VTK_OBJECT_FACTORY_NEW_BODY(TORVPointWidget);
}

TORVPointWidget::TORVPointWidget()
{
    KeyPressActivationOff(); // a key typed into the scene is the camera's
    SetPriority(BelowCompass);
}

TORVPointWidget::~TORVPointWidget()
{
    destroy();
}

void TORVPointWidget::init(TORVPointWidgetObserver* observer)
{
    destroy();
    loadStyle(true);
    _observer = observer;
    makeActors();
    AllOff(); // whatever is drawn can be grabbed, and only the cursor is to be
    PlaceWidget(_bounds.data());
    AddObserver(vtkCommand::InteractionEvent, _callback);
    resetActors();
    placeCursor(_cursor.x, _cursor.y, _cursor.z);
}

void TORVPointWidget::destroy()
{
    if (Enabled) {
        SetEnabled(0);
    }
    if (!_assembly) {
        return;
    }
    if (DefaultRenderer) {
        DefaultRenderer->RemoveViewProp(_assembly);
    }
    RemoveObserver(_callback);
    CursorPicker->DeletePickList(_cursorMarker);
    _assembly = nullptr;
    _caption = nullptr;
    _homeMarker = nullptr;
    _cursorMarker = nullptr;
    _mapper = nullptr;
    _sphere = nullptr;
    _observer = nullptr;
}

void TORVPointWidget::makeActors()
{
    _sphere = vtkSmartPointer<vtkSphereSource>::New();
    _sphere->SetThetaResolution(32);
    _sphere->SetPhiResolution(17);
    _mapper = vtkSmartPointer<vtkPolyDataMapper>::New();
    _mapper->SetInputConnection(_sphere->GetOutputPort());
    _homeMarker = makeMarker(_mapper);
    _cursorMarker = makeMarker(_mapper);
    _cursorMarker->SetVisibility(Enabled);
    CursorPicker->AddPickList(_cursorMarker);
    _caption = vtkSmartPointer<TORVHomeCaption>::New();
    _assembly = vtkSmartPointer<vtkPropAssembly>::New();
    _assembly->AddPart(_homeMarker);
    _assembly->AddPart(_cursorMarker); // after the home marker, which it hides where both stand in one place
    _assembly->AddPart(_caption);
}

void TORVPointWidget::loadStyle(bool day)
{
    constexpr double MaxWidth = 20.0;
    constexpr TORVSceneStyle::Color Grey{0.3, 0.3, 0.3};
    const TORVSceneStyle style(QStringLiteral("CURSORTOOL"), !day);
    _selectedLine.color = style.color("line/selected/color", Grey);
    _selectedLine.width = style.number("line/selected/width", 2.0, 0.1, MaxWidth);
    _unselectedLine.color = style.color("line/unselected/color", Grey);
    _unselectedLine.width = style.number("line/unselected/width", 1.0, 0.1, MaxWidth);
    _markerRadius = style.number("marker/radius", 5100.0, 1.0, 1.0e6);
    _homeMarkerColor = style.color("home/marker/color", Grey);
    _homeLabelColor = style.color("home/label/color", Grey);
    _homeLabelSize = static_cast<int>(std::lround(style.number("home/label/fontsize", 12.0, 4.0, 200.0)));
}

void TORVPointWidget::resetActors()
{
    if (!_assembly) {
        return;
    }
    _sphere->SetRadius(_markerRadius);
    paintCursorMarker();
    vtkProperty* const home = _homeMarker->GetProperty();
    home->SetColor(_homeMarkerColor.data());
    home->SetAmbient(MarkerAmbient);
    home->SetDiffuse(MarkerDiffuse);
    vtkTextProperty* const label = _caption->GetCaptionTextProperty();
    TORVSceneFont::apply(label, _homeLabelSize);
    label->SetColor(_homeLabelColor.data());
    apply(_selectedLine, SelectedProperty);
    apply(_unselectedLine, Property);
}

void TORVPointWidget::setBounds(const double* bounds)
{
    assert(bounds);
    if (!isBox(bounds)) {
        return;
    }
    const double fraction = heightFraction(_cursor.z, _bounds);
    std::copy_n(bounds, _bounds.size(), _bounds.begin());
    Cursor3D->SetModelBounds(_bounds.data());
    if (isAllZero(bounds)) {
        placeCursor(0.0, 0.0, 0.0);
    } else {
        placeCursor(_cursor.x, _cursor.y, _bounds[4] + (_bounds[5] - _bounds[4]) * fraction);
    }
}

void TORVPointWidget::setCursor(const TORVPoint3D& scenePoint)
{
    if (isFinite(scenePoint)) {
        placeCursor(scenePoint.x, scenePoint.y, scenePoint.z);
    }
}

void TORVPointWidget::setHome(const TORVPoint3D& trueMetres, const QString& name)
{
    _homeName = name;
    if (isFinite(trueMetres)) {
        _home = trueMetres;
    }
    placeMarkers();
}

void TORVPointWidget::setVerticalScale(double scale)
{
    if (std::isfinite(scale) && scale > 0.0) {
        _verticalScale = scale;
        placeMarkers();
    }
}

void TORVPointWidget::setMarkerColor(const QColor& color)
{
    _markerColor = color;
    paintCursorMarker();
}

void TORVPointWidget::update()
{
    Cursor3D->Update(); // a drag has moved it, but its point follows only now
    GetPolyData(_polyData);
    if (_polyData->GetNumberOfPoints() < 1) {
        return;
    }
    vtkPoints* const points = _polyData->GetPoints();
    assert(points);
    const double* const point = points->GetPoint(0);
    assert(point);
    _cursor = {point[0], point[1], point[2]};
    if (_observer) {
        _observer->pointWidgetUpdated(this, _cursor);
    }
    resetActors();
    placeMarkers();
}

void TORVPointWidget::SetEnabled(int enabling)
{
    const DrawingHeld held(Interactor);
    if (!enabling && State == vtkPointWidget::Moving) {
        OnLeftButtonUp();
    }
    if (Interactor || enabling) {
        Superclass::SetEnabled(enabling);
    }
    if (Enabled && CurrentRenderer && !CurrentRenderer->HasViewProp(Actor)) {
        CurrentRenderer->AddActor(Actor);
    }
    if (_cursorMarker) {
        _cursorMarker->SetVisibility(enabling);
    }
    if (enabling) {
        resetActors(); // widths of lines depend on the window, which is known now
    }
}

vtkProp* TORVPointWidget::getActor() const
{
    return _assembly;
}

void TORVPointWidget::OnLeftButtonDown()
{
    if (CurrentRenderer) {
        const int* const size = CurrentRenderer->GetVTKWindow()->GetSize();
        CursorPicker->SetTolerance(GrabDistance * pixelRatio() / std::max(std::hypot(size[0], size[1]), 1.0));
    }
    Superclass::OnLeftButtonDown();
}

void TORVPointWidget::OnMiddleButtonDown() {}

void TORVPointWidget::OnMiddleButtonUp() {}

void TORVPointWidget::OnRightButtonDown() {}

void TORVPointWidget::OnRightButtonUp() {}

void TORVPointWidget::placeCursor(double x, double y, double z)
{
    SetPosition(x, y, z);
    Cursor3D->Update(); // brings a point that it had already into a box that has changed
    double point[3];
    GetPosition(point);
    _cursor = {point[0], point[1], point[2]};
    placeMarkers();
}

void TORVPointWidget::placeMarkers()
{
    if (!_assembly) {
        return;
    }
    const double homeZ = _home.z * _verticalScale;
    _cursorMarker->SetPosition(_cursor.x, _cursor.y, _cursor.z);
    _homeMarker->SetPosition(_home.x, _home.y, homeZ);
    _caption->SetAttachmentPoint(_home.x, _home.y, homeZ);
    const QString text = QCoreApplication::translate("VTK", "Home: ") + _homeName;
    _caption->SetCaption(text.toUtf8().constData());
}

void TORVPointWidget::paintCursorMarker()
{
    if (!_cursorMarker) {
        return;
    }
    vtkProperty* const property = _cursorMarker->GetProperty();
    property->SetAmbient(MarkerAmbient);
    property->SetDiffuse(MarkerDiffuse);
    if (_markerColor.isValid()) {
        property->SetColor(_markerColor.red() / 255.0, _markerColor.green() / 255.0, _markerColor.blue() / 255.0);
    } else {
        property->SetColor(_selectedLine.color.data());
    }
}

void TORVPointWidget::apply(const Line& line, vtkProperty* property) const
{
    property->SetColor(line.color[0], line.color[1], line.color[2]);
    property->SetAmbient(1.0); // the colour itself, whatever light falls on the scene
    property->SetDiffuse(0.0);
    property->SetLineWidth(static_cast<float>(line.width * pixelRatio()));
}

double TORVPointWidget::pixelRatio() const
{
    vtkWindow* const window = CurrentRenderer ? CurrentRenderer->GetVTKWindow() : nullptr;
    return window ? window->GetDPI() / 72.0 : 1.0;
}
