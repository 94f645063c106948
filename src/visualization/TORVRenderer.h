#pragma once

#include "visualization/TORVSceneRenderer.h"
#include "visualization/TORVSceneStyle.h"
#include "visualization/TORVVisualizationPipelineItem.h"

#include <QObject>

#include <vtkNew.h>
#include <vtkSmartPointer.h>

#include <boost/shared_ptr.hpp>

#include <array>
#include <memory>

class TORVCameraInteractor;
class TORVCameraInteractorCallback;
class TORVCameraInteractorObserver;
class TORVColorBarActor;
class TORVCompassRepresentation;
class TORVDataFrame;
class TORVFramePacer;
class TORVGeneralSettings;
class TORVPointWidget;
class TORVPointWidgetObserver;
class vtkActor;
class vtkCallbackCommand;
class vtkCompassWidget;
class vtkLegendBoxActor;
class vtkLight;
class vtkObject;
class vtkRenderWindow;
class vtkRenderWindowInteractor;
class vtkRenderer;
class vtkSphereSource;

/**
 * Shows finished scenes in one render window, and with them what belongs to the view: camera, lights, site marker,
 * compass, 3-D cursor, legend and colour scale.
 *
 * Nothing is drawn by a change itself. `render` asks for a picture when all changes are in; however many ask, one is
 * drawn in a turn of the event loop. While the user moves the camera pictures are quick, at rest they are whole.
 *
 * A window without an interactor gets one that nobody operates, so that compass and camera work there, too.
 *
 * Thread: main thread only.
 * Ownership: the window and the observers outlive this object. A scene is shared with whoever had it built and must not
 * be with the pipeline while it is handed over.
 */
class TORVRenderer final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVRenderer)

public:
    using ItemPtr = TORVVisualizationPipelineItem::Ptr;

    /**
     * @param window         not null
     * @param cameraObserver may be null
     * @param pointObserver  null: there is no 3-D cursor, and what concerns it does nothing
     * @param interactive    whether mouse and keys move camera and cursor
     */
    TORVRenderer(vtkRenderWindow* window, TORVCameraInteractorObserver* cameraObserver,
                 TORVPointWidgetObserver* pointObserver, bool interactive);
    ~TORVRenderer() override;

    /// Shows a scene in place of the one before. It must be there, with results.
    void setVisualization(const ItemPtr& item);

    /// Leaves background and site marker.
    void removeVisualization();

    /// Makes legend and colour scale of a frame that has a volume. They are shown as far as they are on.
    void setInfoData(const boost::shared_ptr<const TORVDataFrame>& dataFrame,
                     const boost::shared_ptr<const TORVGeneralSettings>& settings);

    /// Forgets legend and colour scale.
    void removeInfoData();

    void toggleCompass(bool on);
    void toggleColorScale(bool on);
    void toggleLegend(bool on);

    /// @param render whether to ask for a picture as well
    void togglePointWidget(bool on, bool render);

    bool isCompassOn() const { return _isCompassOn; }
    bool isColorScaleOn() const { return _isColorScaleOn; }
    bool isLegendOn() const { return _isLegendOn; }
    bool isPointWidgetOn() const { return _isPointWidgetOn; }

    /// Lights, background and all that belongs to the view take the look of the present display mode.
    void updateLights();

    /// Reads it.
    void loadStyle(bool night);

    /// The camera goes back to its home view.
    void resetCamera();

    /// Asks for a picture.
    void render();

    /// The same without the camera, as the window's interactor does it.
    void renderWindow();

    /// Draws a whole picture before it returns, for exports.
    void renderNow();

    vtkRenderer* getRenderer() const { return _renderer; }
    vtkRenderer* getColorScaleRenderer() const { return _colorRenderer; }
    TORVCameraInteractor* getCameraInteractor() const { return _camera; }
    TORVPointWidget* getPointWidget() const; ///< null without an observer
    TORVFramePacer* getPacer() const { return _pacer.get(); }

private:
    using Color = TORVSceneStyle::Color;

    // What the style file tells of the view.
    struct Style
    {
        Color siteMarker{};
        double siteMarkerRadius = 0.0;
        Color background{};
        Color ambient{};
        Color light{};
        Color colorScaleBackground{};
        Color legendText{};
    };

    void createRenderers();
    void createInteractor();
    void createCamera(TORVCameraInteractorObserver* observer);
    void releaseCamera();
    void createCompass();
    void createPointWidget(TORVPointWidgetObserver* observer);
    void addLights();
    void createSiteMarker();
    void observe(vtkObject* object, unsigned long event);
    static void onVtkEvent(vtkObject* caller, unsigned long event, void* self, void* data);
    void handleEvent(unsigned long event);
    void onFirstPicture();
    void setSceneBounds();
    void showPointWidget();
    void makeLegend(const QStringList& lines);
    void makeColorBar(const TORVDataFrame& frame);
    void showInfo();
    void layOutColorScale();

    vtkRenderWindow* _window;
    ItemPtr _currentVisualization;
    vtkSmartPointer<vtkPropAssembly> _shownScene; // a run of the item gives it another one, on another thread
    bool _isInteractive;
    bool _isCompassOn = false;
    bool _isColorScaleOn = false;
    bool _isLegendOn = false;
    bool _isPointWidgetOn = false;
    bool _isQuiet = false; // what VTK wants drawn is not
    Style _style;

    vtkNew<TORVSceneRenderer> _renderer;
    vtkNew<vtkRenderer> _colorRenderer; // in the window only while there is a scale to be seen
    vtkSmartPointer<vtkRenderWindowInteractor> _interactor;
    vtkNew<vtkCallbackCommand> _command;
    std::unique_ptr<TORVFramePacer> _pacer;
    vtkNew<TORVCameraInteractor> _camera;
    vtkNew<TORVCameraInteractorCallback> _cameraCallback;
    vtkNew<TORVCameraInteractorCallback> _compassFollower;
    vtkNew<TORVCompassRepresentation> _compass;
    vtkNew<vtkCompassWidget> _compassWidget;
    vtkSmartPointer<TORVPointWidget> _pointWidget;
    vtkNew<vtkLight> _light;
    vtkNew<vtkLight> _fillLight;
    vtkNew<vtkSphereSource> _siteMarkerSource;
    vtkNew<vtkActor> _siteMarker;
    vtkSmartPointer<vtkLegendBoxActor> _legend;
    vtkSmartPointer<TORVColorBarActor> _colorBar;
    std::array<int, 3> _laidOutFor{}; // window's width and height, dots an inch
};
