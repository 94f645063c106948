#include "visualization/TORVRenderer.h"

#include "utils/TORVDisplayMode.h"
#include "utils/TORVLog.h"
#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVCameraInteractorCallback.h"
#include "visualization/TORVColorBarActor.h"
#include "visualization/TORVCompassInteractionCallback.h"
#include "visualization/TORVCompassRepresentation.h"
#include "visualization/TORVFramePacer.h"
#include "visualization/TORVPointWidget.h"
#include "visualization/TORVVolumePath.h"

#include <QScopedValueRollback>

#include <vtkActor.h>
#include <vtkCallbackCommand.h>
#include <vtkCommand.h>
#include <vtkCompassWidget.h>
#include <vtkCullerCollection.h>
#include <vtkGenericRenderWindowInteractor.h>
#include <vtkLegendBoxActor.h>
#include <vtkLight.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSphereSource.h>
#include <vtkTextProperty.h>
#include <vtkTimerLog.h>

#include <cassert>

namespace
{

constexpr TORVPoint3D FirstPosition = {0.0, 0.0, 2000000.0};
constexpr TORVPoint3D FirstDirection = {0.0, 1e-6, -1.0};

// A face in full light shows its ambient 0.7 and the light: the default light would bleach the colours of the echo, so
// it is taken at part of its strength.
constexpr double LightPart = 0.6;
constexpr TORVSceneStyle::Color DefaultLight = {1.0 * LightPart, 0.98 * LightPart, 0.9 * LightPart};
constexpr double FillLight[3] = {0.2, 0.2, 0.25};
constexpr int MarkerResolution = 24;

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

void logToggle(const char* what, bool on)
{
    logDebug(QStringLiteral("--- TORVRenderer: ") + QLatin1String(what) +
             (on ? QLatin1String("on") : QLatin1String("off")));
}

void setUpLight(vtkLight* light, double x, double y, double z)
{
    light->SetLightTypeToSceneLight();
    light->PositionalOff();
    light->SetFocalPoint(0.0, 0.0, 0.0);
    light->SetPosition(x, y, z);
}

} // namespace

TORVRenderer::TORVRenderer(vtkRenderWindow* window, TORVCameraInteractorObserver* cameraObserver,
                           TORVPointWidgetObserver* pointObserver, bool interactive)
    : _window(window), _isInteractive(interactive)
{
    assert(_window);
    _command->SetClientData(this);
    _command->SetCallback(onVtkEvent);
    createRenderers();
    _pacer = std::make_unique<TORVFramePacer>(_window, _renderer);
    createInteractor();
    createCamera(cameraObserver);
    createCompass();
    if (_isInteractive && pointObserver) {
        createPointWidget(pointObserver);
    }
    _camera->resetCamera(FirstPosition, FirstDirection, 0.0, 0.0);
    _camera->applyCamera(false);
    logDebug(QStringLiteral("setting up lighting.."));
    addLights();
    createSiteMarker();
    updateLights();
}

TORVRenderer::~TORVRenderer()
{
    if (_pointWidget) {
        _pointWidget->SetEnabled(0);
        _pointWidget->destroy();
        _pointWidget->SetInteractor(nullptr);
    }
    _compassWidget->SetEnabled(0);
    _compassWidget->SetInteractor(nullptr);
    _interactor->SetInteractorStyle(nullptr);
    releaseCamera();
    for (vtkObject* const object : {static_cast<vtkObject*>(_window), static_cast<vtkObject*>(_interactor.Get()),
                                    static_cast<vtkObject*>(_renderer.Get())}) {
        object->RemoveObserver(_command);
    }
    _interactor->EnableRenderOn();
    _renderer->RemoveAllViewProps();
    _colorRenderer->RemoveAllViewProps();
    _window->RemoveRenderer(_colorRenderer);
    _window->RemoveRenderer(_renderer);
}

// Others may hold it longer.
void TORVRenderer::releaseCamera()
{
    _camera->setRenderRequest({});
    _camera->RemoveObserver(_command);
    _camera->RemoveObserver(_cameraCallback);
    _camera->RemoveObserver(_compassFollower);
}

void TORVRenderer::createRenderers()
{
    logDebug(QStringLiteral("creating VTK renderer.."));
    _renderer->SetViewport(0.0, 0.0, 1.0, 1.0);
    _renderer->GetCullers()->RemoveAllItems(); // the scene is a few large props: none of them is ever to be left out
    _renderer->AutomaticLightCreationOff();
    logDebug(QStringLiteral("creating VTK color scale renderer.."));
    _colorRenderer->SetViewport(0.01, 0.59, 0.05, 0.99);
    _colorRenderer->InteractiveOff(); // the mouse over the scale steers the scene as everywhere else
    _window->SetMultiSamples(0);
    _window->SetAlphaBitPlanes(1);
    _window->SetLineSmoothing(true);
    logDebug(QStringLiteral("adding VTK renderer to render window.."));
    _window->AddRenderer(_renderer);
    observe(_renderer, vtkCommand::EndEvent);
    observe(_window, vtkCommand::StartEvent);
}

// VTK's widgets draw by themselves at each move of the mouse; their wishes become requests, from the first picture on:
// that one a Qt widget must have drawn while it paints, or it would stay black.
void TORVRenderer::createInteractor()
{
    _interactor = _window->GetInteractor();
    if (!_interactor) {
        _interactor = vtkSmartPointer<vtkGenericRenderWindowInteractor>::New();
        _interactor->SetRenderWindow(_window);
    }
    observe(_interactor, vtkCommand::RenderEvent);
}

void TORVRenderer::createCamera(TORVCameraInteractorObserver* observer)
{
    logDebug(QStringLiteral("creating default camera.."));
    _renderer->ResetCamera();
    _camera->setRenderer(_renderer);
    _camera->setRenderRequest([this] { _pacer->request(); });
    _interactor->SetInteractorStyle(_isInteractive ? _camera.Get() : nullptr);
    _cameraCallback->setObserver(observer);
    _compassFollower->setObserver(_compass);
    for (const unsigned long event : {static_cast<unsigned long>(TORVCameraInteractor::CameraResetEvent),
                                      static_cast<unsigned long>(vtkCommand::InteractionEvent)}) {
        _camera->AddObserver(event, _compassFollower);
        _camera->AddObserver(event, _cameraCallback);
    }
    observe(_camera, vtkCommand::InteractionEvent);
}

void TORVRenderer::createCompass()
{
    vtkNew<TORVCompassInteractionCallback> callback;
    callback->setCamera(_camera);
    _compassWidget->SetInteractor(_interactor);
    _compassWidget->SetRepresentation(_compass);
    _compassWidget->SetDefaultRenderer(_renderer);
    _compassWidget->SetCurrentRenderer(_renderer);
    _compassWidget->KeyPressActivationOff(); // VTK's key "i" would switch it off
    _compassWidget->SetProcessEvents(_isInteractive);
    _compassWidget->AddObserver(vtkCommand::InteractionEvent, callback);
}

void TORVRenderer::createPointWidget(TORVPointWidgetObserver* observer)
{
    logDebug(QStringLiteral("setting up interactions.."));
    _pointWidget = vtkSmartPointer<TORVPointWidget>::New();
    _pointWidget->SetInteractor(_interactor);
    _pointWidget->SetDefaultRenderer(_renderer);
    _pointWidget->SetCurrentRenderer(_renderer);
    _pointWidget->init(observer);
    observe(_pointWidget, vtkCommand::InteractionEvent);
}

void TORVRenderer::addLights()
{
    setUpLight(_light, 0.0, -500.0, 2000.0);
    setUpLight(_fillLight, 0.0, 500.0, 0.0);
    _fillLight->SetColor(FillLight[0], FillLight[1], FillLight[2]);
    _renderer->AddLight(_light);
    _renderer->AddLight(_fillLight);
}

void TORVRenderer::createSiteMarker()
{
    _siteMarkerSource->SetThetaResolution(MarkerResolution);
    _siteMarkerSource->SetPhiResolution(MarkerResolution);
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputConnection(_siteMarkerSource->GetOutputPort());
    mapper->ScalarVisibilityOff();
    _siteMarker->SetMapper(mapper);
    vtkProperty* const property = _siteMarker->GetProperty();
    property->BackfaceCullingOff();
    property->FrontfaceCullingOff();
    property->SetAmbient(1.0);
    property->SetDiffuse(1.0);
}

void TORVRenderer::observe(vtkObject* object, unsigned long event)
{
    object->AddObserver(event, _command);
}

void TORVRenderer::onVtkEvent(vtkObject* /*caller*/, unsigned long event, void* self, void* /*data*/)
{
    static_cast<TORVRenderer*>(self)->handleEvent(event);
}

void TORVRenderer::handleEvent(unsigned long event)
{
    switch (event) {
    case vtkCommand::RenderEvent:
        if (!_isQuiet) {
            _pacer->request();
        }
        return;
    case vtkCommand::InteractionEvent:
        _pacer->moved();
        return;
    case vtkCommand::StartEvent:
        layOutColorScale();
        return;
    default:
        onFirstPicture();
    }
}

// The context is there and can be asked.
void TORVRenderer::onFirstPicture()
{
    _renderer->RemoveObserver(_command);
    _interactor->EnableRenderOff();
    TORVVolumePath::detect(_window);
}

void TORVRenderer::setVisualization(const ItemPtr& item)
{
    vtkNew<vtkTimerLog> timer;
    timer->StartTimer();
    _renderer->RemoveViewProp(_shownScene);
    _currentVisualization = item;
    assert(_currentVisualization);
    assert(_currentVisualization->getResults());
    _shownScene = _currentVisualization->getResults();
    _renderer->AddViewProp(_shownScene);
    const TORVPoint3D& radar = _currentVisualization->getRadarPosition();
    _siteMarker->SetPosition(radar.x, radar.y, radar.z);
    _renderer->AddViewProp(_siteMarker);
    setSceneBounds();
    timer->StopTimer();
    logDebug(QStringLiteral("..action took %1 seconds.").arg(timer->GetElapsedTime(), 0, 'f', 3));
}

void TORVRenderer::removeVisualization()
{
    _renderer->RemoveViewProp(_shownScene);
    _shownScene = nullptr;
    _currentVisualization.reset();
    _renderer->AddViewProp(_siteMarker);
}

// The camera keeps its near plane before this box. Landmarks have no bounds of their own.
void TORVRenderer::setSceneBounds()
{
    const double* const bounds = _shownScene->GetBounds();
    if (bounds) {
        _camera->setSceneBounds(bounds);
        _camera->applyCamera(false);
    }
}

void TORVRenderer::toggleCompass(bool on)
{
    logToggle("Compass ", on);
    _isCompassOn = on;
    const QScopedValueRollback<bool> quiet(_isQuiet, true);
    _compassWidget->SetEnabled(on);
    if (on) {
        _compass->cameraMoved(_camera);
    }
}

void TORVRenderer::toggleColorScale(bool on)
{
    logToggle("Color bar ", on);
    _isColorScaleOn = on;
    showInfo();
}

void TORVRenderer::toggleLegend(bool on)
{
    logToggle("Legend ", on);
    _isLegendOn = on;
    showInfo();
}

void TORVRenderer::togglePointWidget(bool on, bool render)
{
    if (!_pointWidget || on == _isPointWidgetOn) {
        return;
    }
    _isPointWidgetOn = on;
    logDebug(QStringLiteral("TORVRenderer::togglePointWidget(): ") +
             (on ? QLatin1String("enabled.") : QLatin1String("disabled.")));
    const QScopedValueRollback<bool> quiet(_isQuiet, true); // VTK would have it drawn at once
    _pointWidget->SetEnabled(on);
    if (on) {
        _renderer->AddViewProp(_pointWidget->getActor());
    } else {
        _renderer->RemoveViewProp(_pointWidget->getActor());
    }
    if (render) {
        _pacer->request();
    }
}

void TORVRenderer::loadStyle(bool night)
{
    constexpr Color Grey = {0.3, 0.3, 0.3};
    const TORVSceneStyle file(QStringLiteral("RENDERER"), night);
    _style.siteMarker = file.color("site/marker/color", Grey);
    _style.siteMarkerRadius = file.number("site/marker/radius", 5000.0, 0.0, 1e6);
    _style.background = file.color("background/color", {0.15, 0.25, 0.3});
    _style.ambient = file.color("ambient/color", {0.55, 0.6, 0.65});
    _style.light = file.color("light/color", DefaultLight);
    _style.colorScaleBackground = file.color("colorscale/background/color", {0.8, 0.8, 0.8});
    _style.legendText = file.color("legend/text/color", {0.0, 0.0, 0.0});
}

void TORVRenderer::updateLights()
{
    const bool isNight = TORVDisplayMode::isNight();
    loadStyle(isNight);
    _colorRenderer->SetBackground(_style.colorScaleBackground.data());
    _renderer->SetBackground(_style.background.data());
    _renderer->SetAmbient(_style.ambient.data());
    _light->SetColor(_style.light.data());
    if (_legend) {
        _legend->GetEntryTextProperty()->SetColor(_style.legendText.data());
    }
    if (_colorBar) {
        _colorBar->SetTextColor(_style.legendText[0], _style.legendText[1], _style.legendText[2]);
    }
    _compass->toggleDisplayMode(!isNight);
    if (_pointWidget) {
        _pointWidget->loadStyle(!isNight);
        _pointWidget->resetActors();
    }
    _siteMarkerSource->SetRadius(_style.siteMarkerRadius);
    _siteMarker->GetProperty()->SetColor(_style.siteMarker.data());
    _renderer->AddViewProp(_siteMarker);
}

void TORVRenderer::resetCamera()
{
    _camera->resetCamera();
    _camera->applyCamera(false);
}

void TORVRenderer::render()
{
    _compass->cameraMoved(_camera); // views that are set by others tell nobody
    _camera->render();
}

void TORVRenderer::renderWindow()
{
    _interactor->Render();
}

void TORVRenderer::renderNow()
{
    _compass->cameraMoved(_camera);
    _pacer->drawNow();
}

TORVPointWidget* TORVRenderer::getPointWidget() const
{
    return _pointWidget;
}
