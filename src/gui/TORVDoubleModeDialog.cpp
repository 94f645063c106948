#include "gui/TORVDoubleModeDialog.h"

#include "gui/TORVDialogParentInterface.h"
#include "settings/TORVBackgroundSettings.h"
#include "settings/TORVConfig.h"
#include "settings/TORVGeneralSettings.h"
#include "utils/TORVDisplayMode.h"
#include "utils/TORVLog.h"
#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVRenderer.h"
#include "visualization/TORVWheelFilter.h"

#include <QSettings>
#include <QTimer>

#include <vtkGenericOpenGLRenderWindow.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cassert>

namespace
{

void logDebug(const char* text)
{
    TORVLog::Instance()->logDebug(QLatin1String(text));
}

QString positionKey()
{
    return TORVConfig::DIALOG_GROUP + QLatin1Char('/') + TORVConfig::DIALOG_EXTRAWIN_POS;
}

bool isDirection(const TORVPoint3D& direction)
{
    return direction.x != 0.0 || direction.y != 0.0 || direction.z != 0.0;
}

} // namespace

TORVDoubleModeDialog::TORVDoubleModeDialog(QWidget* parent, TORVDialogParentInterface* window)
    : QDialog(parent), _window(window)
{
    setupUi(this);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    showTitle();
    initializeVTK();
    restorePosition();
}

TORVDoubleModeDialog::~TORVDoubleModeDialog()
{
    closeVisualization();
}

void TORVDoubleModeDialog::initializeVTK()
{
    logDebug("Initializing VTK..");
    sceneWidget->setRenderWindow(_renderWindow);
    logDebug("*** Initializing renderer..");
    _renderer = std::make_unique<TORVRenderer>(_renderWindow, this, nullptr, true);
    sceneWidget->installEventFilter(new TORVWheelFilter(_renderer->getCameraInteractor(), sceneWidget));
}

void TORVDoubleModeDialog::setData(const TORVDataFrame::CPtr& frame, const TORVDisplayState::CPtr& state,
                                   const TORVViewAngle::CPtr& angle)
{
    if (!frame || !frame->getData3d()) {
        logDebug("No data. Closing current data..");
        closeVisualization();
        return;
    }
    assert(state);
    assert(angle);
    closeVisualization();
    logDebug("Copying current data..");
    copySettings(*state);
    copyView(*angle);
    _dataFrame = boost::make_shared<TORVDataFrame>(frame);
    _visualization = boost::make_shared<TORVVisualization>(this);
    _visualization->setSourceData(_dataFrame);
    showTitle();
}

void TORVDoubleModeDialog::copySettings(const TORVDisplayState& state)
{
    logDebug("Initializing general settings..");
    _genSettings = boost::make_shared<TORVGeneralSettings>();
    logDebug("Initializing background settings..");
    _backgroundSettings = std::make_unique<TORVBackgroundSettings>();
    _displayState = boost::make_shared<TORVDisplayState>();
    _genSettings->loadDisplayStates(_displayState);
    _displayState->copyState(state);
}

// The key for the home view comes back to the view that the window was opened with.
void TORVDoubleModeDialog::copyView(const TORVViewAngle& angle)
{
    _viewAngle = boost::make_shared<TORVViewAngle>();
    _genSettings->loadViewAngles(_viewAngle);
    _viewAngle->setPosition(angle.getPosition());
    _viewAngle->setDirection(angle.getDirection());
    TORVRenderer* const shown = _window->getCurrentRenderer();
    if (shown && isDirection(_viewAngle->getDirection())) {
        const TORVCameraInteractor& camera = *shown->getCameraInteractor();
        _renderer->getCameraInteractor()->resetCamera(_viewAngle->getPosition(), _viewAngle->getDirection(),
                                                      camera.getMaxDistance(), camera.getTargetLimit());
    }
    applyView();
}

void TORVDoubleModeDialog::applyView()
{
    TORVCameraInteractor* const camera = _renderer->getCameraInteractor();
    camera->setView(_viewAngle->getPosition(), _viewAngle->getDirection());
    camera->applyCamera(false);
}

void TORVDoubleModeDialog::showDialog()
{
    if (!isVisible()) {
        restorePosition();
    }
    show();
    raise();
    activateWindow();
    startVisualization();
}

void TORVDoubleModeDialog::hideDialog()
{
    if (isVisible()) {
        storePosition();
    }
    hide();
    closeVisualization();
    _renderer->render();
}

bool TORVDoubleModeDialog::dialogVisible() const
{
    return isVisible();
}

void TORVDoubleModeDialog::done(int result)
{
    hideDialog();
    QDialog::done(result);
}

void TORVDoubleModeDialog::startVisualization()
{
    if (_visualization) {
        _visualization->updateVisualization(true);
    }
}

// One at work can't be stopped without waiting for it, so it runs out, and nobody looks at what it brings.
void TORVDoubleModeDialog::closeVisualization()
{
    _renderer->removeVisualization();
    _renderer->removeInfoData();
    if (isGenerating()) {
        _leaving << _visualization;
    }
    _visualization.reset();
    _dataFrame.reset();
    showTitle();
}

void TORVDoubleModeDialog::abort()
{
    if (_visualization) {
        _visualization->abort();
    }
    for (const TORVVisualization::Ptr& visualization : _leaving) {
        visualization->abort();
    }
}

bool TORVDoubleModeDialog::letGo(const TORVVisualization* visualization)
{
    const auto place = std::find_if(_leaving.begin(), _leaving.end(),
                                    [visualization](const auto& leaving) { return leaving.get() == visualization; });
    if (place == _leaving.end()) {
        return false;
    }
    QTimer::singleShot(0, this, [held = *place] {}); // it is still at work when this returns
    _leaving.erase(place);
    return true;
}

bool TORVDoubleModeDialog::isGenerating() const
{
    return _visualization && _visualization->isGenerating();
}

void TORVDoubleModeDialog::visualizationFinished(TORVVisualization* visualization)
{
    assert(visualization);
    if (letGo(visualization)) {
        return;
    }
    assert(visualization->getResultItem());
    assert(visualization->getDataFrame());
    _renderer->setInfoData(visualization->getDataFrame(), _genSettings);
    _renderer->toggleLegend(true);
    _renderer->toggleCompass(true);
    _renderer->toggleColorScale(true);
    _renderer->setVisualization(visualization->getResultItem());
    applyView();
    _renderer->render();
    showTitle();
}

boost::shared_ptr<const TORVGeneralSettings> TORVDoubleModeDialog::getVisualizationGeneralSettings()
{
    return _genSettings;
}

boost::shared_ptr<const TORVDisplayState> TORVDoubleModeDialog::getVisualizationDisplayState()
{
    return _displayState;
}

void TORVDoubleModeDialog::toggleNightMode(bool night)
{
    TORVDisplayMode::setNight(night);
    if (_visualization) {
        _visualization->restyle();
    }
    _renderer->updateLights();
    _renderer->render();
}

void TORVDoubleModeDialog::updateValues()
{
    showTitle();
}

void TORVDoubleModeDialog::showTitle()
{
    if (!_dataFrame) {
        setWindowTitle(tr("(No data loaded.)"));
        return;
    }
    const QString dataId = _dataFrame->getDataId(_window->getCurrentGeneralSettings());
    setWindowTitle(_visualization->getResultItem() ? dataId : tr("Loading: ") + dataId);
}

void TORVDoubleModeDialog::cameraReset(TORVCameraInteractor* /*camera*/) {}

void TORVDoubleModeDialog::cameraMoved(TORVCameraInteractor* /*camera*/) {}

void TORVDoubleModeDialog::storePosition() const
{
    logDebug("Store TORVDoubleModeDialog location..");
    const QByteArray geometry = saveGeometry();
    TORVConfig* const config = TORVConfig::instance();
    config->get()->setValue(positionKey(), geometry);
    config->release();
}

void TORVDoubleModeDialog::restorePosition()
{
    logDebug("Restore TORVDoubleModeDialog location..");
    TORVConfig* const config = TORVConfig::instance();
    const QByteArray geometry = config->get()->value(positionKey()).toByteArray();
    config->release();
    logDebug(restoreGeometry(geometry) ? "Previous dialog position found!" : "Previous dialog position not found!");
}
