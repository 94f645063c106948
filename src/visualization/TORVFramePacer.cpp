#include "visualization/TORVFramePacer.h"

#include "utils/TORVLog.h"
#include "visualization/TORVVolumePath.h"

#include <QElapsedTimer>

#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

namespace
{

// Pictures a second. Volumes are drawn as coarsely as this takes.
constexpr double RateAtRest = 0.0001;
constexpr double RateMoving = 15.0;
constexpr double SlowestQuickRate = 1.0;

} // namespace

TORVFramePacer::TORVFramePacer(vtkRenderWindow* window, vtkRenderer* renderer) : _window(window), _renderer(renderer)
{
    _drawTimer.setSingleShot(true);
    _drawTimer.setInterval(0);
    connect(&_drawTimer, &QTimer::timeout, this, &TORVFramePacer::draw);
    _restTimer.setSingleShot(true);
    _restTimer.setInterval(RestDelay_ms);
    connect(&_restTimer, &QTimer::timeout, this, &TORVFramePacer::comeToRest);
    _renderer->SetMaximumNumberOfPeels(PeelsAtRest);
    _renderer->SetOcclusionRatio(0.0);
    setMoving(false);
}

TORVFramePacer::~TORVFramePacer() = default;

void TORVFramePacer::request()
{
    if (!_drawTimer.isActive()) {
        _drawTimer.start();
    }
}

void TORVFramePacer::moved()
{
    setMoving(true);
    _restTimer.start();
}

void TORVFramePacer::keepMoving(bool on)
{
    if (on != _isKeptMoving) {
        _isKeptMoving = on;
        moved();
    }
}

void TORVFramePacer::drawNow()
{
    _drawTimer.stop();
    _restTimer.stop();
    setMoving(false);
    _renderer->SetMaximumNumberOfPeels(PeelsForKeeps);
    draw();
    _renderer->SetMaximumNumberOfPeels(PeelsAtRest);
    if (_isKeptMoving) {
        moved();
    }
}

bool TORVFramePacer::isQuick(vtkViewport* viewport)
{
    auto* const window = vtkRenderWindow::SafeDownCast(viewport->GetVTKWindow());
    return window && window->GetDesiredUpdateRate() > SlowestQuickRate;
}

// Sorting translucent surfaces costs several plain pictures. Smooth edges cost a processor a fifth of a frame and a
// graphics card next to nothing.
void TORVFramePacer::setMoving(bool moving)
{
    if (moving == _isMoving) {
        return;
    }
    _isMoving = moving;
    _renderer->SetUseDepthPeeling(!moving);
    _renderer->SetUseFXAA(!moving || !TORVVolumePath::isSoftware());
    _window->SetDesiredUpdateRate(moving ? RateMoving : RateAtRest);
}

void TORVFramePacer::comeToRest()
{
    if (_isKeptMoving) {
        return;
    }
    setMoving(false);
    request();
}

void TORVFramePacer::draw()
{
    QElapsedTimer timer;
    timer.start();
    _window->Render();
    ++_drawCount;
    const double seconds = static_cast<double>(timer.nsecsElapsed()) * 1e-9;
    TORVLog::Instance()->logDebug(QStringLiteral("..rendering took %1 seconds.").arg(seconds, 0, 'f', 3));
    if (_isMoving) {
        _restTimer.start(); // a slow picture is no rest
    }
}
