#pragma once

#include "utils/TORVPoint3D.h"
#include "visualization/TORVSceneStyle.h"

#include <QColor>
#include <QString>

#include <vtkNew.h>
#include <vtkPointWidget.h>
#include <vtkSmartPointer.h>

#include <array>

class TORVHomeCaption;
class TORVPointWidgetCallback;
class TORVPointWidgetObserver;
class vtkActor;
class vtkPolyData;
class vtkPolyDataMapper;
class vtkProp;
class vtkPropAssembly;
class vtkSphereSource;

/**
 * The 3-D cursor: a cross hair as wide as the box of the data, which it can't leave, a sphere where it stands, another
 * at the home point and a caption beside that one. The left button moves it (with Shift along one axis); the other two
 * buttons are left to the camera.
 *
 * Points are in metres of the scene, the radar at x = y = 0; their z is as tall as the scene shows it. Only the home
 * point comes in true metres and is multiplied by the vertical scale here. What isn't finite is never taken.
 *
 * Thread: main thread only.
 * Ownership: the observer is not this widget's and must live as long or be dropped by `destroy`. Interactor, default
 * renderer and the time of drawing are the renderer's business: nothing here draws but a drag.
 */
class TORVPointWidget final : public vtkPointWidget
{
public:
    static TORVPointWidget* New();
    // VTK's macro has no semicolon, which would make one statement of the two.
    // clang-format off
    vtkTypeMacro(TORVPointWidget, vtkPointWidget)
    TORVPointWidget(const TORVPointWidget&) = delete;
    // clang-format on
    void operator=(const TORVPointWidget&) = delete;

    /// Makes the spheres, the caption and what holds them, by day. @param observer  told of each drag; may be null
    void init(TORVPointWidgetObserver* observer);

    /// Takes out of the scene and gives up all that `init` has made; nothing happens the second time.
    void destroy();

    /// Reads colours and sizes; `resetActors` shows them.
    void loadStyle(bool day);
    void resetActors();

    /// The cursor keeps x, y and its relative height in the box; without a box, all zero, it stands at the origin.
    /// @param bounds  xmin, xmax, ymin, ymax, zmin, zmax; refused unless finite and not inside out
    void setBounds(const double* bounds);
    const double* getBounds() const { return _bounds.data(); }

    /// Moves the cursor without a word to the observer; it stays in the box.
    void setCursor(const TORVPoint3D& scenePoint);
    TORVPoint3D getCursor() const { return _cursor; }

    /// @param trueMetres  z above sea level, not scaled @param name  as the caption tells it
    void setHome(const TORVPoint3D& trueMetres, const QString& name);

    /// @param scale  how much taller than true the scene is; above 0, else refused
    void setVerticalScale(double scale);

    /// That of the value under the cursor; an invalid colour where there is none.
    void setMarkerColor(const QColor& color);

    /// Takes over where the cross hair is and tells the observer, who may set colour and home meanwhile.
    void update();

    /// Shows or hides cross hair and marker. Asked for what is shown it puts the cross hair back if somebody has taken
    /// all props out of the renderer, and leaves a drag alone; hiding ends a drag.
    void SetEnabled(int enabling) override;

    /// Both markers and the caption, for the renderer to add; null before `init` and after `destroy`.
    vtkProp* getActor() const;

protected:
    TORVPointWidget();
    ~TORVPointWidget() override;

    void OnLeftButtonDown() override;
    void OnMiddleButtonDown() override;
    void OnMiddleButtonUp() override;
    void OnRightButtonDown() override;
    void OnRightButtonUp() override;

private:
    struct Line
    {
        TORVSceneStyle::Color color;
        double width = 1.0; ///< pixels at 72 dots an inch
    };

    void makeActors();
    void placeCursor(double x, double y, double z);
    void placeMarkers();
    void paintCursorMarker();
    void apply(const Line& line, vtkProperty* property) const;
    double pixelRatio() const;

    TORVPointWidgetObserver* _observer = nullptr;
    vtkNew<TORVPointWidgetCallback> _callback;
    vtkNew<vtkPolyData> _polyData;
    vtkSmartPointer<vtkSphereSource> _sphere;
    vtkSmartPointer<vtkPolyDataMapper> _mapper;
    vtkSmartPointer<vtkActor> _cursorMarker;
    vtkSmartPointer<vtkActor> _homeMarker;
    vtkSmartPointer<TORVHomeCaption> _caption;
    vtkSmartPointer<vtkPropAssembly> _assembly;

    TORVPoint3D _cursor;
    TORVPoint3D _home;
    QString _homeName;
    std::array<double, 6> _bounds{};
    double _verticalScale = 1.0;
    QColor _markerColor;

    Line _selectedLine;
    Line _unselectedLine;
    double _markerRadius = 0.0;
    TORVSceneStyle::Color _homeMarkerColor{};
    TORVSceneStyle::Color _homeLabelColor{};
    int _homeLabelSize = 0;
};
