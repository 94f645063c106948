#pragma once

#include <vtkActor2D.h>
#include <vtkNew.h>
#include <vtkSmartPointer.h>

#include <boost/shared_ptr.hpp>

#include <string>

class TORVLabelRoom;
class TORVOutlinedText;
class vtkActor;
class vtkCoordinate;
class vtkPolyDataMapper;
class vtkSphereSource;

/**
 * A landmark: a dot at a place of the scene and a name beside it. The dot is drawn over all that hides it, since the
 * ground is coarse and buries valley towns. Its radius is 1000 m and a fifth of what 10 pixels show there, so that it
 * is seen from any distance. The name has the same size at any distance.
 *
 * Nothing is drawn of a place that is behind the eye or outside the picture.
 *
 * Pixels are those at 72 dots an inch; where the window has more, all grows with them.
 *
 * Thread: made on any thread; main thread only as soon as it is in a window.
 */
class TORVLandmarkLabel final : public vtkActor2D
{
public:
    static TORVLandmarkLabel* New();
    // VTK's macro has no semicolon, which would make one statement of the two.
    // clang-format off
    vtkTypeMacro(TORVLandmarkLabel, vtkActor2D)
    TORVLandmarkLabel(const TORVLandmarkLabel&) = delete;
    // clang-format on
    void operator=(const TORVLandmarkLabel&) = delete;

    /// In the scene, metres.
    void SetWorldPosition(double x, double y, double z);
    const double* GetWorldPosition() const { return _position; }

    /// Of dot and name, 0 to 1.
    void SetColor(double r, double g, double b);
    const double* GetColor() const { return _color; }

    /// UTF-8; an empty one leaves the dot alone.
    void SetText(const std::string& text);
    const std::string& GetText() const { return _text; }

    /// How the name looks: its opacity and the colour of the line round the letters, all 0 to 1.
    void SetTextStyle(double opacity, const double outline[3]);

    /**
     * Labels that share a room don't write over each other: a name is left out where a label that was drawn before has
     * written.
     * @param isFirst  of the labels that share it, in the order of drawing; it empties the room for a new picture
     */
    void SetRoom(const boost::shared_ptr<TORVLabelRoom>& room, bool isFirst);

    /// Whether the name stands in the picture that was drawn last.
    bool IsTextShown() const { return _isTextShown; }

    int RenderOpaqueGeometry(vtkViewport* viewport) override;
    int RenderOverlay(vtkViewport* viewport) override;
    int RenderTranslucentPolygonalGeometry(vtkViewport* viewport) override;
    vtkTypeBool HasTranslucentPolygonalGeometry() override;
    void ReleaseGraphicsResources(vtkWindow* window) override;
    void ShallowCopy(vtkProp* prop) override;

protected:
    TORVLandmarkLabel();
    ~TORVLandmarkLabel() override;

private:
    struct Spot;

    bool find(vtkViewport* viewport, Spot& spot) const;
    int renderDot(vtkViewport* viewport, const Spot& spot);
    void placeText(vtkViewport* viewport, const Spot& spot);
    bool takeRoom(vtkViewport* viewport, const int anchor[2]);

    double _position[3] = {0.0, 0.0, 0.0};
    double _color[3] = {0.0, 0.0, 0.0};
    std::string _text;
    vtkNew<vtkSphereSource> _sphere;
    vtkNew<vtkPolyDataMapper> _mapper;
    vtkNew<vtkActor> _sphereActor;
    vtkNew<TORVOutlinedText> _textActor;
    vtkNew<vtkCoordinate> _anchor; // of the name, in pixels of the viewport
    boost::shared_ptr<TORVLabelRoom> _room;
    bool _isFirst = false;
    bool _isTextShown = false;
};
