// Tool windows, settings that are applied, panels and the look.

#include "datalib/TORVDataStore.h"
#include "datalib/TORVTerrainDir.h"
#include "gui/DisplayMode.h"
#include "gui/TORVAnimation.h"
#include "gui/TORVCursorToolDialog.h"
#include "gui/TORVDiskSpaceIndicator.h"
#include "gui/TORVDoubleModeDialog.h"
#include "gui/TORVGUI.h"
#include "gui/TORVGeneralSettingsDialog.h"
#include "gui/TORVHelp.h"
#include "gui/TORVProductInformationDialog.h"
#include "settings/TORVConfig.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"
#include "utils/TORVLog.h"
#include "visualization/TORVColormap.h"
#include "visualization/TORVRenderer.h"

#include <QAction>
#include <QDockWidget>
#include <QSettings>
#include <QShortcut>
#include <QToolButton>

#include <vtkDataSet.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <utility>

namespace
{

constexpr int StatusTime_s = 2;
constexpr int SceneMargin = 24; // pixels, of tool windows
constexpr int ToolStep = 28;    // the height of a title

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

void logStatus(const QString& text)
{
    TORVLog::Instance()->logStatus(text, StatusTime_s);
}

bool haveDirectoriesChanged(const TORVGeneralSettings& a, const TORVGeneralSettings& b)
{
    return a.get3DDir() != b.get3DDir() || a.get2DDir() != b.get2DDir() || a.getGeoDir() != b.getGeoDir();
}

} // namespace

boost::shared_ptr<const TORVColormap> TORVGUI::getCurrentColorMap() const
{
    const TORVColormap::CPtr colors = _productInfo->getColormap();
    return colors ? colors : boost::make_shared<const TORVColormap>();
}

boost::shared_ptr<const TORVDataFrame> TORVGUI::getCurrentDataFrame() const
{
    return _dataFrame;
}

boost::shared_ptr<TORVGeneralSettings> TORVGUI::getCurrentGeneralSettings() const
{
    return _genSettings;
}

vtkSmartPointer<vtkDataSet> TORVGUI::getCurrentVTK3DDataSet() const
{
    return _visualization ? _visualization->getVTKDataSet() : nullptr;
}

TORVRenderer* TORVGUI::getCurrentRenderer() const
{
    return _renderer.get();
}

void TORVGUI::updateToolDialogs()
{
    _productInfo->updateValues();
    if (_cursorTool->dialogVisible()) {
        _cursorTool->updateValues();
    }
}

const TORVGUI::Tool& TORVGUI::toolOf(const QAction* action) const
{
    const auto tool =
        std::find_if(_tools.begin(), _tools.end(), [action](const Tool& each) { return each.action == action; });
    assert(tool != _tools.end());
    return *tool;
}

void TORVGUI::showTool(const Tool& tool)
{
    if (!tool.tool->dialogVisible()) {
        tool.tool->showDialog();
        if (!tool.dialog->testAttribute(Qt::WA_Moved)) {
            placeTool(*tool.dialog);
        }
    }
    tool.action->setChecked(true);
}

// Where the user has not put it yet: at the right edge of the scene, a step below the one before, clear of the storm.
void TORVGUI::placeTool(QDialog& dialog) const
{
    const auto place =
        std::find_if(_tools.begin(), _tools.end(), [&dialog](const Tool& each) { return each.dialog == &dialog; });
    const int step = ToolStep * static_cast<int>(place - _tools.begin());
    const QPoint corner = sceneWidget->mapToGlobal(QPoint(sceneWidget->width(), 0));
    dialog.move(corner + QPoint(-dialog.frameGeometry().width() - SceneMargin, SceneMargin + step));
}

void TORVGUI::hideTool(const Tool& tool)
{
    if (tool.tool->dialogVisible()) {
        tool.tool->hideDialog();
    }
    tool.action->setChecked(false);
}

void TORVGUI::toggleTool(const QAction* action)
{
    const Tool& tool = toolOf(action);
    (this->*(tool.tool->dialogVisible() ? tool.hide : tool.show))();
}

void TORVGUI::showSettings()
{
    showTool(toolOf(settings));
}

void TORVGUI::hideSettings()
{
    hideTool(toolOf(settings));
}

void TORVGUI::showProductInfo()
{
    showTool(toolOf(productInfo));
}

void TORVGUI::hideProductInfo()
{
    hideTool(toolOf(productInfo));
}

void TORVGUI::showCursorTool()
{
    showTool(toolOf(cursorTool));
}

void TORVGUI::hideCursorTool()
{
    hideTool(toolOf(cursorTool));
}

void TORVGUI::showExtraWindow()
{
    takeCamera();
    _extraWindow->setData(_dataFrame, _displayState, _viewAngle);
    showTool(toolOf(extraWindow));
}

void TORVGUI::hideExtraWindow()
{
    hideTool(toolOf(extraWindow));
}

void TORVGUI::on_settings_triggered()
{
    toggleTool(settings);
}

void TORVGUI::on_productInfo_triggered()
{
    toggleTool(productInfo);
}

void TORVGUI::on_cursorTool_triggered()
{
    toggleTool(cursorTool);
}

void TORVGUI::on_extraWindow_triggered()
{
    toggleTool(extraWindow);
}

void TORVGUI::applyProductInfo()
{
    if (!_dataFrame) {
        return;
    }
    const TORVProductSettings::Ptr edited = _productInfo->getProductSettings();
    QStringList reasons;
    if (!_dataFrame->getProductSettings()->hasChanged(edited, &reasons)) {
        logStatus(translate("App", "No changes to apply.."));
        return;
    }
    logStatus(translate("App", "Product settings applied.."));
    reasons.prepend(translate("App", "Product settings applied:"));
    TORVLog::Instance()->logHistory(reasons);
    edited->save();
    _animation->updateProductSettings();
    updateColorKey();
    redraw();
}

void TORVGUI::applySettings()
{
    const TORVGeneralSettings before = *_genSettings;
    _genSettings->load(); // what the dialog has saved
    QStringList reasons;
    if (!_genSettings->hasChanged(before, &reasons)) {
        logStatus(translate("App", "No changes to apply.."));
        TORVLog::Instance()->logHistory(QStringList{translate("App", "General settings applied:"),
                                                    QLatin1String("- ") + translate("App", "No changes.")});
        return;
    }
    logStatus(translate("App", "General settings applied.."));
    reasons.prepend(translate("App", "General settings applied:"));
    TORVLog::Instance()->logHistory(reasons);
    if (haveDirectoriesChanged(before, *_genSettings)) {
        changeDirectories();
    }
    updateAvailableSites();
    updateAvailableProducts();
    updateToolDialogs();
    updateDataIdLabel(_dataFrame);
    updateAnimControls();
    redraw();
}

// To close the data is to leave the live mode; whoever was in it follows the new directories.
void TORVGUI::changeDirectories()
{
    const bool wasLive = _genSettings->isLiveMode();
    TORVLog::Instance()->logHistory(
        QStringList{translate("App", "Data paths changed:"),
                    QLatin1String("- ") + translate("App", "Current data will be closed.")});
    fileClose();
    logDebug(QStringLiteral("Some data directories changed: updating data store.."));
    openDirectories();
    _diskSpaceBar->pathChanged(_genSettings->get3DDir());
    if (wasLive) {
        toggleLiveMode(true);
    }
}

// The ground that is shown was made from the cache: all of it is made anew.
void TORVGUI::clearGeoCache()
{
    const auto terrain = _dataStore->getTerrainDir();
    if (!terrain) {
        return;
    }
    terrain->clearCache();
    terrain->resetFiles();
    terrain->scanFiles();
    _animation->renewTerrain();
    ++_changes;
    updateVisualization(true);
}

void TORVGUI::on_fullScreen_triggered()
{
    const bool isFull = isFullScreen();
    if (isFull) {
        showNormal();
    } else {
        showFullScreen();
    }
    fullScreen->setChecked(!isFull);
    _leaveFullScreen->setEnabled(!isFull);
}

// All that stands round or before the scene goes, but for the bars and the colour key.
void TORVGUI::on_floatsHide_triggered()
{
    _arePanelsHidden = !_arePanelsHidden;
    const Face shown = {QStringLiteral("floatsHide"), translate("MainWindow", "&Hide panels"),
                        translate("MainWindow", "Hide panels (F6)")};
    const Face hidden = {QStringLiteral("floatsShow"), translate("MainWindow", "S&how panels"),
                         translate("MainWindow", "Show panels (F6)")};
    toggleButton(floatsHide, _arePanelsHidden ? hidden : shown);
    dockWidget_control->setVisible(!_arePanelsHidden);
    dockWidget_history->setVisible(!_arePanelsHidden);
    dockWidget_animation->setVisible(!_arePanelsHidden && animation->isChecked());
    if (!_arePanelsHidden) {
        for (const QAction* const action : std::exchange(_hiddenTools, {})) {
            (this->*toolOf(action).show)();
        }
        return;
    }
    for (const Tool& tool : _tools) {
        if (tool.tool->dialogVisible()) {
            _hiddenTools << tool.action;
            (this->*tool.hide)();
        }
    }
}

void TORVGUI::on_help_triggered()
{
    TORVHelp menu(this);
    if (menu.isEmpty()) {
        TORVLog::Instance()->logHistory(translate("App", "Help menu is not configured"));
        return;
    }
    const QWidget* const button = mainToolBar->widgetForAction(help);
    const QPoint corner = mainToolBar->mapToGlobal(QPoint(0, mainToolBar->height()));
    menu.popup(corner); // its width is known only when it has been shown
    logDebug(QStringLiteral("Pop-up menu width: %1").arg(menu.width()));
    logDebug(QStringLiteral("Toolbar width: %1").arg(mainToolBar->width()));
    const int right = button ? button->mapToGlobal(QPoint(button->width(), 0)).x() : corner.x() + mainToolBar->width();
    const QAction* const chosen = menu.exec(QPoint(right - menu.width(), corner.y()));
    if (chosen) {
        logDebug(QLatin1String("Selected ") + chosen->text());
    } else {
        logStatus(translate("App", "Help cancelled"));
    }
}

void TORVGUI::on_nightMode_triggered(bool on)
{
    TORVConfig* const config = TORVConfig::instance();
    config->get()->setValue(TORVConfig::DIALOG_GROUP + QLatin1Char('/') + TORVConfig::DIALOG_NIGHTMODE, on);
    config->release();
    _displayMode->toggleDisplayMode(!on);
    markLiveMode();
    updateAnimIcons();
    if (_visualization) {
        _visualization->restyle();
    }
    _renderer->updateLights();
    _renderer->render();
    colorKey->update();
    _extraWindow->toggleNightMode(on);
}
