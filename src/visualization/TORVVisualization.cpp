#include "visualization/TORVVisualization.h"

#include "datalib/TORVDataFrame.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"
#include "utils/TORVDisplayMode.h"
#include "utils/TORVLog.h"
#include "visualization/TORVSceneGrid.h"
#include "visualization/TORVVisualizationObserver.h"
#include "visualization/TORVVolumeFilter.h"

#include <vtkProp3D.h>

#include <boost/make_shared.hpp>

#include <cassert>

namespace
{

constexpr double MetresPerThousandth = 0.001;

void logDebug(const char* text)
{
    TORVLog::Instance()->logDebug(QLatin1String(text));
}

QString triple(const char* name, double a, double b, double c)
{
    return QLatin1String(name) + QStringLiteral("%1, %2, %3").arg(a).arg(b).arg(c);
}

struct Transformation
{
    int key;
    TORVPoint3D scale;
    TORVPoint3D position;
};

void apply(const TORVDisplayState& state, const Transformation& transformation)
{
    const TORVDisplayLayer::Ptr layer = state.getLayer(transformation.key);
    if (!layer || !layer->getElement()) {
        return;
    }
    vtkProp3D* const prop = vtkProp3D::SafeDownCast(layer->getElement()->getProp());
    if (!prop) {
        return;
    }
    prop->SetScale(transformation.scale.x, transformation.scale.y, transformation.scale.z);
    prop->SetPosition(transformation.position.x, transformation.position.y, transformation.position.z);
}

template <class Parameters>
boost::shared_ptr<Parameters> copyOf(const Parameters& parameters)
{
    return boost::make_shared<Parameters>(parameters);
}

} // namespace

TORVVisualization::TORVVisualization(TORVVisualizationObserver* observer)
    : _observer(observer), _pipeline(boost::make_shared<TORVVisualizationPipeline>())
{
    assert(_observer);
    connect(_pipeline.get(), &TORVVisualizationPipeline::allDone, this, &TORVVisualization::onPipelineFinished);
}

TORVVisualization::~TORVVisualization()
{
    _pipeline->stop();
    resetVisualization();
}

void TORVVisualization::setSourceData(const boost::shared_ptr<const TORVDataFrame>& dataFrame)
{
    assert(dataFrame);
    assert(dataFrame->getData3d());
    const bool isSameFrame = dataFrame == _params._dataFrame;
    if (isSameFrame && _pipelineItem && !_pipelineItem->isBusy()) {
        logDebug("Reusing previous pipeline item..");
    } else {
        logDebug("Creating a new pipeline item..");
        if (!isSameFrame) {
            logDebug(" -Different frame!");
        } else {
            logDebug(_pipelineItem ? "- Pipeline item in use!" : "- No pipeline item!");
        }
        createItem(dataFrame);
    }
    assert(_params._dataFrame);
    setParameters(_observer->getVisualizationGeneralSettings(), dataFrame->getProductSettings());
}

void TORVVisualization::createItem(const boost::shared_ptr<const TORVDataFrame>& dataFrame)
{
    const ItemPtr previous = _pipelineItem;
    _params._dataFrame = dataFrame;
    _pipelineItem = boost::make_shared<TORVVisualizationPipelineItem>(_observer->getVisualizationDisplayState());
    if (previous && !previous->isBusy()) {
        _pipelineItem->takeOver(*previous); // the ground, for one, is the same as long as the site is
    }
    _isItemNew = true;
}

void TORVVisualization::setParameters(const boost::shared_ptr<const TORVGeneralSettings>& genSettings,
                                      const boost::shared_ptr<const TORVProductSettings>& prodSettings)
{
    assert(_params._dataFrame);
    assert(_params._dataFrame->getData3d());
    assert(genSettings);
    assert(prodSettings);
    _params.set(_params._dataFrame, *genSettings, *prodSettings);
    const TORVFile& file = *_params._leaf3d->getFile();
    const double height = file.getZRadar() * MetresPerThousandth + file.getRadarElevation();
    _pipelineItem->setRadarPosition({0.0, 0.0, height * genSettings->getVerticalScale()});
    _pipelineItem->setSite(_params._leaf3d->getSite());
}

void TORVVisualization::updateVisualization(bool force)
{
    if (_aborted) {
        return;
    }
    assert(_pipelineItem);
    if (_generating) {
        remember(force);
        return;
    }
    _timer->StartTimer();
    _pipelineItem->releaseReplaced();
    _pipelineItem->getDisplayState()->copyState(*_observer->getVisualizationDisplayState());
    if (force || hasParametersChanged()) {
        logDebug("Updating visualization..");
        logDebug("---(generating)--->");
        updateLayers(force);
    } else {
        logDebug("No changes!"); // of parameters; what the user wants to see may have changed
    }
    sendItem();
}

void TORVVisualization::remember(bool force)
{
    logDebug("Updating visualization..");
    logDebug("Already generating visualization! -> return.");
    _dirty = true;
    _dirtyForced = _dirtyForced || force || hasParametersChanged();
    logDebug("TORVRenderer::updateVisualization() finished.");
}

bool TORVVisualization::hasParametersChanged() const
{
    return _isItemNew || !_params.isSame(_appliedParams);
}

void TORVVisualization::sendItem()
{
    logDebug("Passing input item to visualization pipeline..");
    _generating = true;
    _dirty = false;
    _dirtyForced = false;
    _sentItem = _pipelineItem;
    _pipeline->addInput(_pipelineItem);
}

void TORVVisualization::resetLayers()
{
    logDebug("Reseting all groups, layers, and visual elements..");
    assert(_pipelineItem);
    assert(!_pipelineItem->isBusy());
    _pipelineItem->getDisplayState()->resetParameters();
}

// Each object is made for this run alone: elements compare it with the one of the run before.
void TORVVisualization::updateLayers(bool force)
{
    if (force) {
        logDebug("Force enabled -> reset layers first!");
        resetLayers();
    }
    assert(_pipelineItem);
    const TORVDisplayState::Ptr ds = _pipelineItem->getDisplayState();
    assert(ds);
    logDebug("Updating groups and layers..");
    _appliedParams = _params;
    _isItemNew = false;
    assert(_appliedParams._dataFrame);
    updateRadarLayers(*ds);
    updateGeoLayers(*ds);
}

void TORVVisualization::updateRadarLayers(const TORVDisplayState& state)
{
    const TORVDisplayGroup::Ptr group_radar = state.getGroup(TORVDisplayLayer::GROUP_RADARLAYERS);
    const TORVDisplayLayer::Ptr layer_outline = state.getLayer(TORVDisplayLayer::LAYER_3DOUTLINE);
    const TORVDisplayLayer::Ptr layer_3dproduct = state.getLayer(TORVDisplayLayer::LAYER_3DPRODUCT);
    const TORVDisplayLayer::Ptr layer_2dproduct = state.getLayer(TORVDisplayLayer::LAYER_2DPRODUCT);
    assert(group_radar.get());
    assert(layer_outline.get());
    assert(layer_3dproduct.get());
    assert(layer_2dproduct.get());
    if (!_appliedParams._leaf3d) {
        logDebug("No 3d data available. Reseting layers..");
        for (const TORVDisplayLayer::Ptr& layer :
             {TORVDisplayLayer::Ptr(group_radar), layer_outline, layer_3dproduct, layer_2dproduct}) {
            layer->setParameters({});
        }
        return;
    }
    logDebug("Updating radar layers..");
    group_radar->setParameters(boost::make_shared<TORVLayerParameters>());
    layer_outline->setParameters(copyOf(_appliedParams._pars3dOutline));
    layer_3dproduct->setParameters(copyOf(_appliedParams._pars3d));
    layer_2dproduct->setParameters(_appliedParams._leaf2d ? copyOf(_appliedParams._pars2d)
                                                          : TORVLayerParameters2d::Ptr());
}

void TORVVisualization::updateGeoLayers(const TORVDisplayState& state)
{
    const TORVDisplayGroup::Ptr group_geolayers = state.getGroup(TORVDisplayLayer::GROUP_GEOLAYERS);
    const TORVDisplayLayer::Ptr layer_3dterrain = state.getLayer(TORVDisplayLayer::LAYER_3DTERRAIN);
    const TORVDisplayLayer::Ptr layer_latlongrid = state.getLayer(TORVDisplayLayer::LAYER_LATLONGRID);
    const TORVDisplayLayer::Ptr layer_rangerings = state.getLayer(TORVDisplayLayer::LAYER_RANGERINGS);
    const TORVDisplayLayer::Ptr layer_geolabels = state.getLayer(TORVDisplayLayer::LAYER_GEOLABELS);
    assert(group_geolayers.get());
    assert(layer_3dterrain.get());
    assert(layer_latlongrid.get());
    assert(layer_rangerings.get());
    assert(layer_geolabels.get());
    if (!_appliedParams._terrainSet || !_appliedParams._leaf3d || !_appliedParams._landmarkSet) {
        return; // they keep what they have
    }
    logDebug("Updating geo layers..");
    group_geolayers->setParameters(boost::make_shared<TORVLayerParameters>());
    layer_3dterrain->setParameters(copyOf(_appliedParams._parsTerrain));
    layer_latlongrid->setParameters(copyOf(_appliedParams._parsLatLonGrid));
    layer_rangerings->setParameters(copyOf(_appliedParams._parsRadarRings));
    layer_geolabels->setParameters(copyOf(_appliedParams._parsGeoLabels));
}

void TORVVisualization::onPipelineFinished()
{
    if (_aborted) {
        return;
    }
    while (const ItemPtr item = _pipeline->getResultItem()) {
        if (item == _sentItem) {
            finish(item);
            return;
        }
    }
}

void TORVVisualization::finish(const ItemPtr& item)
{
    _visualizationResult = item;
    assert(_visualizationResult);
    _sentItem.reset();
    item->releaseReplaced(); // a window that still draws it holds it
    _memoryBytes = item->countMemoryBytes();
    item->place();
    restyle();
    updateLayerTranformations(*item);
    logDebug("<---(generating)---");
    _timer->StopTimer();
    TORVLog::Instance()->logDebug(
        QStringLiteral("..data visualized in %1 seconds.").arg(_timer->GetElapsedTime(), 0, 'f', 3));
    _generating = false;
    if (_dirty) {
        logDebug("Visualization dirty -> generate again!");
        updateVisualization(_dirtyForced);
        return;
    }
    _observer->visualizationFinished(this);
}

void TORVVisualization::updateLayerTranformations(const TORVVisualizationPipelineItem& item) const
{
    const TORVDisplayState::Ptr ds = item.getDisplayState();
    assert(ds);
    if (!_appliedParams._leaf3d) {
        return;
    }
    const TORVFile& file = *_appliedParams._leaf3d->getFile();
    const double vs = _appliedParams._verticalScale;
    const TORVSceneGrid grid(file);
    const double level = grid.elevation * vs;
    TORVLog* const log = TORVLog::Instance();
    log->logDebug(triple("3d points: ", file.getXPoints(), file.getYPoints(), file.getZPoints()));
    log->logDebug(triple("3d dimensions: ", grid.size.x, grid.size.y, grid.size.z));
    apply(*ds, {TORVDisplayLayer::LAYER_3DPRODUCT,
                {grid.step.x, grid.step.y, grid.step.z * vs / TORVVolumeFilter::LevelSpacing},
                {-grid.radarX, -grid.radarY, level}});
    apply(*ds, {TORVDisplayLayer::LAYER_3DOUTLINE,
                {grid.size.x, grid.size.y, grid.size.z * vs},
                {grid.size.x / 2.0 - grid.radarX, grid.size.y / 2.0 - grid.radarY, level}});
    apply(*ds, {TORVDisplayLayer::LAYER_RANGERINGS, {1.0, 1.0, 1.0}, {0.0, 0.0, level}});
    apply(*ds, {TORVDisplayLayer::LAYER_LATLONGRID, {1.0, 1.0, 1.0}, {0.0, 0.0, 0.0}});
    apply(*ds, {TORVDisplayLayer::LAYER_3DTERRAIN, {1.0, 1.0, vs}, {0.0, 0.0, 0.0}});
    if (!_appliedParams._leaf2d) {
        return;
    }
    const TORVFile& flatFile = *_appliedParams._leaf2d->getFile();
    const TORVSceneGrid flat(flatFile);
    log->logDebug(triple("2d points: ", flatFile.getXPoints(), flatFile.getYPoints(), flatFile.getZPoints()));
    log->logDebug(triple("2d dimensions: ", flat.size.x, flat.size.y, flat.size.z));
    // Its cells stand round their grid points.
    apply(*ds, {TORVDisplayLayer::LAYER_2DPRODUCT,
                {flat.step.x, flat.step.y, 1.0},
                {-flat.radarX - flat.step.x / 2.0, -flat.radarY - flat.step.y / 2.0, flat.elevation * vs}});
}

// An item that is built in two runs may hold layers of both modes.
void TORVVisualization::restyle()
{
    const bool isIdle = _visualizationResult && !_visualizationResult->isBusy();
    if (isIdle && _styleCount != TORVDisplayMode::getChangeCount()) {
        _styleCount = TORVDisplayMode::getChangeCount();
        _visualizationResult->restyle();
    }
}

void TORVVisualization::abort()
{
    logDebug("TORVVisualization::abort()");
    _aborted = true;
    _pipeline->stop();
}

void TORVVisualization::resetVisualization()
{
    _params = TORVVisualizationParameters();
    _appliedParams = TORVVisualizationParameters();
    _pipelineItem.reset();
    _sentItem.reset();
    _visualizationResult.reset();
    _memoryBytes = 0;
    _isItemNew = false;
    _generating = false;
    _dirty = false;
    _dirtyForced = false;
}

vtkDataSet* TORVVisualization::getVTKDataSet() const
{
    return _visualizationResult ? _visualizationResult->getVTKDataSet() : nullptr;
}
