// From the request for a picture to the picture on the screen.

#include "datalib/TORVTerrainSet.h"
#include "gui/TORVAnimation.h"
#include "gui/TORVAnimationFrame.h"
#include "gui/TORVCursorToolDialog.h"
#include "gui/TORVGUI.h"
#include "gui/TORVGeneralSettingsDialog.h"
#include "gui/TORVProductInformationDialog.h"
#include "settings/TORVDisplayState.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"
#include "utils/TORVLog.h"
#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVColormap.h"
#include "visualization/TORVFramePacer.h"
#include "visualization/TORVRenderer.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QSplashScreen>
#include <QTimer>

#include <vtkDataSet.h>

#include <algorithm>
#include <cassert>
#include <cmath>

namespace
{

constexpr TORVPoint3D FarPosition = {0.0, 0.0, 2000000.0};
constexpr TORVPoint3D DownDirection = {0.0, 1e-6, -1.0};
constexpr int StatusTime_s = 2;

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

void logStatus(const QString& text)
{
    TORVLog::Instance()->logStatus(text, StatusTime_s);
}

void dump(const TORVFile& file)
{
    logDebug(QStringLiteral("Processing 3d data: %1, %2 x %3 m, %4 x %5 x %6 points, elevations: %6")
                 .arg(file.getSite())
                 .arg(file.getLengthM())
                 .arg(file.getWidthM())
                 .arg(file.getXPoints())
                 .arg(file.getYPoints())
                 .arg(file.getZPoints()));
}

// As many as the terrain has to be converted first.
bool isConverting(const TORVVisualization& visualization)
{
    const auto frame = visualization.getDataFrame();
    const auto terrain = frame ? frame->getTerrainSet() : boost::shared_ptr<TORVTerrainSet>();
    return terrain && !terrain->isLoaded() && terrain->getConversionCount() > 0;
}

} // namespace

void TORVGUI::updateData(const TORVDataFrame::CPtr& frame)
{
    if (!frame) {
        logDebug(QStringLiteral("Closing current visualization.."));
        setActiveData({});
        return;
    }
    if (!frame->getData3d()) {
        logDebug(QStringLiteral("Closing current visualization.."));
        TORVLog::Instance()->logHistory(translate("App", "3d data not available."));
        setActiveData({});
        return;
    }
    if (frame == _dataFrame) {
        logDebug(QStringLiteral("Updating current visualization.."));
        _shownNumber = ++_lastNumber; // what was asked for before is wanted no more
        updateVisualization(false);
        return;
    }
    load(frame);
}

// Only a scene that was never built, or was let go, is built whole.
void TORVGUI::load(const TORVDataFrame::CPtr& frame)
{
    const TORVAnimation::FramePtr holder = _animation->findFrame(frame);
    assert(holder);
    logDebug(QStringLiteral("Loading new visualization.."));
    dump(*frame->getData3d()->getFile());
    logDebug(QStringLiteral("*** Creating visualization.."));
    if (!_isPlaying) {
        logStatus(translate("App", "Visualizing data set.."));
    }
    const TORVVisualization::Ptr visualization = holder->getVisualization();
    const bool isNew = !visualization->getResultItem() && !visualization->isGenerating();
    submit(visualization, frame, isNew, ++_lastNumber);
}

void TORVGUI::updateVisualization(bool force)
{
    if (!_visualization || !_dataFrame) {
        return;
    }
    if (!_isPlaying) {
        logStatus(translate("App", "Visualizing data set.."));
    }
    submit(_visualization, _dataFrame, force, _shownNumber);
}

// After a change of settings or of the display state: what is being built meanwhile will be out of date.
void TORVGUI::redraw()
{
    ++_changes;
    updateVisualization(false);
}

// One that is at work stays in its place of the list and takes up the request when its run ends.
void TORVGUI::submit(const TORVVisualization::Ptr& visualization, const TORVDataFrame::CPtr& frame, bool force,
                     int number)
{
    _timerLog->StartTimer();
    if (visualization->isGenerating() && visualization->getDataFrame() == frame) {
        visualization->setParameters(_genSettings, frame->getProductSettings());
    } else {
        visualization->setSourceData(frame);
    }
    const auto place = std::find_if(_pending.begin(), _pending.end(),
                                    [&visualization](const Run& run) { return run.visualization == visualization; });
    if (place == _pending.end()) {
        _pending.push_back({visualization, number, _changes, _isStepDue});
    } else {
        place->number = std::max(place->number, number);
        place->changes = _changes;
        place->isStep = place->isStep || _isStepDue;
    }
    visualization->updateVisualization(force);
    updateBusyState();
}

std::optional<TORVGUI::Run> TORVGUI::takeRun(const TORVVisualization* visualization)
{
    for (int i = 0; i < _pending.size(); ++i) {
        if (_pending[i].visualization.get() == visualization) {
            return _pending.takeAt(i);
        }
    }
    return std::nullopt;
}

void TORVGUI::visualizationFinished(TORVVisualization* visualization)
{
    const std::optional<Run> run = takeRun(visualization);
    if (!run) {
        const auto place = std::find_if(_dropped.begin(), _dropped.end(), [visualization](const auto& dropped) {
            return dropped.get() == visualization;
        });
        if (place == _dropped.end()) {
            TORVLog::Instance()->logError(QStringLiteral("TORVGUI::visualizationFinished(): Visualization not found!"));
            return;
        }
        QTimer::singleShot(0, this, [held = *place] {}); // it is still at work when this returns
        _dropped.erase(place);
        return;
    }
    logDebug(QStringLiteral("Visualization found!"));
    logDebug(QStringLiteral("Remaining visualizations: %1").arg(_pending.size()));
    const TORVVisualization::Ptr myVisualization = run->visualization;
    assert(myVisualization->getDataFrame());
    assert(myVisualization->getResultItem());
    QTimer::singleShot(0, this, [myVisualization] {});
    useResult(*run);
}

void TORVGUI::useResult(const Run& run)
{
    const bool isInList = _animation->findFrame(run.visualization->getDataFrame()) != nullptr;
    logDebug(isInList ? QStringLiteral("Visualization found in sequence -> use!")
                      : QStringLiteral("Visualization not found in sequence -> ignore!"));
    const bool isShown = isInList && run.number >= _shownNumber;
    if (isShown) {
        _shownNumber = run.number;
        setActiveData(run.visualization);
        if (run.changes != _changes) {
            updateVisualization(false);
        }
    }
    _renderer->getCameraInteractor()->applyCamera(true);
    updateBusyState();
    if (!_isPlaying) {
        logStatus(translate("App", "Done!"));
    }
    _timerLog->StopTimer();
    logDebug(QStringLiteral("..total visualization time: %1").arg(_timerLog->GetElapsedTime(), 0, 'f', 3));
    if (_isPlaying) {
        continuePlayback(run, isShown);
    }
}

void TORVGUI::setActiveData(const TORVVisualization::Ptr& visualization)
{
    if (!visualization || !visualization->getDataFrame()) {
        closeActiveData();
    } else {
        showData(visualization);
    }
    updateDataIdLabel(_dataFrame);
    updateToolDialogs();
    updateColorKey();
    updateAvailableSites();
    updateAvailableProducts();
    updateAnimControls();
    _renderer->render();
}

// The view is kept for the case that the same site comes back.
void TORVGUI::closeActiveData()
{
    if (_dataFrame) {
        TORVLog::Instance()->logHistory(translate("App", "Current data file closed."));
        _viewToRestore = *_viewAngle;
        _viewSite = _dataFrame->getSite();
    }
    logDebug(QStringLiteral("New visualization not available.."));
    TORVCameraInteractor* const camera = _renderer->getCameraInteractor();
    camera->resetCamera(FarPosition, DownDirection, 0.0, 0.0);
    camera->applyCamera(false);
    _renderer->removeVisualization();
    dropRuns();
    if (_visualization && !_visualization->isGenerating()) {
        _visualization->resetVisualization();
    }
    _dataFrame.reset();
    _visualization.reset();
    _shownNumber = ++_lastNumber;
    _animation->resetAnimation();
}

// They can't be stopped without waiting for them, so they run out, and nobody looks at what they bring.
void TORVGUI::dropRuns()
{
    for (const Run& run : _pending) {
        _dropped << run.visualization;
    }
    _pending.clear();
}

void TORVGUI::showData(const TORVVisualization::Ptr& visualization)
{
    logDebug(QStringLiteral("New visualization available.."));
    const TORVDataFrame::CPtr frame = visualization->getDataFrame();
    const bool isOtherSite = !_dataFrame || _dataFrame->getData3d()->getSite() != frame->getData3d()->getSite();
    _dataFrame = frame;
    _visualization = visualization;
    _renderer->setVisualization(visualization->getResultItem());
    _renderer->getPacer()->moved(); // at first a quick picture, the whole one when nothing else comes
    _scenes.use(visualization);
    _scenes.trim(visualization);
    if (!isOtherSite) {
        return;
    }
    logDebug(QStringLiteral("Site changed -> reset view angle & cursor tool."));
    resetView(*frame->getData3d()->getFile());
    restoreView(frame->getSite());
    _renderer->render();
    _cursorTool->resetCursor();
}

// From straight above, high enough to see the whole volume.
void TORVGUI::resetView(const TORVFile& file)
{
    const double reach = 2.0 * std::hypot(file.getLengthM() / 2.0, file.getWidthM() / 2.0);
    TORVCameraInteractor* const camera = _renderer->getCameraInteractor();
    camera->resetCamera({0.0, 0.0, 2.0 * reach}, DownDirection, 4.0 * reach, reach);
    camera->applyCamera(false);
}

// That of the last session, or of the time before a gap in the data.
void TORVGUI::restoreView(const QString& site)
{
    if (_viewToRestore && (_viewSite.isEmpty() || _viewSite == site)) {
        TORVCameraInteractor* const camera = _renderer->getCameraInteractor();
        camera->setView(_viewToRestore->getPosition(), _viewToRestore->getDirection());
        camera->applyCamera(false);
    }
    _viewToRestore.reset();
    takeCamera();
}

void TORVGUI::updateColorKey()
{
    if (!_dataFrame) {
        colorKey->clear();
        return;
    }
    const TORVProductSettings& product = *_dataFrame->getProductSettings();
    QVector<double> isoValues;
    if (product.getRenderingType() == TORVProductSettings::SURFACE) {
        for (const double value : product.getSurfaces().keys()) {
            isoValues << value;
        }
    }
    const TORVDataType type = _dataFrame->getData3d()->getFile()->getDataType();
    colorKey->setColors(getCurrentColorMap(), type.getQuantityUnit(), isoValues);
}

bool TORVGUI::isBusy() const
{
    return !_pending.isEmpty() || _isPlaying || _splash;
}

void TORVGUI::updateBusyState()
{
    if (_isPlaying && _animation->getFrameCount() < 2) {
        stopPlaying();
    }
    enableDataControls(!isBusy());
    updateCursor(!_pending.isEmpty() && !_isPlaying);
    updateProgress();
}

void TORVGUI::enableDataControls(bool on)
{
    for (QAction* const action : {fileOpen, fileCloseData, settings, productInfo}) {
        action->setEnabled(on);
    }
    for (QComboBox* const box : {comboBox_radarSite, comboBox_3DProduct, comboBox_2DProduct, comboBox_liveMode}) {
        box->setEnabled(on);
    }
    _settingsDialog->enableSettingControls(on);
    _productInfo->enableProdSettings(on);
}

// One override for one busy time: they pile up, and any of them hides the cursors of all widgets.
void TORVGUI::updateCursor(bool isWaiting)
{
    if (isWaiting == _isCursorWaiting) {
        return;
    }
    _isCursorWaiting = isWaiting;
    if (isWaiting) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QApplication::restoreOverrideCursor();
    }
}

int TORVGUI::countBuiltFrames() const
{
    const auto& frames = _animation->getFrames();
    return static_cast<int>(std::count_if(frames.begin(), frames.end(), [](const TORVAnimation::FramePtr& frame) {
        return frame->getVisualization()->getResultItem() != nullptr;
    }));
}

// Of what may take long: ground that was never converted, and the frames of a loop that were never built.
void TORVGUI::updateProgress()
{
    int count = 0;
    int done = 0;
    QString text;
    const auto converting =
        std::find_if(_pending.begin(), _pending.end(), [](const Run& run) { return isConverting(*run.visualization); });
    if (converting != _pending.end()) {
        const auto terrain = converting->visualization->getDataFrame()->getTerrainSet();
        count = terrain->getConversionCount();
        done = terrain->getConvertedCount();
        text = translate("App", "Converting terrain");
    } else if (_isPlaying) {
        count = _animation->getFrameCount();
        done = countBuiltFrames();
        text = translate("App", "Preparing frames");
    }
    const bool isShown = done < count;
    if (isShown) {
        _label_progress->setText(text);
        _progressBar->setRange(0, count);
        _progressBar->setValue(done);
    }
    _label_progress->setVisible(isShown);
    _progressBar->setVisible(isShown);
}

boost::shared_ptr<const TORVGeneralSettings> TORVGUI::getVisualizationGeneralSettings()
{
    return _genSettings;
}

boost::shared_ptr<const TORVDisplayState> TORVGUI::getVisualizationDisplayState()
{
    return _displayState;
}
