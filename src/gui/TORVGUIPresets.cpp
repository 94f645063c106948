// Presets of the display state and of the view, and the camera that the second moves.

#include "gui/DisplayMode.h"
#include "gui/TORVCursorToolDialog.h"
#include "gui/TORVDisplayStateManager.h"
#include "gui/TORVGUI.h"
#include "gui/TORVViewAngleManager.h"
#include "settings/TORVDisplayState.h"
#include "settings/TORVGeneralSettings.h"
#include "utils/TORVLog.h"
#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVRenderer.h"

#include <algorithm>
#include <cmath>

namespace
{

// Entries of both combo boxes: "Custom", the presets, of which the first is the built-in one, and the manager.
enum Entry : int
{
    CUSTOM = 0,
    DEFAULT = 1
};

constexpr int EntriesWithoutPresets = 2;

// A direction of no length, or of numbers that are none, is no view.
bool isUsable(const TORVViewAngle& view)
{
    const TORVPoint3D direction = view.getDirection();
    const double length = std::hypot(direction.x, direction.y, direction.z);
    return std::isfinite(length) && length > 0.0;
}

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

void logMismatch(const QComboBox* box, int listCount)
{
    logDebug(QStringLiteral("Current idx=%1").arg(box->currentIndex()));
    logDebug(QStringLiteral("Current combo count=%1").arg(box->count()));
    logDebug(QStringLiteral("Current list count=%1").arg(listCount));
}

} // namespace

void TORVGUI::fillPresetBox(QComboBox* box, const QStringList& presets, const QString& chosen)
{
    QStringList entries = presets;
    entries.prepend(translate("App", "Custom"));
    entries.append(translate("App", "(Manage presets)"));
    box->clear();
    box->insertItems(0, entries);
    box->setCurrentIndex(std::max<int>(CUSTOM, entries.indexOf(chosen)));
}

void TORVGUI::updateDisplayStates()
{
    fillPresetBox(comboBox_displayState, _genSettings->getDisplayStateNames(), _chosenDisplayState);
    _chosenDisplayState = comboBox_displayState->currentText();
}

void TORVGUI::updateViewAngles()
{
    fillPresetBox(comboBox_viewAngle, _genSettings->getViewAngleNames(), _chosenViewAngle);
    _chosenViewAngle = comboBox_viewAngle->currentText();
}

void TORVGUI::comboBoxDisplayState(int index)
{
    if (comboBox_displayState->count() <= EntriesWithoutPresets) {
        return;
    }
    if (index == comboBox_displayState->count() - 1) {
        manageDisplayStates();
        return;
    }
    _chosenDisplayState = comboBox_displayState->itemText(index);
    if (index >= DEFAULT) {
        applyDisplayState(index - DEFAULT);
    }
}

// @param row  among the names of presets, 0 for the built-in one
void TORVGUI::applyDisplayState(int row)
{
    const auto& presets = _genSettings->getDisplayStates();
    if (row < 0 || row > presets.size()) {
        logMismatch(comboBox_displayState, presets.size());
        return;
    }
    const QString name = _genSettings->getDisplayStateNames().at(row);
    TORVLog::Instance()->logHistory(translate("App", "Display state: %1").arg(name));
    if (row == 0) {
        logDebug(QStringLiteral("Apply default display state"));
        _displayState->copyState(TORVDisplayState());
    } else {
        logDebug(QLatin1String("Apply preset display state: ") + name);
        _displayState->copyState(*presets.at(row - 1));
    }
    updateGUIGroups();
    redraw();
}

void TORVGUI::manageDisplayStates()
{
    TORVDisplayStateManager manager(this, this);
    connect(&manager, &TORVDisplayStateManager::presetItemApplied, this, &TORVGUI::displayStatePresetItemApplied);
    QVector<QObject*> windows{&manager};
    _displayMode->addIcons(windows);
    manager.exec();
    updateDisplayStates();
    _genSettings->saveCurrentDisplayState(_displayState); // the manager has saved the presets
}

void TORVGUI::displayStatePresetItemApplied(int row)
{
    updateDisplayStates();
    _genSettings->saveCurrentDisplayState(_displayState);
    applyDisplayState(row);
    comboBox_displayState->setCurrentIndex(row + DEFAULT);
    _chosenDisplayState = comboBox_displayState->currentText();
}

void TORVGUI::comboBoxViewAngle(int index)
{
    takeCamera();
    if (comboBox_viewAngle->count() <= EntriesWithoutPresets) {
        return;
    }
    if (index == comboBox_viewAngle->count() - 1) {
        manageViewAngles();
        return;
    }
    if (index >= DEFAULT) {
        applyViewAngle(index - DEFAULT);
    }
    _chosenViewAngle = comboBox_viewAngle->itemText(index);
    comboBox_viewAngle->setCurrentIndex(index); // a reset of the camera has made it "Custom"
}

void TORVGUI::applyViewAngle(int row)
{
    const auto& presets = _genSettings->getViewAngles();
    if (row < 0 || row > presets.size()) {
        logMismatch(comboBox_viewAngle, presets.size());
        return;
    }
    const QString name = _genSettings->getViewAngleNames().at(row);
    TORVLog::Instance()->logHistory(translate("App", "View angle: %1").arg(name));
    TORVCameraInteractor* const camera = _renderer->getCameraInteractor();
    if (row == 0 || !isUsable(*presets.at(row - 1))) {
        camera->resetCamera();
    } else {
        logDebug(QLatin1String("Apply preset view angle: ") + name);
        camera->setView(presets.at(row - 1)->getPosition(), presets.at(row - 1)->getDirection());
    }
    camera->applyCamera(true);
    takeCamera();
    _renderer->render();
}

void TORVGUI::manageViewAngles()
{
    TORVViewAngleManager manager(this, this);
    connect(&manager, &TORVViewAngleManager::presetItemApplied, this, &TORVGUI::viewAnglePresetItemApplied);
    QVector<QObject*> windows{&manager};
    _displayMode->addIcons(windows);
    manager.exec();
    updateViewAngles();
    _genSettings->saveCurrentViewAngle(_viewAngle);
}

void TORVGUI::viewAnglePresetItemApplied(int row)
{
    updateViewAngles();
    _genSettings->saveCurrentViewAngle(_viewAngle);
    applyViewAngle(row);
    comboBox_viewAngle->setCurrentIndex(row + DEFAULT);
    _chosenViewAngle = comboBox_viewAngle->currentText();
}

void TORVGUI::takeCamera()
{
    const TORVCameraInteractor* const camera = _renderer->getCameraInteractor();
    _viewAngle->setPosition(camera->getPosition());
    _viewAngle->setDirection(camera->getDirection());
}

// Before there is data nobody has chosen a view, and that of the last session still waits for its turn.
void TORVGUI::cameraMoved(TORVCameraInteractor* camera)
{
    if (!_dataFrame) {
        return;
    }
    _viewAngle->setPosition(camera->getPosition());
    _viewAngle->setDirection(camera->getDirection());
    comboBox_viewAngle->setCurrentIndex(CUSTOM);
    _chosenViewAngle = comboBox_viewAngle->currentText();
}

void TORVGUI::cameraReset(TORVCameraInteractor* camera)
{
    cameraMoved(camera);
}

void TORVGUI::pointWidgetUpdated(TORVPointWidget* /*widget*/, const TORVPoint3D& point)
{
    _cursorTool->newCursorPosition(point);
}

boost::shared_ptr<TORVDisplayState> TORVGUI::getCurrentDisplayState() const
{
    return _displayState;
}

boost::shared_ptr<TORVViewAngle> TORVGUI::getCurrentViewAngle() const
{
    return _viewAngle;
}

void TORVGUI::updateHistory(const TORVDisplayState& previous)
{
    QStringList reasons;
    if (_displayState->hasChanged(previous, &reasons) && !reasons.isEmpty()) {
        TORVLog::Instance()->logHistory(reasons);
    }
}
