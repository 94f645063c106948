#include "visualization/TORVCameraInteractor.h"

#include "utils/TORVLog.h"

#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkObjectFactory.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>
#include <utility>

namespace
{

constexpr double NearestPlane_m = 100.0;
constexpr double NearPlanePerDistance = 0.01;

constexpr double TextDpi = 72.0; // of a screen whose pixels count as they are

constexpr double DollyFactor = -0.1;
constexpr double KeyRotation = 4.0;
constexpr double KeyPan = 20.0;
constexpr double KeyZoom = 0.2;

// What the base class does at these characters would leave the program, change how everything is drawn, or move the
// camera behind the model's back; r and t are this class's own.
constexpr char SwallowedCharacters[] = "rRsSwWfFeEqQuUpPmM3jJtTcCaAlL";

struct Arrow
{
    const char* key;
    double heading;
    double pitch;
    double right;
    double ahead;
};

constexpr Arrow Arrows[] = {
    {"Left", -1.0, 0.0, -1.0, 0.0},
    {"Right", 1.0, 0.0, 1.0, 0.0},
    {"Up", 0.0, -1.0, 0.0, 1.0},
    {"Down", 0.0, 1.0, 0.0, -1.0},
};

QString words(const TORVPoint3D& point)
{
    return QStringLiteral("%1, %2, %3").arg(point.x, 0, 'g', 6).arg(point.y, 0, 'g', 6).arg(point.z, 0, 'g', 6);
}

} // namespace

TORVCameraInteractor* TORVCameraInteractor::New()
{
    VTK_STANDARD_NEW_BODY(TORVCameraInteractor);
}

TORVCameraInteractor::TORVCameraInteractor() = default;
TORVCameraInteractor::~TORVCameraInteractor() = default;

void TORVCameraInteractor::setRenderer(vtkRenderer* renderer)
{
    SetDefaultRenderer(renderer); // is the current one from now on, wherever the mouse is
    SetCurrentRenderer(renderer);
    _camera = nullptr;
    takeCamera();
}

void TORVCameraInteractor::setRenderRequest(std::function<void()> request)
{
    _renderRequest = std::move(request);
}

void TORVCameraInteractor::setSceneBounds(const double bounds[6])
{
    std::array<double, 6> box{};
    std::copy(bounds, bounds + 6, box.begin());
    const bool isBox = box[0] <= box[1] && box[2] <= box[3] && box[4] <= box[5] &&
                       std::all_of(box.begin(), box.end(), [](double bound) { return std::isfinite(bound); });
    _sceneBounds = isBox ? std::make_optional(box) : std::nullopt;
}

void TORVCameraInteractor::render()
{
    if (_renderRequest) {
        _renderRequest();
    } else if (Interactor) {
        Interactor->Render();
    }
}

void TORVCameraInteractor::resetCamera(const TORVPoint3D& position, const TORVPoint3D& direction, double maxDistance,
                                       double targetLimit)
{
    takeCamera();
    _model.resetCamera(position, direction, maxDistance, targetLimit);
    _isResetPending = true;
}

void TORVCameraInteractor::resetCamera()
{
    takeCamera();
    _model.resetCamera();
    _isResetPending = true;
}

void TORVCameraInteractor::setView(const TORVPoint3D& position, const TORVPoint3D& direction)
{
    _model.setView(position, direction);
}

void TORVCameraInteractor::takeCamera()
{
    if (!_camera && CurrentRenderer) {
        _camera = CurrentRenderer->GetActiveCamera();
    }
}

void TORVCameraInteractor::applyCamera(bool render)
{
    takeCamera();
    assert(_camera);
    _model.calculateVectors();
    const TORVPoint3D position = _model.getPosition();
    const TORVPoint3D direction = _model.getDirection();
    const TORVPoint3D up = _model.getViewUp();
    const double ahead = std::abs(_model.getTargetDistance());
    _camera->SetPosition(position.x, position.y, position.z);
    _camera->SetFocalPoint(position.x + ahead * direction.x, position.y + ahead * direction.y,
                           position.z + ahead * direction.z);
    // What z is to a camera that sees the horizon. Straight down, z itself would give VTK no up at all.
    _camera->SetViewUp(up.x, up.y, up.z);
    _camera->OrthogonalizeViewUp();
    const double near = nearPlane();
    _camera->SetClippingRange(near, std::max(2.0 * _model.getMaxDistance(), 2.0 * near));
    if (_isResetPending) {
        _isResetPending = false;
        InvokeEvent(CameraResetEvent);
    }
    if (render) {
        this->render();
    }
}

// The steps of depth are the finer, the farther away the near plane is.
double TORVCameraInteractor::nearPlane() const
{
    return std::max(NearestPlane_m, NearPlanePerDistance * distanceToScene());
}

double TORVCameraInteractor::distanceToScene() const
{
    if (!_sceneBounds) {
        return 0.0;
    }
    const TORVPoint3D position = _model.getPosition();
    const std::array<double, 6>& box = *_sceneBounds;
    return std::hypot(position.x - std::clamp(position.x, box[0], box[1]),
                      position.y - std::clamp(position.y, box[2], box[3]),
                      position.z - std::clamp(position.z, box[4], box[5]));
}

void TORVCameraInteractor::userMoved()
{
    InvokeEvent(vtkCommand::InteractionEvent);
    applyCamera(true);
}

void TORVCameraInteractor::targetToOrigo()
{
    _model.targetToOrigo();
}

void TORVCameraInteractor::panCamera(double dx, double dy)
{
    _model.panCamera(dx, dy);
}

void TORVCameraInteractor::zoomCamera(double step)
{
    _model.zoomCamera(step);
}

void TORVCameraInteractor::rotateCameraTarget(double heading, double pitch)
{
    _model.rotateCameraTarget(heading, pitch);
}

void TORVCameraInteractor::rotateCameraView(double heading, double pitch)
{
    _model.rotateCameraView(heading, pitch);
}

void TORVCameraInteractor::setCameraByHPD(double heading, double pitch, double distance)
{
    _model.setCameraByHPD(heading, pitch, distance);
}

void TORVCameraInteractor::wheel(double steps)
{
    if (State == VTKIS_DOLLY || !std::isfinite(steps)) {
        return;
    }
    zoomCamera(steps * _model.getZoomFactor());
    userMoved();
}

void TORVCameraInteractor::calculateVectors()
{
    _model.calculateVectors();
}

void TORVCameraInteractor::printDebug() const
{
    TORVLog::Instance()->logDebug(
        QStringLiteral("Cam: pos=(%1), dir=(%2)").arg(words(_model.getPosition()), words(_model.getDirection())));
}

void TORVCameraInteractor::OnLeftButtonDown()
{
    beginDrag(VTKIS_ROTATE);
}

void TORVCameraInteractor::OnLeftButtonUp()
{
    endDrag(VTKIS_ROTATE);
}

void TORVCameraInteractor::OnMiddleButtonDown()
{
    beginDrag(VTKIS_DOLLY);
}

void TORVCameraInteractor::OnMiddleButtonUp()
{
    endDrag(VTKIS_DOLLY);
}

void TORVCameraInteractor::OnRightButtonDown()
{
    beginDrag(VTKIS_PAN);
}

void TORVCameraInteractor::OnRightButtonUp()
{
    endDrag(VTKIS_PAN);
}

// The second press of two that follow each other quickly begins a drag like any other.
void TORVCameraInteractor::OnLeftButtonDoubleClick()
{
    OnLeftButtonDown();
}

void TORVCameraInteractor::OnMiddleButtonDoubleClick()
{
    OnMiddleButtonDown();
}

void TORVCameraInteractor::OnRightButtonDoubleClick()
{
    OnRightButtonDown();
}

// A second press of the same button means that its release was lost: the drag begins anew.
void TORVCameraInteractor::beginDrag(int state)
{
    if (State != VTKIS_NONE && State != state) {
        return;
    }
    endDrag(state);
    const int* const at = Interactor->GetEventPosition();
    FindPokedRenderer(at[0], at[1]);
    if (!CurrentRenderer || !CurrentRenderer->IsInViewport(at[0], at[1])) {
        return;
    }
    takeCamera();
    _isViewRotation = Interactor->GetControlKey() != 0;
    State = state;
    GrabFocus(EventCallbackCommand);
    InvokeEvent(vtkCommand::StartInteractionEvent);
}

void TORVCameraInteractor::endDrag(int state)
{
    if (State == VTKIS_NONE || State != state) {
        return;
    }
    State = VTKIS_NONE;
    _isViewRotation = false;
    ReleaseFocus();
    InvokeEvent(vtkCommand::EndInteractionEvent);
    render();
}

// The mouse stays with the window while a button is down: it can only leave when the release went elsewhere.
void TORVCameraInteractor::OnLeave()
{
    endDrag(State);
    vtkInteractorStyleUser::OnLeave();
}

void TORVCameraInteractor::OnMouseMove()
{
    if (State == VTKIS_NONE) {
        return;
    }
    const int* const now = Interactor->GetEventPosition();
    const int* const before = Interactor->GetLastEventPosition();
    const double scale = TextDpi / Interactor->GetRenderWindow()->GetDPI();
    drag(scale * (now[0] - before[0]), scale * (now[1] - before[1]));
}

void TORVCameraInteractor::drag(double dx, double dy)
{
    const double pan = _model.getPanFactor();
    if (State == VTKIS_PAN || (State == VTKIS_ROTATE && Interactor->GetShiftKey())) {
        panCamera(pan * dx, pan * dy);
    } else if (State == VTKIS_DOLLY) {
        zoomCamera(DollyFactor * _model.getZoomFactor() * dy);
    } else {
        rotateByMouse(dx, dy);
    }
    userMoved();
}

void TORVCameraInteractor::rotateByMouse(double dx, double dy)
{
    const double rotate = _model.getRotateFactor();
    if (_isViewRotation || !isTargetLegal()) {
        rotateCameraView(-rotate * dx, rotate * dy);
    } else {
        rotateCameraTarget(-rotate * dx, rotate * dy);
    }
}

void TORVCameraInteractor::OnMouseWheelForward()
{
    wheel(1.0);
}

void TORVCameraInteractor::OnMouseWheelBackward()
{
    wheel(-1.0);
}

void TORVCameraInteractor::OnKeyDown()
{
    if (Interactor->GetAltKey()) {
        return; // keys with Alt are the window's
    }
    if (pressArrow() || pressOther()) {
        userMoved();
    }
}

bool TORVCameraInteractor::pressArrow()
{
    const char* const key = Interactor->GetKeySym();
    const auto* const arrow = std::find_if(std::begin(Arrows), std::end(Arrows), [key](const Arrow& candidate) {
        return key && std::strcmp(candidate.key, key) == 0;
    });
    if (arrow == std::end(Arrows)) {
        return false;
    }
    const double rotation = KeyRotation * _model.getRotateFactor();
    const double pan = KeyPan * _model.getPanFactor();
    if (Interactor->GetControlKey()) {
        rotateCameraView(rotation * arrow->heading, rotation * arrow->pitch);
    } else if (Interactor->GetShiftKey()) {
        rotateCameraTarget(rotation * arrow->heading, rotation * arrow->pitch);
    } else {
        panCamera(pan * arrow->right, pan * arrow->ahead);
    }
    return true;
}

bool TORVCameraInteractor::pressOther()
{
    const char* const key = Interactor->GetKeySym();
    const double zoom = KeyZoom * _model.getZoomFactor();
    if (key && std::strcmp(key, "plus") == 0) {
        zoomCamera(zoom);
    } else if (key && std::strcmp(key, "minus") == 0) {
        zoomCamera(-zoom);
    } else if (Interactor->GetKeyCode() == 'r') {
        resetCamera();
    } else if (Interactor->GetKeyCode() == 't') {
        targetToOrigo();
    } else {
        return false;
    }
    return true;
}

bool TORVCameraInteractor::isSwallowed() const
{
    const char character = Interactor->GetKeyCode();
    return character != '\0' && std::strchr(SwallowedCharacters, character);
}

void TORVCameraInteractor::OnChar()
{
    if (!isSwallowed()) {
        vtkInteractorStyleUser::OnChar();
    }
}

void TORVCameraInteractor::OnKeyPress()
{
    if (!isSwallowed()) {
        vtkInteractorStyleUser::OnKeyPress();
    }
}

void TORVCameraInteractor::OnKeyRelease()
{
    if (!isSwallowed()) {
        vtkInteractorStyleUser::OnKeyRelease();
    }
}
