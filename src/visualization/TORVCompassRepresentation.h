#pragma once

#include "utils/TORVPoint3D.h"
#include "visualization/TORVCameraInteractorObserver.h"

#include <vtkCompassRepresentation.h>

/**
 * The compass in the upper right corner of a scene: a ring whose N points to the north of what the camera sees, the
 * heading in degrees under it, and a slider beside it that takes the camera nearer or further away. It follows the
 * camera; what the user does with it reaches the camera through `TORVCompassInteractionCallback`. There is no slider
 * for the tilt: the mouse tilts the scene itself.
 *
 * The camera's heading is an angle from east, counter-clockwise; the compass takes a fraction of a turn, clockwise from
 * north.
 *
 * Thread: main thread only.
 */
class TORVCompassRepresentation final : public vtkCompassRepresentation, public TORVCameraInteractorObserver
{
public:
    /// What the compass was last told by the camera, in its own units.
    struct Shown
    {
        double heading = 0.0;  ///< fraction of a turn
        double tilt = 0.0;     ///< degrees below the horizon, 0 to 90
        double distance = 0.0; ///< metres
    };

    static TORVCompassRepresentation* New();
    // VTK's macro has no semicolon, which would make one statement of the two.
    // clang-format off
    vtkTypeMacro(TORVCompassRepresentation, vtkCompassRepresentation)
    TORVCompassRepresentation(const TORVCompassRepresentation&) = delete;
    // clang-format on
    void operator=(const TORVCompassRepresentation&) = delete;

    /// Points to where the camera looks. A camera that looks up shows no tilt, one at its target a distance of 9999.9.
    void cameraMoved(TORVCameraInteractor* camera) override;
    void cameraReset(TORVCameraInteractor* camera) override;
    const Shown& getShown() const { return _shown; }

    bool isDay() const { return _isDay; }
    void loadStyle(bool day);
    void toggleDisplayMode(bool day);
    void updateColors();

    /// Of every part. @param colour  red, green, blue, 0 to 1 @param opacity  0 to 1
    void updateForegroundColor(const TORVPoint3D& colour, double opacity);

    void BuildRepresentation() override;
    int RenderOpaqueGeometry(vtkViewport* viewport) override;
    int RenderOverlay(vtkViewport* viewport) override;
    void GetActors(vtkPropCollection* actors) override;
    void Highlight(int highlight) override;
    int ComputeInteractionState(int x, int y, int modify = 0) override;

    /// A press anywhere on the slider takes its knob there.
    void StartWidgetInteraction(double position[2]) override;
    void TiltWidgetInteraction(double position[2]) override;

    /// @param seconds  since the last time; a long pause counts as a short one
    void UpdateDistance(double seconds) override;

protected:
    TORVCompassRepresentation();
    ~TORVCompassRepresentation() override;

private:
    struct Place
    {
        double pixelRatio = 1.0; ///< pixels of the window to one at 72 dots an inch
        double x = 0.0;          ///< of the middle of the ring
        double y = 0.0;
        double radius = 0.0;
    };

    Place placeInWindow() const;
    void putInPlace(const Place& place);
    void writeStatus(const Place& place);
    void putSlider(const Place& place);

    Shown _shown;
    TORVPoint3D _foreground;
    bool _isDay = true;
    double _highlightedOpacity = 1.0;
    double _nonHighlightedOpacity = 1.0;
};
