#pragma once

#include "visualization/TORVCameraModel.h"

#include <QString>

#include <vtkCommand.h>
#include <vtkInteractorStyleUser.h>
#include <vtkSmartPointer.h>

#include <array>
#include <functional>
#include <optional>

class vtkCamera;
class vtkRenderer;

/**
 * Moves the camera of the main scene by mouse, wheel and keys. The model says where it is; VTK's camera only shows it.
 *
 * | gesture                          | motion                                     | state while it lasts |
 * |----------------------------------|--------------------------------------------|----------------------|
 * | left drag                        | turns about the target                     | rotate               |
 * | left drag, Control at the press  | turns on the spot                          | rotate               |
 * | left drag, Shift                 | pans                                       | rotate               |
 * | middle drag                      | zooms                                      | dolly                |
 * | right drag                       | pans                                       | pan                  |
 * | wheel                            | zooms, but not during a middle drag        |                      |
 * | arrows; with Control, with Shift | pan; turn on the spot, turn about the target |                    |
 * | plus, minus, r, t                | zoom in and out, home view, look at origin |                      |
 *
 * One drag lasts from its press to the release of that button, or until the mouse leaves with the release lost; other
 * buttons do nothing meanwhile. `StartInteractionEvent` and `EndInteractionEvent` go out around it.
 *
 * Mouse distances count in pixels of a screen of 72 DPI, so that a movement of the hand turns as far on each screen.
 *
 * The motions change the model and show nothing; `userMoved` or `applyCamera` follow. For units, limits and arguments
 * see TORVCameraModel.
 *
 * Thread: main thread only.
 * Ownership: holds the renderer and its camera.
 */
class TORVCameraInteractor final : public vtkInteractorStyleUser
{
public:
    /// Tells observers that the camera has a new home, or has gone back to it.
    enum : unsigned long
    {
        CameraResetEvent = vtkCommand::UserEvent + 1
    };

    static TORVCameraInteractor* New();
    // VTK's macro has no semicolon, which would make one statement of the two.
    // clang-format off
    vtkTypeMacro(TORVCameraInteractor, vtkInteractorStyleUser)
    TORVCameraInteractor(const TORVCameraInteractor&) = delete;
    // clang-format on
    void operator=(const TORVCameraInteractor&) = delete;

    const QString& getName() const { return _name; }
    void setName(const QString& name) { _name = name; }

    /// All events are for this one's camera, wherever in the window the mouse is.
    void setRenderer(vtkRenderer* renderer);

    /// Is called for each picture in place of drawing one at once: it may draw one for many.
    void setRenderRequest(std::function<void()> request);

    /// The box of all that is drawn, as VTK tells bounds; the nearer it is, the nearer things are still drawn. A box
    /// that isn't one stands for none.
    void setSceneBounds(const double bounds[6]);

    /// Asks for a picture, if there is a window.
    void render();

    void resetCamera(const TORVPoint3D& position, const TORVPoint3D& direction, double maxDistance, double targetLimit);
    void resetCamera();
    void setView(const TORVPoint3D& position, const TORVPoint3D& direction);

    /// Writes the model into the camera. Stops the process when there is neither a camera nor a renderer to take it
    /// from. Observers are told of a reset here.
    void applyCamera(bool render);

    void targetToOrigo();
    void panCamera(double dx, double dy);
    void zoomCamera(double step);
    void rotateCameraTarget(double heading, double pitch);
    void rotateCameraView(double heading, double pitch);
    void setCameraByHPD(double heading, double pitch, double distance);

    /// Zooms by steps of a wheel, away from the user above 0; parts of a step are welcome. Does nothing during a middle
    /// drag.
    void wheel(double steps);

    /// Where each motion of the user ends, of whatever origin: observers hear of it, and it is shown.
    void userMoved();

    bool isTargetLegal() const { return _model.isTargetLegal(); }
    void calculateVectors();
    void printDebug() const;

    TORVPoint3D getPosition() const { return _model.getPosition(); }
    TORVPoint3D getDirection() const { return _model.getDirection(); }
    TORVPoint3D getTarget() const { return _model.getTarget(); }
    double getHeading() const { return _model.getHeading(); }
    double getPitch() const { return _model.getPitch(); }

    /// Negative for a target behind the camera.
    double getTargetDistance() const { return _model.getTargetDistance(); }

    double getMaxDistance() const { return _model.getMaxDistance(); }
    double getTargetLimit() const { return _model.getTargetLimit(); }

    void OnChar() override;
    void OnMouseMove() override;
    void OnLeftButtonDown() override;
    void OnLeftButtonUp() override;
    void OnMiddleButtonDown() override;
    void OnMiddleButtonUp() override;
    void OnRightButtonDown() override;
    void OnRightButtonUp() override;
    void OnMouseWheelForward() override;
    void OnMouseWheelBackward() override;
    void OnKeyDown() override;
    void OnKeyPress() override;
    void OnKeyRelease() override;
    void OnLeftButtonDoubleClick() override;
    void OnMiddleButtonDoubleClick() override;
    void OnRightButtonDoubleClick() override;
    void OnLeave() override;

protected:
    TORVCameraInteractor();
    ~TORVCameraInteractor() override;

private:
    void takeCamera();
    void beginDrag(int state);
    void endDrag(int state);
    void drag(double dx, double dy);
    void rotateByMouse(double dx, double dy);
    bool pressArrow();
    bool pressOther();
    bool isSwallowed() const;
    double nearPlane() const;
    double distanceToScene() const;

    QString _name;
    TORVCameraModel _model;
    vtkSmartPointer<vtkCamera> _camera;
    bool _isResetPending = false;
    bool _isViewRotation = false; // latched at the press
    std::optional<std::array<double, 6>> _sceneBounds;
    std::function<void()> _renderRequest;
};
