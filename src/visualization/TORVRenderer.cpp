#include "visualization/TORVRenderer.h"

#include "datalib/TORVDataFrame.h"
#include "utils/TORVLog.h"
#include "visualization/TORVSceneGrid.h"
#include "visualization/TORVVisualization.h"
#include "visualization/TORVVolumePath.h"

#include <QElapsedTimer>

#include <vtkActor.h>
#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkCullerCollection.h>
#include <vtkInteractorStyleTerrain.h>
#include <vtkLight.h>
#include <vtkMath.h>
#include <vtkOutlineSource.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkRenderer.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>

namespace
{

constexpr int PeelsAtRest = 8;
// Where the eye stands at first sight, seen from the middle of the grid: south, a little west, well above.
constexpr double HomeDirection[3] = {-0.35, -0.87, 0.35};
constexpr double HomeMargin = 1.04;

// The distance from which the whole box is seen by a camera that looks at its middle.
double fittingDistance(const double* bounds, vtkCamera* camera, double aspect)
{
    double forward[3];
    double right[3];
    double up[3];
    camera->GetDirectionOfProjection(forward);
    vtkMath::Cross(forward, camera->GetViewUp(), right);
    vtkMath::Normalize(right);
    vtkMath::Cross(right, forward, up);
    const double* const middle = camera->GetFocalPoint();
    const double halfHeight = std::tan(vtkMath::RadiansFromDegrees(camera->GetViewAngle()) / 2.0);
    double distance = 0.0;
    for (int corner = 0; corner < 8; ++corner) {
        const double from[3] = {bounds[corner & 1] - middle[0], bounds[2 + (corner >> 1 & 1)] - middle[1],
                                bounds[4 + (corner >> 2 & 1)] - middle[2]};
        const double across = std::max(std::abs(vtkMath::Dot(from, right)) / aspect, std::abs(vtkMath::Dot(from, up)));
        distance = std::max(distance, across / halfHeight - vtkMath::Dot(from, forward));
    }
    return distance;
}

vtkSmartPointer<vtkLight> makeLight(double x, double y, double z, double r, double g, double b)
{
    auto light = vtkSmartPointer<vtkLight>::New();
    light->SetLightTypeToSceneLight();
    light->PositionalOff();
    light->SetFocalPoint(0.0, 0.0, 0.0);
    light->SetPosition(x, y, z);
    light->SetColor(r, g, b);
    return light;
}

// Peeling draws translucent surfaces in their right order and costs several times a plain frame, so it rests while
// the camera moves.
void setPeeling(vtkObject* caller, unsigned long event, void* renderer, void*)
{
    auto* const target = static_cast<vtkRenderer*>(renderer);
    const bool atRest = event == vtkCommand::EndInteractionEvent;
    target->SetUseDepthPeeling(atRest);
    if (atRest) {
        static_cast<vtkInteractorStyle*>(caller)->GetInteractor()->Render();
    }
}

// At the end of the first frame the context is there and can be asked.
void detectVolumePath(vtkObject* caller, unsigned long event, void*, void*)
{
    TORVVolumePath::detect(static_cast<vtkRenderer*>(caller)->GetRenderWindow());
    caller->RemoveObservers(event);
}

std::array<double, 6> boundsOf(const TORVSceneGrid& grid, double verticalScale)
{
    const double low = grid.elevation * verticalScale;
    return {-grid.radarX, grid.size.x - grid.radarX,        -grid.radarY, grid.size.y - grid.radarY,
            low,          low + grid.size.z * verticalScale};
}

vtkSmartPointer<vtkActor> makeBoxActor(const std::array<double, 6>& bounds)
{
    vtkNew<vtkOutlineSource> box;
    box->SetBounds(bounds[0], bounds[1], bounds[2], bounds[3], bounds[4], bounds[5]);
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputConnection(box->GetOutputPort());
    auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetMapper(mapper);
    actor->GetProperty()->SetColor(0.443, 0.502, 0.545);
    actor->GetProperty()->LightingOff();
    return actor;
}

} // namespace

TORVRenderer::TORVRenderer(vtkRenderWindow* window, QObject* parent) : QObject(parent), _window(window)
{
    TORVLog::Instance()->logDebug(QStringLiteral("creating VTK renderer.."));
    _renderer->SetBackground(0.212, 0.267, 0.310);
    _renderer->GetCullers()->RemoveAllItems(); // the scene is a few large props: none of them is ever to be left out
    _renderer->AutomaticLightCreationOff();
    _renderer->UseFXAAOn();
    _window->SetMultiSamples(0);
    _window->SetAlphaBitPlanes(1);
    _window->SetLineSmoothing(true);
    TORVLog::Instance()->logDebug(QStringLiteral("adding VTK renderer to render window.."));
    _window->AddRenderer(_renderer);
    TORVLog::Instance()->logDebug(QStringLiteral("setting up lighting.."));
    addLights();
    sortTranslucentAtRest();
    vtkNew<vtkCallbackCommand> command;
    command->SetCallback(detectVolumePath);
    _renderer->AddObserver(vtkCommand::EndEvent, command);
}

TORVRenderer::~TORVRenderer()
{
    _renderer->RemoveAllViewProps();
    _window->RemoveRenderer(_renderer);
}

void TORVRenderer::setScene(const TORVVisualization& visualization)
{
    const TORVVisualizationPipelineItem::Ptr scene = visualization.getResultItem();
    assert(scene);
    const bool isOtherPlace = !_scene || _scene->getSite() != scene->getSite();
    _scene = scene;
    const std::array<double, 6> bounds = boundsOf(TORVSceneGrid(*visualization.getDataFrame()->getData3d()->getFile()),
                                                  visualization.getVerticalScale());
    _renderer->RemoveAllViewProps();
    _renderer->AddViewProp(makeBoxActor(bounds));
    _renderer->AddViewProp(_scene->getResults());
    if (isOtherPlace) {
        resetCamera(bounds.data());
    }
}

void TORVRenderer::render()
{
    QElapsedTimer timer;
    timer.start();
    _window->Render();
    const double seconds = static_cast<double>(timer.nsecsElapsed()) * 1e-9;
    TORVLog::Instance()->logDebug(QStringLiteral("..rendering took %1 seconds.").arg(seconds, 0, 'f', 3));
}

void TORVRenderer::addLights()
{
    // A face in full light shows its ambient 0.7 and this light: more would bleach the colour of the echo.
    _renderer->AddLight(makeLight(0.0, -500.0, 2000.0, 0.65, 0.63, 0.58));
    _renderer->AddLight(makeLight(0.0, 500.0, 0.0, 0.2, 0.2, 0.25));
}

void TORVRenderer::sortTranslucentAtRest()
{
    _renderer->SetMaximumNumberOfPeels(PeelsAtRest);
    _renderer->SetOcclusionRatio(0.0);
    _renderer->UseDepthPeelingOn();
    vtkRenderWindowInteractor* const interactor = _window->GetInteractor();
    if (!interactor) {
        return; // a window nobody touches is always at rest
    }
    vtkNew<vtkInteractorStyleTerrain> style;
    style->SetDefaultRenderer(_renderer);
    vtkNew<vtkCallbackCommand> command;
    command->SetCallback(setPeeling);
    command->SetClientData(_renderer.Get());
    style->AddObserver(vtkCommand::StartInteractionEvent, command);
    style->AddObserver(vtkCommand::EndInteractionEvent, command);
    interactor->SetInteractorStyle(style);
}

void TORVRenderer::resetCamera(const double* bounds)
{
    const double middle[3] = {(bounds[0] + bounds[1]) / 2.0, (bounds[2] + bounds[3]) / 2.0,
                              (bounds[4] + bounds[5]) / 2.0};
    vtkCamera* const camera = _renderer->GetActiveCamera();
    camera->SetViewUp(0.0, 0.0, 1.0);
    camera->SetFocalPoint(middle);
    camera->SetPosition(middle[0] + HomeDirection[0], middle[1] + HomeDirection[1], middle[2] + HomeDirection[2]);
    const double distance = HomeMargin * fittingDistance(bounds, camera, _renderer->GetTiledAspectRatio());
    camera->Dolly(1.0 / distance); // from the unit distance above
    _renderer->ResetCameraClippingRange();
}
